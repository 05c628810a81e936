#include "Shell/ShellRun.h"

#include <rpc.h>

#include "Common/importWin32API.h"
#include "Common/Status.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"

std::string CShellTexts::Utf8ToAnsi(const std::string &text)
{
    return ::Utf8ToAnsi(text);
}

std::string CShellTexts::AnsiToUtf8(const std::string &text)
{
    return ::AnsiToUtf8(text);
}

std::string CShellTexts::NewGuid()
{
    CRpcRt4 &rpc = RpcRt4();
    UUID uuid;
    const RPC_STATUS made = rpc.UuidCreateSequential(&uuid);
    // A machine without a network card gets GUIDs that are its own alone, which is all that is needed.
    RPC_CSTR text = nullptr;
    if ((made != RPC_S_OK && made != RPC_S_UUID_LOCAL_ONLY) || rpc.UuidToStringA(&uuid, &text) != RPC_S_OK) {
        trace(7, "No new GUID: %i\n", static_cast<int>(made));
        return std::string();
    }
    std::string guid = std::string("{") + reinterpret_cast<const char *>(text) + "}";
    rpc.RpcStringFreeA(&text);
    return guid;
}

namespace {

void TellFailure(const RegLocation &location, const std::string &name, uint16_t status)
{
    if (status != TVXSTATUS_SUCCESS) {
        trace(7, "Key: %s, Name: %s, status: 0x%X\n", location.mPath.c_str(), name.c_str(), status);
    }
}

} // namespace

void WriteShellValue(const RegLocation &location, ERegView view, const std::string &name, const std::string &text,
                     DWORD type)
{
    const uint16_t status =
        AtRegLocation(location, view, [&] { return WriteRegString(std::string(), name, text, type); });
    const bool isGone = text.empty() && (status == TVXSTATUS_VALUE_NOT_FOUND || status == TVXSTATUS_KEY_NOT_FOUND);
    TellFailure(location, name, isGone ? TVXSTATUS_SUCCESS : status);
}

RegLocation InstallerSettings()
{
    return {kRootLocalMachine, "\\Software\\TAVIX\\Installer", std::string()};
}

RegLocation DriverKey()
{
    return {kRootLocalMachine, "\\SOFTWARE\\Tavix\\Tavix Tablet Driver", std::string()};
}

std::string TakeRecordedFolder(const std::string &suffix)
{
    const std::string name = kStartFolderValue + suffix;
    std::string folder = ReadRegStringAt(DriverKey(), ERegViewProcess, name, std::string(), true);
    if (!folder.empty()) {
        TellFailure(DriverKey(), name,
                    AtRegLocation(DriverKey(), ERegViewProcess, [&] { return EmptyRegString(name); }));
    }
    return folder;
}
