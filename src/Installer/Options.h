// The options of the command line, and the choice of the language behind them.
#pragma once

#include <string>
#include <vector>

#include "Common/LanguageProvider.h"
#include "Script/CRunState.h"

// What stops the taking of options.
struct HexRequest {
    bool mAsked = false; // /hex was met: the run ends behind the options
    std::string mFile;   // the file to convert; empty when the option was the last token
};

// Takes the tokens of the command line in their order, up to /hex. Unknown ones are passed over in silence.
HexRequest TakeOptions(const std::vector<std::string> &tokens, RunOptions &options_I_O, uint32_t &ink_I_O,
                       LanguageProvider &language_I_O);

// Settles the language by the script's list, names with ";" between: a language that the list lacks gives way to the
// first of the list, given that the program knows it.
void SettleLanguage(const std::string &list, LanguageProvider &language_I_O);

// What /debug asks of the trace.
struct DebugRequest {
    bool mAsked = false;
    std::string mFile; // the token behind the option, empty when there is none
};

// The first /debug or /d among the tokens.
DebugRequest FindDebugOption(const std::vector<std::string> &tokens);
