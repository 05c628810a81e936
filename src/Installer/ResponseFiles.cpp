#include "Installer/ResponseFiles.h"

#include <windows.h>

#include "Common/FileOwner.h"
#include "Common/Handles.h"
#include "Common/HeldFiles.h"
#include "Common/Paths.h"
#include "Installer/CommandLine.h"

namespace {

constexpr char kInputName[] = "TavixInstallI.txt";
constexpr char kOutputName[] = "TavixInstallO.txt";

// Opened as what it is, so that a link is seen; shared with nobody.
CHandle OpenResponse(const std::string &path, DWORD &waited_O)
{
    CHandle file;
    TryWhileHeld(
        [&] {
            file = CHandle(CreateFileA(path.c_str(), GENERIC_READ | READ_CONTROL, 0, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
            return static_cast<bool>(file);
        },
        kHeldPatienceMs, &waited_O);
    return file;
}

std::string ReadResponse(HANDLE file)
{
    CResponseText text;
    DWORD read = 0;
    while (ReadFile(file, text.Buffer(), CResponseText::kChunk, &read, nullptr) && read > 0) {
        text.TakeChunk();
    }
    return text.Text();
}

} // namespace

std::string TakeInputResponse(const std::string &folder, std::string &note_O)
{
    const std::string path = JoinPath(folder, kInputName);
    note_O.clear();
    if (!PathExists(path)) {
        return std::string();
    }
    std::string text;
    DWORD waited = 0;
    CHandle file = OpenResponse(path, waited);
    if (!file && FailedAsHeld()) {
        note_O = "File " + path + " is in use, taken for missing after " + std::to_string(waited) + " ms";
    } else if (file && (IsLinkedFile(file.Get()) || !IsOwnFile(file.Get()))) {
        note_O = "File " + path + " is a link or somebody else's, not read";
    } else if (file) {
        text = ReadResponse(file.Get());
    }
    file.Reset();
    RemoveName(path);
    return text;
}

void DropOutputResponse(const std::string &folder)
{
    RemoveName(JoinPath(folder, kOutputName));
}

void WriteOutputResponse(const std::string &folder, uint32_t exitCode)
{
    // Under a name of its own first: what lies under the file's name by now is replaced and not written through.
    std::string made;
    CHandle file = MakeOwnFile(folder, made);
    if (!file) {
        return;
    }
    const std::string digits = std::to_string(exitCode);
    DWORD written = 0;
    WriteFile(file.Get(), digits.data(), static_cast<DWORD>(digits.size()), &written, nullptr);
    file.Reset();
    const std::string path = JoinPath(folder, kOutputName);
    if (!TryWhileHeld([&] { return MoveFileExA(made.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE; })) {
        DeleteFileA(made.c_str());
    }
}
