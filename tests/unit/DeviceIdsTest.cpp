#include "Devices/DeviceIds.h"

#include <algorithm>
#include <set>

#include "Common/StringUtilities.h"
#include "Tables.h"

namespace {

// The ids that rows make on one kind of platform, with blanks between.
std::string IdsOf(const std::vector<DeviceRow> &rows, bool modern)
{
    std::string ids;
    for (const SupportedDevice &device : SupportedDevicesFrom(rows.data(), rows.size(), modern)) {
        EXPECT_TRUE(!device.mFound && (device.mFlags == rows[0].mFlags || rows.size() > 1));
        ids += (ids.empty() ? "" : " ") + device.mId;
    }
    return ids;
}

TEST(DeviceIds, FormFollowsTheFlagsOfTheRowAndThePlatform)
{
    ExpectTable("device-ids", [](const std::string &row) {
        unsigned vendor = 0, product = 0, flags = 0;
        char text[64];
        const int fields = sscanf(row.c_str(), "%x %x %x %63s", &vendor, &product, &flags, text);
        const std::vector<DeviceRow> rows = {{static_cast<uint16_t>(product), static_cast<uint16_t>(vendor),
                                              static_cast<uint16_t>(flags), fields == 4 ? text : nullptr}};
        return IdsOf(rows, false) + "," + IdsOf(rows, true);
    });
    EXPECT_EQ(IdsOf({{9, 1, 0, nullptr}, {0, 0, 0x40, "Z/A"}, {1, 1, 0x400, nullptr}, {1, 1, 0, nullptr}}, true),
              "VID_0001&PID_0009 Z A VID_0001&PID_0001"); // the order of the rows
}

TEST(DeviceIds, InstanceIdsMatchInAnyCaseOnceConverted)
{
    const std::string instance = UpperAscii("usb\\vid_7a1c&pid_00ab\\6&2e1\xe4z&0");
    EXPECT_EQ(instance, "USB\\VID_7A1C&PID_00AB\\6&2E1\xe4Z&0");
    EXPECT_TRUE(Contains(instance, "VID_7A1C&PID_00AB") && Contains(instance, ""));
    EXPECT_FALSE(Contains(instance, "vid_7a1c") || Contains("", "VID_7A1C"));
}

TEST(DeviceIds, CompanionFormsAndProductName)
{
    EXPECT_EQ(HidInstanceId("VID_7A1C&PID_00AB"), "HID\\VID_7A1C&PID_00AB&Col01");
    EXPECT_EQ(UsbInstanceId("VID_7A1C&PID_00AB&MI_00"), "USB\\VID_7A1C&PID_00AB&MI_00");
    EXPECT_EQ(UsbInstanceId("TVX0001"), "ACPI\\TVX0001");
    EXPECT_EQ(UsbInstanceId("pid_1"), "ACPI\\pid_1");
    EXPECT_EQ(ProductNameOf("VID_7A1C&PID_00AB&MI_00"), "VID_7A1C_PID_00AB_MI_00");
}

TEST(DeviceTable, RowsAreSoundAndTellTheFamiliesApart)
{
    const DeviceRow &closing = gDeviceTable[kDeviceRowCount - 1];
    EXPECT_TRUE(closing.mProductId == 0xFFFF && closing.mVendorId == 0xFFFF && closing.mFlags == 0);
    std::set<uint16_t> products;
    uint32_t all = 0;
    for (const DeviceRow *row = gDeviceTable; row != &closing; ++row) {
        EXPECT_TRUE(row->mVendorId == 0x7A1C && row->mFlags != 0 && row->mIdText == nullptr) << row->mProductId;
        EXPECT_TRUE(products.insert(row->mProductId).second) << row->mProductId;
        all |= row->mFlags;
    }
    EXPECT_EQ(products.size(), 41u);
    EXPECT_EQ(all, 0x1Fu);
    const std::set<uint16_t> quillo(std::begin(gQuilloProductIds), std::end(gQuilloProductIds));
    EXPECT_EQ(quillo.size(), 13u);
    EXPECT_TRUE(std::includes(products.begin(), products.end(), quillo.begin(), quillo.end()));

    // no id is part of another
    const auto devices = SupportedDevicesFrom(gDeviceTable, kDeviceRowCount, true);
    EXPECT_EQ(devices.size(), 42u);
    for (const SupportedDevice &one : devices) {
        for (const SupportedDevice &other : devices) {
            EXPECT_EQ(Contains(one.mId, other.mId), &one == &other) << one.mId << " " << other.mId;
        }
    }
}

} // namespace
