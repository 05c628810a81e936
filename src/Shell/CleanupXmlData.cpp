#include "Shell/CleanupXmlData.h"

#include <windows.h>

#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/Trace.h"
#include "Files/DelayedMove.h"
#include "Files/Directories.h"
#include "Files/FileDelete.h"
#include "Shell/ControlPanel.h"
#include "Shell/LinkData.h"
#include "Shell/StartMenu.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

namespace {

void DeleteControlPanelKeys(xmlDoc *doc, ERegView view)
{
    const XmlNode node = FirstNode(doc, "/root/CplGuid");
    if (!node) {
        return;
    }
    const std::string guid = GetNodeText(node.get());
    trace(9, "CPL GUID %s\n", guid.c_str());
    if (!HasOwnKeys(guid)) {
        return; // without a name of their own the keys would be those of all entries and all classes
    }
    SetRegView(view == ERegView64 ? KEY_WOW64_64KEY : 0);
    DeleteKeyRecursive({kRootLocalMachine, kNameSpaceKey + guid, std::string()});
    DeleteKeyRecursive({kRootClasses, kClassKey + guid, std::string()});
    SetRegView(0);
}

void RemoveRecordedFolder(const std::string &folder, bool uninstall)
{
    DWORD errorBefore = GetLastError();
    const bool emptied = EmptyDirectory(folder, uninstall);
    trace(7, "Directory %s, Emptied %s %i\n", folder.c_str(), YesNo(emptied), static_cast<int>(errorBefore));
    errorBefore = GetLastError();
    const bool removed = RemoveDirectoryForced(folder);
    trace(7, "Delete old StartFolder %s (%s,%i)\n", folder.c_str(), YesNo(removed), static_cast<int>(errorBefore));
}

// Where no folder was recorded the shortcuts are looked for in the Programs menu itself, whatever folder the
// description names. What an OEM's description added stays.
void RemoveSingleLinks(const std::string &xmlFile, const std::string &dllFile, const ShellRun &run)
{
    CShellTexts texts(run);
    const std::string folder = CommonPrograms(run);
    StartData start;
    CplData cpl;
    const XmlDoc doc = LoadXmlFile(xmlFile);
    ProcessTaskData(cpl, doc.get(), dllFile, true, texts);
    ProcessLinkData(start, doc.get(), dllFile, cpl.mName, true, texts);
    trace(9, "No Start Folder Specified\n");
    DeleteLinks(start, folder);
}

void DeleteOemFile(const std::string &file, const char *words, bool &rebootRequired_I_O)
{
    if (file.empty()) {
        return;
    }
    trace(7, "%s %s\n", words, file.c_str());
    if (!PathExists(file)) {
        trace(7, ", Missing\n");
        return;
    }
    DWORD errorBefore = GetLastError();
    if (DeleteOrFail(file)) {
        trace(7, ", Deleted %s %i\n", YesNo(true), static_cast<int>(errorBefore));
        return;
    }
    rebootRequired_I_O = true;
    errorBefore = GetLastError();
    const bool recorded = DeleteAtNextBoot(file);
    trace(7, ", Reboot %s %i\n", YesNo(recorded), static_cast<int>(errorBefore));
}

void DeleteOemFiles(const std::string &suffix, bool &rebootRequired_I_O)
{
    if (ReadRegInteger("RemoveOEMFiles", 0) == 0) {
        return;
    }
    const std::string xmlFile = ReadRegString(kOemXmlFileValue + suffix, std::string(), true);
    const std::string dllFile = ReadRegString(kOemDllFileValue + suffix, std::string(), true);
    const STDisableRedirect redirect(true);
    DeleteOemFile(xmlFile, "oemXMLFile", rebootRequired_I_O);
    DeleteOemFile(dllFile, "oemDLLFile", rebootRequired_I_O);
}

} // namespace

int CleanupXMLData(const std::string &xmlFile, const std::string &dllFile, const ShellRun &run,
                   bool &rebootRequired_I_O)
{
    CheckXmlVersion();
    {
        CShellTexts texts(run);
        const XmlDoc doc = LoadXmlFile(xmlFile);
        const std::string suffix = HelperSuffix(doc.get(), texts);
        DeleteControlPanelKeys(doc.get(), run.View());
        const std::string folder = TakeRecordedFolder(suffix);
        if (!folder.empty()) {
            RemoveRecordedFolder(folder, run.mUninstall);
        } else {
            RemoveSingleLinks(xmlFile, dllFile, run);
        }
        DeleteOemFiles(suffix, rebootRequired_I_O);
    }
    CleanupXml();
    return 1;
}
