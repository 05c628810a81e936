#include "Common/TvxException.h"

#include <gtest/gtest.h>

TEST(TvxException, TextHoldsThePartsThatAreSet)
{
    EXPECT_STREQ(CTvxException(nullptr, 0, "no manager", static_cast<uint16_t>(-1)).what(),
                 "Status: ffff,  \"no manager\"");
    EXPECT_STREQ(CTvxException(nullptr, 7, "text", 0).what(), " \"text\"");
    EXPECT_STREQ(CTvxException("a.cpp", 42, "text", 0x60C).what(), "File: a.cpp, Line: 42, Status: 60c,  \"text\"");
    EXPECT_STREQ(CTvxException("a.cpp", 42, "", 0).what(), "File: a.cpp, Line: 42,  \"\"");
    const CTvxException original("a.cpp", 1, "text", 5);
    const CTvxException copy = original;
    EXPECT_STREQ(copy.what(), original.what());
    EXPECT_EQ(copy.Status(), 5);
}
