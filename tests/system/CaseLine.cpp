#include "CaseLine.h"

#include <stdexcept>

namespace {

// Cuts at the first sign " = " or " -> "; the sign may end the text.
void Cut(const std::string &text, const std::string &sign, CaseLine *line_O)
{
    const size_t at = (text + " ").find(" " + sign + " ");
    if (at == std::string::npos) {
        throw std::invalid_argument("no '" + sign + "' in: " + text);
    }
    line_O->mLeft = text.substr(0, at);
    line_O->mRight = text.substr(std::min(text.size(), at + sign.size() + 2));
}

// "64 HKLM\path;name", the view and the name where there is one.
void ParseKey(std::string text, bool named, CaseLine *line_O)
{
    static const std::pair<const char *, HKEY> kRoots[] = {{"HKLM", HKEY_LOCAL_MACHINE},
                                                           {"HKCU", HKEY_CURRENT_USER},
                                                           {"HKU", HKEY_USERS},
                                                           {"HKCR", HKEY_CLASSES_ROOT},
                                                           {"HKCC", HKEY_CURRENT_CONFIG}};
    if (text.compare(0, 3, "32 ") == 0 || text.compare(0, 3, "64 ") == 0) {
        line_O->mView = text[0] == '3' ? EView32 : EView64;
        text.erase(0, 3);
    }
    const size_t semicolon = text.find(';');
    if ((semicolon != std::string::npos) != named) {
        throw std::invalid_argument((named ? "no ';' in: " : "a value, not a key: ") + text);
    }
    if (named) {
        line_O->mName = Unescaped(text.substr(semicolon + 1));
        text.resize(semicolon);
    }
    const size_t slash = text.find('\\');
    for (const auto &root : kRoots) {
        if (text.substr(0, slash) == root.first) {
            line_O->mRoot = root.second;
        }
    }
    if (line_O->mRoot == nullptr || slash == std::string::npos) {
        throw std::invalid_argument("unknown root: " + text);
    }
    line_O->mKey = text.substr(slash + 1);
}

std::string Bytes(const std::string &hex)
{
    std::string bytes;
    for (size_t at = 0; at + 1 < hex.size(); at += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    }
    return bytes;
}

RegData ParseData(const std::string &text)
{
    const size_t blank = text.find(' ');
    const std::string type = text.substr(0, blank);
    std::string data = blank == std::string::npos ? "" : Unescaped(text.substr(blank + 1));
    if (type == "sz" || type == "expand") {
        return RegText(data, type == "expand" ? REG_EXPAND_SZ : REG_SZ);
    }
    if (type == "dword") {
        return RegNumber(static_cast<DWORD>(std::stoul(data, nullptr, 0)));
    }
    if (type == "multi") {
        for (char &c : data) {
            c = c == '|' ? '\0' : c;
        }
        return {REG_MULTI_SZ, data + std::string(2, '\0')};
    }
    if (type == "binary" || type == "short") {
        return {static_cast<DWORD>(type == "short" ? REG_DWORD : REG_BINARY), Bytes(data)};
    }
    if (type == "none") {
        return {REG_NONE, ""};
    }
    throw std::invalid_argument("unknown type: " + text);
}

} // namespace

std::string Unescaped(const std::string &text)
{
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        const char letter = text[++at];
        if (letter == 'x') {
            result += Bytes(text.substr(at + 1, 2));
            at += 2;
        } else {
            static const std::string kLetters = "nrt0";
            const size_t known = kLetters.find(letter);
            result += known == std::string::npos ? letter : "\n\r\t\0"[known];
        }
    }
    return result;
}

std::vector<CaseLine> ParseCaseLines(ECaseForm form, const std::string &text)
{
    CaseLine line;
    line.mLeft = text;
    if (form == EPathToPath) {
        Cut(text, "->", &line);
    } else if (form == EPathIsText || form == ENameIsData || form == EValueIsData) {
        Cut(text, "=", &line);
    }
    if (line.mLeft.empty() != (form == ENothing) && form != EText) {
        throw std::invalid_argument(form == ENothing ? "surplus: " + text : "nothing is named");
    }
    if (form == EValue || form == EValueIsData) {
        ParseKey(line.mLeft, true, &line);
    }
    if (form == ENameIsData || form == EValueIsData) {
        line.mData = ParseData(line.mRight);
    }
    std::vector<CaseLine> lines = {line};
    std::string CaseLine::*const list = form == EPathToPath ? &CaseLine::mRight : &CaseLine::mLeft;
    while (form == EPath || form == EPathIsText || form == EPathToPath || form == EKey) {
        CaseLine &last = lines.back();
        const std::string all = last.*list;
        const size_t comma = all.find(", ");
        last.*list = all.substr(0, comma);
        if (form == EKey) {
            ParseKey(last.mLeft, false, &last);
        }
        if (comma == std::string::npos) {
            break;
        }
        line.*list = all.substr(comma + 2);
        lines.push_back(line);
    }
    return lines;
}
