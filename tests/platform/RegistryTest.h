// What the platform tests of the registry share: a key of their own in both views, and the trace.
#pragma once

#include "../system/Machine.h"
#include "../system/Registry.h"
#include "Common/CSystemState.h"
#include "Actions/RegAccess.h"
#include "TraceCapture.h"

#include <gtest/gtest.h>

using Records = std::vector<std::string>;

const std::string kBase = "Software\\TAVIX\\Tests\\Registry"; // below HKEY_LOCAL_MACHINE

// A location as the primitives hand it on, without a leading back-slash, or as scripts give it, with one.
inline RegLocation Plain(const std::string &path)
{
    RegLocation location;
    location.mRootKey = kRootLocalMachine;
    location.mPath = path;
    return location;
}

inline RegLocation At(const std::string &below = "")
{
    return Plain("\\" + kBase + (below.empty() ? "" : "\\" + below));
}

class RegistryTest : public ::testing::Test {
protected:
    RegistryTest() : mSnapshot(HKEY_LOCAL_MACHINE, "Software\\TAVIX\\Tests"), mFormerOSType(OSTypeAccess::Type())
    {
        OSTypeAccess::Type() = kOSTypeWin7;
        CreateKey(HKEY_LOCAL_MACHINE, kBase, EView32);
        CreateKey(HKEY_LOCAL_MACHINE, kBase, EView64);
    }

    ~RegistryTest() override
    {
        while (PopRegLocation() == 0) {
        }
        SetRegView(0);
        OSTypeAccess::Type() = mFormerOSType;
    }

    std::optional<RegData> Value(const std::string &name, EView view = EProcessView) const
    {
        return ReadValue(HKEY_LOCAL_MACHINE, kBase, name, view);
    }

    CTraceCapture mTrace;

private:
    struct OSTypeAccess : CSystemState {
        static int32_t &Type() { return mOSType; }
    };
    RegistrySnapshot mSnapshot;
    int32_t mFormerOSType;
};
