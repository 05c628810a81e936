// The decisions in front of the first page: group, switches, and the refusals. They ask for each fact when its turn
// comes and change nothing but the run's own state; what follows from them is carried out by the run.
#pragma once

#include <cstdint>
#include <string>

#include "Script/CRunState.h"

// What the decisions ask of settings, script and machine.
class IPreflightFacts {
public:
    virtual ~IPreflightFacts() = default;

    // Settings of the installer, and values of section MAIN of the script.
    virtual uint32_t Setting(const std::string &name, uint32_t defaultValue) = 0;
    virtual std::string TextSetting(const std::string &name, const std::string &defaultValue) = 0;
    virtual uint32_t ScriptNumber(const std::string &key, uint32_t defaultValue) = 0;

    // INK_OVERRIDE of section MAIN with the OEM's data file in the place of the script.
    virtual uint32_t OemInk(uint32_t defaultValue) = 0;

    // Takes a setting away.
    virtual void RemoveSetting(const std::string &name) = 0;

    virtual bool PathExists(const std::string &path) = 0;
    virtual int32_t OSType() = 0;

    // What the user may do, as GetUserAdminType() answers it.
    virtual uint32_t UserAdminType() = 0;

    // Whether an earlier installation stops the run.
    virtual bool MustRebootBeforeInstall() = 0;
};

// What the run has to do besides showing the page of mInstallType.
enum EPreflightAction {
    EPreflightGoOn,
    EPreflightElevate, // start the program anew with more rights and end with its result
};

// Settles mCommand, the switches, mInstallType, and mRebootRequired for an earlier installation in the way.
EPreflightAction TakePreflightDecisions(CRunState &run_I_O, IPreflightFacts &facts);
