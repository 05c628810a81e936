// The walks over the device tree, on the double of that tree; see tests/doubles/devices/README.md.
#include "Devices/DeviceWalk.h"

#include <windows.h>

#include <regex>

#include "Common/CWinSystemState.h"

#include <gtest/gtest.h>

#include "../system/Registry.h"
#include "Common/Handles.h"
#include "Common/TraceFile.h"
#include "Devices/DeviceTable.h"
#include "ScratchFolder.h"
#include "TraceCapture.h"

namespace {

class DeviceWalk : public testing::Test {
protected:
    DeviceWalk()
    {
        CWinSystemState::DetermineOSType(false);
        BuildSupportedDevices(mDevices);
        GetCurrentDirectoryA(sizeof(mFormerFolder), mFormerFolder);
        SetCurrentDirectoryA(mFolder.Path("").c_str());
    }

    ~DeviceWalk() override
    {
        SetCurrentDirectoryA(mFormerFolder);
        SetEnvironmentVariableA("TAVIX_DEVICE_TREE", nullptr);
        SetEnvironmentVariableA("TAVIX_DEVICE_LOG", nullptr);
    }

    void SetUp() override
    {
        if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) {
            GTEST_SKIP() << "the device tree of a real Windows stays as it is";
        }
        // The double keeps the system's own library under this name.
        ASSERT_TRUE(CLibrary(LoadLibraryA("tavix_setupapi_real.dll"))) << "the double of the tree is not installed";
    }

    // The double reads a tree once for each name.
    void Tree(const std::string &lines)
    {
        const std::string name = "tree" + std::to_string(++mTrees);
        SetEnvironmentVariableA("TAVIX_DEVICE_TREE", mFolder.Write(name, lines).c_str());
        SetEnvironmentVariableA("TAVIX_DEVICE_LOG", mFolder.Path(name + ".log").c_str());
        mCalls = mFolder.Path(name + ".log");
        mTrace.Take();
    }

    // The calls of the library that the double wrote down, a line each.
    std::string Calls() const { return std::regex_replace(ReadBytes(mCalls), std::regex("\r"), ""); }

    // The records since the tree was made, a line each, without what they all begin with. Assertions lose their place.
    std::string Records()
    {
        std::string records;
        for (const std::string &record : mTrace.Take()) {
            records += std::regex_replace(record, std::regex("^EnumerateSupportedDevices: | in .*"), "") + "\n";
        }
        return records;
    }

    std::string Found() const
    {
        std::string ids;
        for (const SupportedDevice &device : mDevices.mDeviceList) {
            ids += device.mFound ? device.mId + " " : "";
        }
        return ids;
    }

    CScratchFolder mFolder;
    DevicesFound mDevices;
    CTraceCapture mTrace;
    std::string mCalls;
    int mTrees = 0;
    char mFormerFolder[MAX_PATH + 1] = "";
};

TEST_F(DeviceWalk, NodesAreMarkedAndRemovedByEnumeratorStateAndId)
{
    const std::string tail(196, 'x'); // behind it an id is longer than any that Windows has, and arrives cut
    const struct {
        const char *mWalk, *mEnumerator;
        bool mPresent, mRemove;
        std::string mTree, mRecords;
        const char *mCalls, *mFound;
        uint32_t mPresence;
    } cases[] = {
        {"of attached devices, in any case", "USB", true, false,
         "USB usb\\duo\\1 live\nUSB USB\\PEN\\2 remembered\nUSB USB\\MOUSE\\3 live\nHID HID\\PEN&COL01\\4 live\n"
         "USB USB\\PEN\\5 going\n",
         "Checking device usb\\duo\\1\nDUO found\nChecking device USB\\MOUSE\\3\n", "list USB present\nclose\n", "DUO ",
         3},
        {"of remembered devices, which marks nothing", "USB", false, true,
         "USB USB\\PEN\\live live\nUSB usb\\pen\\gone remembered\nUSB USB\\MOUSE\\gone remembered\n",
         "Checking device usb\\pen\\gone\nRemoving USB\\PEN\\GONE\nChecking device USB\\MOUSE\\gone\n",
         "list USB all\nremove usb\\pen\\gone\nclose\n", "", 0},
        {"where every match of a node removes it again, except on I2C", "HID", true, true,
         "HID HID\\PEN&MI_00\\1 live\nHID HID\\TVX0001\\2 live\n",
         "Checking device HID\\PEN&MI_00\\1\nPEN found\nRemoving HID\\PEN&MI_00\\1\nPEN&MI_00 found\n"
         "Removing HID\\PEN&MI_00\\1\nChecking device HID\\TVX0001\\2\nTVX00 found\n"
         "NOT removing I2C device HID\\TVX0001\\2\n",
         "list HID present\nremove HID\\PEN&MI_00\\1\nremove again HID\\PEN&MI_00\\1\nclose\n", "PEN TVX00 PEN&MI_00 ",
         0x146},
        {"whose list cannot be made", "USB", true, true, "fail-list USB\nUSB USB\\PEN\\1 live\n", "",
         "list USB present fails\n", "", 0},
        {"that goes on behind an unreadable id", "USB", true, false,
         "USB USB\\PEN\\1 fail-id\nUSB PEN\\" + tail + "yz live\nUSB USB\\DUO\\3 live\n",
         "Assert:(cmret == CR_SUCCESS)\nChecking device \nAssert:(cmret == CR_SUCCESS)\nChecking device PEN\\" + tail +
             "\nPEN found\nChecking device USB\\DUO\\3\nDUO found\n",
         "list USB present\nclose\n", "PEN DUO ", 3},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(std::string("walk ") + test.mWalk);
        mDevices.mDeviceList = {{"PEN", kDevicePen, false},
                                {"DUO", kDevicePen | kDeviceTouch, false},
                                {"TVX00", kDeviceI2C | kDeviceDisplayPen, false},
                                {"PEN&MI_00", kDeviceBulkTouch, false}};
        mDevices.mDevicePresence = 0;
        Tree(test.mTree);
        EXPECT_EQ(EnumerateSupportedDevices(mDevices, test.mEnumerator, test.mPresent, test.mRemove),
                  test.mTree.compare(0, 4, "fail") == 0 ? DWORD{ERROR_INVALID_DATA} : 1u);
        EXPECT_EQ(Records(), test.mRecords);
        EXPECT_EQ(Calls(), test.mCalls);
        EXPECT_EQ(Found(), test.mFound);
        EXPECT_EQ(mDevices.mDevicePresence, test.mPresence);
    }
}

TEST_F(DeviceWalk, MaskGathersOverWalksAndOutlivesTheList)
{
    Tree("USB USB\\VID_7A1C&PID_011C\\1 live\nHID HID\\VID_7A1C&PID_024E&COL01\\1 live\n");
    EnumerateSupportedDevices(mDevices, "USB", true, false);
    EXPECT_EQ(mDevices.mDevicePresence, 3u);
    EXPECT_TRUE(mDevices.IsProductAttached("VID_") && mDevices.IsProductAttached("011C"));
    EXPECT_FALSE(mDevices.IsProductAttached("011c") || mDevices.IsProductAttached("024E"));
    EnumerateSupportedDevices(mDevices, "HID", true, false);
    EXPECT_EQ(mDevices.mDevicePresence, 0x13u);
    EXPECT_EQ(Found(), "VID_7A1C&PID_011C VID_7A1C&PID_024E ");
    BuildSupportedDevices(mDevices);
    EXPECT_EQ(Found(), "");
    EXPECT_EQ(mDevices.mDevicePresence, 0x13u);
    EXPECT_FALSE(mDevices.IsProductAttached(""));
}

TEST_F(DeviceWalk, DeviceInfoGoesFromTheKeysOfLiveAndRememberedNodes)
{
    const std::string base = "Software\\TavixDeviceWalkTest";
    const RegistrySnapshot former(HKEY_CURRENT_USER, base);
    for (const char *key : {"Live", "Remembered", "Other", "Hid"}) {
        for (const char *value : {"DeviceInfo", "PortName"}) {
            EXPECT_TRUE(WriteValue(HKEY_CURRENT_USER, base + "\\" + key, value, RegText("x")));
        }
    }
    const std::string key = " HKCU\\" + base + "\\";
    Tree("USB usb\\pen\\1 live" + key + "Live\nUSB USB\\PEN\\2 remembered" + key +
         "Remembered\nUSB USB\\PEN\\3 live\n" + "USB USB\\PEN\\4 live" + key + "Missing\nUSB USB\\MOUSE\\5 live" + key +
         "Other\nHID HID\\PEN\\6 live" + key + "Hid\n");
    RemoveDeviceInfoValue("USB", "");
    EXPECT_EQ(Calls(), "");
    RemoveDeviceInfoValue("USB", "PEN");
    EXPECT_EQ(Calls(), "list USB all\nopen key of usb\\pen\\1\nopen key of USB\\PEN\\2\nopen key of USB\\PEN\\3 fails\n"
                       "open key of USB\\PEN\\4 fails\nclose\n");
    std::string left;
    for (const char *name : {"Live", "Remembered", "Other", "Hid"}) {
        for (const char *value : {"DeviceInfo", "PortName"}) {
            left +=
                ReadValue(HKEY_CURRENT_USER, base + "\\" + name, value) ? name + ("." + std::string(value)) + " " : "";
        }
    }
    EXPECT_EQ(left, "Live.PortName Remembered.PortName Other.DeviceInfo Other.PortName Hid.DeviceInfo Hid.PortName ");
}

} // namespace
