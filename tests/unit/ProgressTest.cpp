#include "Installer/Progress.h"

#include <gtest/gtest.h>

namespace {

// Of 500: three steps justify quarters, rounded down, and steps that run again exceed the end.
TEST(Progress, StepsJustifyPositions)
{
    static const uint32_t kCases[][3] = {{1, 3, 125}, {2, 3, 250}, {3, 3, 375}, {1, 2, 166}, {0, 0, 0}, {5, 3, 625}};
    for (const auto &[done, steps, position] : kCases) {
        EXPECT_EQ(ProgressTarget(done, ProgressLines(steps)), position) << done << " of " << steps;
    }
    // Far more steps than a product in 32 bits could hold.
    EXPECT_EQ(ProgressTarget(20'000'000, 100'000'000), 100u);
}

} // namespace
