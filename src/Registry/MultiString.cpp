#include "Registry/MultiString.h"

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

void CloseList(std::string &list_I_O)
{
    const size_t size = list_I_O.size();
    if (size != 0 && list_I_O.back() != '\0') {
        list_I_O.append(2, '\0'); // neither the last entry nor the list has its end
    } else if (size > 1 && list_I_O[size - 2] != '\0') {
        list_I_O += '\0';
    }
}

bool AppendEntry(std::string &list_I_O, const std::string &text)
{
    CloseList(list_I_O);
    if (!list_I_O.empty()) {
        list_I_O.pop_back(); // the one that ends the list
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
    CloseList(list_I_O);
    if (list_I_O.empty()) {
        return false;
    }
    list_I_O.pop_back();
    const size_t from = FindEntry(list_I_O, text);
    const bool found = from != std::string::npos;
    if (found) {
        list_I_O.erase(from, text.size() + 1);
    }
    list_I_O += '\0';
    return found;
}
