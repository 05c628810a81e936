#include "Installer/MachineFacts.h"

#include <windows.h>

#include "Common/CSystemState.h"
#include "Common/Paths.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Installer/AdminType.h"
#include "Installer/EarlierInstallation.h"
#include "Registry/RegAccess.h"
#include "Script/ScriptAccess.h"

uint32_t CMachineFacts::Setting(const std::string &name, uint32_t defaultValue)
{
    return ReadInteger("", name, defaultValue);
}

std::string CMachineFacts::TextSetting(const std::string &name, const std::string &defaultValue)
{
    return ReadString("", name, defaultValue);
}

uint32_t CMachineFacts::ScriptNumber(const std::string &key, uint32_t defaultValue)
{
    return ReadInteger("MAIN", key, defaultValue);
}

// Where the file is missing, the includes of the script are asked alone.
uint32_t CMachineFacts::OemInk(uint32_t defaultValue)
{
    const CScriptScope script(mRun.Script(), ".\\isdoem.dat");
    return ReadInteger("MAIN", "INK_OVERRIDE", defaultValue);
}

void CMachineFacts::RemoveSetting(const std::string &name)
{
    WriteRegString("", name, "", REG_SZ); // an empty text takes the value away
}

bool CMachineFacts::PathExists(const std::string &path)
{
    return ::PathExists(path);
}

int32_t CMachineFacts::OSType()
{
    return CSystemState::GetOSType();
}

uint32_t CMachineFacts::UserAdminType()
{
    return GetUserAdminType();
}

bool CMachineFacts::MustRebootBeforeInstall()
{
    return ::MustRebootBeforeInstall(mRun);
}

bool CheckGroupFiles(const CRunState &run, const std::string &group)
{
    if (ReadString("MAIN", group, "").empty()) {
        trace(5, "Command %s missing from main section\n", group.c_str());
        return false;
    }
    const std::string list = ReadString("OSSupportedFiles", group, "");
    if (list.empty()) {
        return true;
    }
    TokenSplitter items(";", list);
    for (std::string item = items.First(); !items.AtEnd(); item = items.Next()) {
        const std::string path = run.ExpandMacros(item);
        if (!PathExists(path)) {
            trace(5, "File %s missing\n", path.c_str());
            return false;
        }
    }
    return true;
}
