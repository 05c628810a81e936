#include "Shell/TasksFile.h"

#include "Common/Trace.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

namespace {

// Constants of the format. The namespaces are names; nothing is fetched from there.
constexpr char kTasksPanel[] = "http://schemas.microsoft.com/windows/cpltasks/v1";
constexpr char kTasks[] = "http://schemas.microsoft.com/windows/tasks/v1";

// The white space of the file, all of it: the line ends and indentation of the second, third and fourth level.
constexpr char kLine[] = "\n";
constexpr char kLine1[] = "\n\t";
constexpr char kLine2[] = "\n\t\t";
constexpr char kLine3[] = "\n\t\t\t";

// Adds a child of a task with a text, and the white space behind it.
void AddTaskText(xmlNode *task, xmlNs *ns, const char *name, const std::string &text, const char *space,
                 IDescriptionTexts &texts)
{
    AddChild(task, ns, name, texts.AnsiToUtf8(text), true);
    AddText(task, space);
}

void AddTask(xmlNode *application, xmlNs *ns, const CplTask &task, IDescriptionTexts &texts)
{
    AddText(application, kLine2);
    xmlNode *const element = AddChild(application, ns, "task", kLine3, false);
    SetAttribute(element, "id", task.mTaskGuid);
    if (!task.mName.empty()) {
        AddTaskText(element, ns, "name", task.mName, kLine3, texts);
    }
    if (!task.mKeywords.empty() && task.mKeywords != "-") {
        AddTaskText(element, ns, "keywords", task.mKeywords, kLine3, texts);
    }
    if (!task.mCommand.empty()) {
        AddTaskText(element, ns, "command", task.mCommand, kLine2, texts);
    }
}

void AddReference(xmlNode *category, xmlNs *ns, const CplData &cpl, const std::string &id, const std::string &name,
                  IDescriptionTexts &texts)
{
    const auto task = cpl.mLinks.find(id);
    AddText(category, kLine3);
    const std::string utf8 = texts.AnsiToUtf8(name);
    xmlNode *const element = AddChild(category, ns, "task", name.empty() ? kXmlNull : utf8, true);
    SetAttribute(element, "idref", task != cpl.mLinks.end() ? task->second.mTaskGuid : std::string());
    if (!name.empty()) {
        AddChild(element, ns, "name", utf8, true);
    }
}

void AddCategory(xmlNode *application, xmlNs *ns, const CplData &cpl, const std::string &id,
                 const CplCategoryData &category, IDescriptionTexts &texts)
{
    AddText(application, kLine2);
    xmlNode *const element = AddChild(application, nullptr, "category", std::string(), false);
    SetAttribute(element, "id", texts.AnsiToUtf8(id));
    for (const auto &[task, name] : category.mEntries) {
        AddReference(element, ns, cpl, task, name, texts);
    }
    AddText(element, kLine2);
}

} // namespace

XmlDoc TasksDocument(const CplData &cpl, IDescriptionTexts &texts)
{
    XmlDoc doc = NewDocument();
    xmlNode *const root = CreateRootNode(doc.get(), nullptr, "applications", kLine1);
    AddNamespace(root, kTasksPanel, kXmlNull);
    xmlNs *const ns = AddNamespace(root, kTasks, "sh");
    xmlNode *const application = AddChild(root, nullptr, "application", kXmlNull, false);
    SetAttribute(application, "id", cpl.mGuid);
    for (const auto &[id, task] : cpl.mLinks) {
        if (task.mVisible) {
            AddTask(application, ns, task, texts);
        }
    }
    for (const auto &[id, category] : cpl.mCategories) {
        if (category.mVisible) {
            AddCategory(application, ns, cpl, id, category, texts);
        }
    }
    AddText(application, kLine1);
    AddText(root, kLine);
    return doc;
}

int CreateHotlinkXMLFile(const std::string &path, const CplData &cpl, IDescriptionTexts &texts)
{
    trace(9, "CreateHotlinkXMLFile (%s)\n", path.c_str());
    SaveXmlDocument(path, TasksDocument(cpl, texts).get(), true);
    return 1;
}
