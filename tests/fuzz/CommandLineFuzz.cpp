// Foreign command lines and response files.
#include <algorithm>
#include <cstring>

#include "Require.h"
#include "Installer/CommandLine.h"

namespace {

void CheckTokens(const std::string &line)
{
    const std::vector<std::string> tokens = SplitCommandLine(line);
    std::string quoted;
    size_t length = 0;
    bool plain = true; // a back-slash in front of the closing quote would take it for its own
    for (const std::string &token : tokens) {
        Require(!token.empty() && token.find('\0') == std::string::npos);
        length += token.size();
        plain = plain && token.back() != '\\';
        quoted += " \"";
        for (const char c : token) {
            quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
        }
        quoted += '"';
    }
    Require(length <= line.size());
    // Between quotes, with the quotes inside escaped, each token comes back as it is.
    Require(!plain || SplitCommandLine(quoted) == tokens);
}

void CheckResponse(const std::string &file)
{
    constexpr size_t kChunk = CResponseText::kChunk;
    CResponseText response;
    for (size_t at = 0; at < file.size(); at += kChunk) {
        std::memcpy(response.Buffer(), file.data() + at, std::min(kChunk, file.size() - at));
        response.TakeChunk();
    }
    const std::string &text = response.Text();
    Require(text.find('\0') == std::string::npos && text.size() <= (file.size() + kChunk - 1) / kChunk * kChunk);
    // Where it is safe, the text is the file.
    const bool safe = file.size() <= kChunk || file.size() % kChunk == 0;
    Require(!safe || file.find('\0') != std::string::npos || text == file);
}

} // namespace

void CheckInput(const std::string &text)
{
    CheckTokens(text);
    CheckResponse(text);
    const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
    for (size_t tail = 0; tail <= text.size(); tail += 1 + text.size() / 16) {
        const bool role = IsRemoveRole(exact.data(), exact.data() + tail);
        Require(!role || (tail >= 12 && exact[tail - 2] == '\0'));
    }
}
