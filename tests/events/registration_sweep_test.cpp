#include <gtest/gtest.h>

#include <cstdio>

#include "events/registration_sweep.h"

TEST(RegistrationSweep, EveryRegistrationKeepsItsHandlerAndConvertsTheCall) {
    std::vector<eventsweep::Case> cases = eventsweep::AllCases();
    std::vector<std::string> failures;
    std::size_t covered = 0;
    for (const auto& c : cases) {
        eventsweep::Report report(c.name, failures);
        c.run(report);
        ++covered;
    }
    std::printf("registration sweep: %zu of %zu registrations covered\n", covered, eventsweep::RegistrationCount());
    for (std::size_t i = 0; i < failures.size() && i < 50; ++i) ADD_FAILURE() << failures[i];
    EXPECT_EQ(failures.size(), 0u);
    EXPECT_EQ(covered, eventsweep::RegistrationCount());
}
