#include "Devices/RouterQuestions.h"

namespace {

// The last version of each line that works without the router.
struct RouterUser {
    const char *mPath;
    const char *mVersion;
};
constexpr RouterUser kConsumer = {"!PROGFILES!\\Tablet\\Pen\\Pen_Tablet.exe", "5.3.0-0"};
constexpr RouterUser kProfessional = {"!PROGFILES!\\Tablet\\Tavix\\Tavix_Tablet.exe", "6.3.0-0"};
constexpr RouterUser kISD = {"!PROGFILES!\\Tablet\\ISD\\ISD_Tablet.exe", "7.0.5-0"};

const RouterUser &UserOf(ERouterLine line)
{
    return line == ERouterConsumer ? kConsumer : line == ERouterProfessional ? kProfessional : kISD;
}

} // namespace

bool NeedsHidRouter(ERouterLine line, const RouterProgramLookup &lookUp)
{
    const RouterUser &user = UserOf(line);
    const RouterProgram program = lookUp(user.mPath);
    return program.mExists && IsNewerThan(program.mVersion, FileVersion(user.mVersion, false));
}

bool ShouldUninstallHidRouter(int32_t line, const RouterProgramLookup &lookUp)
{
    switch (line) {
    case ERouterConsumer:
        return !NeedsHidRouter(ERouterISD, lookUp) && !NeedsHidRouter(ERouterProfessional, lookUp);
    case ERouterProfessional:
        return !NeedsHidRouter(ERouterConsumer, lookUp) && !NeedsHidRouter(ERouterISD, lookUp);
    case ERouterISD:
        return !NeedsHidRouter(ERouterProfessional, lookUp) && !NeedsHidRouter(ERouterConsumer, lookUp);
    default:
        return true;
    }
}
