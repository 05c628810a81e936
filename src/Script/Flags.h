// The script's own memory: numbers by name.
#pragma once

#include <cstdint>
#include <map>
#include <string>

struct Flags {
    std::map<std::string, int32_t> mFlags;

    // Stores a value; an empty name does nothing.
    void SetFlag(const std::string &name, int32_t value);

    // The value; 0 for a flag that was never set.
    int32_t GetFlag(const std::string &name) const;

    // Whether a flag has the one value that has a meaning to the program.
    bool IsSet(const char *name) const { return GetFlag(name) == 1; }

    // Takes the lines of a section, each with a NUL behind it: NAME=value; a line without a value sets 0.
    void TakeStaticFlags(const std::string &section);
};

// What decides about the services to install, besides the flags.
struct ServiceFacts {
    uint32_t mDevicePresence = 0; // flags of all devices found
    uint32_t mDriverKind = 0;     // of the package, see PackageKind.h
    int32_t mOSType = 0;
};

// Whether the interface for touch applications is wanted; the services of the pen and of touch; whether there is a pen.
bool NeedMTAPI(const Flags &flags, const ServiceFacts &facts);
bool PenService(const Flags &flags, const ServiceFacts &facts);
bool TouchService(const Flags &flags, const ServiceFacts &facts);
bool PenPresent(const Flags &flags, const ServiceFacts &facts);
