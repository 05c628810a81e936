#include "Common/TvxException.h"

#include <gtest/gtest.h>

TEST(TvxException, TextHoldsThePartsThatAreSet)
{
    const CTvxException noPlace(nullptr, 7, "text", static_cast<uint16_t>(-1)), whole("a.cpp", 42, "text", 0x60C);
    EXPECT_STREQ(noPlace.what(), "Status: ffff,  \"text\"");
    EXPECT_STREQ(CTvxException("a.cpp", 42, "", 0).what(), "File: a.cpp, Line: 42,  \"\"");
    EXPECT_STREQ(CTvxException(whole).what(), "File: a.cpp, Line: 42, Status: 60c,  \"text\"");
}
