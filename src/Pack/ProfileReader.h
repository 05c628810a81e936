// The platform's profile functions, portably: what GetPrivateProfileString, GetPrivateProfileSection and
// GetPrivateProfileInt answer about the same bytes.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Pack/CodePage.h"
#include "Pack/PackageFolder.h"
#include "Pack/ProfileFile.h"
#include "Script/ScriptFiles.h"

// A line of what ReadSection() answers, and where it came from.
struct SectionLine {
    std::string mText; // as ReadSection() has it
    const ProfileLine *mLine = nullptr;
};

class CProfileReader : public IProfileReader {
public:
    // Reads files as a machine with this code page does. The source outlives the reader. Each file is read once.
    explicit CProfileReader(IScriptSource &source, CCodePage codePage = gCodePage,
                            std::string mainScript = ".\\installer.dat");

    bool CanOpen(const std::string &file) override;
    uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                       const std::string &defaultValue, char *buffer_O, uint32_t size) override;
    uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size) override;
    uint32_t ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                        uint32_t defaultValue) override;
    std::string MainScript() override { return mMainScript; }

    // The file behind a path; null when there is none. A path without a folder names a file of the Windows folder to
    // the profile functions, so there is none for it, although CanOpen() may find one.
    const CProfileFile *File(const std::string &file);

    // The lines of a section in a buffer of `size` bytes, cut as ReadSection() cuts them (the last one may be a piece),
    // each with its place. `cut_O` tells whether something is missing.
    std::vector<SectionLine> SectionLines(const std::string &file, const std::string &section, bool *cut_O = nullptr,
                                          uint32_t size = kValueBufferSize);

    // The line that ReadValue() takes a value from; null when there is none.
    const ProfileLine *ValueLine(const std::string &file, const std::string &section, const std::string &key);

private:
    const CProfileFile *Opened(const std::string &file);

    IScriptSource &mSource;
    CCodePage mCodePage;
    std::string mMainScript;
    std::map<std::string, std::optional<CProfileFile>> mFiles;
};
