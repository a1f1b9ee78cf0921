#include <gtest/gtest.h>

#include <cstdio>

#include "sweep/sweep.h"

TEST(ExportSweep, EveryExportBehavesOnNullUnrelatedAndProbeHandles) {
    std::vector<sweep::Case> cases = sweep::AllCases();
    std::size_t covered = 0;
    std::vector<std::string> failures = sweep::RunAll(cases, covered);
    std::printf("export sweep: %zu of %zu interface exports covered (%.0f%%)\n", covered, sweep::ExportCount(),
                100.0 * static_cast<double>(covered) / static_cast<double>(sweep::ExportCount()));
    for (std::size_t i = 0; i < failures.size() && i < 50; ++i) ADD_FAILURE() << failures[i];
    EXPECT_EQ(failures.size(), 0u);
    EXPECT_EQ(covered, sweep::ExportCount());
}
