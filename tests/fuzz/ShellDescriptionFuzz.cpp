// Feeds both descriptions of a package, with a line of dashes between them, and checks what they come to.
#include <set>

#include "Require.h"
#include "Description.h"
#include "Shell/ControlPanel.h"
#include "Shell/LinkData.h"
#include "Shell/TasksFile.h"

namespace {

void CheckLinks(const StartData &start)
{
    const std::set<std::string> order(start.mOrder.begin(), start.mOrder.end());
    for (const auto &[id, link] : start.mLinks) {
        Require(!id.empty() && !link.mName.empty() && !link.mCommand.empty() && order.count(id) == 1);
        Require(id != kControlPanelLink || start.mOrder.front() == id);
        const std::string file = LinkFileName(link, link.mName);
        Require(file.size() >= 4 && file.substr(file.size() - 4) == ".lnk");
        IconOf(link, link.mCommand);
    }
}

// What is written is well-formed whatever the texts are, and holds each visible task and category once.
void CheckTasksFile(const CplData &cpl, CTestTexts &texts)
{
    const XmlUtils::XmlDoc doc = TasksDocument(cpl, texts);
    const XmlUtils::XmlDoc read = XmlUtils::LoadXmlMemory(XmlUtils::SaveXmlToString(doc.get(), true, true));
    Require(read != nullptr);
    size_t tasks = 0, categories = 0;
    for (const auto &[id, task] : cpl.mLinks) {
        tasks += task.mVisible;
        Require(!task.mTaskGuid.empty() && !task.mName.empty() && !task.mCommand.empty());
    }
    for (const auto &[id, category] : cpl.mCategories) {
        categories += category.mVisible;
        Require(!category.mEntries.empty());
    }
    xmlNodePtr element = XmlUtils::FirstElementChild(XmlUtils::FirstElementChild(xmlDocGetRootElement(read.get())));
    for (; element != nullptr; element = XmlUtils::NextElementSibling(element)) {
        const std::string name = XmlUtils::GetNodeName(element);
        tasks -= name == "task" && xmlHasProp(element, reinterpret_cast<const xmlChar *>("id")) != nullptr;
        categories -= name == "category";
    }
    Require(tasks == 0 && categories == 0);
}

} // namespace

void CheckInput(const std::string &text)
{
    const size_t dashes = text.find("\n---\n");
    const XmlUtils::XmlDoc maker = XmlUtils::LoadXmlMemory(text.substr(0, dashes));
    const XmlUtils::XmlDoc oem =
        XmlUtils::LoadXmlMemory(dashes < text.size() ? text.substr(dashes + 5) : std::string());
    CTestTexts texts;
    CplData cpl;
    StartData start;
    ProcessTaskData(cpl, maker.get(), "m.dll", true, texts);
    const std::string guid = cpl.mGuid;
    ProcessTaskData(cpl, oem.get(), "o.dll", false, texts);
    Require(cpl.mGuid == guid);
    ProcessLinkData(start, maker.get(), "m.dll", cpl.mName, true, texts);
    ProcessLinkData(start, oem.get(), "o.dll", cpl.mName, false, texts);
    CheckLinks(start);
    CheckTasksFile(cpl, texts);
    // Nothing that a description says reaches keys that are not its own.
    for (const CplValue &value : ControlPanelValues(cpl, "t", 40)) {
        const bool isNamed = !value.mName.empty() && value.mName != "@";
        Require(isNamed || !value.mData.empty() || value.mKey.find("CLSID\\") == 0);
    }
}
