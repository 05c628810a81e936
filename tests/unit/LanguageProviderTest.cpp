#include "Common/LanguageProvider.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Common/UserLanguage.h"
#include "TraceRecorder.h"

namespace {

uint32_t gLocaleId = 0;
uint16_t gUILanguageId = 0;

} // namespace

// Windows has no part in these tests: they say what the user's languages are.
uint32_t GetUserLocaleId()
{
    return gLocaleId;
}

uint16_t GetUserUILanguageId()
{
    return gUILanguageId;
}

namespace {

// "name" when the language is supported, "(name)" when it only stands in for another.
std::string Outcome(const LanguageProvider &provider)
{
    return provider.IsSupported() ? provider.GetName() : "(" + provider.GetName() + ")";
}

TEST(LanguageProvider, IdentifiersReduceStepByStepToNeutral)
{
    const std::vector<std::vector<uint16_t>> paths = {
        {1033, 9, 0},         // English
        {1036, 12, 9, 0},     // French
        {0xFC0C, 12, 9, 0},   // the largest sub-language
        {1024, 0},            // the user's default, of no language
        {1023, 9, 0},         // the largest primary language
        {1028, 4, 0},         // Chinese: Taiwan
        {2052, 4, 0},         // the PRC
        {3076, 1028, 4, 0},   // Hong Kong
        {4100, 2052, 4, 0},   // Singapore
        {5124, 1028, 4, 0},   // Macau
        {6148, 2052, 4, 0},   // sub-languages that nobody has assigned
        {0x7C04, 2052, 4, 0}, // Chinese in the traditional script
    };
    for (const std::vector<uint16_t> &path : paths) {
        uint16_t langId = path[0];
        std::vector<uint16_t> steps = {langId};
        while (steps.size() < 10 && ReduceLangId(langId)) {
            steps.push_back(langId);
        }
        EXPECT_EQ(steps, path);
    }
}

TEST(LanguageProvider, EveryIdentifierEndsAtNeutral)
{
    for (uint32_t start = 0; start <= 0xFFFF; ++start) {
        uint16_t langId = static_cast<uint16_t>(start);
        int steps = 0;
        while (steps < 5 && ReduceLangId(langId)) {
            ++steps;
        }
        ASSERT_EQ(langId, 0) << start;
        ASSERT_LE(steps, 3) << start;
    }
}

TEST(LanguageProvider, IdentifiersFindTheirLanguageOrItsStandIn)
{
    const std::pair<uint32_t, const char *> cases[] = {
        {1033, "en"},      {2057, "en"},      {9, "en"},         {2052, "zh_CN"},   {4100, "zh_CN"}, {1036, "(en)"},
        {12, "(en)"},      {1041, "(en)"},    {1028, "neutral"}, {3076, "neutral"}, {4, "neutral"},  {0, "neutral"},
        {1024, "neutral"}, {0x7C04, "zh_CN"}, {0x70409, "en"}, // the sort order of a locale stands above the identifier
    };
    for (const auto &[langId, outcome] : cases) {
        EXPECT_EQ(Outcome(LanguageProvider(langId)), outcome) << langId;
        LanguageProvider reused("neutral");
        reused.SetFromLangId(langId);
        EXPECT_EQ(Outcome(reused), outcome) << langId;
    }
}

TEST(LanguageProvider, NamesAreTakenInAnyCaseButTheThreeSpecialOnesAsWritten)
{
    gUILanguageId = 1033;
    gLocaleId = 0x20804; // PRC, sorted by strokes
    const std::pair<const char *, const char *> cases[] = {
        {"en", "en"},           {"EN", "en"},      {"zh_cn", "zh_CN"},    {"neutral", "neutral"},
        {"userUI", "en"},       {"user", "zh_CN"}, {"USERUI", "(zh_CN)"}, {"User", "(zh_CN)"},
        {"Neutral", "(zh_CN)"}, {"", "(zh_CN)"},   {"de", "(zh_CN)"},     {"en_US", "(zh_CN)"},
    };
    for (const auto &[name, outcome] : cases) {
        EXPECT_EQ(Outcome(LanguageProvider(name)), outcome) << name;
    }
}

TEST(LanguageProvider, EnumeratorsAndCopiesSelectTheSame)
{
    EXPECT_EQ(Outcome(LanguageProvider(ELanguageChinese)), "zh_CN");
    EXPECT_EQ(Outcome(LanguageProvider(ELanguageEnglish)), "en");
    EXPECT_EQ(Outcome(LanguageProvider(ELanguageNeutral)), "neutral");
    EXPECT_EQ(Outcome(LanguageProvider(static_cast<ELanguage>(7))), "(zh_CN)");
    EXPECT_EQ(Outcome(LanguageProvider()), "neutral");

    const LanguageProvider french(1036u);
    LanguageProvider adopted("zh_CN");
    adopted = french;
    EXPECT_EQ(Outcome(adopted), "(en)");
    adopted.SetFromName("zh_CN");
    EXPECT_EQ(Outcome(adopted), "zh_CN");
    EXPECT_EQ(Outcome(french), "(en)");
    EXPECT_EQ(TakeTraceRecords(), std::vector<std::string>{});
}

} // namespace
