#include "Installer/CommandLine.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr ptrdiff_t kRoleDistance = 12;
constexpr char kRoleName[] = "remove.exe";
constexpr size_t kRoleLength = sizeof kRoleName - 1;

char LowerAscii(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool SameLetters(const char *left, const char *right, size_t count)
{
    return std::equal(left, left + count, right, [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

enum EState {
    EPlain,
    EOption,
    EQuoted,
};

} // namespace

std::vector<std::string> SplitCommandLine(const std::string &commandLine)
{
    std::vector<std::string> tokens;
    std::string token;
    const auto endToken = [&] {
        if (!token.empty()) {
            tokens.push_back(token);
            token.clear();
        }
    };
    EState state = EPlain;
    for (const char character : commandLine) {
        if (character == '\0') {
            continue;
        }
        if (state == EQuoted) {
            if (character != '"') {
                token += character;
            } else if (!token.empty() && token.back() == '\\') {
                token.back() = '"';
            } else {
                endToken();
                state = EPlain;
            }
        } else if (character == ' ') {
            endToken();
            state = EPlain;
        } else if (character == '"') {
            endToken();
            state = EQuoted;
        } else if (character == '/' || (character == '-' && state == EPlain)) {
            endToken();
            token = "/";
            state = EOption;
        } else {
            token += character;
        }
    }
    endToken();
    return tokens;
}

bool IsRemoveRole(const char *begin, const char *tail)
{
    if (tail - begin < kRoleDistance) {
        return false;
    }
    // The name has to end in a NUL two characters in front of the tail. A command line as the platform builds it has
    // none there, so that the role arrives by option in everyday use.
    const char *const name = tail - kRoleDistance;
    return SameLetters(name, kRoleName, kRoleLength) && name[kRoleLength] == '\0';
}

void CResponseText::TakeChunk()
{
    mText.append(mBuffer, std::find(mBuffer, mBuffer + kChunk, '\0'));
}

bool IsOption(const std::string &token, const char *name)
{
    const size_t length = std::strlen(name);
    return token.size() == length && SameLetters(token.data(), name, length);
}
