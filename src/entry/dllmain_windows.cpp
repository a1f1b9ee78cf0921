// Platform file (Windows): the library's entry point.
#include <windows.h>

#include "entry/entry.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    switch (reason) {
        case DLL_PROCESS_ATTACH: tvapic::OnProcessAttach(); break;
        case DLL_PROCESS_DETACH: tvapic::OnProcessDetach(); break;
        default: break;  // thread attach and detach: nothing to do
    }
    return 1;
}
