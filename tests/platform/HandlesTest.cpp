#include "Common/Handles.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::vector<int> gClosed;

struct RecordingPolicy {
    using Type = int;
    static Type Empty() { return 0; }
    static bool Owns(Type value) { return value > 0; }
    static void Close(Type value)
    {
        gClosed.push_back(value);
        SetLastError(ERROR_INVALID_HANDLE);
    }
};
using COwnerUnderTest = COwner<RecordingPolicy>;

TEST(Handles, EachValueIsClosedOnceByItsLastOwnerAndTheLastErrorStays)
{
    gClosed.clear();
    {
        COwnerUnderTest first(1), second(2), moved(std::move(first));
        EXPECT_FALSE(first);
        moved = std::move(second); // 1 goes
        EXPECT_EQ(gClosed, std::vector<int>{1});
        EXPECT_EQ(moved.Get(), 2);
        COwnerUnderTest released(3);
        EXPECT_EQ(released.Release(), 3);
        EXPECT_FALSE(COwnerUnderTest(-1));
        COwnerUnderTest received(4);
        *received.Receive() = 5; // 4 goes
        received.Reset(5);       // the same value again is no reason to close it
        EXPECT_EQ(gClosed, (std::vector<int>{1, 4}));
        SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(gClosed, (std::vector<int>{1, 4, 5, 2}));
}

TEST(Handles, FailureValuesOwnNothing)
{
    EXPECT_FALSE(CHandle() || CHandle(INVALID_HANDLE_VALUE) || CFindHandle() || CFindHandle(INVALID_HANDLE_VALUE) ||
                 CRegKey() || CLibrary() || CLocalMemory());
}

} // namespace
