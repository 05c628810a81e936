#include "Devices/RouterDrivers.h"

#include <map>
#include <sstream>

#include "Devices/DeviceProperties.h"
#include "Devices/RouterQuestions.h"
#include "Tables.h"
#include "TraceRecorder.h"

namespace {

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
        mNotes += call;
        mNotes += "; ";
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
              "USB\\PID_2 gets r; USB\\PID_1 gets r; ACPI\\TVX1 gets r; ; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { InstallRouterFilter(devices, "f", calls); }),
              "'InstallRouterFilter: f' HID\\PID_1&Col01 gets f; HID\\TVX1&Col01 gets f; ; ");
    EXPECT_EQ(Notes([](auto &, auto &calls) { InstallSiLabs("s", calls); }),
              "'InstallSiLabs: s' USB\\VID_10C4&PID_EA60 gets s; ; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { RemoveTvxHidRouter(devices, calls); }),
              "'RemoveTvxHidRouter' walk HID present remove; walk USB remove; USB\\PID_2 loses; USB\\PID_1 loses; "
              "ACPI\\TVX1 loses; run Rescan; ; ");
    EXPECT_EQ(Notes([](auto &, auto &calls) { RemoveSiLabs(calls); }),
              "'RemoveSiLabs' USB\\VID_10C4&PID_EA60 loses; ; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { InstallBulkTouch(devices, "b", calls); }),
              "'InstallBulkTouch: b' walk HID present; USB\\PID_9&MI_00 gets b; USB\\PID_8 gets b; ; ");
    EXPECT_EQ(Notes([](auto &devices, auto &calls) { RemoveBulkTouch(devices, calls); }),
              "'RemoveBulkTouch' walk USB remove; USB\\PID_9&MI_00 loses; USB\\PID_8 loses; ; ");
}

TEST(DeviceProperties, EachFoundDeviceAsksForARestartExceptOnXP)
{
    for (const int32_t osType : {20, 21, 30, 61}) {
        bool reboot = false;
        EXPECT_EQ(Notes([&](auto &, auto &calls) {
                      SetDeviceProperties({{"A", 0x22100, true}, {"B", 0, false}}, osType, true, "c", calls, reboot);
                  }),
                  osType < 30 ? "; "
                              : "run EnableSelectiveSuspend USB\\A; "
                                "'Setting device properties with c\n (EnableSelectiveSuspend)' ; ");
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
