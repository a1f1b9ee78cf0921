// Platform file (ELF and Mach-O): once the API Server runs, the library stays
// mapped until the process ends. Its thread runs the library's code, and a
// dlclose that unmapped it would crash the host at the next connection.
#include <dlfcn.h>

#include "entry/entry.h"

namespace tvapic {

void KeepLibraryLoaded() {
    Dl_info self{};
    if (!dladdr(reinterpret_cast<void*>(&KeepLibraryLoaded), &self) || !self.dli_fname) return;
    // Opening an object that is already loaded with RTLD_NODELETE marks it
    // as never to be unloaded; the handle itself is not needed.
    dlopen(self.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

}  // namespace tvapic
