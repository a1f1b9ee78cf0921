// Platform file: dynamic loading on Windows and on POSIX systems.
#include "shell/library_loader.h"

#if defined(_WIN32)
#include <windows.h>

#include <filesystem>

LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error) {
    // The wide call: the system codepage cannot name every file.
    std::filesystem::path file(std::u8string(path.begin(), path.end()));
    HMODULE module = LoadLibraryW(file.c_str());
    if (!module) error = "LoadLibrary failed with error " + std::to_string(GetLastError());
    return reinterpret_cast<LoadedLibrary>(module);
}

void* LibrarySymbol(LoadedLibrary library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}

bool UnloadLibrary(LoadedLibrary library) { return FreeLibrary(reinterpret_cast<HMODULE>(library)) != 0; }

#else
#include <dlfcn.h>

LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) error = dlerror();
    return library;
}

void* LibrarySymbol(LoadedLibrary library, const char* name) { return dlsym(library, name); }

bool UnloadLibrary(LoadedLibrary library) { return dlclose(library) == 0; }
#endif
