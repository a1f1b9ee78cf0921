#include "common/c_heap.h"

#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace c_heap {

#if defined(_WIN32)
namespace {
template <class F>
F UniversalRuntime(const char* name) {
    static HMODULE ucrt = LoadLibraryW(L"ucrtbase.dll");
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(ucrt, name)));
}
}  // namespace

void* Allocate(std::size_t n) {
    static auto f = UniversalRuntime<void* (*)(std::size_t)>("malloc");
    return f(n);
}
void Free(void* p) {
    static auto f = UniversalRuntime<void (*)(void*)>("free");
    f(p);
}
#else
void* Allocate(std::size_t n) { return std::malloc(n); }
void Free(void* p) { std::free(p); }
#endif

}  // namespace c_heap
