// The facts of the pre-flight decisions, asked of this machine and its script.
#pragma once

#include "Installer/Preflight.h"

class CMachineFacts : public IPreflightFacts {
public:
    explicit CMachineFacts(const CRunState &run) : mRun(run) {}

    uint32_t Setting(const std::string &name, uint32_t defaultValue) override;
    std::string TextSetting(const std::string &name, const std::string &defaultValue) override;
    uint32_t ScriptNumber(const std::string &key, uint32_t defaultValue) override;
    uint32_t OemInk(uint32_t defaultValue) override;
    void RemoveSetting(const std::string &name) override;
    bool PathExists(const std::string &path) override;
    int32_t OSType() override;
    uint32_t UserAdminType() override;
    bool MustRebootBeforeInstall() override;

private:
    const CRunState &mRun;
};

// Whether the files that a group needs are all there: those listed under its name in the section OSSupportedFiles,
// given that the section MAIN knows the name. No run calls this by itself.
bool CheckGroupFiles(const CRunState &run, const std::string &group);
