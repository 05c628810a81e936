#include "Common/UserLanguage.h"

#include <windows.h>

#include "Common/importWin32API.h"

uint32_t GetUserLocaleId()
{
    return GetUserDefaultLCID();
}

uint16_t GetUserUILanguageId()
{
    const auto getUILanguage = Kernel32().GetUserDefaultUILanguage.Get();
    return getUILanguage != nullptr ? getUILanguage() : static_cast<uint16_t>(GetUserDefaultLCID());
}
