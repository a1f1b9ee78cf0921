// Platform file (ELF and Mach-O): one C library serves the whole process.
#include <cstdlib>

#include "core/heap.h"

namespace tvapic::heap {

void* Allocate(std::size_t bytes) { return std::malloc(bytes); }
void Free(void* block) { std::free(block); }

}  // namespace tvapic::heap
