// Loading a library as the host does, for the load test: the platform's own
// loader (LoadLibrary on Windows, dlopen elsewhere).
#pragma once

#include <string>

namespace load_test {

// Null on failure, with the loader's message in `error`.
void* Load(const char* path, std::string& error);
void* Lookup(void* library, const char* name);
bool Unload(void* library);

}  // namespace load_test
