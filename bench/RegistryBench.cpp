// What writing the registry through the script costs beside the calls that it cannot do without: to create or open the
// key, to set the value and to close the key, once for each value.
#include <string>
#include <vector>

#include "Bench.h"
#include "Registry.h"

namespace {

constexpr int kRounds = 11;
constexpr int kKeys = 50;
constexpr int kTexts = 100; // in each key; with the numbers about what a section can hold
constexpr int kNumbers = 20;

const std::string kPath = "Software\\TAVIX\\Bench";

std::string KeyName(int key)
{
    return kPath + "\\Key" + std::to_string(key);
}

// One group a key, all called from Install.
std::string Groups()
{
    std::string calls = "[Install]\r\n";
    std::string groups;
    for (int key = 0; key < kKeys; ++key) {
        const std::string group = "Key" + std::to_string(key);
        const std::string path = "Software\\\\TAVIX\\\\Bench\\\\" + group;
        calls += "!" + group + "!;\r\n";
        groups += "[" + group + "]\r\n";
        for (int value = 0; value < kTexts; ++value) {
            const std::string number = std::to_string(value);
            groups += "RegValueString;" + path + ";Text" + number + ";the text number " + number + "\r\n";
        }
        for (int value = 0; value < kNumbers; ++value) {
            const std::string number = std::to_string(value);
            groups += "RegValueDWORD;" + path + ";Number" + number + ";" + number + "\r\n";
        }
    }
    return calls + groups;
}

void SetBare(const std::string &path, const std::string &name, const RegData &data)
{
    HKEY key;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &key,
                        nullptr) != ERROR_SUCCESS) {
        Fail("creating " + path);
    }
    RegSetValueExA(key, name.c_str(), 0, data.mType, reinterpret_cast<const BYTE *>(data.mBytes.data()),
                   static_cast<DWORD>(data.mBytes.size()));
    RegCloseKey(key);
}

void WriteBareValues()
{
    for (int key = 0; key < kKeys; ++key) {
        const std::string path = KeyName(key);
        for (int value = 0; value < kTexts; ++value) {
            SetBare(path, "Text" + std::to_string(value), RegText("the text number " + std::to_string(value)));
        }
        for (int value = 0; value < kNumbers; ++value) {
            SetBare(path, "Number" + std::to_string(value), RegNumber(static_cast<DWORD>(value)));
        }
    }
}

// Ends the program when a value is missing; removes them all.
void CheckAndRemove(const char *whose)
{
    for (int key = 0; key < kKeys; ++key) {
        for (int value = 0; value < kTexts; ++value) {
            const std::string number = std::to_string(value);
            const bool hasText =
                ReadRegText(HKEY_LOCAL_MACHINE, KeyName(key), "Text" + number, EView64) == "the text number " + number;
            const bool hasNumber = value >= kNumbers || ReadValue(HKEY_LOCAL_MACHINE, KeyName(key), "Number" + number,
                                                                  EView64) == RegNumber(static_cast<DWORD>(value));
            if (!hasText || !hasNumber) {
                Fail(std::string("no value ") + number + " in " + KeyName(key) + " from " + whose);
            }
        }
    }
    RemoveKey(HKEY_LOCAL_MACHINE, kPath, EView64);
}

} // namespace

int main()
{
    const StagedPackage package;
    const RegistrySnapshot former(HKEY_LOCAL_MACHINE, kPath);
    RemoveKey(HKEY_LOCAL_MACHINE, kPath, EView64);
    std::vector<double> starts;
    std::vector<double> runs;
    std::vector<double> bare;
    for (int round = 0; round < kRounds; ++round) {
        package.Script("[Install]\r\n");
        starts.push_back(package.Run().mMilliseconds);
        bare.push_back(Milliseconds(WriteBareValues));
        CheckAndRemove("the bare calls");
        package.Script(Groups());
        runs.push_back(package.Run().mMilliseconds);
        CheckAndRemove("the installer");
    }
    // Whatever else the machine does only adds to a time, and registry calls, which go to another process, feel it
    // most.
    const double net = Least(runs) - Least(starts);
    Print("registry values written", kKeys * (kTexts + kNumbers), "values", 0);
    Print("registry values through the script", net, "ms");
    Print("registry values by bare calls", Least(bare), "ms");
    Print("registry ratio", net / Least(bare), "x", 2);
    return 0;
}
