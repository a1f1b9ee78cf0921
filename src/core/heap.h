// The C runtime heap shared with callers. Returned text and the blocks of C
// vectors come from here, because a caller frees them with its own `free`
// (and may free an element it replaces in a vector it was handed). On
// Windows that is the universal C runtime's heap (ucrtbase.dll), whatever
// runtime this library itself was built against; elsewhere it is the one C
// library of the process.
#pragma once

#include <cstddef>

namespace tvapic::heap {

void* Allocate(std::size_t bytes);
void Free(void* block);

}  // namespace tvapic::heap
