// The Windows that the tests run on, and what can be changed about it for one run.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "Registry.h"

bool OnWine();
bool On64BitWindows();

// What the environment gives, empty when it doesn't; see Fixture.h.
std::string EnvironmentText(const char *name);

// A stand-in by its file name in the folder of the doubles.
std::string DoublePath(const std::string &name);

// The version of Windows that the installer meets, by its name in Wine: "win2k", "winxp" (32-bit prefix only),
// "winxp64", "vista", "win7", "win8", "win81", "win10". A real Windows is what it is, and Changed() is then false.
class WindowsVersion {
public:
    explicit WindowsVersion(const std::string &name, const std::string &program = "TavixSetup.exe");
    ~WindowsVersion();
    WindowsVersion(const WindowsVersion &) = delete;
    WindowsVersion &operator=(const WindowsVersion &) = delete;
    bool Changed() const { return mChanged; }

private:
    std::string mKey;
    std::optional<RegData> mFormer;
    bool mChanged = false;
};

// A named mutex held by this program.
class HeldMutex {
public:
    explicit HeldMutex(const char *name) : mMutex(CreateMutexA(nullptr, FALSE, name)) {}
    ~HeldMutex() { CloseHandle(mMutex); }
    HeldMutex(const HeldMutex &) = delete;
    HeldMutex &operator=(const HeldMutex &) = delete;

private:
    HANDLE mMutex;
};

// Leaves a test that only Wine can run: the versions and languages of Windows are then settings.
#define SKIP_UNLESS_WINE()                                                                                             \
    do {                                                                                                               \
        if (!OnWine()) {                                                                                               \
            GTEST_SKIP() << "needs a Windows whose version and language can be set";                                   \
        }                                                                                                              \
    } while (false)
