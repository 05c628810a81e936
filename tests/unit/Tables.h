// The tables of Tables.md, which say what comes of a text.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// The rows of the block with this name behind its fence: what stands left and right of " = ". Rows are parted by line
// ends and by " | ".
std::vector<std::pair<std::string, std::string>> TableRows(const std::string &name);

// The right side of each row is what the function makes of the left one.
template <typename TFunction>
void ExpectTable(const std::string &name, TFunction function)
{
    const auto rows = TableRows(name);
    EXPECT_FALSE(rows.empty()) << "no such table: " << name;
    for (const auto &[left, right] : rows) {
        EXPECT_EQ(function(left), right) << name << ": " << left;
    }
}

// The text with one character in the place of another.
std::string Exchanged(std::string text, char from, char to);

// "newer", "older" or "neither" for a pair "a over b", by a relation of two values that are read from text.
template <typename TRead, typename TNewer>
std::string Relation(const std::string &pair, TRead read, TNewer newer)
{
    const size_t over = pair.find(" over ");
    const auto a = read(pair.substr(0, over)), b = read(pair.substr(over + 6));
    EXPECT_FALSE(newer(a, a) || newer(b, b) || (newer(a, b) && newer(b, a))) << pair;
    return newer(a, b) ? "newer" : newer(b, a) ? "older" : "neither";
}
