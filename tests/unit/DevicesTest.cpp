// What the commands for devices decide over texts, tables and lists.
#include <strings.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "Common/StringUtilities.h"
#include "Devices/CompanionLine.h"
#include "Devices/DeviceIds.h"
#include "Devices/DeviceProperties.h"
#include "Devices/RouterDrivers.h"
#include "Devices/RouterQuestions.h"
#include "Devices/ServiceGroupList.h"
#include "Devices/TabletSize.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

TEST(CompanionLine, FormGoesByTheNameAndOnlyAFileHereGetsAWholePath)
{
    EXPECT_TRUE(IsCompanionProgram(".\\c.exe") && IsCompanionProgram("C:\\a.exe.d\\c.dll"));
    EXPECT_FALSE(IsCompanionProgram("") || IsCompanionProgram("C.EXE") || IsCompanionProgram("exe.dll"));
    EXPECT_EQ(InfFullPath(".\\b.inf", "C:\\p"), "C:\\p\\b.inf");
    for (const char *const inf : {"..\\b.inf", ".b.inf", "b.inf", "./b.inf", "C:\\.\\b.inf", ".", ""}) {
        EXPECT_EQ(InfFullPath(inf, "C:\\p"), inf);
    }
}

TEST(TabletSize, NumbersComeInThreePieces)
{
    ExpectTable("tablet-size", [](const std::string &row) {
        TabletReply reply = {};
        std::istringstream bytes(row);
        unsigned byte = 0;
        for (size_t at = 0; bytes >> std::hex >> byte; ++at) {
            reply.at(at) = static_cast<uint8_t>(byte);
        }
        const TabletSize size = DecodeTabletSize(reply);
        return std::to_string(size.mMaxX) + " " + std::to_string(size.mMaxY);
    });
}

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
    EXPECT_EQ(UsbInstanceId("VID_7A1C&PID_00AB&MI_00"), "USB\\VID_7A1C&PID_00AB&MI_00");
    EXPECT_EQ(UsbInstanceId("TVX0001") + UsbInstanceId("pid_1"), "ACPI\\TVX0001ACPI\\pid_1");
    EXPECT_EQ(ProductNameOf("VID_7A1C&PID_00AB&MI_00"), "VID_7A1C_PID_00AB_MI_00");
}

TEST(DeviceTable, RowsTellTheFamiliesApartAndNoIdIsPartOfAnother)
{
    std::set<uint16_t> products;
    for (const DeviceRow *row = gDeviceTable; row != gDeviceTable + kDeviceRowCount - 1; ++row) {
        EXPECT_TRUE(row->mVendorId == 0x7A1C && row->mFlags > 0 && row->mFlags <= 0x1F && row->mIdText == nullptr);
        products.insert(row->mProductId);
    }
    EXPECT_EQ(products.size(), 41u);
    const std::set<uint16_t> quillo(std::begin(gQuilloProductIds), std::end(gQuilloProductIds));
    EXPECT_EQ(quillo.size(), 13u);
    EXPECT_TRUE(std::includes(products.begin(), products.end(), quillo.begin(), quillo.end()));
    const auto devices = SupportedDevicesFrom(gDeviceTable, kDeviceRowCount, true);
    EXPECT_EQ(devices.back().mId, "VID_FFFF&PID_FFFF");
    for (const SupportedDevice &one : devices) {
        for (const SupportedDevice &other : devices) {
            EXPECT_EQ(Contains(one.mId, other.mId), &one == &other) << one.mId << " " << other.mId;
        }
    }
}

bool Same(const char *one, const char *other)
{
    return strcasecmp(one, other) == 0;
}

TEST(ServiceGroupList, PenClassComesDirectlyInFrontOfThePointerClass)
{
    ExpectTable("service-groups", [](const std::string &row) {
        std::string list = Exchanged(row, '/', '\0');
        const EGroupListResult result = AddPenClass(list, Same);
        EXPECT_EQ(result == EGroupListExtended, Exchanged(list, '\0', '/') != row);
        return result == EGroupListComplete         ? "complete"
               : result == EGroupListNoPointerClass ? "none"
                                                    : Exchanged(list, '\0', '/');
    });
    // The new list has to stay below 10000 bytes, counted with both zero bytes even where the old one lacked them.
    for (const size_t zeros : {0, 1, 2}) {
        for (const size_t size : {9987, 9988}) {
            std::string list = std::string("Pointer Class") + '\0' + std::string(size - 14, 'x');
            list.append(zeros, '\0');
            EXPECT_EQ(AddPenClass(list, Same), size + 12 < 10000 ? EGroupListExtended : EGroupListTooLong) << zeros;
        }
    }
}

// Writes down the calls and, between quotation marks, the records in front of them. A walk finds one more device.
struct CNotes : CDriverCalls {
    void Walk(const char *enumerator, bool present, bool remove) override
    {
        mDevices[1].mFound = true;
        Note(std::string("walk ") + enumerator + (present ? " present" : "") + (remove ? " remove" : ""));
    }
    void RemoveDeviceInfo(const char *bus, const std::string &id) override { Note(std::string(bus) + " info " + id); }
    void Update(const std::string &device, const std::string &inf) override { Note(device + " gets " + inf); }
    void Remove(const std::string &device) override { Note(device + " loses"); }
    void Run(const std::string &parameters) override { Note("run " + parameters); }
    void Note(const std::string &call)
    {
        for (const std::string &record : TakeTraceRecords()) {
            mNotes += "'" + record + "' ";
        }
        mNotes += call + (call.empty() ? "" : "; ");
    }

    SupportedDevices mDevices = {{"PID_9&MI_00", 0x102, true}, {"PID_2", 2, false},      {"PID_1", 0x1F, true},
                                 {"PID_3", 0x2001, true},      {"PID_4", 0x20001, true}, {"TVX1", 0x44, true},
                                 {"PID_0", 0x100, false},      {"PID_8", 0x500, true},   {"PID_7", 2, false}};
    std::string mNotes;
};

template <typename TCommand>
std::string Notes(TCommand command)
{
    TakeTraceRecords();
    CNotes notes;
    command(notes.mDevices, notes);
    notes.Note("");
    return notes.mNotes;
}

TEST(RouterDrivers, CommandsServeTheFoundDevicesOfTheirKindInListOrder)
{
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { InstallTvxHidRouter(devices, "r", calls); }),
              "'InstallTvxHidRouter: r' walk HID present remove; walk USB remove; USB info VID_7A1C; "
              "USB\\PID_2 gets r; USB\\PID_1 gets r; ACPI\\TVX1 gets r; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { InstallRouterFilter(devices, "f", calls); }),
              "'InstallRouterFilter: f' HID\\PID_1&Col01 gets f; HID\\TVX1&Col01 gets f; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { RemoveTvxHidRouter(devices, calls); }),
              "'RemoveTvxHidRouter' walk HID present remove; walk USB remove; USB\\PID_2 loses; USB\\PID_1 loses; "
              "ACPI\\TVX1 loses; run Rescan; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { InstallBulkTouch(devices, "b", calls); }),
              "'InstallBulkTouch: b' walk HID present; USB\\PID_9&MI_00 gets b; USB\\PID_8 gets b; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { RemoveBulkTouch(devices, calls); }),
              "'RemoveBulkTouch' walk USB remove; USB\\PID_9&MI_00 loses; USB\\PID_8 loses; ");
    for (const int32_t osType : {20, 21, 30, 61}) { // a restart is asked for except on XP
        bool reboot = false;
        EXPECT_EQ(Notes([&](auto &, auto &calls) {
                      SetDeviceProperties({{"A", 0x22100, true}, {"B", 0, false}}, osType, true, "c", calls, reboot);
                  }),
                  osType < 30 ? ""
                              : "run EnableSelectiveSuspend USB\\A; "
                                "'Setting device properties with c\n (EnableSelectiveSuspend)' ");
        EXPECT_EQ(reboot, osType >= 30);
    }
}

TEST(RouterQuestions, RouterGoesWhenNeitherOtherLineNeedsIt)
{
    ExpectTable("router", [](const std::string &row) {
        std::istringstream words(row);
        int32_t line = 0;
        std::map<std::string, std::string> versions;
        words >> line >> versions["Pen"] >> versions["Tavix"] >> versions["ISD"];
        std::string asked;
        const bool should = ShouldUninstallHidRouter(line, [&](const std::string &path) {
            const std::string name = path.substr(19, path.find('\\', 19) - 19);
            EXPECT_EQ(path, "!PROGFILES!\\Tablet\\" + name + "\\" + name + "_Tablet.exe");
            asked += name + " ";
            return RouterProgram{versions[name] != "-", FileVersion(versions[name], false)};
        });
        return asked + (should ? "yes" : "no");
    });
}

} // namespace
