// The library entry: loading tvAPIC hands the host system library one entry
// object; unloading withdraws it.
#include <gtest/gtest.h>

#include "tvSys2/entry_points.h"

TEST(LibraryEntry, LoadingRegisteredExactlyOneEntryObject) {
    // This test program links tvAPIC, so the loader attached it before main.
    EXPECT_EQ(tvsys2_standin::ObjectRegistrations(), 1);
    EXPECT_EQ(tvsys2_standin::NullRegistrations(), 0);
    EXPECT_NE(tvsys2_standin::RegisteredEntry(), nullptr);
}
