// The script files of a run: the main script, the files that it includes, the file of the dialog's words. A read walks
// them in turn; each of the files is asked anew at each read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Size in bytes of the buffer that one value or one section is read into.
constexpr size_t kValueBufferSize = 10240;

// The platform's reading of one file of sections and values (the private profile functions of Windows).
class IProfileReader {
public:
    virtual ~IProfileReader() = default;

    // Whether the file is there and nobody holds it against readers.
    virtual bool CanOpen(const std::string &file) = 0;

    // A value, the default when the file has none; at most `size` bytes with the NUL behind. Answers the length.
    virtual uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                               const std::string &defaultValue, char *buffer_O, uint32_t size) = 0;

    // The lines of a section with a NUL behind each and one behind the last. Answers the length, size - 2 when the
    // section was cut.
    virtual uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O,
                                 uint32_t size) = 0;

    // A value as a number.
    virtual uint32_t ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                                uint32_t defaultValue) = 0;

    // Path of the main script, as the settings have it.
    virtual std::string MainScript() = 0;
};

class CScriptFiles {
public:
    explicit CScriptFiles(IProfileReader &reader) : mReader(reader) {}
    CScriptFiles(const CScriptFiles &) = delete;
    CScriptFiles &operator=(const CScriptFiles &) = delete;

    // Reads a text. Key given: the value; key empty: the whole section, each line with a NUL behind it. Escapes are
    // processed unless `raw`. The default when no file has it, with the one exception that ScriptFiles.cpp tells.
    std::string ReadString(const std::string &section, const std::string &key, const std::string &defaultValue,
                           bool raw = false);

    // Reads a number, answering the default on every failure.
    uint32_t ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue);

    // The same readers with the dialog data file at the end of the search list for the time of the read.
    std::string ReadLanguageString(const std::string &section, const std::string &key, const std::string &defaultValue);
    uint32_t ReadLanguageInteger(const std::string &section, const std::string &key, uint32_t defaultValue);

    // Makes `name` the script and answers the former path. An empty name or "." changes nothing, but the first call of
    // all locates the script.
    std::string SetConfigFile(const std::string &name);

    // Appends a file to the search list unless the path is empty.
    void AddIncludeFile(const std::string &path);

    // Names the file that language reads search first; empty for none.
    void SetDialogData(const std::string &path) { mDialogDataFile = path; }

    // Forgets the search list.
    void ReleaseSearchList() { mSearchList.clear(); }

private:
    friend class CScriptScope;
    friend class CMainScriptScope;

    void LocateScript();
    void WalkFiles(const std::function<bool(const std::string &)> &visit, const std::function<void()> &skip);
    void ReadValue(const std::string &section, const std::string &key, const std::string &defaultValue,
                   std::vector<char> &buffer_O);
    void ReadSection(const std::string &section, const std::string &defaultValue, std::vector<char> &buffer_O);

    IProfileReader &mReader;
    std::string mConfigFile; // path of the script of the moment; empty until it is located
    std::string mDialogDataFile;
    std::vector<std::string> mSearchList;
};

// Another script for the length of a scope; the former one comes back at its end, also when an exception ends it. An
// empty path or "." leaves the script as it is.
class CScriptScope {
public:
    CScriptScope(CScriptFiles &files, const std::string &path) : mFiles(files), mFormer(files.SetConfigFile(path)) {}
    ~CScriptScope() { mFiles.mConfigFile = mFormer; }
    CScriptScope(const CScriptScope &) = delete;
    CScriptScope &operator=(const CScriptScope &) = delete;

private:
    CScriptFiles &mFiles;
    std::string mFormer;
};

// The main script for the length of a scope, located anew the way it was at the start.
class CMainScriptScope {
public:
    explicit CMainScriptScope(CScriptFiles &files) : mFiles(files), mFormer(files.mConfigFile)
    {
        mFiles.mConfigFile.clear();
    }
    ~CMainScriptScope() { mFiles.mConfigFile = mFormer; }
    CMainScriptScope(const CMainScriptScope &) = delete;
    CMainScriptScope &operator=(const CMainScriptScope &) = delete;

private:
    CScriptFiles &mFiles;
    std::string mFormer;
};
