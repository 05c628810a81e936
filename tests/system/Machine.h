// The Windows that the tests run on, and what can be changed about it for one run.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "Registry.h"

// An entry of a library that is loaded and not everywhere the same; null when it lacks it.
template <typename TFunction>
TFunction Entry(const char *library, const char *name)
{
    return reinterpret_cast<TFunction>(reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA(library), name)));
}

bool OnWine();

// What the environment gives, empty when it doesn't; see Fixture.h.
std::string EnvironmentText(const char *name);

// A stand-in by its file name in the folder of the doubles.
std::string DoublePath(const std::string &name);

// Runs a program to its end, a minute at most; one of the system below Wine may outlive the call.
bool Execute(std::string line);

// The path as the system below Wine knows it; runs a command of its shell and answers whether that ended well. Empty
// and false where there is no such system.
std::string HostPath(const std::string &path);
bool OnHost(const std::string &command);

// The version of Windows that the installer meets on Wine, by its name there: "win2k", "winxp" (32-bit prefix only),
// "winxp64", "vista", "win7", "win8", "win81", "win10".
class WindowsVersion {
public:
    explicit WindowsVersion(const std::string &name, const std::string &program = "TavixSetup.exe");

private:
    RegistrySnapshot mFormer;
};

// Leaves a test that only Wine can run: the versions and languages of Windows are then settings.
#define SKIP_UNLESS_WINE()                                                                                             \
    do {                                                                                                               \
        if (!OnWine()) {                                                                                               \
            GTEST_SKIP() << "needs a Windows whose version and language can be set";                                   \
        }                                                                                                              \
    } while (false)
