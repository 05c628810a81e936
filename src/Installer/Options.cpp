#include "Installer/Options.h"

#include <cstdlib>
#include <iterator>

#include "Common/Numbers.h"
#include "Common/StringUtilities.h"
#include "Common/TokenSplitter.h"
#include "Common/Trace.h"
#include "Installer/CommandLine.h"

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

// A language asked for by number. One that falls through to neutral changes nothing; any other is taken, also when it
// is only the nearest to what was asked for.
void AdoptLanguage(uint32_t number, const std::string &argument, LanguageProvider &language_I_O)
{
    LanguageProvider wanted("neutral");
    wanted.SetFromLangId(number);
    trace(7, "Requested Language %s, from %s\n", wanted.GetName().c_str(), argument.c_str());
    if (wanted.GetName() == "neutral") {
        trace(7, "Fell through to neutral, using %s instead\n", language_I_O.GetName().c_str());
    } else {
        language_I_O = wanted;
    }
}

// The options that make no sense while the window walks through all its pages.
void TakeSilentFamilyOption(const std::string &token, RunOptions &options_I_O)
{
    if (IsOption(token, "/s") || IsOption(token, "/silent")) {
        trace(7, "Silent install requested\n");
        options_I_O.mSilent = 1;
    } else if (IsOption(token, "/suppress-error")) {
        trace(7, "Suppressing return error codes\n");
        options_I_O.mSuppressError = true;
    } else if (IsOption(token, "/from-ife")) {
        trace(7, "IFE return codes\n");
        options_I_O.mFromIFE = true;
    } else if (IsOption(token, "/agree")) {
        options_I_O.mAgreed = true;
    }
}

} // namespace

HexRequest TakeOptions(const std::vector<std::string> &tokens, RunOptions &options_I_O, uint32_t &ink_I_O,
                       LanguageProvider &language_I_O)
{
    for (auto token = tokens.begin(); token != tokens.end(); ++token) {
        // The token behind an option that takes a value; the option list ends where there is none.
        const auto value = [&] { return std::next(token) != tokens.end() ? *++token : std::string(); };
        if (const uint32_t number = LanguageNumber(*token)) {
            AdoptLanguage(number, token->substr(1), language_I_O);
        } else if (IsOption(*token, "/command")) {
            trace(7, "Execute a command\n");
            options_I_O.mCommandOverride = value();
            trace(7, "command: %s\n", options_I_O.mCommandOverride.c_str());
        } else if (IsOption(*token, "/hex")) {
            trace(7, "Convert a file to hex\n");
            return {true, value()};
        } else if (IsOption(*token, "/u") || IsOption(*token, "/uninstall")) {
            trace(7, "File run with uninstall parameter\n");
            options_I_O.mUninstall = true;
        } else if (IsOption(*token, "/ink")) {
            trace(7, "Ink install requested\n");
            ink_I_O = 1;
        } else if (options_I_O.mDialogState == 0) {
            TakeSilentFamilyOption(*token, options_I_O);
        }
    }
    return {};
}

void SettleLanguage(const std::string &list, LanguageProvider &language_I_O)
{
    TokenSplitter languages(";", list);
    const std::string first = languages.First();
    for (std::string name = first; !languages.AtEnd(); name = languages.Next()) {
        if (EqualsNoCase(name, language_I_O.GetName())) {
            return;
        }
    }
    const LanguageProvider wanted(first);
    if (wanted.IsSupported()) {
        language_I_O = wanted;
    } else {
        trace(7, "Wanted Language not supported using %s\n", language_I_O.GetName().c_str());
    }
}

DebugRequest FindDebugOption(const std::vector<std::string> &tokens)
{
    for (auto token = tokens.begin(); token != tokens.end(); ++token) {
        if (IsOption(*token, "/debug") || IsOption(*token, "/d")) {
            return {true, std::next(token) != tokens.end() ? *std::next(token) : std::string()};
        }
    }
    return {};
}
