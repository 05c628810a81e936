// The types of Windows that no test machine is; what follows from them is shown by whole runs.
#include "Installer/PreflightRules.h"

#include <gtest/gtest.h>

namespace {

TEST(PreflightRules, TellsThePlatformsApart)
{
    for (const int32_t type : {20, 21, 30, 40, 50, 51, 60, 61, -1, 0, 22, 41, 62, 1000, 2000}) {
        const bool known = type >= 20 && type < 62 && type != 22 && type != 41;
        EXPECT_EQ(IsSupportedPlatform(type), known) << type;
        EXPECT_EQ(IsVistaOrLaterPlatform(type), known && type >= 30) << type;
    }
}

} // namespace
