// The public header must compile as C++ and declare C linkage.
#include "tvAPIC.h"

static_assert(sizeof(tvWChar) == 2);
static_assert(sizeof(DoubleVector_t) == 16);

int header_cpp_compiles() { return static_cast<int>(sizeof(StringVector_t)); }
