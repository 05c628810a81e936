// Plans of any script.
#include <sstream>

#include "Common/UserLanguage.h"
#include "Pack/PlanCommand.h"
#include "Pack/Planner.h"
#include "Require.h"

uint16_t GetUserUILanguageId()
{
    return 0x0409;
}

uint32_t GetUserLocaleId()
{
    return 0x0409;
}

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
    options.mMostBranches = 10;
    options.mMostSteps = 400;
    const Plan plan = MakePlan(options, source, tree);
    std::ostringstream out;
    CPackConsole console{out, out};
    WritePlanText(plan, console);
    WritePlanJson(plan, out);
    WritePlanPage(plan, "fuzz", out);
}
