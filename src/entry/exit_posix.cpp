// Platform file (ELF and Mach-O): exit() destroys static objects, of this
// library and of the libraries it uses, while other threads still run. The
// server is stopped first: the handler registered at its first start runs
// before whatever was constructed earlier is destroyed, and its stop joins a
// thread that never waits on a client or on the main thread.
#include <cstdlib>
#include <mutex>

#include "entry/entry.h"
#include "server/server.h"

namespace tvapic {

void StopServerAtExit() {
    static std::once_flag registered;
    std::call_once(registered, [] { std::atexit([] { server::Server::Instance().Stop(); }); });
}

}  // namespace tvapic
