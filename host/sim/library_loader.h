// Loading the library at run time, as the application does.
#pragma once

#include <string>

#include "tvapi/export.h"

#if defined(TVSIM_BUILDING)
#define TVSIM_LOADER_API TVHOST_EXPORT
#else
#define TVSIM_LOADER_API TVHOST_IMPORT
#endif

using LoadedLibrary = void*;

// Null on failure, with the loader's message in `error`. The path is UTF-8.
TVSIM_LOADER_API LoadedLibrary LoadLibraryAt(const std::string& path, std::string& error);
// The address of an export, or null.
TVSIM_LOADER_API void* LibrarySymbol(LoadedLibrary library, const char* name);
// False when the system's loader refused to unload.
TVSIM_LOADER_API bool UnloadLibrary(LoadedLibrary library);
