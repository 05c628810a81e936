// What a run makes of the tablets in the machine. The device tree is a text file, read by the double of the system's
// library; see tests/doubles/devices/README.md.
#include <memory>

#include "Fixture.h"

namespace {

// Steps that say, one record each, which of the presence conditions hold.
const char kAskAll[] = R"(
ProductIDIsAttached;VID_;<1>
Log;no VID_
<1>ProductIDIsAttached;PID_0392;<2>
Log;no 0392
<2>ProductIDIsNotAttached;VID_7A1C&PID_0118;<3>
Log;0118
<3>IsTouchPresent;<4>
Log;no touch
<4>IsPenPresent;<5>
Log;no pen
<5>SetFlag;FORCE_PEN_SERVICE;1
IsPenPresent;<6>
Log;no forced pen
<6>IsComment;end
)";

class DeviceWalkRun : public testing::Test {
protected:
    void SetUp() override { SKIP_UNLESS_WINE(); } // the device tree of a real Windows stays as it is

    RunResult RunWith(const std::string &tree, const std::string &tail = "")
    {
        mPackage.File("tree.txt", tree).Environment("TAVIX_DEVICE_TREE", mPackage.Path("tree.txt"));
        DeleteFileA(mPackage.Path("log.txt").c_str());
        mPackage.Environment("TAVIX_DEVICE_LOG", mPackage.Path("log.txt"));
        return mPackage.Run(tail);
    }

    Package mPackage;
};

TEST_F(DeviceWalkRun, PresenceConditionsFollowTheAttachedUsbDevices)
{
    const struct {
        const char *mTree;
        std::vector<std::string> mLogged;
    } cases[] = {
        {"", {"no VID_", "no 0392", "no touch", "no pen"}},
        {"USB usb\\vid_7a1c&pid_0118\\6&1 live\n", {"no 0392", "0118", "no pen"}},
        {"USB USB\\VID_7A1C&PID_0240\\1 live\n", {"no 0392", "no touch"}},
        {"USB USB\\VID_7A1C&PID_0390\\1 live\n", {"no 0392", "no touch"}},
        {"USB USB\\VID_7A1C&PID_0118\\1 live\nUSB USB\\VID_7A1C&PID_0392\\1 live\n", {"0118"}},
        // keys alone: a device of ours without pen and touch
        {"USB USB\\VID_7A1C&PID_024E\\1 live\n", {"no 0392", "no touch", "no pen"}},
        // none of these counts
        {"USB USB\\VID_7A1C&PID_0118\\1 remembered\n", {"no VID_", "no 0392", "no touch", "no pen"}},
        {"HID HID\\VID_7A1C&PID_0118&COL01\\1 live\n", {"no VID_", "no 0392", "no touch", "no pen"}},
        {"USB USB\\VID_7A1D&PID_0118\\1 live\n", {"no VID_", "no 0392", "no touch", "no pen"}},
        {"USB USB\\VID_7A1C&PID_0118\\1 fail-id\n", {"no VID_", "no 0392", "no touch", "no pen"}},
        {"fail-list USB\nUSB USB\\VID_7A1C&PID_0118\\1 live\n", {"no VID_", "no 0392", "no touch", "no pen"}},
    };
    mPackage.Steps(kAskAll);
    for (const auto &test : cases) {
        const RunResult run = RunWith(test.mTree);
        SCOPED_TRACE(test.mTree + run.mTraceText);
        EXPECT_EQ(run.mExitCode, 0u);
        EXPECT_EQ(Logged(run), test.mLogged);
        EXPECT_TRUE(Has(run, "# end"));
    }
}

TEST_F(DeviceWalkRun, WalkIsDoneOnceBeforeTheStepsAndChangesNothing)
{
    mPackage.Steps("Log;here\n");
    const RunResult run = RunWith("USB usb\\vid_7a1c&pid_0122\\6&1 live\n"
                                  "USB USB\\VID_046D&PID_0001\\1 live\n"
                                  "USB USB\\VID_7A1C&PID_0122\\gone remembered\n");
    EXPECT_TRUE(HasInOrder(run, {"EnumerateSupportedDevices: Checking device usb\\vid_7a1c&pid_0122\\6&1",
                                 "EnumerateSupportedDevices: VID_7A1C&PID_0122 found",
                                 "EnumerateSupportedDevices: Checking device USB\\VID_046D&PID_0001\\1",
                                 "Executing steps for group Install"}));
    EXPECT_EQ(CountRecords(run, "EnumerateSupportedDevices: *"), 3u);
    EXPECT_EQ(ReadText(mPackage.Path("log.txt")), "list USB present\r\nclose\r\n");
}

TEST_F(DeviceWalkRun, DeviceWithDataOfItsOwnFillsItsTwoMacros)
{
    mPackage.Steps("CopyFile;!ISD_OEM!;data!PRODUCT_NAME!.txt\n").File("isdoem.dat", "common");
    const std::string tree = "USB USB\\VID_7A1C&PID_0392\\1 live\n";
    const std::string copy = mPackage.Path("dataVID_7A1C_PID_0392.txt");

    EXPECT_TRUE(Has(RunWith(tree), "File .\\VID_7A1C_PID_0392.dat, 64 *"));
    EXPECT_EQ(ReadText(copy), "common");

    mPackage.File("VID_7A1C_PID_0392.dat", "own");
    RunWith(tree);
    EXPECT_EQ(ReadText(copy), "own");

    RunWith("");
    EXPECT_EQ(ReadText(mPackage.Path("data.txt")), "common");
}

// The sample package for integrated devices.
class IsdPackage : public DeviceWalkRun {
protected:
    void SetUp() override
    {
        DeviceWalkRun::SetUp();
        if (IsSkipped()) {
            return;
        }
        mKey = std::make_unique<RegistrySnapshot>(HKEY_LOCAL_MACHINE, "SOFTWARE\\TAVIX\\ISD");
        mPrograms = std::make_unique<Scratch>(Programs("Tablet"));
        const std::string from = EnvironmentText("TAVIX_PACKAGES") + "\\isd\\";
        for (const char *name :
             {"installer.dat", "isdoem.dat", "zh_CN.dat", "VID_7A1C_PID_0392.dat", "payload\\readme.txt",
              "payload\\license.txt", "payload\\pen.ini", "payload\\touch.ini"}) {
            mPackage.Copy(from + name, name);
        }
    }

    static std::string Value(const char *name, EView view = EView64)
    {
        return ReadRegText(HKEY_LOCAL_MACHINE, "SOFTWARE\\TAVIX\\ISD", name, view);
    }

    // What stands in the folder for 64-bit programs.
    static std::string Programs(const std::string &name)
    {
        const std::string folder =
            ReadRegText(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", EView64);
        return folder + "\\" + name;
    }

    std::unique_ptr<RegistrySnapshot> mKey;
    std::unique_ptr<Scratch> mPrograms;
};

TEST_F(IsdPackage, RefusesAMachineWithoutItsHardware)
{
    for (const char *tree :
         {"", "USB USB\\VID_7A1C&PID_0392\\1 remembered\n", "USB USB\\VID_046D&PID_0001\\1 live\n"}) {
        const RunResult run = RunWith(tree);
        EXPECT_EQ(run.mExitCode, 65u) << tree;
        EXPECT_EQ(run.mOutputFile, "65");
        EXPECT_TRUE(Lacks(run, "Executing steps for group *"));
    }
    EXPECT_FALSE(FolderExists(Programs("Tablet\\ISD")));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, "SOFTWARE\\TAVIX\\ISD", EView64));
}

TEST_F(IsdPackage, InstallsWhatTheDeviceNeedsAndRemovesIt)
{
    RunResult run = RunWith("USB USB\\VID_7A1C&PID_0392\\1 live\n");
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(Has(run, "The ISD package is installed")) << run.mTraceText;
    EXPECT_TRUE(Has(run, ", Pen is present"));
    EXPECT_TRUE(Has(run, ", Touch is not present"));
    EXPECT_EQ(Tree(Programs("Tablet\\ISD")), (std::vector<std::string>{"pen.ini", "readme.txt"}));
    EXPECT_EQ(Value("Product"), "VID_7A1C_PID_0392");
    EXPECT_EQ(Value("Version"), "5.3.5-5");
    EXPECT_EQ(Value("Orientation", EView32), "portrait");
    EXPECT_EQ(Value("SwapAxes"), "<none>");

    // Another device, with the data that serves all.
    run = RunWith("USB USB\\VID_7A1C&PID_03A2\\1 live\n");
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_EQ(Tree(Programs("Tablet\\ISD")), (std::vector<std::string>{"pen.ini", "readme.txt", "touch.ini"}));
    EXPECT_EQ(Value("Product"), "VID_7A1C_PID_03A2");
    EXPECT_EQ(Value("Orientation", EView32), "landscape");
    EXPECT_EQ(Value("SwapAxes"), "yes");

    // Removal does not ask for the hardware.
    run = RunWith("", "/u");
    EXPECT_EQ(run.mExitCode, 0u);
    EXPECT_TRUE(Has(run, "The ISD package is removed"));
    EXPECT_FALSE(FolderExists(Programs("Tablet\\ISD")));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, "SOFTWARE\\TAVIX\\ISD", EView64));
}

} // namespace
