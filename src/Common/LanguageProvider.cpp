#include "Common/LanguageProvider.h"

#include "Common/StringUtilities.h"
#include "Common/Trace.h"
#include "Common/UserLanguage.h"

namespace {

constexpr uint16_t kPrimaryMask = 0x3FF; // PRIMARYLANGID; the sub-language stands above
constexpr int kSubLanguageShift = 10;
constexpr uint16_t kNeutralId = 0;
constexpr uint16_t kChinese = 0x04;
constexpr uint16_t kEnglish = 0x09;
constexpr uint16_t kChineseTaiwan = 0x0404;
constexpr uint16_t kChinesePRC = 0x0804;
constexpr uint16_t kChineseHongKong = 0x0C04;
constexpr uint16_t kChineseMacau = 0x1404;

uint16_t BroaderChinese(uint16_t langId)
{
    switch (langId) {
    case kChinese:
        return kNeutralId;
    case kChineseTaiwan:
    case kChinesePRC:
        return kChinese;
    case kChineseHongKong:
    case kChineseMacau:
        return kChineseTaiwan;
    default: // Singapore, and whatever is not known: the simplified script
        return kChinesePRC;
    }
}

uint16_t BroaderLangId(uint16_t langId)
{
    const uint16_t primary = langId & kPrimaryMask;
    if (primary == kChinese) {
        return BroaderChinese(langId);
    }
    if (langId >> kSubLanguageShift != 0) {
        return primary;
    }
    return primary == kEnglish ? kNeutralId : kEnglish;
}

} // namespace

bool ReduceLangId(uint16_t &langId_O)
{
    if (langId_O == kNeutralId) {
        return false;
    }
    langId_O = BroaderLangId(langId_O);
    return true;
}

LanguageProvider::LanguageProvider()
    : mCurrent{"neutral", ELanguageNeutral, kNeutralId}, mNeutral(mCurrent), mSupported(true)
{
    BuildTable();
}

LanguageProvider::LanguageProvider(const std::string &name) : LanguageProvider()
{
    SetFromName(name);
}

LanguageProvider::LanguageProvider(uint32_t langId) : LanguageProvider()
{
    SetFromLangId(langId);
}

LanguageProvider::LanguageProvider(ELanguage language) : LanguageProvider()
{
    SetFromLanguage(language);
}

void LanguageProvider::BuildTable()
{
    if (mLangTable.empty()) {
        mLangTable = {
            {"zh_CN", ELanguageChinese, kChinesePRC},
            {"en", ELanguageEnglish, kEnglish},
        };
    }
    TVX_ASSERT(mLangTable.size() == LAST_ELANGUAGE);
}

void LanguageProvider::Take(const LanguageEntry &entry, bool supported)
{
    mCurrent = entry;
    mSupported = supported;
}

void LanguageProvider::SetFromName(const std::string &name)
{
    if (name == "userUI") {
        SetFromLangId(GetUserUILanguageId());
        return;
    }
    if (name == "user") {
        SetFromLangId(GetUserLocaleId());
        return;
    }
    if (name == mNeutral.mName) {
        Take(mNeutral, true);
        return;
    }
    Take(mLangTable.front(), false);
    for (const LanguageEntry &entry : mLangTable) {
        if (EqualsNoCase(entry.mName, name)) {
            Take(entry, true);
            return;
        }
    }
}

void LanguageProvider::SetFromLangId(uint32_t langId)
{
    const uint16_t wanted = static_cast<uint16_t>(langId);
    Take(mLangTable.front(), false);
    uint16_t tried = wanted;
    do {
        if (tried == mNeutral.mLangId) {
            Take(mNeutral, true);
            return;
        }
        for (const LanguageEntry &entry : mLangTable) {
            if (entry.mLangId == tried) {
                Take(entry, ((tried ^ wanted) & kPrimaryMask) == 0);
                return;
            }
        }
    } while (ReduceLangId(tried));
}

void LanguageProvider::SetFromLanguage(ELanguage language)
{
    if (language == mNeutral.mLanguage) {
        Take(mNeutral, true);
        return;
    }
    Take(mLangTable.front(), false);
    for (const LanguageEntry &entry : mLangTable) {
        if (entry.mLanguage == language) {
            Take(entry, true);
            return;
        }
    }
}

std::string LanguageProvider::GetName() const
{
    return mCurrent.mName;
}

bool LanguageProvider::IsSupported() const
{
    return mSupported;
}
