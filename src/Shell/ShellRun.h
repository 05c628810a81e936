// What the registration with the shell needs of the run that asks for it.
#pragma once

#include <functional>
#include <string>

#include "Registry/RegAccess.h"
#include "Shell/Description.h"

struct ShellRun {
    bool mWin64 = false;     // the registry of 64-bit Windows has a view of its own, and so have its system folders
    bool mUninstall = false; // the program runs under the name of the uninstaller
    std::function<std::string(const std::string &)> mExpandHats;   // ^NAME^ alone
    std::function<std::string(const std::string &)> mExpandMacros; // ^NAME^ and !NAME!

    ERegView View() const { return mWin64 ? ERegView64 : ERegViewProcess; }
};

// The texts of descriptions on Windows.
class CShellTexts : public IDescriptionTexts {
public:
    explicit CShellTexts(const ShellRun &run) : mRun(run) {}

    std::string Utf8ToAnsi(const std::string &text) override;
    std::string AnsiToUtf8(const std::string &text) override;
    std::string ExpandHats(const std::string &text) override { return mRun.mExpandHats(text); }
    std::string ExpandMacros(const std::string &text) override { return mRun.mExpandMacros(text); }
    std::string NewGuid() override;

private:
    const ShellRun &mRun;
};

// Writes a text into the registry; an empty one takes the value away. A value that cannot be written stands in the
// trace and stops nothing.
void WriteShellValue(const RegLocation &location, ERegView view, const std::string &name, const std::string &text,
                     DWORD type = REG_SZ);

// The values by which an installation is found again when it is removed or done anew. `suffix` keeps packages apart
// that share a machine; the maker's description names it.
constexpr char kOemXmlFileValue[] = "OemXMLFile"; // among the installer's settings, as the next
constexpr char kOemDllFileValue[] = "OemDLLFile";
constexpr char kStartFolderValue[] = "StartFolder"; // below the driver's own key

RegLocation InstallerSettings();
RegLocation DriverKey();

// Answers the Start-menu folder that an earlier installation recorded, and leaves the record without text.
std::string TakeRecordedFolder(const std::string &suffix);
