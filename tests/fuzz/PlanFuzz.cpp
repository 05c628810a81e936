// Plans of any script.
#include <sstream>

#include "Pack/PlanCommand.h"
#include "Pack/Planner.h"
#include "Require.h"

namespace {

class COneScript : public IScriptSource {
public:
    explicit COneScript(std::string text) : mText(std::move(text)) {}
    std::optional<std::string> ReadFile(const std::string &path) override
    {
        return path == ".\\installer.dat" ? std::optional<std::string>(mText) : std::nullopt;
    }

private:
    std::string mText;
};

} // namespace

void CheckInput(const std::string &text)
{
    COneScript source("[MAIN]\nVersion=1.10\nPrefType=Pen_Tablet\n[Install]\n" + text);
    CPackageTree tree;
    tree.AddFile("installer.dat");
    PlanOptions options;
    options.mUninstall = text.size() % 2 != 0;
    options.mMostBranches = 30;
    options.mMostSteps = 2000;
    const Plan plan = MakePlan(options, source, tree);
    std::ostringstream out;
    CPackConsole console{out, out};
    WritePlanText(plan, console);
    WritePlanJson(plan, out);
    WritePlanPage(plan, "fuzz", out);
}
