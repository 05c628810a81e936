#include "Devices/ServiceGroupList.h"

#include <strings.h>

#include <algorithm>

#include "Tables.h"

namespace {

bool Same(const char *one, const char *other)
{
    return strcasecmp(one, other) == 0;
}

std::string Exchanged(std::string text, char from, char to)
{
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

TEST(ServiceGroupList, PenClassComesDirectlyInFrontOfThePointerClass)
{
    ExpectTable("service-groups", [](const std::string &row) {
        std::string list = Exchanged(row, '/', '\0');
        const EGroupListResult result = AddPenClass(list, Same);
        EXPECT_EQ(result == EGroupListExtended, Exchanged(list, '\0', '/') != row);
        return result == EGroupListComplete         ? "complete"
               : result == EGroupListNoPointerClass ? "none"
                                                    : Exchanged(list, '\0', '/');
    });
}

// The new list has to stay below 10000 bytes, counted with both zero bytes even where the old one lacked them.
TEST(ServiceGroupList, LongListsAreExtendedUpToTheLimitAndRefusedBeyond)
{
    for (size_t size = 9977; size <= 10001; ++size) {
        for (const size_t zeros : {0, 1, 2}) {
            for (const std::string name : {"Pointer Class/", "/Pointer Class"}) {
                const std::string filler(size - zeros - name.size(), 'x');
                std::string list =
                    Exchanged(name[0] == 'P' ? name + filler : filler + name, '/', '\0') + std::string(zeros, '\0');
                const std::string former = list;
                const bool cut = name[0] != 'P' && size - zeros > 10000;
                const bool fits = size + 2 - zeros + 10 < 10000;
                EXPECT_EQ(AddPenClass(list, Same), cut    ? EGroupListNoPointerClass
                                                   : fits ? EGroupListExtended
                                                          : EGroupListTooLong)
                    << size << " " << zeros;
                EXPECT_EQ(list.size(), fits ? size + 2 - zeros + 10 : former.size());
                EXPECT_EQ(fits, list != former);
            }
        }
    }
}

} // namespace
