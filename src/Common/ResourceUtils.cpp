#include "Common/ResourceUtils.h"

#include <windows.h>

#include <cstdint>

#include "Common/Handles.h"
#include "Common/importWin32API.h"
#include "Common/LanguageProvider.h"
#include "Common/Numbers.h"
#include "Common/ResourceStrings.h"
#include "Common/TextConversions.h"
#include "Common/Trace.h"
#include "Common/UserLanguage.h"

namespace {

std::u16string FindTableString(HMODULE module, uint32_t id, LANGID lang)
{
    // Without a module Windows would look into the program itself.
    const HRSRC found = module != nullptr
                            ? FindResourceExA(module, RT_STRING, MAKEINTRESOURCEA(id / kStringsPerBlock + 1), lang)
                            : nullptr;
    const HGLOBAL block = found != nullptr ? LoadResource(module, found) : nullptr;
    const void *const bytes = block != nullptr ? LockResource(block) : nullptr;
    if (bytes == nullptr) {
        return {};
    }
    return StringOfBlock(static_cast<const uint8_t *>(bytes), SizeofResource(module, found), id % kStringsPerBlock);
}

std::wstring ReadTableString(HMODULE module, uint32_t id, LANGID lang)
{
    const std::u16string text = FindTableString(module, id, lang);
    if (text.empty() && TracesToDebugOut()) {
        traceAlways("Couldn't get table string %d (lang %04x, mod %08X)\n", static_cast<int>(id), lang,
                    PointerDigits(module));
    }
    return IsCodedString(text) ? Utf8ToWide(DecodeCodedString(text)) : std::wstring(text.begin(), text.end());
}

std::string LibraryString(const std::string &library, uint32_t id)
{
    const CLibrary module(LoadPackageLibrary(library, LOAD_LIBRARY_AS_DATAFILE));
    std::string text;
    uint16_t lang = GetUserUILanguageId();
    do {
        text = WideToAnsi(ReadTableString(module.Get(), id, lang));
    } while (text.empty() && ReduceLangId(lang));
    return text;
}

} // namespace

int LoadDLLStringResource(const std::string &linkStr_I, std::string &resStr_O, std::string &dllStr_O,
                          bool searchIdOnFailure)
{
    trace(1, "LoadDLLStringResource: linkStr_I: %s\n", linkStr_I.c_str());
    resStr_O = linkStr_I;
    dllStr_O.clear();
    int resID = 0;
    const size_t comma = linkStr_I.find(',');
    if (!linkStr_I.empty() && linkStr_I[0] == '@') {
        if (comma == std::string::npos) {
            resStr_O = linkStr_I.substr(1);
        } else {
            const std::string behind = linkStr_I.substr(comma + 1);
            dllStr_O = linkStr_I.substr(1, comma - 1);
            resID = DecimalNumber(behind);
            const uint32_t id = static_cast<uint32_t>(resID);
            resStr_O = LibraryString(dllStr_O, resID < 0 ? 0 - id : id);
            if (resStr_O.empty() && searchIdOnFailure) {
                resStr_O = behind;
            }
        }
    }
    trace(1, "LoadDLLStringResource: resStr_O: %s\n", resStr_O.c_str());
    trace(1, "LoadDLLStringResource: dllStr_O: %s\n", dllStr_O.c_str());
    trace(1, "LoadDLLStringResource: resID: %i\n", resID);
    return resID;
}
