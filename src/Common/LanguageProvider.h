// The language of the run. The script keeps the words that a user gets to see in a section of its name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum ELanguage : int32_t {
    ELanguageChinese = 0,
    ELanguageEnglish = 1,
    LAST_ELANGUAGE,
    ELanguageNeutral = LAST_ELANGUAGE, // stands outside the table of languages
};

struct LanguageEntry {
    std::string mName; // section of the script
    ELanguage mLanguage;
    uint16_t mLangId; // language identifier of Windows
};

// Takes a Windows language identifier one step broader: from a country to its language, from there to
// English and on to neutral (0); traditional Chinese goes to neutral without English. Answers whether the
// identifier changed, which it does until it is 0.
bool ReduceLangId(uint16_t &langId_O);

// One of the few languages that the program knows, found by a name or a number. A selection never fails:
// what is not known gives the first language of the table, and IsSupported() tells.
class LanguageProvider {
public:
    LanguageProvider(); // neutral
    explicit LanguageProvider(const std::string &name);
    explicit LanguageProvider(uint32_t langId);
    explicit LanguageProvider(ELanguage language);

    // `name` is a language of the table in any case, or, exactly as written, "userUI" (the language that
    // Windows shows to the user), "user" (the user's region) or "neutral".
    void SetFromName(const std::string &name);

    // The low 16 bits of `langId` count. A language reached only by way of another one, as English for a
    // French identifier, is taken but not called supported.
    void SetFromLangId(uint32_t langId);

    void SetFromLanguage(ELanguage language);

    std::string GetName() const;
    bool IsSupported() const;

private:
    void BuildTable();
    void Take(const LanguageEntry &entry, bool supported);

    LanguageEntry mCurrent;
    std::vector<LanguageEntry> mLangTable;
    LanguageEntry mNeutral;
    bool mSupported;
};
