#include "Common/LanguageProvider.h"

#include "Common/UserLanguage.h"
#include "Tables.h"
#include "TraceRecorder.h"

// Windows has no part in these tests: they say what the user's languages are.
uint32_t GetUserLocaleId()
{
    return 0x20804; // PRC, sorted by strokes
}

uint16_t GetUserUILanguageId()
{
    return 1033;
}

namespace {

// "name" when the language is supported, "(name)" when it only stands in for another.
std::string Outcome(const LanguageProvider &provider)
{
    return provider.IsSupported() ? provider.GetName() : "(" + provider.GetName() + ")";
}

// The identifiers that one reduces to, step by step; never more than three.
std::string Path(uint16_t langId)
{
    std::string path;
    for (int steps = 0; steps < 5 && ReduceLangId(langId); ++steps) {
        path += (path.empty() ? "" : " ") + std::to_string(langId);
        EXPECT_LT(steps, 3);
    }
    EXPECT_EQ(langId, 0) << path;
    return path;
}

TEST(LanguageProvider, EveryIdentifierReducesStepByStepToNeutral)
{
    ExpectTable("language-path", [](const std::string &langId) { return Path(std::stoi(langId) & 0xFFFF); });
    for (uint32_t start = 0; start <= 0xFFFF; ++start) {
        Path(static_cast<uint16_t>(start));
    }
}

TEST(LanguageProvider, IdentifiersAndNamesFindTheirLanguageOrItsStandIn)
{
    ExpectTable("language-id", [](const std::string &langId) {
        const uint32_t number = static_cast<uint32_t>(std::stoul(langId));
        return Outcome(LanguageProvider(number));
    });
    ExpectTable("language-name", [](const std::string &name) { return Outcome(LanguageProvider(name)); });
    ExpectTable("language-number", [](const std::string &number) {
        return Outcome(LanguageProvider(static_cast<ELanguage>(std::stoi(number))));
    });
    LanguageProvider adopted;
    EXPECT_EQ(Outcome(adopted), "neutral");
    adopted = LanguageProvider(1036u);
    EXPECT_EQ(Outcome(adopted), "(en)");
    EXPECT_EQ(TakeAssertions(), ""); // the table is whole
}

} // namespace
