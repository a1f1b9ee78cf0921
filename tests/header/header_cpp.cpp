// The public header must compile as C++ and declare C linkage.
#include "tvAPIC.h"

#include <type_traits>

static_assert(sizeof(tvWChar) == 2);
static_assert(sizeof(DoubleVector_t) == 16);
// Literals written with the header's macro are of the text unit's own type.
static_assert(std::is_same_v<std::remove_cvref_t<decltype(TVAPIC_TEXT("a")[0])>, tvWChar>);
static_assert(std::is_same_v<decltype(TVAPIC_TEXT('a')), tvWChar>);

int header_cpp_compiles() { return static_cast<int>(sizeof(StringVector_t)); }
