// The options of the command line and the choice of the language behind them.
#include <windows.h>

#include <cstdlib>
#include <iterator>
#include <vector>

#include "Common/Handles.h"
#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Installer/CommandLine.h"
#include "Installer/CWinInstallMain.h"
#include "Installer/ScriptAccess.h"

namespace {

// Windows language identifier of a token such as L1033, 0 when the token is none.
uint32_t LanguageNumber(const std::string &token)
{
    const bool marked = token.size() >= 2 && (token[0] == 'l' || token[0] == 'L');
    if (!marked || DecimalNumber(token.substr(1)) == 0) {
        return 0;
    }
    return static_cast<uint32_t>(std::strtoul(token.c_str() + 1, nullptr, 10));
}

bool ReadWholeFile(const std::string &path, std::vector<unsigned char> &bytes_O)
{
    const CHandle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    unsigned char chunk[16384];
    DWORD read = 0;
    while (ReadFile(file.Get(), chunk, sizeof chunk, &read, nullptr) && read > 0) {
        bytes_O.insert(bytes_O.end(), chunk, chunk + read);
    }
    return true;
}

// Writes the bytes of a file as hexadecimal text beside it. A file that cannot be read or written leaves nothing.
void ConvertToHex(const std::string &path)
{
    std::vector<unsigned char> bytes;
    if (path.empty() || !ReadWholeFile(path, bytes)) {
        return;
    }
    const std::string text = HexText(bytes.data(), bytes.size());
    const CHandle file(
        CreateFileA((path + ".txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) {
        DWORD written = 0;
        WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
}

} // namespace

bool CWinInstallMain::TakeOptions()
{
    const std::vector<std::string> tokens = SplitCommandLine(mCommandLine);
    for (auto token = tokens.begin(); token != tokens.end(); ++token) {
        // The token behind an option that takes a value; the option list ends where there is none.
        const auto value = [&] { return std::next(token) != tokens.end() ? *++token : std::string(); };
        if (const uint32_t number = LanguageNumber(*token)) {
            AdoptLanguage(number, token->substr(1));
        } else if (IsOption(*token, "/command")) {
            trace(7, "Execute a command\n");
            mCommandOverride = value();
            trace(7, "command: %s\n", mCommandOverride.c_str());
        } else if (IsOption(*token, "/hex")) {
            trace(7, "Convert a file to hex\n");
            ConvertToHex(value());
            SettleLanguage();
            return false;
        } else if (IsOption(*token, "/u") || IsOption(*token, "/uninstall")) {
            trace(7, "File run with uninstall parameter\n");
            mUninstall = true;
        } else if (IsOption(*token, "/ink")) {
            trace(7, "Ink install requested\n");
            mInk = 1;
        } else if (mDialogState == 0) {
            TakeSilentFamilyOption(*token);
        }
    }
    SettleLanguage();
    return true;
}

// The options that make no sense while the window walks through all its pages.
void CWinInstallMain::TakeSilentFamilyOption(const std::string &token)
{
    if (IsOption(token, "/s") || IsOption(token, "/silent")) {
        trace(7, "Silent install requested\n");
        mSilent = 1;
    } else if (IsOption(token, "/suppress-error")) {
        trace(7, "Suppressing return error codes\n");
        mSuppressError = true;
    } else if (IsOption(token, "/from-ife")) {
        trace(7, "IFE return codes\n");
        mFromIFE = true;
    } else if (IsOption(token, "/agree")) {
        mAgreed = true;
    }
}

// A language asked for by number. One that falls through to neutral changes nothing; any other is taken, also when it
// is only the nearest to what was asked for.
void CWinInstallMain::AdoptLanguage(uint32_t number, const std::string &argument)
{
    LanguageProvider wanted("neutral");
    wanted.SetFromLangId(number);
    trace(7, "Requested Language %s, from %s\n", wanted.GetName().c_str(), argument.c_str());
    if (wanted.GetName() == "neutral") {
        trace(7, "Fell through to neutral, using %s instead\n", mLanguage.GetName().c_str());
    } else {
        mLanguage = wanted;
    }
}

// The script has the last word: a language that its list lacks gives way to the first of the list.
void CWinInstallMain::SettleLanguage()
{
    TokenSplitter languages(";", ReadString("MAIN", "Languages", ""));
    const std::string first = languages.First();
    for (std::string name = first; !languages.AtEnd(); name = languages.Next()) {
        if (EqualsNoCase(name, mLanguage.GetName())) {
            return;
        }
    }
    const LanguageProvider wanted(first);
    if (wanted.IsSupported()) {
        mLanguage = wanted;
    } else {
        trace(7, "Wanted Language not supported using %s\n", mLanguage.GetName().c_str());
    }
}
