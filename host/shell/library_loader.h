// Loading the library at run time, as the application does.
#pragma once

#include <string>

using LoadedLibrary = void*;

// Null on failure, with the loader's message in `error`. The path is UTF-8.
LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error);
// The address of an export, or null.
void* LibrarySymbol(LoadedLibrary library, const char* name);
// False when the system's loader refused to unload.
bool UnloadLibrary(LoadedLibrary library);
