// The script's commands that register a package with the shell and take that back. All fields are expanded.
#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Script/CRunState.h"
#include "Script/Step.h"
#include "Shell/CleanupXmlData.h"
#include "Shell/ProcessXmlData.h"

namespace {

ShellRun RunOf(CStep &step)
{
    ShellRun run;
    run.mWin64 = step.Main().mWin64 != 0;
    run.mUninstall = step.Main().mUninstall;
    run.mExpandHats = [&step](const std::string &text) { return step.Main().ExpandHats(text); };
    run.mExpandMacros = [&step](const std::string &text) { return step.Main().ExpandMacros(text); };
    return run;
}

} // namespace

void StepProcessXMLData(CStep &step)
{
    XmlDataFiles files;
    files.mXmlFile = step.Expanded();
    files.mDllFile = step.Expanded();
    files.mOemXmlFile = step.Expanded();
    files.mOemDllFile = step.Expanded();
    files.mTasksFile = step.Expanded();
    files.mExtraXmlFile = step.Expanded();
    const bool done = ProcessXMLData(files, RunOf(step)) != 0;
    trace(7, "ProcessXMLData(%s, %s, %s, %s, %s, %s) %s\n", files.mXmlFile.c_str(), files.mDllFile.c_str(),
          files.mOemXmlFile.c_str(), files.mOemDllFile.c_str(), files.mTasksFile.c_str(), files.mExtraXmlFile.c_str(),
          YesNo(done));
}

void StepCleanupXMLData(CStep &step)
{
    const std::string xmlFile = step.Expanded();
    const std::string dllFile = step.Expanded();
    const bool done = CleanupXMLData(xmlFile, dllFile, RunOf(step), step.Main().mRebootRequired) != 0;
    trace(7, "CleanupXMLData(%s %s) %s\n", xmlFile.c_str(), dllFile.c_str(), YesNo(done));
}
