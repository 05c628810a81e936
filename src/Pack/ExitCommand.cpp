#include "Pack/ExitCommand.h"

#include <charconv>
#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "Pack/Deployment.h"
#include "Pack/ExitCodes.h"

namespace {

std::string Hex(uint32_t code)
{
    char text[16];
    snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
    return text;
}

const char *RunsOf(const ExitMeaning &meaning)
{
    return meaning.mSilent && meaning.mWindowed ? "" : meaning.mSilent ? "Silent run: " : "Run with a window: ";
}

int TellCode(const std::string &text, CPackConsole &console)
{
    const std::optional<uint32_t> code = ParseExitCode(text);
    if (!code) {
        console.mError << "tavixpack: no exit code: " << text << '\n';
        return kPackUnreadable;
    }
    console.mOut << text << '\n';
    const auto meanings = MeaningsOf(*code);
    for (const ExitMeaning &meaning : meanings) {
        console.mOut << "    " << RunsOf(meaning) << meaning.mWords << '\n';
    }
    const std::string crash = WordsOfCrash(*code);
    if (!crash.empty()) {
        console.mOut << "    The process did not end by itself (" << Hex(*code) << "): " << crash << ".\n";
    }
    if (meanings.empty() && crash.empty()) {
        console.mOut << "    No run of the installer answers this; it comes from whatever started it.\n";
    }
    return kPackDone;
}

} // namespace

std::optional<uint32_t> ParseExitCode(const std::string &text)
{
    const bool negative = !text.empty() && text.front() == '-';
    std::string_view digits = std::string_view(text).substr(negative ? 1 : 0);
    int base = 10;
    if (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X") {
        digits.remove_prefix(2);
        base = 16;
    }
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size() ||
        number > (negative ? 0x80000000U : 0xFFFFFFFFU)) {
        return std::nullopt;
    }
    return static_cast<uint32_t>(negative ? 0 - number : number);
}

int RunExit(const ExitOptions &options, CPackConsole &console)
{
    if (options.mCode.empty() && options.mFor.empty()) {
        console.mError << "tavixpack: an exit code or --for is needed\n";
        return kPackUnreadable;
    }
    int result = kPackDone;
    if (!options.mCode.empty()) {
        result = TellCode(options.mCode, console);
    }
    if (result == kPackDone && !options.mFor.empty()) {
        console.mOut << DeploymentPage(options.mFor);
    }
    return result;
}

void AddExitCommand(CLI::App &app, CPackCommands &commands_I)
{
    CLI::App *const command =
        app.add_subcommand("exit", "An exit code in words, or what to tell who hands the package out.");
    const auto options = std::make_shared<ExitOptions>();
    command->add_option("CODE", options->mCode, "decimal, negative or with 0x");
    command->add_option("--for", options->mFor, "the commands and return codes for one of these systems")
        ->check(CLI::IsMember(DeploymentSystems()));
    command->callback([options, &commands_I] {
        commands_I.mRun = [options](CPackConsole &console) { return RunExit(*options, console); };
    });
}
