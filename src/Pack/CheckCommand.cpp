#include "Pack/CheckCommand.h"

#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include "Pack/CheckReport.h"
#include "Pack/CodePage.h"
#include "Pack/PackageFolder.h"

namespace {

struct CheckOptions {
    std::vector<std::string> mFolders;
    std::vector<std::string> mCommands;
    std::string mFormat = "text";
    uint32_t mCodePage = 1252;
    bool mStrict = false;
    bool mList = false;
};

// A package and all that its check holds on to.
struct LoadedPackage {
    LoadedPackage(const std::string &folder, const std::vector<std::string> &commands)
        : mSource(std::filesystem::u8path(folder)), mTree(std::filesystem::u8path(folder)),
          mCheck(mSource, mTree, commands)
    {
    }
    CPackageFolder mSource;
    CPackageTree mTree;
    CPackageCheck mCheck;
};

int ListChecks(CPackConsole &console)
{
    for (int check = 0; check < ECheckCount; ++check) {
        const CheckInfo &info = InfoOf(static_cast<ECheck>(check));
        const std::string name = info.mName;
        console.mOut << name << std::string(24 - std::min<size_t>(name.size(), 23), ' ') << SeverityWord(info.mSeverity)
                     << (info.mSeverity == EError ? "    " : "  ") << info.mSummary << '\n';
    }
    return kPackDone;
}

int RunCheck(const CheckOptions &options, CPackConsole &console)
{
    if (options.mList) {
        return ListChecks(console);
    }
    gCodePage = CCodePage(options.mCodePage);
    std::vector<std::unique_ptr<LoadedPackage>> loaded;
    std::vector<CheckedPackage> packages;
    bool readable = true;
    for (const std::string &folder : options.mFolders) {
        auto package = std::make_unique<LoadedPackage>(folder, options.mCommands);
        if (!package->mCheck.HasScript()) {
            console.mError << "tavixpack: " << folder << ": no installer.dat that can be read\n";
            readable = false;
            continue;
        }
        packages.push_back({folder, package->mCheck});
        loaded.push_back(std::move(package));
    }
    if (options.mFormat == "json") {
        WriteCheckJson(packages, console.mOut);
    } else if (options.mFormat == "sarif") {
        WriteCheckSarif(packages, console.mOut);
    } else {
        WriteCheckText(packages, console.mColour, console.mOut);
    }
    bool failed = false;
    for (const CheckedPackage &package : packages) {
        failed = failed || package.mCheck.Count(EError) != 0 || (options.mStrict && !package.mCheck.Found().empty());
    }
    return !readable ? kPackUnreadable : failed ? kPackFound : kPackDone;
}

} // namespace

void AddCheckCommand(CLI::App &app, CPackCommands &commands_I)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App *const command = app.add_subcommand("check", "Looks for mistakes in packages.");
    auto *const folders = command->add_option("FOLDER", options->mFolders, "folders with an installer.dat");
    command->add_option("--command", options->mCommands, "a further group that runs begin with, as with /command")
        ->allow_extra_args(false);
    command->add_option("--format", options->mFormat, "text, json or sarif")
        ->check(CLI::IsMember({"text", "json", "sarif"}))
        ->capture_default_str();
    command->add_option("--code-page", options->mCodePage, "code page of the machines that the package is for")
        ->check(CLI::IsMember(CCodePage::Known()))
        ->capture_default_str();
    command->add_flag("--strict", options->mStrict, "warnings count like errors for the exit code");
    auto *const list = command->add_flag("--list", options->mList, "lists the checks");
    command->callback([options, folders, list, &commands_I] {
        if (folders->count() == 0 && list->count() == 0) {
            throw CLI::RequiredError("FOLDER");
        }
        commands_I.mRun = [options](CPackConsole &console) { return RunCheck(*options, console); };
    });
}
