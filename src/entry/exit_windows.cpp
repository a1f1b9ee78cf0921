// Platform file (Windows): the process's exit ends every other thread before
// the DLL's static objects are destroyed, so the server thread is gone by
// then; and the DLL's exit handlers run inside DllMain, where nothing may be
// joined. The server's state is never destroyed, so nothing is left to do.
#include "entry/entry.h"

namespace tvapic {

void StopServerAtExit() {}

}  // namespace tvapic
