#include "Installer/Progress.h"

#include <gtest/gtest.h>

namespace {

TEST(Progress, StepsJustifyPositionsBelowTheEnd)
{
    const uint32_t lines = ProgressLines(3);
    EXPECT_EQ(lines, 4u);
    EXPECT_EQ(ProgressTarget(1, lines), 125u);
    EXPECT_EQ(ProgressTarget(2, lines), 250u);
    EXPECT_EQ(ProgressTarget(3, lines), 375u);
    EXPECT_EQ(ProgressTarget(1, ProgressLines(2)), 166u); // rounded down
    EXPECT_EQ(ProgressTarget(0, ProgressLines(0)), 0u);
}

TEST(Progress, JumpingBackwardExceedsTheEnd)
{
    EXPECT_EQ(ProgressTarget(5, 4), 625u);
    // Far more steps than a product in 32 bits could hold.
    EXPECT_EQ(ProgressTarget(20'000'000, 100'000'000), 100u);
}

} // namespace
