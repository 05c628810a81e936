// The walks over the device tree, on the double of that tree; see tests/doubles/devices/README.md.
#include "Devices/DeviceWalk.h"

#include <windows.h>

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/Handles.h"
#include "Common/TraceFile.h"
#include "Devices/DeviceTable.h"
#include "Installer/CWinInstallMain.h"
#include "TraceCapture.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char kTestKey[] = "Software\\TavixDeviceWalkTest";

class DeviceWalk : public testing::Test {
protected:
    DeviceWalk() : mOwnTrace(TraceSinkPath()) {}

    void SetUp() override
    {
        // The double keeps the system's own library under this name.
        if (!CLibrary(LoadLibraryA("tavix_setupapi_real.dll"))) {
            if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) {
                GTEST_SKIP() << "the device tree of a real Windows stays as it is";
            }
            FAIL() << "the double of the device tree is not installed";
        }
        char temp[MAX_PATH + 1];
        GetTempPathA(sizeof(temp), temp);
        static int count = 0;
        mFolder =
            std::string(temp) + "DeviceWalk" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++count);
        ASSERT_TRUE(CreateDirectoryA(mFolder.c_str(), nullptr));
        GetCurrentDirectoryA(sizeof(mFormerFolder), mFormerFolder);
        SetCurrentDirectoryA(mFolder.c_str());
    }

    void TearDown() override
    {
        if (mFolder.empty()) {
            return;
        }
        for (const std::string &name : mFiles) {
            DeleteFileA((mFolder + "\\" + name).c_str());
        }
        SetCurrentDirectoryA(mFormerFolder);
        RemoveDirectoryA(mFolder.c_str());
        SetEnvironmentVariableA("TAVIX_DEVICE_TREE", nullptr);
        SetEnvironmentVariableA("TAVIX_DEVICE_LOG", nullptr);
        DeleteFileA(mOwnTrace.c_str());
    }

    void File(const std::string &name, const std::string &content)
    {
        std::ofstream(mFolder + "\\" + name) << content;
        mFiles.push_back(name);
    }

    void Tree(const std::string &lines)
    {
        File("tree.txt", lines);
        mFiles.push_back("log.txt");
        SetEnvironmentVariableA("TAVIX_DEVICE_TREE", (mFolder + "\\tree.txt").c_str());
        SetEnvironmentVariableA("TAVIX_DEVICE_LOG", (mFolder + "\\log.txt").c_str());
        mTrace.Take();
    }

    Lines Log() const
    {
        std::ifstream file(mFolder + "\\log.txt");
        Lines lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    Lines Found() const
    {
        Lines ids;
        for (const SupportedDevice &device : mMain.mDeviceList) {
            if (device.mFound) {
                ids.push_back(device.mId);
            }
        }
        return ids;
    }

    CWinInstallMain mMain{"", false};
    std::string mOwnTrace;
    CTraceCapture mTrace;
    std::string mFolder;
    Lines mFiles;
    char mFormerFolder[MAX_PATH + 1] = "";
};

TEST_F(DeviceWalk, PresentWalkMarksLiveNodesOfItsEnumeratorInAnyCase)
{
    Tree("USB usb\\vid_7a1c&pid_011c\\6&1 live\n"
         "USB USB\\VID_7A1C&PID_0240\\6&2 remembered\n"
         "USB USB\\VID_046D&PID_0001\\6&3 live\n"
         "HID HID\\VID_7A1C&PID_0241&COL01\\7&4 live\n");
    EXPECT_EQ(mMain.EnumerateSupportedDevices("USB", true, false), 1u);
    EXPECT_EQ(mTrace.Take(), (Lines{"EnumerateSupportedDevices: Checking device usb\\vid_7a1c&pid_011c\\6&1",
                                    "EnumerateSupportedDevices: VID_7A1C&PID_011C found",
                                    "EnumerateSupportedDevices: Checking device USB\\VID_046D&PID_0001\\6&3"}));
    EXPECT_EQ(Found(), Lines{"VID_7A1C&PID_011C"});
    EXPECT_EQ(mMain.mDevicePresence, 3u);
    EXPECT_EQ(Log(), (Lines{"list USB present", "close"}));
    EXPECT_TRUE(mMain.IsProductAttached("VID_"));
    EXPECT_TRUE(mMain.IsProductAttached("011C"));
    EXPECT_FALSE(mMain.IsProductAttached("011c"));
    EXPECT_FALSE(mMain.IsProductAttached("0240"));
    EXPECT_EQ(mMain.mProductName, "");
}

TEST_F(DeviceWalk, WithoutDevicesNothingIsPresent)
{
    Tree("");
    EXPECT_EQ(mMain.EnumerateSupportedDevices("USB", true, true), 1u);
    EXPECT_EQ(mMain.mDevicePresence, 0u);
    EXPECT_FALSE(mMain.IsProductAttached(""));
    EXPECT_EQ(mTrace.Take(), Lines());
}

TEST_F(DeviceWalk, MaskGathersOverWalksAndOutlivesTheList)
{
    Tree("USB USB\\VID_7A1C&PID_0118\\1 live\n"
         "HID HID\\VID_7A1C&PID_0240&COL01\\1 live\n");
    mMain.EnumerateSupportedDevices("USB", true, false);
    EXPECT_EQ(mMain.mDevicePresence, 1u);
    mMain.EnumerateSupportedDevices("HID", true, false);
    EXPECT_EQ(mMain.mDevicePresence, 0x13u);
    EXPECT_EQ(Found().size(), 2u);
    mMain.BuildSupportedDevices();
    EXPECT_EQ(Found(), Lines());
    EXPECT_EQ(mMain.mDevicePresence, 0x13u);
}

TEST_F(DeviceWalk, RememberedWalkRemovesAndMarksNothing)
{
    Tree("USB USB\\VID_7A1C&PID_0110\\live live\n"
         "USB usb\\vid_7a1c&pid_0110\\gone remembered\n"
         "USB USB\\VID_046D&PID_0001\\gone remembered\n");
    EXPECT_EQ(mMain.EnumerateSupportedDevices("USB", false, true), 1u);
    EXPECT_EQ(mTrace.Take(), (Lines{"EnumerateSupportedDevices: Checking device usb\\vid_7a1c&pid_0110\\gone",
                                    "EnumerateSupportedDevices: Removing USB\\VID_7A1C&PID_0110\\GONE",
                                    "EnumerateSupportedDevices: Checking device USB\\VID_046D&PID_0001\\gone"}));
    EXPECT_EQ(Log(), (Lines{"list USB all", "remove usb\\vid_7a1c&pid_0110\\gone", "close"}));
    EXPECT_EQ(Found(), Lines());
    EXPECT_EQ(mMain.mDevicePresence, 0u);
}

TEST_F(DeviceWalk, EveryMatchOfANodeIsMarkedAndRemovesAgainExceptOnI2C)
{
    mMain.mDeviceList = {{"VID_7A1C&PID_0110", 0x2, false},
                         {"TVX00", kDeviceI2C | 0x4, false},
                         {"VID_7A1C&PID_0110&MI_00", 0x100, false}};
    Tree("HID HID\\VID_7A1C&PID_0110&MI_00\\1 live\n"
         "HID HID\\TVX0001\\2 live\n");
    mMain.EnumerateSupportedDevices("HID", true, true);
    EXPECT_EQ(mTrace.Take(), (Lines{"EnumerateSupportedDevices: Checking device HID\\VID_7A1C&PID_0110&MI_00\\1",
                                    "EnumerateSupportedDevices: VID_7A1C&PID_0110 found",
                                    "EnumerateSupportedDevices: Removing HID\\VID_7A1C&PID_0110&MI_00\\1",
                                    "EnumerateSupportedDevices: VID_7A1C&PID_0110&MI_00 found",
                                    "EnumerateSupportedDevices: Removing HID\\VID_7A1C&PID_0110&MI_00\\1",
                                    "EnumerateSupportedDevices: Checking device HID\\TVX0001\\2",
                                    "EnumerateSupportedDevices: TVX00 found",
                                    "EnumerateSupportedDevices: NOT removing I2C device HID\\TVX0001\\2"}));
    EXPECT_EQ(Log(), (Lines{"list HID present", "remove HID\\VID_7A1C&PID_0110&MI_00\\1",
                            "remove again HID\\VID_7A1C&PID_0110&MI_00\\1", "close"}));
    EXPECT_EQ(Found().size(), 3u);
    EXPECT_EQ(mMain.mDevicePresence, 0x146u);
}

TEST_F(DeviceWalk, ListThatCannotBeMadeLeavesEverythingAsItWas)
{
    Tree("fail-list USB\n"
         "USB USB\\VID_7A1C&PID_0110\\1 live\n");
    EXPECT_EQ(mMain.EnumerateSupportedDevices("USB", true, true), static_cast<DWORD>(ERROR_INVALID_DATA));
    RemoveDeviceInfoValue("USB", "VID_7A1C");
    EXPECT_EQ(Log(), (Lines{"list USB present fails", "list USB all fails"}));
    EXPECT_EQ(mTrace.Take(), Lines());
    EXPECT_EQ(mMain.mDevicePresence, 0u);
}

TEST_F(DeviceWalk, NodeWithoutAReadableIdMatchesNothingAndTheWalkGoesOn)
{
    const std::string longTail(250, 'x');
    Tree("USB USB\\VID_7A1C&PID_0110\\1 fail-id\n"
         "USB USB\\VID_7A1C&PID_0111\\" +
         longTail +
         " live\n"
         "USB USB\\VID_7A1C&PID_0114\\3 live\n");
    mMain.EnumerateSupportedDevices("USB", true, false);
    const Lines records = mTrace.Take();
    ASSERT_EQ(records.size(), 7u);
    EXPECT_EQ(records[0].rfind("Assert:(cmret == CR_SUCCESS) in ", 0), 0u) << records[0];
    EXPECT_EQ(records[1], "EnumerateSupportedDevices: Checking device ");
    // An id longer than any that Windows has arrives cut.
    EXPECT_EQ(records[2].rfind("Assert:(cmret == CR_SUCCESS) in ", 0), 0u) << records[2];
    EXPECT_EQ(records[3].size(), std::string("EnumerateSupportedDevices: Checking device ").size() + 200);
    EXPECT_EQ(Found(), (Lines{"VID_7A1C&PID_0111", "VID_7A1C&PID_0114"}));
}

TEST_F(DeviceWalk, OwnDataFileCountsOnlyWhenItExists)
{
    Tree("USB USB\\VID_7A1C&PID_0392\\1 live\n");
    mMain.EnumerateSupportedDevices("USB", true, false);
    EXPECT_EQ(mMain.mProductName, "VID_7A1C_PID_0392");
    EXPECT_EQ(mMain.mOemDataFile, ".\\isdoem.dat");

    File("VID_7A1C_PID_0392.dat", "");
    mMain.EnumerateSupportedDevices("USB", true, false);
    EXPECT_EQ(mMain.mOemDataFile, ".\\VID_7A1C_PID_0392.dat");
}

TEST_F(DeviceWalk, LastDeviceWithOwnDataNamesTheProductAndTheLastFileFoundStays)
{
    File("VID_7A1C_PID_0392.dat", "");
    Tree("USB USB\\VID_7A1C&PID_0392\\1 live\n"
         "USB USB\\VID_7A1C&PID_03A1\\2 live\n"
         "USB USB\\VID_7A1C&PID_0110\\3 live\n");
    mMain.EnumerateSupportedDevices("USB", true, false);
    EXPECT_EQ(mMain.mProductName, "VID_7A1C_PID_03A1");
    EXPECT_EQ(mMain.mOemDataFile, ".\\VID_7A1C_PID_0392.dat");
}

// A hardware key below HKEY_CURRENT_USER with the two values that a device has there.
void MakeKey(const std::string &name)
{
    CRegKey key;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, (kTestKey + ("\\" + name)).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, key.Receive(), nullptr),
              ERROR_SUCCESS);
    for (const char *value : {"DeviceInfo", "PortName"}) {
        RegSetValueExA(key.Get(), value, 0, REG_SZ, reinterpret_cast<const BYTE *>("x"), 2);
    }
}

Lines ValuesOf(const std::string &name)
{
    CRegKey key;
    RegOpenKeyExA(HKEY_CURRENT_USER, (kTestKey + ("\\" + name)).c_str(), 0, KEY_READ, key.Receive());
    Lines values;
    for (const char *value : {"DeviceInfo", "PortName"}) {
        if (RegQueryValueExA(key.Get(), value, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
            values.push_back(value);
        }
    }
    RegDeleteKeyA(HKEY_CURRENT_USER, (kTestKey + ("\\" + name)).c_str());
    RegDeleteKeyA(HKEY_CURRENT_USER, kTestKey);
    return values;
}

TEST_F(DeviceWalk, DeviceInfoGoesFromTheKeysOfLiveAndRememberedNodes)
{
    for (const char *name : {"Live", "Remembered", "Other", "Hid"}) {
        MakeKey(name);
    }
    const std::string key = std::string(" HKCU\\") + kTestKey;
    Tree("USB usb\\vid_7a1c&pid_0110\\1 live" + key +
         "\\Live\n"
         "USB USB\\VID_7A1C&PID_0110\\2 remembered" +
         key +
         "\\Remembered\n"
         "USB USB\\VID_7A1C&PID_0110\\3 live\n"
         "USB USB\\VID_7A1C&PID_0110\\4 live" +
         key +
         "\\Missing\n"
         "USB USB\\VID_046D&PID_0001\\5 live" +
         key +
         "\\Other\n"
         "HID HID\\VID_7A1C&PID_0110\\6 live" +
         key + "\\Hid\n");
    RemoveDeviceInfoValue("USB", "VID_7A1C");
    EXPECT_EQ(Log(), (Lines{"list USB all", "open key of usb\\vid_7a1c&pid_0110\\1",
                            "open key of USB\\VID_7A1C&PID_0110\\2", "open key of USB\\VID_7A1C&PID_0110\\3 fails",
                            "open key of USB\\VID_7A1C&PID_0110\\4 fails", "close"}));
    EXPECT_EQ(mTrace.Take().size(), 5u);
    EXPECT_EQ(ValuesOf("Live"), Lines{"PortName"});
    EXPECT_EQ(ValuesOf("Remembered"), Lines{"PortName"});
    EXPECT_EQ(ValuesOf("Other"), (Lines{"DeviceInfo", "PortName"}));
    EXPECT_EQ(ValuesOf("Hid"), (Lines{"DeviceInfo", "PortName"}));
}

TEST_F(DeviceWalk, EmptyFragmentClearsNothing)
{
    Tree("USB USB\\VID_7A1C&PID_0110\\1 live\n");
    RemoveDeviceInfoValue("USB", "");
    EXPECT_EQ(Log(), Lines());
    EXPECT_EQ(mTrace.Take(), Lines());
}

} // namespace
