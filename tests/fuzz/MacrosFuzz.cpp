// Foreign texts through the macro expansion, with values that are foreign, too.
#include "Require.h"
#include "Script/Macros.h"

namespace {

// The value stands for every other name, for the first few dozen: one with marks brings itself in again, and the bound
// of the expansion itself is far away.
class Values : public IMacroValues {
public:
    explicit Values(const std::string &value) : mValue(value) {}

    std::string LocalisedString(const std::string &key, const std::string &defaultValue) override
    {
        Require(!key.empty() && key.find('^') == std::string::npos);
        return key.size() % 2 == 0 ? mValue : defaultValue;
    }
    std::optional<std::string> Value(const std::string &upperName) override
    {
        Require(!upperName.empty() && upperName.find('!') == std::string::npos);
        for (const char c : upperName) {
            Require(c < 'a' || c > 'z');
        }
        const bool known = upperName.size() % 2 == 0 && mLeft > 0;
        mLeft -= known ? 1 : 0;
        return known ? std::optional<std::string>(mValue) : std::nullopt;
    }

private:
    std::string mValue;
    int mLeft = 32;
};

} // namespace

void CheckInput(const std::string &input)
{
    // The first byte tells how much of the rest is the value. Short texts: values with marks make a text grow.
    if (input.empty() || input.size() > 256) {
        return;
    }
    const std::string rest = input.substr(1);
    const size_t cut = rest.empty() ? 0 : static_cast<unsigned char>(input[0]) % rest.size();
    const std::string text = rest.substr(cut);
    const std::string value = rest.substr(0, cut);
    Values values(value);
    TakeTraceRecords();
    const std::string hats = ExpandHats(text, values);
    Require(TakeTraceRecords().size() <= 1);
    Require(text.find('^') != std::string::npos || hats == text);
    const std::string expanded = ExpandMacros(text, values);
    Require(TakeTraceRecords().size() <= 2);
    Require(hats.find('!') != std::string::npos || expanded == hats);
    const std::string name = ExtractBangName(text);
    Require(name.empty() || text.compare(0, name.size() + 2, "!" + name + "!") == 0);
}
