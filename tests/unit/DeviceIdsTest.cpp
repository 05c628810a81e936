#include "Devices/DeviceIds.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using Ids = std::vector<std::string>;

Ids IdsOf(const DeviceRow &row, bool modern)
{
    Ids ids;
    for (const SupportedDevice &device : SupportedDevicesFrom(&row, 1, modern)) {
        EXPECT_EQ(device.mFlags, row.mFlags);
        EXPECT_FALSE(device.mFound);
        ids.push_back(device.mId);
    }
    return ids;
}

TEST(DeviceIds, FormFollowsTheFlagsOfTheRowAndThePlatform)
{
    struct Case {
        DeviceRow mRow;
        Ids mOn7;
        Ids mOn8;
    };
    const Case cases[] = {
        {{0x00AB, 0x7A1C, 0x3, nullptr}, {"VID_7A1C&PID_00AB"}, {"VID_7A1C&PID_00AB"}},
        {{0xFFFF, 0xFFFF, 0, nullptr}, {"VID_FFFF&PID_FFFF"}, {"VID_FFFF&PID_FFFF"}},
        {{0x0, 0x1, 0x2018, nullptr}, {"VID_0001&PID_0000"}, {"VID_0001&PID_0000"}},
        // rows for one kind of platform
        {{0x1, 0x7A1C, 0x201, nullptr}, {}, {"VID_7A1C&PID_0001"}},
        {{0x1, 0x7A1C, 0x401, nullptr}, {"VID_7A1C&PID_0001"}, {}},
        {{0x1, 0x7A1C, 0x600, nullptr}, {}, {}},
        // interfaces
        {{0x1, 0x7A1C, 0x100, nullptr}, {"VID_7A1C&PID_0001&MI_00"}, {"VID_7A1C&PID_0001&MI_00"}},
        {{0x1, 0x7A1C, 0x800, nullptr}, {"VID_7A1C&PID_0001"}, {"VID_7A1C&PID_0001&MI_00"}},
        {{0x1, 0x7A1C, 0x1000, nullptr}, {"VID_7A1C&PID_0001"}, {"VID_7A1C&PID_0001&MI_01"}},
        {{0x1, 0x7A1C, 0x1800, nullptr}, {"VID_7A1C&PID_0001"}, {"VID_7A1C&PID_0001&MI_01"}},
        {{0x1, 0x7A1C, 0x900, nullptr}, {"VID_7A1C&PID_0001&MI_00"}, {"VID_7A1C&PID_0001&MI_00&MI_00"}},
        {{0x1, 0x7A1C, 0x1100, nullptr}, {"VID_7A1C&PID_0001&MI_00"}, {"VID_7A1C&PID_0001&MI_01&MI_00"}},
        // id texts: neither the ids nor the interface flags count, the platform flags do
        {{0x1, 0x7A1C, 0x20, "TVX0001"}, {"TVX0001"}, {"TVX0001"}},
        {{0x1, 0x7A1C, 0x45, "TVX0001/TVX0002/ACPI\\TVX3"},
         {"TVX0001", "TVX0002", "ACPI\\TVX3"},
         {"TVX0001", "TVX0002", "ACPI\\TVX3"}},
        {{0x1, 0x7A1C, 0x1960, "A/B"}, {"A", "B"}, {"A", "B"}},
        {{0x1, 0x7A1C, 0x240, "A/B"}, {}, {"A", "B"}},
        {{0x1, 0x7A1C, 0x420, "A/B"}, {"A", "B"}, {}},
    };
    for (const Case &test : cases) {
        SCOPED_TRACE(testing::Message() << "flags 0x" << std::hex << test.mRow.mFlags);
        EXPECT_EQ(IdsOf(test.mRow, false), test.mOn7);
        EXPECT_EQ(IdsOf(test.mRow, true), test.mOn8);
    }
}

TEST(DeviceIds, ListKeepsTheOrderOfTheRows)
{
    const DeviceRow rows[] = {
        {0x9, 0x7A1C, 0, nullptr}, {0, 0, 0x40, "Z/A"}, {0x1, 0x7A1C, 0x400, nullptr}, {0x1, 0x7A1C, 0, nullptr}};
    Ids ids;
    for (const SupportedDevice &device : SupportedDevicesFrom(rows, 4, true)) {
        ids.push_back(device.mId);
    }
    EXPECT_EQ(ids, (Ids{"VID_7A1C&PID_0009", "Z", "A", "VID_7A1C&PID_0001"}));
}

TEST(DeviceIds, InstanceIdsMatchInAnyCaseOnceConverted)
{
    const std::string instance = UpperCaseId("usb\\vid_7a1c&pid_00ab&mi_00\\6&2e1\xe4&0&0001");
    EXPECT_EQ(instance, "USB\\VID_7A1C&PID_00AB&MI_00\\6&2E1\xe4&0&0001");
    EXPECT_TRUE(Contains(instance, "VID_7A1C&PID_00AB"));
    EXPECT_TRUE(Contains(instance, "VID_7A1C&PID_00AB&MI_00"));
    EXPECT_TRUE(Contains(instance, ""));
    EXPECT_FALSE(Contains(instance, "vid_7a1c"));
    EXPECT_FALSE(Contains("", "VID_7A1C"));
}

TEST(DeviceIds, CompanionFormsAndProductName)
{
    EXPECT_EQ(HidInstanceId("VID_7A1C&PID_00AB"), "HID\\VID_7A1C&PID_00AB&Col01");
    EXPECT_EQ(HidInstanceId("TVX0001"), "HID\\TVX0001&Col01");
    EXPECT_EQ(UsbInstanceId("VID_7A1C&PID_00AB&MI_00"), "USB\\VID_7A1C&PID_00AB&MI_00");
    EXPECT_EQ(UsbInstanceId("TVX0001"), "ACPI\\TVX0001");
    EXPECT_EQ(UsbInstanceId("pid_1"), "ACPI\\pid_1");
    EXPECT_EQ(ProductNameOf("VID_7A1C&PID_00AB&MI_00"), "VID_7A1C_PID_00AB_MI_00");
}

TEST(DeviceTable, RowsAreSoundAndTellTheFamiliesApart)
{
    std::set<uint16_t> products;
    uint32_t all = 0;
    for (const DeviceRow &row : gDeviceTable) {
        all |= row.mFlags;
        if (&row == &gDeviceTable[kDeviceRowCount - 1]) {
            EXPECT_EQ(row.mProductId, 0xFFFF);
            EXPECT_EQ(row.mVendorId, 0xFFFF);
            EXPECT_EQ(row.mFlags, 0u);
            continue;
        }
        SCOPED_TRACE(testing::Message() << "product 0x" << std::hex << row.mProductId);
        EXPECT_EQ(row.mVendorId, 0x7A1C);
        EXPECT_TRUE(products.insert(row.mProductId).second);
        EXPECT_EQ((row.mFlags & (kDeviceIdText | kDeviceI2C)) != 0, row.mIdText != nullptr);
        EXPECT_NE(row.mFlags, 0u);
    }
    EXPECT_EQ(all, 0x1Fu);
    EXPECT_EQ(products.size(), 41u);

    std::set<uint16_t> quillo;
    for (const uint16_t product : gQuilloProductIds) {
        EXPECT_EQ(products.count(product), 1u) << product;
        quillo.insert(product);
    }
    EXPECT_EQ(quillo.size(), 13u);
}

TEST(DeviceTable, NoIdIsPartOfAnotherOnAnyPlatform)
{
    for (const bool modern : {false, true}) {
        const auto devices = SupportedDevicesFrom(gDeviceTable, kDeviceRowCount, modern);
        ASSERT_EQ(devices.size(), 42u);
        for (const SupportedDevice &one : devices) {
            for (const SupportedDevice &other : devices) {
                EXPECT_EQ(Contains(one.mId, other.mId), &one == &other) << one.mId << " " << other.mId;
            }
        }
    }
}

} // namespace
