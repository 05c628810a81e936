#include "Shell/ProcessXmlData.h"

#include "Common/CSystemState.h"
#include "Common/DriverNames.h"
#include "Common/Paths.h"
#include "Common/Redirection.h"
#include "Common/Trace.h"
#include "Shell/ControlPanel.h"
#include "Shell/LinkData.h"
#include "Shell/ResourceDll.h"
#include "Shell/StartMenu.h"
#include "Shell/TasksFile.h"
#include "Shell/XmlMerge.h"
#include "Shell/XmlUtils.h"

using namespace XmlUtils;

namespace {

// Notes where the OEM's two files are, so that the removal finds them.
void RecordOemFiles(const XmlDataFiles &files, const std::string &suffix, bool win64)
{
    const STDisableRedirect redirect(win64);
    const auto record = [&](const char *name, const std::string &file) {
        WriteShellValue(InstallerSettings(), ERegViewProcess, name + suffix, PathExists(file) ? file : std::string());
    };
    record(kOemXmlFileValue, files.mOemXmlFile);
    record(kOemDllFileValue, files.mOemDllFile);
}

// The name in the list of installed programs; the OEM's counts.
std::string ArpName(xmlDoc *doc, xmlDoc *oemDoc, IDescriptionTexts &texts)
{
    std::string arpName;
    if (const XmlNode entry = FirstNode(doc, "/root/ARPEntry")) {
        arpName = ElementText(entry.get(), ETextPlain, texts);
        trace(9, "arpName %s\n", arpName.c_str());
    }
    if (const XmlNode entry = FirstNode(oemDoc, "/root/ARPEntry")) {
        arpName = ElementText(entry.get(), ETextPlain, texts);
        trace(9, "arpName (oem) %s\n", arpName.c_str());
    }
    return arpName;
}

void RegisterControlPanel(const CplData &cpl, const std::string &tasksFile, const ShellRun &run,
                          IDescriptionTexts &texts)
{
    for (const CplValue &value : ControlPanelValues(cpl, tasksFile, CSystemState::GetOSType())) {
        if (value.mName == kTasksFileValue) {
            CreateHotlinkXMLFile(tasksFile, cpl, texts);
        }
        WriteShellValue({value.mRoot, value.mKey, std::string()}, run.View(), value.mName, value.mData, value.mType);
    }
}

void NameUninstallEntry(const std::string &arpName, ERegView view)
{
    // The consumer line's entry whatever this package's line is.
    const std::string key = GetDriverSplitName(EDS_UninstallKey, EDriverConPen);
    if (!arpName.empty() && !key.empty()) {
        WriteShellValue({kRootLocalMachine, key, std::string()}, view, "DisplayName", arpName);
    }
}

void RegisterPackage(xmlDoc *doc, xmlDoc *oemDoc, const XmlDataFiles &files, const ShellRun &run)
{
    CShellTexts texts(run);
    ExtractResourceDll(oemDoc, files.mOemDllFile, run.mWin64);
    const std::string suffix = HelperSuffix(doc, texts);
    RecordOemFiles(files, suffix, run.mWin64);
    const std::string arpName = ArpName(doc, oemDoc, texts);

    CplData cpl;
    ProcessTaskData(cpl, doc, files.mDllFile, true, texts);
    ProcessTaskData(cpl, oemDoc, files.mOemDllFile, false, texts);
    if (HasOwnKeys(cpl.mGuid)) {
        RegisterControlPanel(cpl, files.mTasksFile, run, texts);
    }

    StartData start;
    ProcessLinkData(start, doc, files.mDllFile, cpl.mName, true, texts);
    ProcessLinkData(start, oemDoc, files.mOemDllFile, cpl.mName, false, texts);
    if (start.mVisible && !start.mLinks.empty()) {
        RemoveOldStartFolder(suffix, run);
    }
    CreateLinks(start, CreateStartFolder(start, suffix, run));
    NameUninstallEntry(arpName, run.View());
}

} // namespace

int ProcessXMLData(const XmlDataFiles &files, const ShellRun &run)
{
    CheckXmlVersion();
    {
        XmlDoc doc;
        XmlDoc oemDoc;
        XmlDoc extra;
        {
            const STDisableRedirect redirect(run.mWin64);
            doc = LoadXmlFile(files.mXmlFile);
            oemDoc = LoadXmlFile(files.mOemXmlFile);
            extra = LoadXmlFile(files.mExtraXmlFile);
        }
        if (extra) {
            MergeXmlDocuments(doc.get(), extra.get());
        }
        RegisterPackage(doc.get(), oemDoc.get(), files, run);
    }
    CleanupXml();
    return 1;
}
