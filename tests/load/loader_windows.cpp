// Platform file (Windows dynamic loading).
#include <windows.h>

#include "load/loader.h"

namespace load_test {

void* Load(const char* path, std::string& error) {
    HMODULE library = LoadLibraryA(path);
    if (!library) error = "LoadLibrary failed with error " + std::to_string(GetLastError());
    return reinterpret_cast<void*>(library);
}

void* Lookup(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool Unload(void* library) { return FreeLibrary(static_cast<HMODULE>(library)) != 0; }

}  // namespace load_test
