#include "Devices/Companion.h"

#include "Common/ComApartment.h"
#include "Common/Handles.h"
#include "Common/Trace.h"
#include "Common/importWin32API.h"
#include "Devices/CompanionLine.h"
#include "Devices/ForeignCall.h"

namespace {

constexpr DWORD kNoExitCode = 50;

// Wait for what the shell does in the background, and give a handle of the process.
constexpr ULONG kRunMask = SEE_MASK_FLAG_DDEWAIT | SEE_MASK_NOCLOSEPROCESS;
static_assert(kRunMask == 0x140, "the mask of the companion's run");
static_assert(sizeof(SHELLEXECUTEINFOA) == 60, "SHELLEXECUTEINFOA has the layout of 32-bit Windows");

enum ELibraryOutcome { ENotLoaded, ENoEntry, ECalled };

uint32_t Argument(const std::string &text)
{
    return reinterpret_cast<uintptr_t>(text.c_str());
}

// Calls an entry of the library, which is free again behind the call. The last error is untouched by that: it is what
// the failed look-up or the library itself left.
ELibraryOutcome CallLibrary(const std::string &companion, const char *entry, std::initializer_list<uint32_t> arguments,
                            uint32_t &result_O)
{
    const CPackageLibrarySearch search; // until the library is free again
    const CLibrary library(LoadPackageLibrary(companion));
    if (!library) {
        return ENotLoaded;
    }
    const auto address = BindEntry<FARPROC>(library.Get(), entry);
    if (address == nullptr) {
        return ENoEntry;
    }
    result_O = CallForeign(address, arguments);
    return ECalled;
}

// The same for entries that answer a status, which becomes the last error.
ELibraryOutcome CallForStatus(const std::string &companion, const char *entry,
                              std::initializer_list<uint32_t> arguments, uint32_t &status_O)
{
    const ELibraryOutcome outcome = CallLibrary(companion, entry, arguments, status_O);
    if (outcome == ECalled) {
        SetLastError(status_O);
    }
    return outcome;
}

bool CallLibraryOnly(const std::string &companion, const char *entry, std::initializer_list<uint32_t> arguments)
{
    uint32_t status = 0;
    return CallForStatus(companion, entry, arguments, status) == ECalled && status == 0;
}

// The current directory in any length; empty when Windows does not tell.
std::string CurrentDirectory()
{
    std::string folder(GetCurrentDirectoryA(0, nullptr), '\0');
    folder.resize(GetCurrentDirectoryA(static_cast<DWORD>(folder.size()), folder.data()));
    return folder;
}

bool UpdateByProgram(const std::string &companion, const std::string &parameters, bool &rebootRequired_O)
{
    trace(9, "%s %s\n", companion.c_str(), parameters.c_str());
    const DWORD code = RunCompanion(companion, parameters);
    if (code == 1) {
        trace(9, "DevUpdate: A reboot is required\n");
        rebootRequired_O = true;
    }
    return code == 0;
}

} // namespace

bool CallDevInstall(const std::string &companion, const std::string &device, const std::string &inf)
{
    if (IsCompanionProgram(companion)) {
        return RunCompanion(companion, InstallParameters(device, InfFullPath(inf, CurrentDirectory()))) == 0;
    }
    return CallLibraryOnly(companion, "DevInstall", {Argument(device), Argument(inf)});
}

bool CallDevUpdate(const std::string &companion, const std::string &device, const std::string &inf,
                   bool &rebootRequired_O)
{
    if (IsCompanionProgram(companion)) {
        const std::string path = InfFullPath(inf, CurrentDirectory());
        return UpdateByProgram(companion, UpdateParameters(device, path), rebootRequired_O);
    }
    uint32_t status = 0;
    switch (CallForStatus(companion, "DevUpdate", {Argument(device), Argument(inf)}, status)) {
    case ENotLoaded:
        trace(9, "DevUpdate: Failed LoadLibrary on %s\n", companion.c_str());
        return false;
    case ENoEntry:
        trace(9, "DevUpdate: Failed GetProcAddress on DevUpdate\n");
        return false;
    case ECalled:
        break;
    }
    return status == 0;
}

bool CallDevInstallSelectedDriver(const std::string &companion, const std::string &device, const std::string &inf)
{
    if (IsCompanionProgram(companion)) {
        return RunCompanion(companion, SelectedDriverParameters(device, inf)) == 0;
    }
    return CallLibraryOnly(companion, "DevInstallSelectedDriver", {Argument(device), Argument(inf)});
}

bool CallDevRemove(const std::string &companion, const std::string &device)
{
    trace(3, "DevRemove: DLL: %s, Device: %s\n", companion.c_str(), device.c_str());
    if (IsCompanionProgram(companion)) {
        return RunCompanion(companion, RemoveParameters(device)) == 0;
    }
    uint32_t status = 0;
    switch (CallForStatus(companion, "DevRemove", {Argument(device)}, status)) {
    case ENotLoaded:
        trace(3, "DevRemove: FAILED to open DLL!\n");
        return false;
    case ENoEntry:
        trace(3, "DevRemove: FAILED GetProcAddress of DevRemove!\n");
        return false;
    case ECalled:
        break;
    }
    if (status != 0) {
        trace(3, "DevRemove: FAILED DevRemove of %s: %d\n", device.c_str(), static_cast<int>(status));
    }
    return status == 0;
}

bool CallDevRemoveSelectedDriver(const std::string &companion, const std::string &device)
{
    if (IsCompanionProgram(companion)) {
        return RunCompanion(companion, RemoveInstanceParameters(device)) == 0;
    }
    return CallLibraryOnly(companion, "DevRemoveSelectedDriver", {Argument(device)});
}

bool CallDevRemoveOemInf(const std::string &companion, const std::string &match)
{
    const std::string line = OemInfMatchLine(match);
    return CallLibraryOnly(companion, "DevRemoveOemInf", {Argument(line)});
}

bool ChangeFriendlyName(const std::string &companion, uint8_t first, uint8_t second, uint8_t usage,
                        const std::string &name)
{
    uint32_t result = 0;
    if (CallLibrary(companion, "ChangeFriendlyName", {first, second, usage, Argument(name)}, result) != ECalled) {
        return false;
    }
    SetLastError(result != 0 ? ERROR_SUCCESS : ERROR_NOT_SUPPORTED);
    return result != 0;
}

DWORD RunCompanion(const std::string &file, const std::string &parameters)
{
    // The shell starts nothing with a longer path, and not every one of its versions survives being asked.
    if (file.size() >= MAX_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return 0;
    }
    EnterComApartment(); // extensions of the shell may need it
    SHELLEXECUTEINFOA run = {};
    run.cbSize = sizeof run;
    run.fMask = kRunMask;
    run.lpFile = file.c_str();
    run.lpParameters = parameters.c_str();
    run.nShow = SW_SHOWNORMAL;
    if (!Shell32().ShellExecuteExA(&run)) {
        return 0;
    }
    DWORD code = kNoExitCode;
    const CHandle process(run.hProcess);
    if (process) {
        WaitForSingleObject(process.Get(), INFINITE);
        GetExitCodeProcess(process.Get(), &code);
        SetLastError(code);
    }
    return code;
}
