// Lists of texts as the registry keeps them in REG_MULTI_SZ values: one narrow string that holds a zero byte behind
// each entry and one more behind the last. Whatever else the bytes hold (no zero byte at all, empty entries) is walked
// as far as it goes; the two that change a list give it the zero bytes that it lacks at its end.
#pragma once

#include <string>

// True when an entry equals the text, byte for byte with regard to case. The empty text equals an empty entry.
bool ContainsEntry(const std::string &list, const std::string &text);

// Gives a list that lacks zero bytes at its end those that belong there. An empty one stays empty.
void CloseList(std::string &list_I_O);

// Adds the text as the last entry of a list as it was read. Answers false, with a list that is not to be written, when
// the entry is there already. An empty list gets its first entry.
bool AppendEntry(std::string &list_I_O, const std::string &text);

// Takes the first entry that equals the text out of the list, with its zero byte. Answers whether there was one. A list
// without entries is one zero byte then.
bool RemoveEntry(std::string &list_I_O, const std::string &text);
