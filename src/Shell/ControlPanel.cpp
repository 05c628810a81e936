#include "Shell/ControlPanel.h"

#include <iterator>
#include <set>

#include "Common/CSystemState.h"
#include "Common/DriverNames.h"
#include "Common/Trace.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

namespace {

constexpr uint32_t kRegSz = 1;
constexpr uint32_t kRegExpandSz = 2;

constexpr char kSeparator[] = ",-"; // Windows resolves the references of this part

void ReadNames(CplData &cpl_I_O, const XmlContext &doc, const std::string &dllFile, IDescriptionTexts &texts)
{
    if (const XmlNode name = FirstNodeInContext(doc, "/root/ControlPanelName")) {
        cpl_I_O.mName = TextOrReference(name.get(), ETextHats, dllFile, kSeparator, texts);
        trace(9, "ControlPanelName %s\n", cpl_I_O.mName.c_str());
    }
    if (const XmlNode tooltip = FirstNodeInContext(doc, "/root/CplTooltip")) {
        cpl_I_O.mTooltip = TextOrReference(tooltip.get(), ETextHats, dllFile, kSeparator, texts);
        trace(9, "ControlPanel Tooltip %s\n", cpl_I_O.mTooltip.c_str());
    }
}

// What the maker's document alone decides: where the entry is and what it leads to.
void ReadPlace(CplData &cpl_O, const XmlContext &doc, IDescriptionTexts &texts)
{
    const XmlNode guid = FirstNodeInContext(doc, "/root/CplGuid");
    cpl_O.mGuid = guid ? GetNodeText(guid.get()) : texts.NewGuid();
    trace(9, "CplGuid %s\n", cpl_O.mGuid.c_str());
    const XmlNode canonicalName = FirstNodeInContext(doc, "/root/CplCanonicalName");
    cpl_O.mCanonicalName = canonicalName ? ElementText(canonicalName.get(), ETextPlain, texts) : "Tavix.ControlPanel";
    trace(9, "CplCanonicalName %s\n", cpl_O.mCanonicalName.c_str());
    const XmlNode valueName = FirstNodeInContext(doc, "/root/CplValueName");
    cpl_O.mValueName = valueName ? ElementText(valueName.get(), ETextHats, texts) : "Tablet";
    trace(9, "CplValueName %s\n", cpl_O.mValueName.c_str());
    if (const XmlNode location = FirstNodeInContext(doc, "/root/CplLocation")) {
        cpl_O.mLocation = ElementText(location.get(), ETextMacros, texts);
        trace(9, "CplLocation %s\n", cpl_O.mLocation.c_str());
    }
}

void ReadTaskChildren(CplTask &task_O, xmlNode *element, const std::string &dllFile, IDescriptionTexts &texts)
{
    if (xmlNode *const name = FindElementChild(element, "Name")) {
        task_O.mName = TextOrReference(name, ETextHats, dllFile, kSeparator, texts);
    }
    if (xmlNode *const keywords = FindElementChild(element, "Keywords")) {
        task_O.mKeywords = TextOrReference(keywords, ETextHats, dllFile, kSeparator, texts);
    }
    std::string parameters;
    if (xmlNode *const node = FindElementChild(element, "Parameters")) {
        parameters = ElementText(node, ETextMacros, texts);
    }
    if (xmlNode *const command = FindElementChild(element, "Command")) {
        task_O.mCommand = TextOrReference(command, ETextMacros, dllFile, kSeparator, texts);
        if (!parameters.empty() && !IsSet(command, "useDll")) {
            task_O.mCommand += " " + parameters;
        }
    }
}

// A task keeps its GUID and what a later element leaves out; whether it is shown the later one decides.
void MergeTask(CplTask &task_I_O, const CplTask &later)
{
    const auto replace = [](std::string &text_I_O, const std::string &by) {
        if (!by.empty()) {
            text_I_O = by;
        }
    };
    replace(task_I_O.mName, later.mName);
    replace(task_I_O.mKeywords, later.mKeywords);
    replace(task_I_O.mCommand, later.mCommand);
    task_I_O.mVisible = later.mVisible;
}

void ReadTask(CplData &cpl_I_O, xmlNode *element, const std::string &dllFile, IDescriptionTexts &texts)
{
    CplTask task;
    const std::string id = Attribute(element, "id", texts);
    task.mVisible = IsNotZero(element, "visible");
    if (CountElementChildren(element) != 0) {
        ReadTaskChildren(task, element, dllFile, texts);
    }
    trace(9, "CplLink (%s) %s, %s, %s, %s\n", id.c_str(), task.mName.c_str(), task.mKeywords.c_str(),
          task.mCommand.c_str(), ShowOrHide(task.mVisible));
    if (id.empty()) {
        return;
    }
    const auto known = cpl_I_O.mLinks.find(id);
    if (known != cpl_I_O.mLinks.end()) {
        MergeTask(known->second, task);
    } else if (!task.mName.empty() && !task.mCommand.empty()) {
        task.mTaskGuid = texts.NewGuid();
        cpl_I_O.mLinks[id] = task;
    }
}

void ReadCategory(CplData &cpl_I_O, xmlNode *element, IDescriptionTexts &texts)
{
    CplCategoryData category;
    const std::string id = Attribute(element, "id", texts);
    const std::string list = ElementText(element, ETextPlain, texts);
    category.mVisible = IsNotZero(element, "visible");
    trace(9, "CplCategory (%s) %s %s\n", id.c_str(), list.c_str(), ShowOrHide(category.mVisible));
    for (const std::string &task : SplitIds(list)) {
        category.mEntries.emplace_back(task, std::string());
    }
    cpl_I_O.mCategories[id] = category;
}

// A category of the earlier documents behind that of this one: this one's tasks come first, and it decides whether the
// category is shown. One that is hidden keeps its own tasks alone.
void MergeCategories(CplData &cpl_I_O, const std::map<std::string, CplCategoryData> &earlier)
{
    for (const auto &[id, old] : earlier) {
        const auto [category, isMissing] = cpl_I_O.mCategories.emplace(id, old);
        if (isMissing || !category->second.mVisible) {
            continue;
        }
        std::set<std::string> known;
        for (const auto &entry : category->second.mEntries) {
            known.insert(entry.first);
        }
        for (const auto &entry : old.mEntries) {
            if (known.insert(entry.first).second) {
                category->second.mEntries.push_back(entry);
            }
        }
    }
}

std::string CategoryList(const CplData &cpl)
{
    std::string list;
    const char *separator = "";
    for (const auto &[id, category] : cpl.mCategories) {
        list += separator + id;
        separator = ",";
    }
    return list;
}

} // namespace

int ProcessTaskData(CplData &cpl_I_O, xmlDoc *doc, const std::string &dllFile, bool isMaker, IDescriptionTexts &texts)
{
    trace(9, "ProcessTaskData (%s) %s\n", isMaker ? "Tavix" : "OEM", dllFile.c_str());
    const XmlContext context = NewXPathContext(doc);
    if (FirstNodeInContext(context, "/root/SkipTaskData")) {
        return 0;
    }
    if (doc == nullptr) {
        return 1; // not even a GUID: an entry of nothing could be registered, but never be removed
    }
    ReadNames(cpl_I_O, context, dllFile, texts);
    if (isMaker) {
        ReadPlace(cpl_I_O, context, texts);
    }
    ForEachElement(context, "/root/CplLink", [&](xmlNode *element) { ReadTask(cpl_I_O, element, dllFile, texts); });
    std::map<std::string, CplCategoryData> earlier;
    earlier.swap(cpl_I_O.mCategories);
    ForEachElement(context, "/root/CplCategory", [&](xmlNode *element) { ReadCategory(cpl_I_O, element, texts); });
    MergeCategories(cpl_I_O, earlier);
    return 1;
}

bool HasOwnKeys(const std::string &guid)
{
    return guid.find_first_not_of('\\') != std::string::npos;
}

std::vector<CplValue> ControlPanelValues(const CplData &cpl, const std::string &tasksFile, int32_t osType)
{
    const std::string cpls = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Control Panel\\Cpls";
    const std::string classKey = kClassKey + cpl.mGuid;
    // Whatever the package's line is: that is how Windows and earlier versions know the entry.
    const std::string title = GetDriverSplitName(EDS_CPLDefaultName, EDriverConPen);
    std::vector<CplValue> values;
    // An empty text would delete the value, and with an unnamed one the key of all programs.
    const bool isUnnamed = cpl.mValueName.empty() || cpl.mValueName == "@";
    if (!isUnnamed || !cpl.mLocation.empty()) {
        values.push_back({kRootLocalMachine, cpls, cpl.mValueName, kRegSz, cpl.mLocation});
    }
    const CplValue classValues[] = {
        {kRootLocalMachine, kNameSpaceKey + cpl.mGuid, "@", kRegSz, title},
        {kRootClasses, classKey, "@", kRegSz, title},
        {kRootClasses, classKey, "LocalizedString", kRegExpandSz, cpl.mName},
        {kRootClasses, classKey, "InfoTip", kRegExpandSz, cpl.mTooltip},
        {kRootClasses, classKey, "System.ApplicationName", kRegSz, cpl.mCanonicalName},
        {kRootClasses, classKey, "System.ControlPanel.Category", kRegSz, CategoryList(cpl)},
    };
    values.insert(values.end(), std::begin(classValues), std::end(classValues));
    if (IsVistaOrLaterPlatform(osType)) {
        values.push_back({kRootClasses, classKey, kTasksFileValue, kRegExpandSz, tasksFile});
    }
    values.push_back({kRootClasses, classKey + "\\DefaultIcon", "@", kRegExpandSz, cpl.mLocation + ",-101"});
    values.push_back({kRootClasses, classKey + "\\Shell\\Open\\Command", "@", kRegSz, cpl.mLocation});
    return values;
}
