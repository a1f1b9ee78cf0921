// Platform file (Windows): the universal C runtime's heap. A program built
// with a current compiler frees with ucrtbase.dll's `free`, while this
// library may be built against another runtime (MinGW's msvcrt.dll), whose
// blocks that `free` must never see. The two functions are looked up once,
// at first use, never under the loader lock.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "core/heap.h"

namespace tvapic::heap {
namespace {

struct UniversalRuntime {
    using AllocateFn = void*(__cdecl*)(std::size_t);
    using FreeFn = void(__cdecl*)(void*);
    AllocateFn allocate = nullptr;
    FreeFn free = nullptr;

    UniversalRuntime() {
        // Part of Windows since Windows 10; the module stays loaded for the
        // process's life, as every program built against it keeps it.
        HMODULE ucrt = LoadLibraryW(L"ucrtbase.dll");
        if (ucrt) {
            allocate = reinterpret_cast<AllocateFn>(reinterpret_cast<void*>(GetProcAddress(ucrt, "malloc")));
            free = reinterpret_cast<FreeFn>(reinterpret_cast<void*>(GetProcAddress(ucrt, "free")));
        }
        if (!allocate || !free) {
            // Only a Windows older than 10 lacks it. The library's own runtime
            // still keeps its vectors and texts consistent among its own
            // functions; a caller's `free` is then that caller's risk.
            std::fputs("tvAPIC: ucrtbase.dll is not available; text is allocated from the library's own C runtime\n",
                       stderr);
            allocate = &std::malloc;
            free = &std::free;
        }
    }
};

const UniversalRuntime& Runtime() {
    static const UniversalRuntime runtime;
    return runtime;
}

}  // namespace

void* Allocate(std::size_t bytes) { return Runtime().allocate(bytes); }
void Free(void* block) { Runtime().free(block); }

}  // namespace tvapic::heap
