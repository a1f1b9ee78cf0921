// Platform file (POSIX dynamic loading).
#include <dlfcn.h>

#include "load/loader.h"

namespace load_test {

void* Load(const char* path, std::string& error) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library) error = dlerror();
    return library;
}

void* Lookup(void* library, const char* name) { return dlsym(library, name); }

bool Unload(void* library) { return dlclose(library) == 0; }

}  // namespace load_test
