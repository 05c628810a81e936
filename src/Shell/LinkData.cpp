#include "Shell/LinkData.h"

#include <set>

#include "Common/Numbers.h"
#include "Common/Trace.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

namespace {

constexpr char kFolderSeparator[] = ",-";
constexpr char kLinkSeparator[] = ",";

void ReadFolder(StartData &start_I_O, const XmlContext &doc, const std::string &dllFile, bool isMaker,
                IDescriptionTexts &texts)
{
    if (const XmlNode folder = FirstNodeInContext(doc, "/root/StartFolder")) {
        start_I_O.mVisible = IsNotZero(folder.get(), "visible");
        start_I_O.mFolder = TextOrReference(folder.get(), ETextHats, dllFile, kFolderSeparator, texts);
        trace(9, "StartFolder %s\n", start_I_O.mFolder.c_str());
    }
    if (!isMaker) {
        return;
    }
    if (const XmlNode name = FirstNodeInContext(doc, "/root/StartFolderN")) {
        start_I_O.mFolderN = ElementText(name.get(), ETextMacros, texts);
        trace(9, "StartFolderN %s\n", start_I_O.mFolderN.c_str());
    }
}

// Looks a child of the element up, with the trace that stands before each search.
xmlNode *Child(xmlNode *element, const char *name)
{
    trace(9, "Looking for %s node...\n", name);
    return FindElementChild(element, name);
}

void ReadWhatItStarts(LinkData &link_O, xmlNode *element, const std::string &dllFile, IDescriptionTexts &texts)
{
    if (xmlNode *const name = Child(element, "Name")) {
        link_O.mName = TextOrReference(name, ETextHats, dllFile, kLinkSeparator, texts);
        trace(9, ", Name %s\n", link_O.mName.c_str());
    }
    if (xmlNode *const command = Child(element, "Command")) {
        link_O.mRedirect = IsSet(command, "r64");
        link_O.mCommand = TextOrReference(command, ETextMacros, dllFile, kLinkSeparator, texts);
        trace(9, ", Command %s%s\n", link_O.mCommand.c_str(), link_O.mRedirect ? " redirect" : "");
    }
    if (xmlNode *const parameters = Child(element, "Parameters")) {
        link_O.mParameters = TextOrReference(parameters, ETextMacros, dllFile, kLinkSeparator, texts);
        trace(9, ", Parameters %s\n", link_O.mParameters.c_str());
    }
    if (xmlNode *const description = Child(element, "Description")) {
        link_O.mDescription = TextOrReference(description, ETextHats, dllFile, kLinkSeparator, texts);
        trace(9, ", Description %s\n", link_O.mDescription.c_str());
    }
}

void ReadHowItLooks(LinkData &link_O, xmlNode *element, const std::string &dllFile, IDescriptionTexts &texts)
{
    if (xmlNode *const linkName = Child(element, "LinkName")) {
        link_O.mLinkName = ElementText(linkName, ETextHats, texts);
        trace(9, ", LinkName %s\n", link_O.mLinkName.c_str());
    }
    if (xmlNode *const workingDir = Child(element, "WorkingDir")) {
        link_O.mWorkingDir = ElementText(workingDir, ETextMacros, texts);
        trace(9, ", WorkingDir %s\n", link_O.mWorkingDir.c_str());
    }
    if (xmlNode *const hotkey = Child(element, "Hotkey")) {
        link_O.mHotkey = static_cast<uint16_t>(DecimalNumber(ElementText(hotkey, ETextPlain, texts)));
        trace(9, ", Hotkey %X\n", static_cast<unsigned>(link_O.mHotkey));
    }
    if (xmlNode *const showCmd = Child(element, "ShowCmd")) {
        link_O.mShowCmd = DecimalNumber(ElementText(showCmd, ETextPlain, texts));
        trace(9, ", ShowCmd %i\n", static_cast<int>(link_O.mShowCmd));
    }
    if (xmlNode *const icon = Child(element, "Icon")) {
        link_O.mIcon = TextOrReference(icon, ETextMacros, dllFile, kLinkSeparator, texts);
        link_O.mIconIndex = DecimalNumber(IsSet(icon, "useDll") ? GetNodeText(icon) : GetAttribute(icon, "index"));
        trace(9, ", Icon (%i) %s\n", static_cast<int>(link_O.mIconIndex), link_O.mIcon.c_str());
    }
}

// What a later element leaves out comes from the one before it. A name that is taken over takes what belongs to its
// resource along, a command its parameters; the rest is lost.
void FillGaps(LinkData &link_I_O, const LinkData &old, const std::string &id)
{
    if (link_I_O.mName.empty()) {
        link_I_O.mName = old.mName;
        if (IsReference(link_I_O.mName)) {
            link_I_O.mLinkName = old.mLinkName;
            link_I_O.mDescription = old.mDescription;
        }
    }
    if (link_I_O.mCommand.empty()) {
        link_I_O.mCommand = old.mCommand;
        link_I_O.mParameters = old.mParameters;
    }
    if (id == kControlPanelLink && link_I_O.mIconIndex == kNoIconIndex) {
        link_I_O.mIconIndex = old.mIconIndex;
        link_I_O.mIcon = old.mIcon;
    }
}

void ReadLink(StartData &start_I_O, xmlNode *element, const std::string &dllFile, IDescriptionTexts &texts)
{
    LinkData link;
    const std::string id = Attribute(element, "id", texts);
    link.mVisible = IsNotZero(element, "visible");
    trace(9, "StartLink (%s) %s\n", id.c_str(), ShowOrHide(link.mVisible));
    if (CountElementChildren(element) != 0) {
        ReadWhatItStarts(link, element, dllFile, texts);
        ReadHowItLooks(link, element, dllFile, texts);
    }
    if (id.empty()) {
        return;
    }
    const auto old = start_I_O.mLinks.find(id);
    if (old != start_I_O.mLinks.end()) {
        FillGaps(link, old->second, id);
        old->second = link;
    } else if (!link.mName.empty() && !link.mCommand.empty()) {
        start_I_O.mLinks[id] = link;
    }
}

void NameControlPanelLink(StartData &start_I_O, const std::string &controlPanelName)
{
    const auto link = start_I_O.mLinks.find(kControlPanelLink);
    if (link == start_I_O.mLinks.end() || controlPanelName.empty()) {
        return;
    }
    link->second.mName = controlPanelName;
    if (!IsReference(controlPanelName)) {
        link->second.mLinkName.clear();
        link->second.mDescription.clear();
    }
}

// The order of this document first, then what the order was, then the links that neither names. The Control Panel's
// shortcut always leads.
void SettleOrder(StartData &start_I_O, const XmlContext &doc, IDescriptionTexts &texts)
{
    std::vector<std::string> order;
    if (start_I_O.mLinks.count(kControlPanelLink) != 0) {
        order.emplace_back(kControlPanelLink);
    }
    if (const XmlNode list = FirstNodeInContext(doc, "/root/StartMenuOrder")) {
        const std::string text = ElementText(list.get(), ETextPlain, texts);
        trace(9, ", StartMenuOrder %s\n", text.c_str());
        for (const std::string &id : SplitIds(text)) {
            if (id != kControlPanelLink) {
                order.push_back(id);
            }
        }
    }
    std::set<std::string> known(order.begin(), order.end());
    const auto addOnce = [&](const std::string &id) {
        if (known.insert(id).second) {
            order.push_back(id);
        }
    };
    for (const std::string &id : start_I_O.mOrder) {
        addOnce(id);
    }
    for (const auto &[id, link] : start_I_O.mLinks) {
        addOnce(id);
    }
    start_I_O.mOrder = std::move(order);
}

} // namespace

int ProcessLinkData(StartData &start_I_O, xmlDoc *doc, const std::string &dllFile, const std::string &controlPanelName,
                    bool isMaker, IDescriptionTexts &texts)
{
    trace(9, "ProcessLinkData (%s) %s\n", isMaker ? "Tavix" : "OEM", dllFile.c_str());
    const XmlContext context = NewXPathContext(doc);
    ReadFolder(start_I_O, context, dllFile, isMaker, texts);
    ForEachElement(context, "/root/StartLink", [&](xmlNode *element) { ReadLink(start_I_O, element, dllFile, texts); });
    NameControlPanelLink(start_I_O, controlPanelName);
    SettleOrder(start_I_O, context, texts);
    return 1;
}

bool IsShown(const LinkData &link)
{
    return link.mVisible && !link.mName.empty() && !link.mCommand.empty();
}

std::string LinkFileName(const LinkData &link, const std::string &name)
{
    const std::string &base = link.mLinkName.empty() ? name : link.mLinkName;
    return base.substr(0, base.rfind('.')) + ".lnk";
}

ResourceReference ParseReference(const std::string &text)
{
    const size_t comma = text.find(',');
    ResourceReference reference;
    reference.mDll = text.substr(1, comma == std::string::npos ? comma : comma - 1);
    if (comma != std::string::npos) {
        reference.mNumber = DecimalNumber(text.substr(comma + 1));
        reference.mHasNumber = true;
    }
    return reference;
}

LinkIcon IconOf(const LinkData &link, const std::string &command)
{
    if (link.mIcon.empty()) {
        return {command, link.mIconIndex};
    }
    if (!IsReference(link.mIcon)) {
        return {link.mIcon, link.mIconIndex};
    }
    const ResourceReference reference = ParseReference(link.mIcon);
    return {reference.mDll, reference.mHasNumber ? reference.mNumber : link.mIconIndex};
}

std::string DescriptionOf(const LinkData &link, const std::string &name, const std::string &description)
{
    if (link.mDescription.empty()) {
        return name;
    }
    return !description.empty() ? description : link.mDescription;
}

uint16_t HotkeyOf(const LinkData &link)
{
    return link.mHotkey < kNoHotkey ? link.mHotkey : 0;
}
