#include "Common/DriverNames.h"

#include "Common/TextConversions.h"

std::wstring GetDriverSplitNameW(EDriverSplitName name_I, int32_t type)
{
    return AnsiToWide(GetDriverSplitName(name_I, type));
}
