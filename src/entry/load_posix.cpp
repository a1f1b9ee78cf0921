// Platform file (ELF and Mach-O): the loader runs these on dlopen / dlclose,
// where Windows calls DllMain with process attach and detach.
#include "entry/entry.h"

namespace {

__attribute__((constructor)) void AttachToProcess() { tvapic::OnProcessAttach(); }
__attribute__((destructor)) void DetachFromProcess() { tvapic::OnProcessDetach(); }

}  // namespace
