// The heap that crosses the library's boundary: returned text, and the
// blocks and elements of C vectors. A caller built against the universal C
// runtime uses plain malloc and free for these; on Windows the tests, built
// with MinGW against another runtime, reach ucrtbase.dll's by name.
#pragma once

#include <cstddef>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace c_heap {

#if defined(_WIN32)
template <class F>
F UniversalRuntime(const char* name) {
    static HMODULE ucrt = LoadLibraryW(L"ucrtbase.dll");
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(ucrt, name)));
}
inline void* Allocate(std::size_t n) {
    static auto f = UniversalRuntime<void* (*)(std::size_t)>("malloc");
    return f(n);
}
inline void Free(void* p) {
    static auto f = UniversalRuntime<void (*)(void*)>("free");
    f(p);
}
#else
inline void* Allocate(std::size_t n) { return std::malloc(n); }
inline void Free(void* p) { std::free(p); }
#endif

}  // namespace c_heap
