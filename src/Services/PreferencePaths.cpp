#include "Services/PreferencePaths.h"

namespace {

// The profile itself, and its folders for data of programs by the names that they have had.
constexpr const wchar_t *kRoots[] = {L"", L"\\roaming", L"\\Application Data", L"\\AppData\\roaming"};

} // namespace

std::wstring JoinWide(const std::vector<std::wstring> &parts)
{
    std::wstring path;
    for (const std::wstring &part : parts) {
        if (path.empty()) {
            path = part;
            continue;
        }
        const size_t first = part.find_first_not_of(L'\\');
        if (first != std::wstring::npos) {
            path.erase(path.find_last_not_of(L'\\') + 1); // all of it when there is nothing else: npos + 1 is 0
            path.append(L"\\").append(part, first);
        }
    }
    return path;
}

std::vector<std::wstring> PreferencePlaces(const std::wstring &profile, const std::wstring &file)
{
    std::vector<std::wstring> places;
    for (const wchar_t *root : kRoots) {
        places.push_back(JoinWide({profile, root, file}));
    }
    return places;
}
