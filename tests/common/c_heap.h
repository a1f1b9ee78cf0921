// The heap that crosses the library's boundary: returned text, and the
// blocks and elements of C vectors. A caller built against the universal C
// runtime uses plain malloc and free for these; on Windows the tests, built
// with MinGW against another runtime, reach ucrtbase.dll's by name.
#pragma once

#include <cstddef>

namespace c_heap {

void* Allocate(std::size_t n);
void Free(void* p);

}  // namespace c_heap
