// The operating system as one number, the OS type, which scripts and conditions test.
#pragma once

#include <cstdint>
#include <string>

constexpr int32_t kOSTypeXP = 20;
constexpr int32_t kOSTypeXPTabletPC = 21;
constexpr int32_t kOSTypeVista = 30;
constexpr int32_t kOSTypeWin7 = 40;
constexpr int32_t kOSTypeWin7HomeBasic = 50;
constexpr int32_t kOSTypeWin7Starter = 51;
constexpr int32_t kOSTypeWin8 = 60;
constexpr int32_t kOSTypeWin81 = 61;
constexpr int32_t kOSTypeUnset = 2000;
constexpr int32_t kOSTypeUnknown = -1;

// Windows XP in one of its kinds; Windows 8 or 8.1.
constexpr bool IsOSTypeXP(int32_t type)
{
    return type == kOSTypeXP || type == kOSTypeXPTabletPC;
}
constexpr bool IsOSTypeWin8(int32_t type)
{
    return type == kOSTypeWin8 || type == kOSTypeWin81;
}

// Vista and the successors that are known: Ink is part of the system there, a process can ask for more rights, and the
// Control Panel reads tasks files.
constexpr bool IsVistaOrLaterPlatform(int32_t type)
{
    return type == kOSTypeVista || type == kOSTypeWin7 || type == kOSTypeWin7HomeBasic || type == kOSTypeWin7Starter ||
           IsOSTypeWin8(type);
}

class CSystemState {
public:
    // The OS type of the process; -1, with an assertion, while it has not been determined.
    static int32_t GetOSType();

    // Name of the OS type, "Unknown" for a number without one.
    static std::string GetOSTypeName();

    // The OS type of a name as GetOSTypeName() gives it, letter for letter; -1 for any other text.
    static int32_t OSTypeFromName(const std::string &name);

    // Sets the OS type by hand, for diagnosis.
    static void SetFakeOSType(int32_t type);

protected:
    static int32_t mOSType;
};
