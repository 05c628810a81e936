// A text taken apart token by token: a step at each ";", a section at each NUL, the line of a flag at each "=". A token
// is what stands between two separators, blanks and quotes included.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class TokenSplitter {
public:
    explicit TokenSplitter(const std::string &separator, const std::string &text_I = std::string());

    // Loads a new text and forgets all positions.
    void SetText(const std::string &text);

    // The first token; the token behind the current one; the current one. Past the last token the answer is
    // empty and the splitter stays at the end.
    std::string First();
    std::string Next();
    std::string Current();

    // True when the current place lies behind the last token. An empty text has one token, the empty one.
    bool AtEnd();

private:
    void Parse();

    bool mParsed = false;
    std::string mText;
    std::vector<uint32_t> mPositions; // 0, one place behind each separator, then the end mark
    uint32_t mCurrent = 0;
    std::string mSeparator;
};
