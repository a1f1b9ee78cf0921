// Platform file: dynamic loading on Windows and on POSIX systems.
#include "sim/library_loader.h"

#if defined(_WIN32)
#include <windows.h>

LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error) {
    HMODULE module = LoadLibraryA(path.c_str());
    if (!module) error = "LoadLibrary failed with error " + std::to_string(GetLastError());
    return reinterpret_cast<LoadedLibrary>(module);
}

void UnloadLibrary(LoadedLibrary library) { FreeLibrary(reinterpret_cast<HMODULE>(library)); }

#else
#include <dlfcn.h>

LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) error = dlerror();
    return library;
}

void UnloadLibrary(LoadedLibrary library) { dlclose(library); }
#endif
