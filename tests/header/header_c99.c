/* The public header must compile as strict C99. */
#include "tvAPIC.h"

int header_c99_compiles(void) {
    DoubleVector_t* v = DoubleVector_Create(1);
    DoubleVector_Delete(v);
    return (int)sizeof(tvWChar);
}
