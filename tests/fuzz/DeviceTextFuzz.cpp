// Feeds foreign data about devices: a list of service groups, the reply of a tablet, and names for the companion.
#include <strings.h>

#include <algorithm>

#include "Devices/CompanionLine.h"
#include "Devices/ServiceGroupList.h"
#include "Devices/TabletSize.h"
#include "Require.h"

namespace {

void CheckGroupList(const std::string &list)
{
    const SameGroupName same = [](const char *one, const char *other) { return strcasecmp(one, other) == 0; };
    std::string changed = list;
    if (AddPenClass(changed, same) == EGroupListExtended) {
        Require(changed.size() < kGroupListLimit && changed.find("\0\0", 0, 2) == changed.size() - 2);
        // Without the new name it is what it was, as far as that counts and with its two zero bytes.
        changed.erase(changed.find(std::string(kPenClassGroup, sizeof kPenClassGroup)), sizeof kPenClassGroup);
        Require(changed.size() <= list.size() + 2);
        changed.resize(std::min(changed.size(), list.size()));
    }
    Require(list.compare(0, changed.size(), changed) == 0);
}

} // namespace

void CheckInput(const std::string &text)
{
    const std::string tail = text.substr(0, 64);
    CheckGroupList(text);
    if (text.size() % 64 == 0) {                                                // a long list takes long
        CheckGroupList(std::string(kGroupListLimit - tail.size(), 'x') + tail); // names at the limit
    }
    TabletReply reply = {};
    std::copy_n(text.begin(), std::min(text.size(), reply.size()), reply.begin());
    const TabletSize tablet = DecodeTabletSize(reply);
    Require(tablet.mMaxX < 0x20000 && tablet.mMaxY < 0x20000);
    const std::string path = InfFullPath(text, "C:\\p");
    Require(path == text || path == "C:\\p" + text.substr(1));
    Require(UpdateParameters(tail, path).size() == tail.size() + path.size() + 12);
}
