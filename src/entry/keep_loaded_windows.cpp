// Platform file (Windows): once the API Server runs, the DLL stays loaded
// until the process ends. Its thread runs the DLL's code, and a FreeLibrary
// that unloaded it would crash the host at the next connection. Pinning
// needs no thread to be joined, so nothing waits under the loader lock.
#include <windows.h>

#include "entry/entry.h"

namespace tvapic {

void KeepLibraryLoaded() {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&KeepLibraryLoaded)), &self);
}

}  // namespace tvapic
