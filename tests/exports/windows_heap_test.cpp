// Platform file (Windows): what a caller frees comes from the universal C
// runtime's heap (ucrtbase.dll), whatever runtime the library was built
// with. A caller built with a current compiler frees with that runtime's
// `free`; a block of another heap would corrupt it, which its own heap check
// and block size see.
#if defined(_WIN32)
#include <gtest/gtest.h>

#include <windows.h>

#include "probe/probe.h"
#include "tvAPIC.h"

namespace {

struct UniversalRuntime {
    HMODULE ucrt = LoadLibraryW(L"ucrtbase.dll");
    size_t (*msize)(void*) = reinterpret_cast<size_t (*)(void*)>(GetProcAddress(ucrt, "_msize"));
    int (*heapchk)() = reinterpret_cast<int (*)()>(GetProcAddress(ucrt, "_heapchk"));
    void (*free)(void*) = reinterpret_cast<void (*)(void*)>(GetProcAddress(ucrt, "free"));
};
constexpr int kHeapOk = -2;  // _HEAPOK

TEST(WindowsHeap, ReturnedTextAndVectorElementsBelongToTheUniversalRuntime) {
    UniversalRuntime crt;
    ASSERT_TRUE(crt.msize && crt.heapchk && crt.free);
    tvprobe::Held document("ITavraDocument");
    tvWChar* name = ITavraDocument_GetName(document.handle());  // "answer"
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(crt.msize(name), 7 * sizeof(tvWChar)) << "the text is not a block of ucrtbase's heap";
    crt.free(name);

    // A caller replaces an element of its vector, freeing the old one itself.
    StringVector_t* v = StringVector_Create(1);
    StringVector_Set(v, 0, L"old");
    EXPECT_EQ(crt.msize(v->data), sizeof(tvWChar*));
    crt.free(v->data[0]);
    StringVector_Set(v, 0, L"new");
    StringVector_Delete(v);
    EXPECT_EQ(crt.heapchk(), kHeapOk);
}

}  // namespace
#endif
