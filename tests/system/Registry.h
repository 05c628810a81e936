// The registry as tests set it up and look at it, in both views of a 64-bit Windows.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

enum EView : REGSAM {
    EProcessView = 0, // what a 32-bit program sees
    EView32 = KEY_WOW64_32KEY,
    EView64 = KEY_WOW64_64KEY,
};

struct RegData {
    DWORD mType;
    std::string mBytes; // as stored, NULs included
    bool operator==(const RegData &other) const { return mType == other.mType && mBytes == other.mBytes; }
};

bool KeyExists(HKEY root, const std::string &path, EView view = EProcessView);
bool CreateKey(HKEY root, const std::string &path, EView view = EProcessView);
void RemoveKey(HKEY root, const std::string &path, EView view = EProcessView); // with all below it

std::optional<RegData> ReadValue(HKEY root, const std::string &path, const std::string &name,
                                 EView view = EProcessView);
bool WriteValue(HKEY root, const std::string &path, const std::string &name, const RegData &data,
                EView view = EProcessView);
void RemoveValue(HKEY root, const std::string &path, const std::string &name, EView view = EProcessView);

// A text value without its NUL, "<none>" when it is missing; texts and numbers for writing.
std::string ReadRegText(HKEY root, const std::string &path, const std::string &name, EView view = EProcessView);
RegData RegText(const std::string &text, DWORD type = REG_SZ);
RegData RegNumber(DWORD number);

// A key with everything in it as it was when the object was made; the end of the object restores it in both
// views. Permissions are not part of it, except that a key which existed is never removed itself.
class RegistrySnapshot {
public:
    RegistrySnapshot(HKEY root, const std::string &path);
    ~RegistrySnapshot();
    RegistrySnapshot(const RegistrySnapshot &) = delete;
    RegistrySnapshot &operator=(const RegistrySnapshot &) = delete;

private:
    std::vector<std::function<void()>> mRestores; // in each view
};

// The settings of the installer. They begin empty, whatever the machine has, and go back to what they were.
class Settings {
public:
    Settings() : mFormer(HKEY_LOCAL_MACHINE, kKey) { RemoveKey(HKEY_LOCAL_MACHINE, kKey); }
    bool Data(const std::string &name, const RegData &data) { return WriteValue(HKEY_LOCAL_MACHINE, kKey, name, data); }
    bool Number(const std::string &name, DWORD number) { return Data(name, RegNumber(number)); }

private:
    static constexpr char kKey[] = "Software\\TAVIX\\Installer";
    RegistrySnapshot mFormer;
};
