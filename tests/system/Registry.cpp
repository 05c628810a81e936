#include "Registry.h"

#include "Machine.h"

namespace {

// A key that closes itself; null when it could not be opened.
class Key {
public:
    Key(HKEY root, const std::string &path, REGSAM access)
    {
        if (RegOpenKeyExA(root, path.c_str(), 0, access, &mKey) != ERROR_SUCCESS) {
            mKey = nullptr;
        }
    }
    ~Key()
    {
        if (mKey != nullptr) {
            RegCloseKey(mKey);
        }
    }
    Key(const Key &) = delete;
    Key &operator=(const Key &) = delete;
    explicit operator bool() const { return mKey != nullptr; }
    HKEY Get() const { return mKey; }

private:
    HKEY mKey = nullptr;
};

std::vector<std::string> SubKeys(const Key &key)
{
    std::vector<std::string> names;
    char name[256];
    DWORD size = sizeof name;
    while (key && RegEnumKeyExA(key.Get(), static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr, nullptr,
                                nullptr) == ERROR_SUCCESS) {
        names.emplace_back(name, size);
        size = sizeof name;
    }
    return names;
}

std::vector<std::string> ValueNames(const Key &key)
{
    std::vector<std::string> names;
    std::string name(16384, '\0');
    DWORD size = static_cast<DWORD>(name.size());
    while (key && RegEnumValueA(key.Get(), static_cast<DWORD>(names.size()), name.data(), &size, nullptr, nullptr,
                                nullptr, nullptr) == ERROR_SUCCESS) {
        names.push_back(name.substr(0, size));
        size = static_cast<DWORD>(name.size());
    }
    return names;
}

// Removes a key without keys below it from one view. The entry that knows of views is newer than the oldest
// Windows, where there is only one.
void RemoveLeaf(HKEY root, const std::string &path, EView view)
{
    using Remover = LONG(WINAPI *)(HKEY, LPCSTR, REGSAM, DWORD);
    static const auto remove = reinterpret_cast<Remover>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("advapi32.dll"), "RegDeleteKeyExA")));
    if (remove != nullptr) {
        remove(root, path.c_str(), view, 0);
    } else {
        RegDeleteKeyA(root, path.c_str());
    }
}

} // namespace

bool KeyExists(HKEY root, const std::string &path, EView view)
{
    return static_cast<bool>(Key(root, path, KEY_READ | view));
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
    for (const std::string &name : SubKeys(Key(root, path, KEY_READ | view))) {
        RemoveKey(root, path + "\\" + name, view);
    }
    RemoveLeaf(root, path, view);
}

std::optional<RegData> ReadValue(HKEY root, const std::string &path, const std::string &name, EView view)
{
    const Key key(root, path, KEY_READ | view);
    DWORD type = 0;
    DWORD size = 0;
    if (!key || RegQueryValueExA(key.Get(), name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    if (RegQueryValueExA(key.Get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(bytes.data()), &size) !=
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
    const Key key(root, path, KEY_WRITE | view);
    return key &&
           RegSetValueExA(key.Get(), name.c_str(), 0, data.mType, reinterpret_cast<const BYTE *>(data.mBytes.data()),
                          static_cast<DWORD>(data.mBytes.size())) == ERROR_SUCCESS;
}

void RemoveValue(HKEY root, const std::string &path, const std::string &name, EView view)
{
    const Key key(root, path, KEY_WRITE | view);
    if (key) {
        RegDeleteValueA(key.Get(), name.c_str());
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

RegistrySnapshot::RegistrySnapshot(HKEY root, std::string path) : mRoot(root), mPath(std::move(path))
{
    const std::vector<EView> views =
        On64BitWindows() ? std::vector<EView>{EView32, EView64} : std::vector<EView>{EProcessView};
    for (const EView view : views) {
        size_t present = mPath.size();
        while (present != std::string::npos && !KeyExists(mRoot, mPath.substr(0, present), view)) {
            present = mPath.find_last_of('\\', present - 1);
        }
        mViews.push_back({view, present, Take(mRoot, mPath, view)});
    }
}

RegistrySnapshot::~RegistrySnapshot()
{
    for (const View &view : mViews) {
        Restore(mRoot, mPath, view.mView, view.mContent);
        // Keys above it that came along; one that holds another key stays.
        for (size_t end = mPath.find_last_of('\\'); !view.mContent && end != view.mPresent && end != std::string::npos;
             end = mPath.find_last_of('\\', end - 1)) {
            RemoveLeaf(mRoot, mPath.substr(0, end), view.mView);
        }
    }
}

std::optional<RegistrySnapshot::Content> RegistrySnapshot::Take(HKEY root, const std::string &path, EView view)
{
    const Key key(root, path, KEY_READ | view);
    if (!key) {
        return std::nullopt;
    }
    Content content;
    for (const std::string &name : ValueNames(key)) {
        if (const std::optional<RegData> data = ReadValue(root, path, name, view)) {
            content.mValues[name] = *data;
        }
    }
    for (const std::string &name : SubKeys(key)) {
        if (const std::optional<Content> below = Take(root, path + "\\" + name, view)) {
            content.mKeys[name] = *below;
        }
    }
    return content;
}

void RegistrySnapshot::Restore(HKEY root, const std::string &path, EView view, const std::optional<Content> &content)
{
    if (!content) {
        RemoveKey(root, path, view);
        return;
    }
    CreateKey(root, path, view);
    for (const std::string &name : ValueNames(Key(root, path, KEY_READ | view))) {
        if (content->mValues.count(name) == 0) {
            RemoveValue(root, path, name, view);
        }
    }
    for (const auto &[name, data] : content->mValues) {
        WriteValue(root, path, name, data, view);
    }
    for (const std::string &name : SubKeys(Key(root, path, KEY_READ | view))) {
        if (content->mKeys.count(name) == 0) {
            RemoveKey(root, path + "\\" + name, view);
        }
    }
    for (const auto &[name, below] : content->mKeys) {
        Restore(root, path + "\\" + name, view, below);
    }
}

const char *const Settings::kPath = "Software\\TAVIX\\Installer";

Settings::Settings() : mFormer(HKEY_LOCAL_MACHINE, kPath)
{
    RemoveKey(HKEY_LOCAL_MACHINE, kPath);
}

Settings &Settings::Text(const std::string &name, const std::string &text, DWORD type)
{
    return Data(name, RegText(text, type));
}

Settings &Settings::Number(const std::string &name, DWORD number)
{
    return Data(name, RegNumber(number));
}

Settings &Settings::Data(const std::string &name, const RegData &data)
{
    WriteValue(HKEY_LOCAL_MACHINE, kPath, name, data);
    return *this;
}

std::string Settings::Read(const std::string &name)
{
    return ReadRegText(HKEY_LOCAL_MACHINE, kPath, name);
}
