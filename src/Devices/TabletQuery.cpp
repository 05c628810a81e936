#include "Devices/TabletQuery.h"

#include <windows.h>

#include <string>
#include <tuple>

#include "Common/Handles.h"
#include "Devices/TabletSize.h"
#include "Registry/RegAccess.h"

namespace {

constexpr char kPortKey[] = "\\SOFTWARE\\TAVIX\\ISDPort";
constexpr char kPrefsKey[] = "\\SYSTEM\\CURRENTCONTROLSET\\SERVICES\\VISDPen\\Prefs";

constexpr DWORD kPauseMilliseconds = 500;
constexpr DWORD kLongestWaitMilliseconds = 5000;

// Back-slashes of the value are escapes, as in all settings.
std::string PortName()
{
    const RegLocation location = {kRootLocalMachine, kPortKey, std::string()};
    return ReadRegStringAt(location, ERegViewProcess, "ISDPortName", std::string(), false);
}

void SetLine(HANDLE port)
{
    DCB line = {};
    line.DCBlength = sizeof line;
    GetCommState(port, &line);
    line.BaudRate = CBR_19200;
    line.ByteSize = 8;
    line.StopBits = ONESTOPBIT;
    line.fDtrControl = DTR_CONTROL_ENABLE;
    line.fRtsControl = RTS_CONTROL_ENABLE;
    SetCommState(port, &line);
}

// A port on which nobody has set a time limit would wait for a silent tablet for ever, and the run with it. Limits that
// are set stay.
void LimitWaits(HANDLE port)
{
    COMMTIMEOUTS limits = {};
    GetCommTimeouts(port, &limits);
    if (limits.ReadTotalTimeoutConstant == 0 && limits.ReadTotalTimeoutMultiplier == 0 &&
        limits.ReadIntervalTimeout != MAXDWORD) {
        limits.ReadTotalTimeoutConstant = kLongestWaitMilliseconds;
    }
    if (limits.WriteTotalTimeoutConstant == 0 && limits.WriteTotalTimeoutMultiplier == 0) {
        limits.WriteTotalTimeoutConstant = kLongestWaitMilliseconds;
    }
    SetCommTimeouts(port, &limits);
}

void WriteByte(HANDLE port, char byte)
{
    DWORD written = 0;
    WriteFile(port, &byte, 1, &written, nullptr);
}

// None of the calls on the port is checked: a tablet that does not understand them does not answer either.
TabletReply AskTablet(HANDLE port)
{
    SetLine(port);
    LimitWaits(port);
    WriteByte(port, '0');
    Sleep(kPauseMilliseconds);
    WriteByte(port, '*');
    TabletReply reply = {};
    DWORD read = 0;
    ReadFile(port, reply.data(), static_cast<DWORD>(reply.size()), &read, nullptr);
    return reply;
}

} // namespace

void QueryISDTabletSize()
{
    CHandle port(CreateFileA(PortName().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                             nullptr, OPEN_EXISTING, 0, nullptr));
    if (!port) {
        return;
    }
    const TabletSize size = DecodeTabletSize(AskTablet(port.Get()));
    port.Reset();
    const RegLocation prefs = {kRootLocalMachine, kPrefsKey, std::string()};
    std::ignore = AtRegLocation(prefs, ERegViewProcess, [&size] {
        WriteRegDword(std::string(), "MaxX", size.mMaxX);
        return WriteRegDword(std::string(), "MaxY", size.mMaxY);
    });
}
