// Machines that hold an earlier package or remains of one. Everything made here is taken away again.
#include "Fixture.h"
#include "PendingRenames.h"

#include <winsvc.h>

#include <memory>

namespace {

const char kVirtualHid[] = "SYSTEM\\CurrentControlSet\\Services\\vhidmini";
const char kOurName[] = "Tavix Virtual Hid driver";

std::string SystemFolder()
{
    char folder[MAX_PATH] = {};
    GetSystemDirectoryA(folder, sizeof folder);
    return folder;
}

std::string ProgramFolder(EView view)
{
    return ReadRegText(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", view);
}

// A program that holds nothing but this product version, which has to be seven characters long; without one, a file
// that is no program.
std::string Program(const std::string &version)
{
    if (version.empty()) {
        return "no version";
    }
    static const std::string kText = "5.3.5-5"; // what the stand-in says
    std::string content = ReadText(DoublePath("versions\\Version32.dll"));
    std::string wide;
    for (const char c : kText) {
        wide += {c, '\0'};
    }
    const size_t at = content.find(wide);
    EXPECT_TRUE(at != std::string::npos && version.size() == kText.size()) << version;
    for (size_t i = 0; at != std::string::npos && i < kText.size(); ++i) {
        content[at + 2 * i] = version[i];
    }
    return content;
}

// A file as 64-bit Windows sees it, with the folders that it needs, until the object ends.
class MachineFile {
public:
    MachineFile(const std::string &path, const std::string &content) : mPath(path)
    {
        const RedirectionOff off;
        for (size_t at = path.find('\\', 3); mMade.empty() && at != std::string::npos; at = path.find('\\', at + 1)) {
            mMade = FolderExists(path.substr(0, at)) ? "" : path.substr(0, at);
        }
        EXPECT_FALSE(FileExists(path)) << path << " belongs to the machine";
        EXPECT_TRUE(WriteText(path, content)) << path;
    }
    ~MachineFile()
    {
        const RedirectionOff off;
        RemoveTree(mMade.empty() ? mPath : mMade);
    }
    MachineFile(const MachineFile &) = delete;
    MachineFile &operator=(const MachineFile &) = delete;

private:
    std::string mPath;
    std::string mMade; // the outermost folder that was not there
};

// A service of this name, marked for deletion as long as the object holds it open, or a sound one.
class TestService {
public:
    TestService(const std::string &name, bool markForDeletion)
        : mManager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)),
          mService(CreateServiceA(mManager, name.c_str(), nullptr, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                                  SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, "C:\\nowhere.exe", nullptr, nullptr,
                                  nullptr, nullptr, nullptr)),
          mDeleted(markForDeletion)
    {
        EXPECT_NE(mService, nullptr) << name << " error " << GetLastError();
        if (markForDeletion) {
            EXPECT_TRUE(DeleteService(mService)) << name;
        }
    }
    ~TestService()
    {
        if (!mDeleted) {
            DeleteService(mService);
        }
        CloseServiceHandle(mService);
        CloseServiceHandle(mManager);
    }
    TestService(const TestService &) = delete;
    TestService &operator=(const TestService &) = delete;

private:
    SC_HANDLE mManager;
    SC_HANDLE mService;
    bool mDeleted;
};

void Stage(Package &package, const std::string &main, const std::string &steps = "Log;ran Install",
           const std::string &prefType = "Pen_Tablet")
{
    package.Script("[MAIN]\nVersion=1.10.01\nPrefType=" + prefType + "\nLanguages=English\n" + main + "\n[Install]\n" +
                   steps + "\n[Uninstall]\nLog;ran Uninstall\n");
}

// Runs the package and tells whether it was refused; what the refusal is made of is checked here.
bool Refused(const Package &package, RunResult run)
{
    const bool refused = run.mExitCode != 0;
    EXPECT_EQ(run.mExitCode, refused ? 11u : 0u) << package.Folder(); // 9 and the request to reboot
    EXPECT_EQ(CountRecords(run, "ran Install"), refused ? 0u : 1u);
    return refused;
}

TEST(EarlierInstallation, ACleanMachinePasses)
{
    const PendingRenames none;
    Package package;
    Stage(package, "");
    EXPECT_FALSE(Refused(package, package.Run()));
}

TEST(EarlierInstallation, AServiceMarkedForDeletionStopsTheRun)
{
    static const struct {
        const char *service;
        bool marked, refused;
    } kRows[] = {
        {"TabletService", true, true},      {"TabletServicePen", true, true},    {"TabletServiceTavix", true, true},
        {"TouchServicePen", true, true},    {"TouchServiceTavix", true, true},   {"TabletServiceISD", true, true},
        {"TouchServiceISD", true, true},    {"VTabletServiceCon", true, true},   {"VTabletServiceISD", true, true},
        {"VTabletServicePro", true, false}, {"VTabletServiceCon", false, false},
    };
    for (const auto &row : kRows) {
        SCOPED_TRACE(std::string(row.service) + (row.marked ? " marked" : " sound"));
        Package package;
        Stage(package, "");
        const TestService service(row.service, row.marked);
        const RunResult run = package.Run();
        EXPECT_EQ(Refused(package, run), row.refused);
        if (row.refused) {
            EXPECT_TRUE(HasInOrder(run, {"ChangeServiceConfig failed 1072", "Service status is dirty"}));
        }
    }
}

TEST(EarlierInstallation, PendingRenamesStopTheRunWhereAnOldPackageLacksWhatAFinishedOneLeaves)
{
    const std::string remove = ProgramFolder(EView32) + "\\Tablet\\Remove.exe";
    const std::string hook = SystemFolder() + "\\tabhook.dll";
    const std::string dat = SystemFolder() + "\\Pen_Tablet.dat";
    const std::string touchDat = SystemFolder() + "\\ISDTouch.xml";
    const std::string pen = SystemFolder() + "\\drivers\\penclass.sys";
    const std::string must = ".\\must.txt"; // in the package
    static const char *const kNobody = nullptr;
    const struct {
        const char *name;
        bool pending;
        std::vector<std::string> files; // what the machine has
        const char *prefType;
        const char *found; // what the refusal names, null for none
    } rows[] = {
        {"nothing but renames", true, {}, "Pen_Tablet", kNobody},
        {"an old package but no renames", false, {must, remove, hook}, "Pen_Tablet", kNobody},
        {"the file of the script", true, {must, remove, hook}, "Pen_Tablet", must.c_str()},
        {"the old removal program", true, {remove, hook}, "Pen_Tablet", remove.c_str()},
        {"the old hook", true, {hook}, "Pen_Tablet", hook.c_str()},
        {"finished, by the data file", true, {must, dat}, "Pen_Tablet", kNobody},
        {"finished, by the driver", true, {hook, pen}, "Pen_Tablet", kNobody},
        {"the data file of another package", true, {hook, dat}, "ISD_Touch", hook.c_str()},
        {"the data file of this package", true, {hook, touchDat}, "ISD_Touch", kNobody},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const PendingRenames renames;
        if (row.pending) {
            renames.Set();
        }
        Package package;
        Stage(package, "MustUninstallFile=.\\\\must.txt", "Log;ran Install", row.prefType);
        std::vector<std::unique_ptr<MachineFile>> files;
        for (const std::string &file : row.files) {
            files.push_back(std::make_unique<MachineFile>(file == must ? package.Path("must.txt") : file, "old"));
        }
        const RunResult run = package.Run();
        EXPECT_EQ(Refused(package, run), row.found != kNobody);
        EXPECT_EQ(CountRecords(run, "PendingFileRenameOperations exists"), row.pending ? 1u : 0u);
        if (row.found != kNobody) {
            const std::string &data = std::string(row.prefType) == "ISD_Touch" ? touchDat : dat;
            EXPECT_TRUE(Has(run, std::string("Found ") + row.found + ", missing " + data + " and " + pen));
        }
    }
}

TEST(EarlierInstallation, OnlyFilesOfThe64BitSystemFolderCount)
{
    if (!On64BitWindows()) {
        GTEST_SKIP() << "has one system folder only";
    }
    char folder[MAX_PATH] = {};
    GetSystemWow64DirectoryA(folder, sizeof folder);
    const PendingRenames renames;
    renames.Set();
    const MachineFile hook(std::string(folder) + "\\tabhook.dll", "old");
    Package package;
    Stage(package, "");
    EXPECT_FALSE(Refused(package, package.Run()));
}

TEST(EarlierInstallation, TheKeyOfTheFormerVirtualHidDriverGoesAndTheNextRunPasses)
{
    for (const char *name : {kOurName, "TAVIX virtual hid DRIVER"}) {
        SCOPED_TRACE(name);
        const RegistrySnapshot former(HKEY_LOCAL_MACHINE, kVirtualHid);
        WriteValue(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName", RegText(name));
        CreateKey(HKEY_LOCAL_MACHINE, std::string(kVirtualHid) + "\\Parameters\\Wdf");
        Package package;
        Stage(package, "");
        const RunResult run = package.Run();
        EXPECT_TRUE(Refused(package, run));
        EXPECT_TRUE(Has(run, "Deleted previous vhidmini key"));
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kVirtualHid));
        EXPECT_FALSE(Refused(package, package.Run()));
    }
}

TEST(EarlierInstallation, AnotherDevicesKeyOfThatNameIsLeftAlone)
{
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, kVirtualHid);
    for (const char *name : {"Tavix Virtual Hid driver 2", "Virtual Hid driver", ""}) {
        SCOPED_TRACE(name);
        WriteValue(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName", RegText(name));
        Package package;
        Stage(package, "");
        EXPECT_FALSE(Refused(package, package.Run()));
        EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName"), name);
    }
}

TEST(EarlierInstallation, ARemovalDoesNotLook)
{
    const PendingRenames renames;
    renames.Set();
    const RegistrySnapshot formerKey(HKEY_LOCAL_MACHINE, kVirtualHid);
    WriteValue(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName", RegText(kOurName));
    const MachineFile hook(SystemFolder() + "\\tabhook.dll", "old");
    const TestService service("TabletServicePen", true);
    Package package;
    Stage(package, "");
    const RunResult removal = package.Run("/u");
    EXPECT_EQ(removal.mExitCode, 0u);
    EXPECT_TRUE(Has(removal, "ran Uninstall"));
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName"), kOurName);

    // An installation stops at the first of them, and the key waits for a run that comes so far.
    const RunResult installation = package.Run("/u /command Install");
    EXPECT_TRUE(Refused(package, installation));
    EXPECT_TRUE(Has(installation, "Service status is dirty"));
    EXPECT_TRUE(Lacks(installation, "PendingFileRenameOperations exists"));
    EXPECT_EQ(ReadRegText(HKEY_LOCAL_MACHINE, kVirtualHid, "DisplayName"), kOurName);
}

TEST(EarlierInstallation, FindsAPackageOlderThanTheSplit)
{
    enum EWhere { EInSystem, EInVTouch, EInVTouchBesidePen, EInVTouch32 };
    static const struct {
        EWhere where;
        const char *version;
        bool found;
    } kRows[] = {
        {EInSystem, "5.2.2-9", true},           {EInSystem, "5.2.3-0", false},
        {EInSystem, "5.2.3-1", false},          {EInSystem, "5.2.3b9", true},
        {EInSystem, "5.2.3w0", true},           {EInSystem, "5.2.3w1", false},
        {EInSystem, "5.10.0-", false},          {EInSystem, "", true},
        {EInVTouch, "5.2.2-9", true},           {EInVTouch, "5.2.3-0", false},
        {EInVTouchBesidePen, "5.2.2-9", false}, {EInVTouch32, "5.2.2-9", false},
    };
    const std::string programs = ProgramFolder(EView64);
    for (const auto &row : kRows) {
        SCOPED_TRACE(std::to_string(row.where) + " " + row.version);
        std::vector<std::unique_ptr<MachineFile>> files;
        if (row.where == EInSystem) {
            files.push_back(std::make_unique<MachineFile>(SystemFolder() + "\\Pen_Tablet.exe", Program(row.version)));
        } else {
            const std::string folder = row.where == EInVTouch32 ? ProgramFolder(EView32) : programs;
            files.push_back(std::make_unique<MachineFile>(folder + "\\VTouch\\Remove.exe", Program(row.version)));
        }
        if (row.where == EInVTouchBesidePen) {
            files.push_back(std::make_unique<MachineFile>(programs + "\\Tablet\\Pen\\Pen_Tablet.exe", "any"));
        }
        Package package;
        Stage(package, "", "DetectPreISDSplit;<yes>\nLog;no split\nDONE\n<yes>Log;split\n");
        const RunResult run = package.Run();
        EXPECT_TRUE(row.found ? HasInOrder(run, {", PreISD Split detected goto step", "split"})
                              : HasInOrder(run, {", No old PreISD Split", "no split"}));
    }
}

TEST(EarlierInstallation, ThePackageOlderThanTheSplitStaysFoundWhenItsFileHasGone)
{
    const std::string path = SystemFolder() + "\\Pen_Tablet.exe";
    const MachineFile old(path, Program("5.2.2-9"));
    Package package;
    Stage(package, "",
          "DetectPreISDSplit;<first>\n<first>DeleteFile;!SYSTEM!\\\\Pen_Tablet.exe\nExist;!SYSTEM!\\\\Pen_Tablet.exe;<"
          "DONE>"
          "\nDetectPreISDSplit;<second>\nDONE\n<second>Log;still found\n");
    EXPECT_TRUE(HasInOrder(package.Run(), {", PreISD Split detected goto step", "*Pen_Tablet.exe does not Exist",
                                           ", PreISD Split detected goto step", "still found"}));
    EXPECT_TRUE(Has(package.Run(), ", No old PreISD Split")); // found in that run only
}

// A dash stands for a product that is not there, an empty text for one without a version.
TEST(EarlierInstallation, TheVirtualHidDriverMayGoWhenNoOtherProductIsTooOld)
{
    static const struct {
        const char *prefType;
        std::string pro, isd, pen;
        bool obsolete;
    } kRows[] = {
        {"Pen_Tablet", "-", "-", "-", true},
        {"Pen_Tablet", "-", "-", "1.0.0-0", true}, // itself
        {"Pen_Tablet", "6.3.0-1", "7.0.5-1", "-", true},
        {"Pen_Tablet", "6.3.0-0", "-", "-", false},
        {"Pen_Tablet", "6.3.0w1", "-", "-", true},
        {"Pen_Tablet", "6.2.9-9", "7.0.5-1", "-", false},
        {"Pen_Tablet", "6.3.0-1", "7.0.5-0", "-", false},
        {"Pen_Tablet", "", "-", "-", false},
        {"Pen_Touch", "-", "7.0.4-9", "-", false},
        {"Tavix_Tablet", "1.0.0-0", "-", "-", true}, // itself
        {"Tavix_Tablet", "-", "7.0.5-1", "5.3.0-1", true},
        {"Tavix_Tablet", "-", "7.0.5-0", "5.3.0-1", false},
        {"Tavix_Tablet", "-", "7.0.6-0", "5.3.0-0", false},
        {"Tavix_Touch", "-", "-", "5.3.0b9", false},
        {"ISD_Tablet", "-", "1.0.0-0", "-", true}, // itself
        {"ISD_Tablet", "6.4.0-0", "-", "5.3.1-0", true},
        {"ISD_Tablet", "6.3.0-0", "-", "5.3.1-0", false},
        {"ISD_Tablet", "7.0.0-0", "-", "5.2.9-9", false},
        {"ISD_Touch", "-", "-", "6.0.0-0", true},
    };
    const std::string tablet = ProgramFolder(EView64) + "\\Tablet\\";
    for (const auto &row : kRows) {
        SCOPED_TRACE(std::string(row.prefType) + " pro " + row.pro + " isd " + row.isd + " pen " + row.pen);
        std::vector<std::unique_ptr<MachineFile>> files;
        for (const auto &[name, version] :
             {std::pair("Tavix\\Tavix_Tablet.exe", row.pro), std::pair("ISD\\ISD_Tablet.exe", row.isd),
              std::pair("Pen\\Pen_Tablet.exe", row.pen)}) {
            if (version != "-") {
                files.push_back(std::make_unique<MachineFile>(tablet + name, Program(version)));
            }
        }
        Package package;
        Stage(package, "", "IfVHIDObsolete;<yes>\nLog;needed\nDONE\n<yes>Log;obsolete\n", row.prefType);
        const RunResult run = package.Run();
        EXPECT_TRUE(row.obsolete ? HasInOrder(run, {", VHID Obsolete goto step", "obsolete"})
                                 : HasInOrder(run, {", VHID still needed", "needed"}));
    }
}

} // namespace
