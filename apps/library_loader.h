// Loading the library at run time, as the application does.
#pragma once

#include <string>

using LoadedLibrary = void*;

// Null on failure, with the loader's message in `error`.
LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error);
void UnloadLibrary(LoadedLibrary library);
