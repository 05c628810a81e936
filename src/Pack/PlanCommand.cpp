#include "Pack/PlanCommand.h"

#include <filesystem>
#include <fstream>
#include <memory>

#include <CLI/CLI.hpp>

#include "Pack/CodePage.h"
#include "Pack/Planner.h"

namespace {

// The texts of the command line in the machine's code page, as everything that they are compared with.
PlanOptions InCodePage(PlanOptions options)
{
    options.mCommand = gCodePage.FromUtf8(options.mCommand);
    for (std::vector<std::string> *texts : {&options.mDevices, &options.mFlags, &options.mFiles, &options.mNoFiles,
                                            &options.mKeys, &options.mNoKeys, &options.mMacros}) {
        for (std::string &text : *texts) {
            text = gCodePage.FromUtf8(text);
        }
    }
    return options;
}

} // namespace

int RunPlan(const PlanCommandOptions &options, CPackConsole &console)
{
    const std::filesystem::path folder = std::filesystem::u8path(options.mPlan.mFolder);
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored)) {
        console.mError << "tavixpack: no such folder: " << options.mPlan.mFolder << '\n';
        return kPackUnreadable;
    }
    CPackageFolder source(folder, kPlanFolder);
    const CPackageTree tree(folder);
    Plan plan;
    try {
        plan = MakePlan(InCodePage(options.mPlan), source, tree);
    } catch (const std::invalid_argument &error) {
        console.mError << "tavixpack: " << error.what() << '\n';
        return kPackUnreadable;
    }
    if (options.mPage.empty()) {
        if (options.mFormat == "json") {
            WritePlanJson(plan, console.mOut);
        } else {
            WritePlanText(plan, console);
        }
        return kPackDone;
    }
    std::ofstream page(std::filesystem::u8path(options.mPage), std::ios::binary);
    WritePlanPage(plan, std::filesystem::canonical(folder, ignored).filename().u8string(), page);
    page.close();
    if (!page) {
        console.mError << "tavixpack: cannot write " << options.mPage << '\n';
        return kPackUnreadable;
    }
    return kPackDone;
}

void AddPlanCommand(CLI::App &app, CPackCommands &commands_I)
{
    CLI::App *const command = app.add_subcommand("plan", "What a run would do on a machine that you describe.");
    const auto options = std::make_shared<PlanCommandOptions>();
    PlanOptions &plan = options->mPlan;
    command->add_option("FOLDER", plan.mFolder, "the package")->required();
    command->add_option("--windows", plan.mWindows, "its Windows")
        ->check(CLI::IsMember(WindowsNames()))
        ->capture_default_str();
    command->add_option("--bits", plan.mBits, "32 or 64")->check(CLI::IsMember({32, 64}))->capture_default_str();
    command
        ->add_option("--user", plan.mUser, "who runs it: admin, filtered (an administrator who has to be asked), plain")
        ->check(CLI::IsMember({"admin", "filtered", "plain"}))
        ->capture_default_str();
    command->add_option("--language", plan.mLanguage, "language of the run")->capture_default_str();
    command->add_flag("--uninstall", plan.mUninstall, "the removal in place of the installation");
    command->add_option("--command", plan.mCommand, "run this group, as /command does");
    const auto list = [command](const char *name, std::vector<std::string> &texts, const char *help) {
        command->add_option(name, texts, help)->type_size(1)->allow_extra_args(false);
    };
    list("--device", plan.mDevices, "an attached device: its instance id, or the id of a product such as PID_0110");
    command->add_flag("--no-device", plan.mNoDevice, "no device that the program knows is attached");
    list("--flag", plan.mFlags, "NAME=NUMBER: a flag that is set in front of the first step");
    list("--file", plan.mFiles, "a file or folder that is there, with =VERSION for a program; macros are expanded");
    list("--no-file", plan.mNoFiles, "one that is not there, with all below it");
    list("--key", plan.mKeys,
         "KEY, KEY;NAME or KEY;NAME=DATA: a key or value that is there, in both views without 32\\ or 64\\ in front");
    list("--no-key", plan.mNoKeys, "KEY or KEY;NAME: one that is not there");
    list("--macro", plan.mMacros, "NAME=FOLDER: a folder of the machine, such as \"APP DATA=D:\\Data\"");
    command->add_flag("--nothing-else", plan.mRestIsMissing, "what is not described is not there");
    command->add_option("--branches", plan.mMostBranches, "how many open questions are followed both ways")
        ->capture_default_str();
    command->add_option("--format", options->mFormat, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->add_option("--html", options->mPage, "write the plan as one page to this file");
    command->callback([options, &commands_I] {
        commands_I.mRun = [options](CPackConsole &console) { return RunPlan(*options, console); };
    });
}
