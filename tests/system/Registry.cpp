#include "Registry.h"

#include <memory>
#include <type_traits>

#include "Machine.h"

namespace {

// A key that closes itself; null when it could not be opened.
using Key = std::shared_ptr<std::remove_pointer_t<HKEY>>;

Key OpenKey(HKEY root, const std::string &path, REGSAM access)
{
    HKEY key = nullptr;
    return RegOpenKeyExA(root, path.c_str(), 0, access, &key) == ERROR_SUCCESS ? Key(key, RegCloseKey) : nullptr;
}

// The names of the values or of the keys in a key.
std::vector<std::string> Names(const Key &key, bool values)
{
    std::vector<std::string> names;
    std::string name(16384, '\0');
    const auto next = [&] {
        const DWORD at = static_cast<DWORD>(names.size());
        DWORD size = static_cast<DWORD>(name.size());
        const LONG error = values
                               ? RegEnumValueA(key.get(), at, name.data(), &size, nullptr, nullptr, nullptr, nullptr)
                               : RegEnumKeyExA(key.get(), at, name.data(), &size, nullptr, nullptr, nullptr, nullptr);
        if (error == ERROR_SUCCESS) {
            names.push_back(name.substr(0, size));
        }
        return error == ERROR_SUCCESS;
    };
    while (key && next()) {
    }
    return names;
}

// Removes a key without keys below it from one view. The entry that knows of views is newer than the oldest
// Windows, where there is only one.
void RemoveLeaf(HKEY root, const std::string &path, EView view)
{
    const auto remove = Entry<LONG(WINAPI *)(HKEY, LPCSTR, REGSAM, DWORD)>("advapi32.dll", "RegDeleteKeyExA");
    if (remove != nullptr) {
        remove(root, path.c_str(), view, 0);
    } else {
        RegDeleteKeyA(root, path.c_str());
    }
}

} // namespace

bool KeyExists(HKEY root, const std::string &path, EView view)
{
    return OpenKey(root, path, KEY_READ | view) != nullptr;
}

bool CreateKey(HKEY root, const std::string &path, EView view)
{
    HKEY key = nullptr;
    if (RegCreateKeyExA(root, path.c_str(), 0, nullptr, 0, KEY_WRITE | view, nullptr, &key, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

void RemoveKey(HKEY root, const std::string &path, EView view)
{
    for (const std::string &name : Names(OpenKey(root, path, KEY_READ | view), false)) {
        RemoveKey(root, path + "\\" + name, view);
    }
    RemoveLeaf(root, path, view);
}

std::optional<RegData> ReadValue(HKEY root, const std::string &path, const std::string &name, EView view)
{
    const Key key = OpenKey(root, path, KEY_READ | view);
    DWORD type = 0;
    DWORD size = 0;
    if (!key || RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(bytes.data()), &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    bytes.resize(size);
    return RegData{type, bytes};
}

bool WriteValue(HKEY root, const std::string &path, const std::string &name, const RegData &data, EView view)
{
    if (!CreateKey(root, path, view)) {
        return false;
    }
    const Key key = OpenKey(root, path, KEY_WRITE | view);
    return key &&
           RegSetValueExA(key.get(), name.c_str(), 0, data.mType, reinterpret_cast<const BYTE *>(data.mBytes.data()),
                          static_cast<DWORD>(data.mBytes.size())) == ERROR_SUCCESS;
}

void RemoveValue(HKEY root, const std::string &path, const std::string &name, EView view)
{
    const Key key = OpenKey(root, path, KEY_WRITE | view);
    if (key) {
        RegDeleteValueA(key.get(), name.c_str());
    }
}

std::string ReadRegText(HKEY root, const std::string &path, const std::string &name, EView view)
{
    const std::optional<RegData> data = ReadValue(root, path, name, view);
    if (!data) {
        return "<none>";
    }
    std::string text = data->mBytes;
    if (!text.empty() && text.back() == '\0') {
        text.pop_back();
    }
    return text;
}

RegData RegText(const std::string &text, DWORD type)
{
    return {type, text + '\0'};
}

RegData RegNumber(DWORD number)
{
    return {REG_DWORD, std::string(reinterpret_cast<const char *>(&number), sizeof number)};
}

namespace {

// What puts a key back to what it is.
std::function<void()> Kept(HKEY root, const std::string &path, EView view)
{
    const Key key = OpenKey(root, path, KEY_READ | view);
    if (!key) {
        return [=] { RemoveKey(root, path, view); };
    }
    std::map<std::string, RegData> values;
    for (const std::string &name : Names(key, true)) {
        if (const std::optional<RegData> data = ReadValue(root, path, name, view)) {
            values[name] = *data;
        }
    }
    std::map<std::string, std::function<void()>> keys;
    for (const std::string &name : Names(key, false)) {
        keys[name] = Kept(root, path + "\\" + name, view);
    }
    return [=] {
        CreateKey(root, path, view);
        const Key present = OpenKey(root, path, KEY_READ | view);
        for (const std::string &name : Names(present, true)) {
            if (values.count(name) == 0) {
                RemoveValue(root, path, name, view);
            }
        }
        for (const std::string &name : Names(present, false)) {
            if (keys.count(name) == 0) {
                RemoveKey(root, path + "\\" + name, view);
            }
        }
        for (const auto &[name, data] : values) {
            WriteValue(root, path, name, data, view);
        }
        for (const auto &[name, restore] : keys) {
            restore();
        }
    };
}

} // namespace

RegistrySnapshot::RegistrySnapshot(HKEY root, const std::string &path)
{
    for (const EView view : {EView32, EView64}) { // a 32-bit Windows has one, twice
        // Of a path that does not exist the first part that is missing, so that all that comes along goes again.
        size_t end = path.find('\\');
        while (end != std::string::npos && KeyExists(root, path.substr(0, end), view)) {
            end = path.find('\\', end + 1);
        }
        mRestores.push_back(Kept(root, path.substr(0, end), view));
    }
}

RegistrySnapshot::~RegistrySnapshot()
{
    for (const auto &restore : mRestores) {
        restore();
    }
}
