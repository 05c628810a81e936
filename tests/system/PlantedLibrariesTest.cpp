// Libraries that lie beside the program under names of the system are not loaded, whatever the program is called.
#include "Fixture.h"

namespace {

// What the program binds, and what these bring along and a program could be made to find beside itself.
const char *const kPlanted[] = {"setupapi.dll", "cfgmgr32.dll", "version.dll", "shell32.dll",  "shlwapi.dll",
                                "ole32.dll",    "psapi.dll",    "user32.dll",  "comctl32.dll", "wtsapi32.dll"};

class PlantedLibraries : public testing::TestWithParam<const char *> {
protected:
    // Makes Wine prefer the files beside the program to its own libraries, as Windows does.
    PlantedLibraries() : mOverrides(HKEY_CURRENT_USER, Overrides())
    {
        for (const char *name : kPlanted) {
            mPackage.Copy(DoublePath("planted\\planted.dll"), name);
            const std::string library = std::string(name).substr(0, std::string(name).find('.'));
            WriteValue(HKEY_CURRENT_USER, Overrides() + "\\DllOverrides", library, RegText("native,builtin"));
        }
    }

    static std::string Overrides() { return std::string("Software\\Wine\\AppDefaults\\") + GetParam(); }

    size_t Loaded() const
    {
        size_t loaded = 0;
        for (const std::string &name : Tree(mPackage.Folder())) {
            loaded += Fits("*.loaded", name) ? 1 : 0;
            EXPECT_TRUE(mControl || !Fits("*.loaded", name)) << name;
        }
        return loaded;
    }

    const RegistrySnapshot mOverrides;
    Package mPackage;
    bool mControl = false;
};

TEST_P(PlantedLibraries, AreNotLoaded)
{
    const WindowsVersion windows("winxp64", GetParam()); // where IsXPTE asks further
    const std::string tree = "USB USB\\VID_7A1C&PID_0118\\1 live\n";
    mPackage.File("tree.txt", tree).Environment("TAVIX_DEVICE_TREE", mPackage.Path("tree.txt"));
    mPackage.Copy(DoublePath("versions\\Version32.dll"), "new.dll").File("a.txt", "a").Steps(R"(
Exist;!COMMON DESKTOP!
CopyFile;a.txt;b.txt
IfNotOlder;.\\new.dll;.\\new.dll
CopyOEMINF;missing.inf
ProductIDIsAttached;VID_
IsXPTE
DeleteFile;b.txt
Log;end)");
    const RunResult run = mPackage.Program(GetParam()).Run();
    EXPECT_TRUE(HasInOrder(run, {"FileVersionCompare: * (5.3.5-5) vs * (5.3.5-5)*", "end"}));
    EXPECT_EQ(Loaded(), 0u);
    // The same files in the same place are loaded by a program of the same name that takes no care.
    mControl = true;
    DeleteFileA(mPackage.Path(GetParam()).c_str());
    mPackage.Copy(DoublePath("planted\\trusting.exe"), GetParam());
    EXPECT_EQ(mPackage.Run("setupapi.dll version.dll wtsapi32.dll").mExitCode, 0u);
    EXPECT_GE(Loaded(), 3u);
}

INSTANTIATE_TEST_SUITE_P(Names, PlantedLibraries, testing::Values("TavixSetup.exe", "Remove.exe"));

} // namespace
