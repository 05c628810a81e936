// Foreign command lines and response files.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Installer/CommandLine.h"

namespace {

void Require(bool condition)
{
    if (!condition) {
        abort();
    }
}

void CheckTokens(const std::string &line)
{
    const std::vector<std::string> tokens = SplitCommandLine(line);
    std::string quoted;
    size_t length = 0;
    for (const std::string &token : tokens) {
        Require(!token.empty() && token.find('\0') == std::string::npos);
        length += token.size();
        // Between quotes, with the quotes inside escaped, each token comes back as it is. A back-slash in front of the
        // closing quote would take it for its own.
        if (token.back() == '\\') {
            return;
        }
        quoted += " \"";
        for (const char c : token) {
            quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
        }
        quoted += '"';
    }
    Require(length <= line.size());
    Require(SplitCommandLine(quoted) == tokens);
}

void CheckResponse(const std::string &file)
{
    CResponseText response;
    for (size_t at = 0; at < file.size(); at += CResponseText::kChunk) {
        std::memcpy(response.Buffer(), file.data() + at, std::min(CResponseText::kChunk, file.size() - at));
        response.TakeChunk();
    }
    const std::string &text = response.Text();
    Require(text.find('\0') == std::string::npos);
    const size_t chunks = (file.size() + CResponseText::kChunk - 1) / CResponseText::kChunk;
    Require(text.size() <= chunks * CResponseText::kChunk);
    // Where it is safe, the text is the file.
    const bool safe = file.size() <= CResponseText::kChunk || file.size() % CResponseText::kChunk == 0;
    if (safe && file.find('\0') == std::string::npos) {
        Require(text == file);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string line(reinterpret_cast<const char *>(data), size);
    CheckTokens(line);
    CheckResponse(line);
    const std::vector<char> exact(line.c_str(), line.c_str() + size + 1);
    for (size_t tail = 0; tail <= size; tail += 1 + size / 16) {
        const bool role = IsRemoveRole(exact.data(), exact.data() + tail);
        Require(!role || (tail >= 12 && exact[tail - 2] == '\0'));
    }
    const std::string hex = HexText(data, size);
    Require(hex.size() == size * 3 + (size + 15) / 16);
    return 0;
}
