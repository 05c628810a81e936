// tavixpack plan: what a run of a package would do on a machine that is described.
#pragma once

#include "Pack/Console.h"
#include "Pack/PlanMachine.h"
#include "Pack/PlanTree.h"

namespace CLI {
class App;
}

struct PlanCommandOptions {
    PlanOptions mPlan; // texts in UTF-8
    std::string mFormat = "text";
    std::string mPage; // file of the page; empty for none
};

void AddPlanCommand(CLI::App &app, CPackCommands &commands_I);

int RunPlan(const PlanCommandOptions &options, CPackConsole &console);

// The forms of a plan. All are written in UTF-8; texts of the plan are in the code page.
void WritePlanText(const Plan &plan, CPackConsole &console);
void WritePlanJson(const Plan &plan, std::ostream &out);
void WritePlanPage(const Plan &plan, const std::string &package, std::ostream &out);
