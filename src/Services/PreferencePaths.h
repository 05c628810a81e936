// Where the preferences of a user can lie.
#pragma once

#include <string>
#include <vector>

// Parts of a path put together with exactly one back-slash at each seam, whatever the parts bring; empty parts are
// passed over.
std::wstring JoinWide(const std::vector<std::wstring> &parts);

// The places of a preference file below a user's profile, in the order in which they are looked at.
std::vector<std::wstring> PreferencePlaces(const std::wstring &profile, const std::wstring &file);
