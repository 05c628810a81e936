#include "Installer/ResponseFiles.h"

#include <windows.h>

#include "Common/Handles.h"
#include "Common/Paths.h"
#include "Installer/CommandLine.h"

namespace {

constexpr char kInputName[] = "TavixInstallI.txt";
constexpr char kOutputName[] = "TavixInstallO.txt";
constexpr DWORD kTempPathRoom = 1024;

std::string ReadResponse(const std::string &path)
{
    const CHandle file(
        CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    CResponseText text;
    DWORD read = 0;
    while (file && ReadFile(file.Get(), text.Buffer(), CResponseText::kChunk, &read, nullptr) && read > 0) {
        text.TakeChunk();
    }
    return text.Text();
}

} // namespace

std::string ResponseFolder()
{
    char folder[kTempPathRoom] = {};
    const DWORD length = GetTempPathA(kTempPathRoom, folder);
    return length < kTempPathRoom ? folder : std::string();
}

std::string TakeInputResponse(const std::string &folder)
{
    const std::string path = JoinPath(folder, kInputName);
    if (!PathExists(path)) {
        return std::string();
    }
    const std::string text = ReadResponse(path);
    DeleteFileA(path.c_str());
    return text;
}

void WriteOutputResponse(const std::string &folder, uint32_t exitCode)
{
    const std::string path = JoinPath(folder, kOutputName);
    const CHandle file(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) {
        const std::string digits = std::to_string(exitCode);
        DWORD written = 0;
        WriteFile(file.Get(), digits.data(), static_cast<DWORD>(digits.size()), &written, nullptr);
    }
}
