#include "Common/UserLanguage.h"

#include <windows.h>

#include "Common/importWin32API.h"

uint32_t GetUserLocaleId()
{
    return GetUserDefaultLCID();
}

uint16_t GetUserUILanguageId()
{
    using Entry = LANGID(WINAPI *)();
    const auto getUILanguage = BindEntry<Entry>(GetModuleHandleA("KERNEL32.DLL"), "GetUserDefaultUILanguage");
    return getUILanguage != nullptr ? getUILanguage() : static_cast<uint16_t>(GetUserDefaultLCID());
}
