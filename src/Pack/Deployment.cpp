#include "Pack/Deployment.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "Pack/ExitCodes.h"

namespace {

// What the systems call the ends of a run.
struct KindRow {
    EExitKind mKind;
    const char *mIntune;
    const char *mSccm;
    const char *mWinget;
};

constexpr KindRow kKinds[] = {
    {EExitKind::EDone, "Success", "Success (no reboot)", ""},
    {EExitKind::EDoneRestart, "Soft reboot", "Soft Reboot", "rebootRequiredToFinish"},
    // Nothing was done, and nothing will be before the restart, for which an earlier run has asked already.
    {EExitKind::ERestartFirst, "Retry", "Fast Retry", "rebootRequiredForInstall"},
    {EExitKind::ENotSupported, "Failed", "Failure (no reboot)", "systemNotSupported"},
    {EExitKind::ENoHardware, "Failed", "Failure (no reboot)", "systemNotSupported"},
    {EExitKind::ENotElevated, "Failed", "Failure (no reboot)", "cancelledByUser"},
    {EExitKind::EDeclined, "Failed", "Failure (no reboot)", "cancelledByUser"},
    {EExitKind::ENoRun, "Failed", "Failure (no reboot)", "contactSupport"},
};

struct CodeRow {
    uint32_t mCode;
    EExitKind mKind;
    std::string mWords;
};

// The codes of silent runs, or those of all, each with its likeliest meaning.
std::vector<CodeRow> CodeRows(bool silentOnly)
{
    std::vector<CodeRow> rows;
    for (const uint32_t code : ExitCodesOfRuns()) {
        const std::vector<ExitMeaning> meanings = MeaningsOf(code);
        auto meaning = std::find_if(meanings.begin(), meanings.end(), [](const ExitMeaning &m) { return m.mSilent; });
        if (meaning == meanings.end() && !silentOnly) {
            meaning = meanings.begin();
        }
        if (meaning != meanings.end()) {
            rows.push_back({code, meaning->mKind, meaning->mWords});
        }
    }
    return rows;
}

const KindRow &RowOf(EExitKind kind)
{
    return *std::find_if(std::begin(kKinds), std::end(kKinds), [&](const KindRow &row) { return row.mKind == kind; });
}

std::string CodeTable(const char *KindRow::*word)
{
    std::string text = "| Return code | Code type | Meaning |\n|---|---|---|\n";
    for (const CodeRow &row : CodeRows(true)) {
        text += "| " + std::to_string(row.mCode) + " | " + RowOf(row.mKind).*word + " | " + row.mWords + " |\n";
    }
    return text;
}

// Without the name of a language, for which there is no marking up on a terminal.
std::string Fence(const std::string &text)
{
    return "```\n" + text + "```\n";
}

std::string Winget()
{
    std::string codes;
    for (const CodeRow &row : CodeRows(false)) {
        if (*RowOf(row.mKind).mWinget != '\0') {
            codes += "- InstallerReturnCode: " + std::to_string(row.mCode) +
                     "\n  ReturnResponse: " + RowOf(row.mKind).mWinget + "\n";
        }
    }
    return "For the installer manifest, schema 1.6. The package is a folder, so it comes as an archive:\n\n" +
           Fence("InstallerType: zip\n"
                 "NestedInstallerType: exe\n"
                 "NestedInstallerFiles:\n"
                 "- RelativeFilePath: TavixSetup.exe\n"
                 "Scope: machine\n"
                 "ElevationRequirement: elevatesSelf\n"
                 "InstallModes:\n"
                 "- interactive\n"
                 "- silent\n"
                 "InstallerSwitches:\n"
                 "  Silent: /s\n"
                 "  SilentWithProgress: /s\n"
                 "  Log: /debug \"<LOGPATH>\"\n"
                 "ExpectedReturnCodes:\n" +
                 codes) +
           "\nCodes of runs with a window are among them, for `winget install --interactive`. To remove a package, "
           "winget\n"
           "runs the `QuietUninstallString` that the package's own script writes below its uninstall key, such "
           "as:\n\n" +
           Fence("RegValueString;!UninstallKey!;QuietUninstallString;"
                 "\\\"!PROGFILES!\\\\Tablet\\\\Pen\\\\Remove.exe\\\" /u /s\n");
}

std::string Intune()
{
    return "A Win32 app, made of the whole folder of the package with `TavixSetup.exe` as its set-up file.\n\n"
           "| Field | Value |\n|---|---|\n"
           "| Install command | `TavixSetup.exe /s` |\n"
           "| Uninstall command | `TavixSetup.exe /s /u` |\n"
           "| Install behavior | System |\n"
           "| Device restart behavior | Determine behavior based on return codes |\n\n"
           "Return codes; delete those that the form suggests, 1707, 3010, 1641 and 1618, which no run answers:\n\n" +
           CodeTable(&KindRow::mIntune) +
           "\nTo find the trace among the logs that Intune collects, give the install command a place for it:\n\n" +
           Fence("TavixSetup.exe /s /debug "
                 "\"C:\\ProgramData\\Microsoft\\IntuneManagementExtension\\Logs\\TavixSetup.log\"\n");
}

std::string Chocolatey()
{
    std::string good;
    for (const CodeRow &row : CodeRows(true)) {
        if (row.mKind == EExitKind::EDone || row.mKind == EExitKind::EDoneRestart) {
            good += (good.empty() ? "" : ", ") + std::to_string(row.mCode);
        }
    }
    uint32_t restart = 0;
    for (const CodeRow &row : CodeRows(true)) {
        restart = row.mKind == EExitKind::EDoneRestart ? row.mCode : restart;
    }
    const std::string passOn = "if ($env:ChocolateyExitCode -eq '" + std::to_string(restart) +
                               "') { Set-PowerShellExitCode -ExitCode 3010 }\n";
    return "The folder of the package goes into `tools\\package`. Chocolatey knows a restart by the code 3010 alone, "
           "so the\n"
           "scripts pass it on.\n\n`chocolateyInstall.ps1`:\n\n" +
           Fence("$ErrorActionPreference = 'Stop'\n"
                 "$package = Join-Path $PSScriptRoot 'package'\n"
                 "Install-ChocolateyInstallPackage -PackageName $env:ChocolateyPackageName -FileType 'exe' `\n"
                 "    -File (Join-Path $package 'TavixSetup.exe') -SilentArgs '/s' -ValidExitCodes @(" +
                 good + ")\n" + passOn) +
           "\n`chocolateyUninstall.ps1`:\n\n" +
           Fence("$ErrorActionPreference = 'Stop'\n"
                 "$package = Join-Path $PSScriptRoot 'package'\n"
                 "Uninstall-ChocolateyPackage -PackageName $env:ChocolateyPackageName -FileType 'exe' `\n"
                 "    -File (Join-Path $package 'TavixSetup.exe') -SilentArgs '/s /u' -ValidExitCodes @(" +
                 good + ")\n" + passOn) +
           "\nChocolatey makes a command of each program in `tools` unless an empty file stands beside it: add\n"
           "`tools\\package\\TavixSetup.exe.ignore` and `tools\\package\\Remove.exe.ignore`.\n\n"
           "| Exit code | Counts as | Meaning |\n|---|---|---|\n" +
           [] {
               std::string text;
               for (const CodeRow &row : CodeRows(true)) {
                   const bool done = row.mKind == EExitKind::EDone;
                   text += "| " + std::to_string(row.mCode) + " | " +
                           (done                                   ? "success"
                            : row.mKind == EExitKind::EDoneRestart ? "success, passed on as 3010"
                                                                   : "failure") +
                           " | " + row.mWords + " |\n";
               }
               return text;
           }();
}

std::string Sccm()
{
    return "An application with a deployment type \"Script Installer\"; its content is the whole folder of the "
           "package.\n\n"
           "| Field | Value |\n|---|---|\n"
           "| Installation program | `TavixSetup.exe /s` |\n"
           "| Uninstall program | `TavixSetup.exe /s /u` |\n"
           "| Run installation and uninstall program as 32-bit process on 64-bit clients | no |\n"
           "| Installation behavior | Install for system |\n"
           "| Logon requirement | Whether or not a user is logged on |\n"
           "| Installation program visibility | Hidden |\n"
           "| Should Configuration Manager enforce specific behavior | Determine behavior based on return codes |\n\n"
           "Return codes; delete those that the list begins with, 1707, 3010, 1641 and 1618, which no run "
           "answers:\n\n" +
           CodeTable(&KindRow::mSccm);
}

struct SystemRow {
    const char *mName;
    std::string (*mPage)();
};

constexpr SystemRow kSystems[] = {{"winget", Winget}, {"intune", Intune}, {"chocolatey", Chocolatey}, {"sccm", Sccm}};

} // namespace

std::vector<std::string> DeploymentSystems()
{
    std::vector<std::string> names;
    for (const SystemRow &row : kSystems) {
        names.emplace_back(row.mName);
    }
    return names;
}

std::string DeploymentPage(const std::string &system)
{
    for (const SystemRow &row : kSystems) {
        if (row.mName == system) {
            return row.mPage();
        }
    }
    throw std::invalid_argument("no such system: " + system);
}
