// Macros in script text: ^NAME^ is a localised string, !NAME! a folder, a fixed name or a value of the run. One pass
// each, the hats first: a localised string may hold a !NAME!, which the second pass then expands.
#pragma once

#include <optional>
#include <string>

// What the names mean; the run supplies it.
class IMacroValues {
public:
    virtual ~IMacroValues() = default;

    // The string `key` of the language's section, `defaultValue` when there is none.
    virtual std::string LocalisedString(const std::string &key, const std::string &defaultValue) = 0;

    // The value of an upper-cased name; nothing for a name that means nothing.
    virtual std::optional<std::string> Value(const std::string &upperName) = 0;

    // Told of each mark without its partner, besides the report.
    virtual void Unpaired(char /*mark*/) {}
};

// Replaces every ^NAME^. A missing key gives the name itself, ^^ gives ^. An inserted value is not looked at again.
// An unpaired mark is reported and stays.
std::string ExpandHats(const std::string &text, IMacroValues &values);

// Replaces every !NAME! behind the hats. An unknown name gives its own text, !! gives !. The search goes on one
// character behind where the mark stood, so that a mark inside a value begins a new macro unless it is its first
// character. An unpaired mark is reported and stays.
std::string ExpandMacros(const std::string &text, IMacroValues &values);

// The name inside a leading !...!; empty when the text does not begin with a mark. A missing closing mark is reported.
std::string ExtractBangName(const std::string &text);
