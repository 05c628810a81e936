// The list of service groups of Windows, in the order in which the drivers of the groups are loaded: one text with a
// zero byte behind each name and one more at its end.
#pragma once

#include <cstddef>
#include <string>

constexpr char kPenClassGroup[] = "Pen Class";

// The longest list that is read, in bytes; one that is written stays below it.
constexpr size_t kGroupListLimit = 10000;

enum EGroupListResult {
    EGroupListExtended,       // "Pen Class" stands now in front of "Pointer Class"
    EGroupListComplete,       // it did so before
    EGroupListNoPointerClass, // there is no place for it
    EGroupListTooLong,        // the list has no room for it
};

// Whether two names are the same; both end in a zero byte.
using SameGroupName = bool (*)(const char *one, const char *other);

// Puts "Pen Class" directly in front of the first "Pointer Class". `list_I_O` is the value as the registry holds it,
// whatever that is: missing zero bytes at its end count as there, and what lies behind the limit does not count. The
// list changes only when the result says so. The names are looked for at every byte, so a longer name that ends in one
// of the two counts as that one, and what stands behind "Pointer Class" is not seen.
EGroupListResult AddPenClass(std::string &list_I_O, SameGroupName same);
