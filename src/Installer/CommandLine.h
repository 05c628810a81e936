// Reading of the command line and of the text that an outer front end hands over with it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Cuts a command line into tokens. Blanks separate; quotes hold a token together, with \" for a quote inside; a "-" or
// "/" outside quotes begins an option, written with "/" in the answer, also in the middle of a plain word; inside an
// option "-" is an ordinary character. NUL characters are skipped.
std::vector<std::string> SplitCommandLine(const std::string &commandLine);

// Whether the text in front of the argument tail says that the module runs as the uninstaller: the zero-terminated text
// 12 characters in front of `tail` is "remove.exe", in any case of letters. `begin` is where the command line that
// holds the tail begins: nothing in front of it is read, and a tail closer to it than 12 characters answers false.
bool IsRemoveRole(const char *begin, const char *tail);

// Collects the text of a response file from the chunks that the file was read in. One buffer of 16 bytes serves all
// reads and is cleared once, in front of the first: a short last chunk is followed by what the chunk before left there.
// Front ends write files of up to 16 bytes, or of a multiple of 16, which is what this is safe for.
class CResponseText {
public:
    static constexpr size_t kChunk = 16;

    // Where the next chunk goes.
    char *Buffer() { return mBuffer; }

    // Takes over what stands in the buffer, up to its first NUL, after a read that brought at least one byte.
    void TakeChunk();

    const std::string &Text() const { return mText; }

private:
    char mBuffer[kChunk] = {};
    std::string mText;
};

// Equality of an option name without regard to case (ASCII letters).
bool IsOption(const std::string &token, const char *name);
