// tavixpack: the package engineer's tool. Looks at a package, or at what a run left behind, and changes nothing.
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Pack/CheckCommand.h"
#include "Pack/Console.h"
#include "Pack/ExitCommand.h"
#include "Pack/HostServices.h"
#include "Pack/PlanCommand.h"
#include "Pack/TraceCommand.h"
#include "Script/MacroValues.h"

namespace {

int RunTool(int argc, char **argv)
{
    CLI::App app("Looks at packages of TavixSetup, and at what their runs left behind. Nothing is changed.",
                 "tavixpack");
    app.set_version_flag("--version", std::string("tavixpack ") + kAppVersion);
    app.require_subcommand(1);
    std::string colour = "auto";
    app.add_option("--colour,--color", colour, "colours: auto (on a terminal), always, never")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
    CPackCommands commands;
    // One line a sub-command, in the order in which an engineer comes to need them.
    AddCheckCommand(app, commands);
    AddPlanCommand(app, commands);
    AddTraceCommand(app, commands);
    AddExitCommand(app, commands);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? kPackDone : kPackUnreadable;
    }
    CPackConsole console{std::cout, std::cerr, PrepareConsole(colour)};
    const int result = commands.mRun(console);
    std::cout.flush();
    return std::cout ? result : kPackUnreadable;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return RunTool(argc, argv);
    } catch (const std::exception &exception) {
        std::cerr << "tavixpack: " << exception.what() << '\n';
    }
    return kPackUnreadable;
}
