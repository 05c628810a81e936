#include "Installer/Elevation.h"

#include "Installer/Outcomes.h"
#include "Services/ExecuteFile.h"

uint32_t RunElevated(const std::wstring &commandLine)
{
    const int32_t result = ExecuteElevated(std::wstring(), commandLine, true);
    return result < 0 ? kResultNotElevated : static_cast<uint32_t>(result);
}
