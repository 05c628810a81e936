#include "Actions/MultiString.h"

namespace {

// Place of the first entry that equals the text, npos when there is none.
size_t FindEntry(const std::string &list, const std::string &text)
{
    for (size_t from = 0; from < list.size();) {
        size_t end = list.find('\0', from);
        if (end == std::string::npos) {
            end = list.size();
        }
        if (list.compare(from, end - from, text) == 0) {
            return from;
        }
        from = end + 1;
    }
    return std::string::npos;
}

} // namespace

bool ContainsEntry(const std::string &list, const std::string &text)
{
    return FindEntry(list, text) != std::string::npos;
}

bool AppendEntry(std::string &list_I_O, const std::string &text)
{
    // The last byte goes unseen, because it is the one that ends the list and not an entry. Data that lacks it loses
    // a character of its last entry here.
    if (!list_I_O.empty()) {
        list_I_O.pop_back();
    }
    if (ContainsEntry(list_I_O, text)) {
        return false;
    }
    list_I_O += text;
    list_I_O += '\0';
    list_I_O += '\0';
    return true;
}

bool RemoveEntry(std::string &list_I_O, const std::string &text)
{
    const size_t from = FindEntry(list_I_O, text);
    if (from == std::string::npos) {
        return false;
    }
    list_I_O.erase(from, text.size() + 1); // an entry without a zero byte is the last one: erase stops at the end
    return true;
}
