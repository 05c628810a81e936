#include "Devices/CompanionLine.h"

bool IsCompanionProgram(const std::string &companion)
{
    return companion.find(".exe") != std::string::npos;
}

std::string InfFullPath(const std::string &inf, const std::string &currentDirectory)
{
    return inf.compare(0, 2, ".\\") == 0 ? currentDirectory + inf.substr(1) : inf;
}

// Install and UpdateCOMPort take the device bare and Update takes it between quotation marks; programs count on both.
std::string InstallParameters(const std::string &device, const std::string &infPath)
{
    return "Install " + device + " \"" + infPath + "\"";
}

std::string UpdateParameters(const std::string &device, const std::string &infPath)
{
    return "Update \"" + device + "\" \"" + infPath + "\"";
}

std::string SelectedDriverParameters(const std::string &device, const std::string &inf)
{
    return "UpdateCOMPort " + device + " \"" + inf + "\"";
}

std::string RemoveParameters(const std::string &device)
{
    return "Remove " + device;
}

std::string RemoveInstanceParameters(const std::string &device)
{
    return "RemoveInstance " + device;
}

const char *SelectiveSuspendVerb(bool enable)
{
    return enable ? "EnableSelectiveSuspend" : "DisableSelectiveSuspend";
}

std::string SelectiveSuspendParameters(bool enable, const std::string &id)
{
    return SelectiveSuspendVerb(enable) + (" USB\\" + id);
}

std::string OemInfMatchLine(const std::string &text)
{
    return "; " + text;
}
