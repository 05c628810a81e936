#include "Shell/ResourceDll.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "Common/Handles.h"
#include "Common/Redirection.h"
#include "Common/Trace.h"
#include "Shell/HexText.h"
#include "Shell/XmlUtils.h"

namespace {

// Bytes of a file that are held at a time, in whole lines.
constexpr size_t kChunk = 1024 * kHexLineBytes;

CHandle CreateOutput(const std::string &path)
{
    return CHandle(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Opened where a 32-bit process does not see it, if so asked for. A failure is told by the last error.
CHandle CreateOutputOf64(const std::string &path, bool disableRedirect)
{
    DWORD error = ERROR_SUCCESS;
    CHandle file;
    {
        const STDisableRedirect redirect(disableRedirect);
        file = CreateOutput(path);
        error = GetLastError();
    }
    SetLastError(error); // which the end of the scope may have changed
    return file;
}

DWORD Write(const CHandle &file, const std::string &bytes)
{
    DWORD written = 0;
    WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    return written;
}

int ReportError()
{
    trace(7, "Error %i\n", static_cast<int>(GetLastError()));
    return kResourceDllNotWritten;
}

// Reads until the chunk is full or the file has no more. Answers the count.
size_t FillChunk(const CHandle &file, std::vector<unsigned char> &chunk_O)
{
    size_t filled = 0;
    DWORD read = 0;
    while (filled < chunk_O.size() &&
           ReadFile(file.Get(), &chunk_O[filled], static_cast<DWORD>(chunk_O.size() - filled), &read, nullptr) &&
           read > 0) {
        filled += read;
    }
    return filled;
}

} // namespace

int ExtractResourceDll(xmlDocPtr doc, const std::string &path, bool disableRedirect)
{
    XmlUtils::XmlNode node = XmlUtils::FirstNode(doc, "/root/LocalizationTable");
    if (!node) {
        return kResourceDllWritten;
    }
    trace(9, "ExtractResourceDll %s\n", path.c_str());
    const std::string qBuffer = BytesFromHex(XmlUtils::GetNodeString(node.get()));
    node.reset();               // now, since the library clears the last error on its way
    TVX_ASSERT(qBuffer.size()); // NOLINT(readability-container-size-empty): these are the words of the trace
    const CHandle file = CreateOutputOf64(path, disableRedirect);
    if (!file) {
        return kResourceDllNotWritten;
    }
    trace(10, "Wrote %i bytes\n", static_cast<int>(Write(file, qBuffer)));
    return kResourceDllWritten;
}

int FileToHex(const std::string &inputPath, const std::string &outputPath)
{
    const CHandle input(
        CreateFileA(inputPath.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    trace(7, "Input file %s (%08X)\n", inputPath.c_str(), PointerDigits(input.Get()));
    if (!input) {
        return ReportError();
    }
    const CHandle output = CreateOutput(outputPath);
    trace(7, "Output file %s (%08X)\n", inputPath.c_str(),
          PointerDigits(input.Get())); // the input's, as readers of the trace know it
    if (!output) {
        return ReportError();
    }
    std::vector<unsigned char> chunk(kChunk);
    while (const size_t filled = FillChunk(input, chunk)) {
        std::string text;
        for (size_t at = 0; at < filled; at += kHexLineBytes) {
            const std::string line = HexLine(&chunk[at], std::min(kHexLineBytes, filled - at));
            trace(7, "%s", line.c_str());
            text += line;
        }
        Write(output, text);
    }
    return kResourceDllWritten;
}
