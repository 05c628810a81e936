#include "Devices/ServiceGroupList.h"

namespace {

constexpr char kPointerClassGroup[] = "Pointer Class";

bool EndsAt(const std::string &list, size_t position)
{
    return list[position] == '\0' && list[position + 1] == '\0';
}

} // namespace

EGroupListResult AddPenClass(std::string &list_I_O, SameGroupName same)
{
    // Zero bytes up to the limit, as behind a value in a larger buffer, and one more that ends the last text. Behind
    // them stands the zero byte that every string has, so that a list without an end ends there.
    std::string source = list_I_O.substr(0, kGroupListLimit);
    source.resize(kGroupListLimit + 1, '\0');
    bool seen = false;
    size_t place = 0;
    for (; !same(&source[place], kPointerClassGroup); ++place) {
        if (EndsAt(source, place) || place + 1 == kGroupListLimit) {
            return EGroupListNoPointerClass;
        }
        seen = seen || same(&source[place], kPenClassGroup);
    }
    if (seen) {
        return EGroupListComplete;
    }
    size_t end = place;
    while (!EndsAt(source, end)) {
        ++end;
    }
    std::string extended = source.substr(0, place);
    extended.append(kPenClassGroup, sizeof kPenClassGroup); // with its zero byte
    extended.append(source, place, end + 2 - place);
    if (extended.size() >= kGroupListLimit) {
        return EGroupListTooLong;
    }
    list_I_O = extended;
    return EGroupListExtended;
}
