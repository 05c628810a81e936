// The portable reader of script files against the platform's own: the same bytes, the same answers.
#include <windows.h>

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "Common/Handles.h"
#include "Pack/ProfileReader.h"
#include "ScratchFolder.h"

using namespace std::string_view_literals;

namespace {

constexpr int kFiles = 1000;

class COneFile : public IScriptSource {
public:
    std::string mBytes;
    std::optional<std::string> ReadFile(const std::string &) override { return mBytes; }
};

std::string Visible(const std::string &bytes)
{
    std::string text;
    for (const char c : bytes) {
        char hex[8];
        snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
        text += c >= ' ' && c <= '~' && c != '\\' ? std::string(1, c) : c == '\n' ? "\\n" : hex;
    }
    return text;
}

// Files from the pieces that matter to a reader, in every order.
class CFileMaker {
public:
    explicit CFileMaker(uint32_t seed) : mRandom(seed) {}

    uint32_t Below(uint32_t limit) { return mRandom() % limit; }

    // One of the texts between bars.
    std::string OneOf(std::string_view texts)
    {
        for (auto skipped = Below(static_cast<uint32_t>(std::count(texts.begin(), texts.end(), '|')) + 1); skipped > 0;
             --skipped) {
            texts.remove_prefix(texts.find('|') + 1);
        }
        return std::string(texts.substr(0, texts.find('|')));
    }
    std::string Noise(uint32_t longest)
    {
        std::string bytes(Below(longest), '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(Below(256)); });
        return bytes;
    }
    std::string Name()
    {
        return OneOf(
            "a|B|Install|install|MAIN|a b|\xC4|\xE4|k\0y||x]y|\"q\"|;c|\xA0n|\x81\x40|\x85\x5D|1|\xDF|\xFF|\x9F"sv);
    }
    std::string Blanks() { return Below(2) != 0 ? "" : OneOf(" |\t|  |\x1A|\xA0|\v|\f |\0|\r|\x1C|\x85"sv); }
    std::string Value()
    {
        constexpr char kNumbers[] =
            "12|-3|+4|0x1F|0X1f|0b101|0o17|017|99999999999|4294967295|-2147483649|1a| 7 |x5|--1|"
            "- 1|0x|0xg|+-1|\"5\"|1\xA0|\xA0#9";
        switch (Below(8)) {
        case 0:
            return OneOf("\"|'|\"\"|''|\"a\"|'a'|\"a'|'a|\" a \"|\"a\"b\"|'\"x\"'|\" a|a\"");
        case 1:
            return OneOf(kNumbers);
        case 2:
            return std::string(Below(60), "xy\xE4\x81"[Below(4)]);
        case 3:
            return "CopyFile;.\\\\a;!B!\\\\c";
        case 4:
            return "a=b" + Blanks() + "=c";
        case 5:
            return Noise(12);
        default:
            return OneOf("|a|v w|[s]|;|#|\\|\xD6l|\x81|\xB0\xA1");
        }
    }
    std::string Line()
    {
        switch (Below(9)) {
        case 0:
            return "[" + Blanks() + Name() + Blanks() + OneOf("]|]|]||] x|]]|] ]");
        case 1:
            return "[" + Name() + "]";
        case 2:
            return OneOf(";|; a=b|;a|#|=|=v|==|[|]|[]|[ ]| |\"|'");
        case 3:
            return Value();
        case 4:
            return Noise(20);
        default:
            return Name() + Blanks() + "=" + Blanks() + Value();
        }
    }
    std::string File()
    {
        const std::string end = OneOf("\r\n|\r\n|\r\n|\n|\n|\r|\n\r|\r\r\n|\n\n");
        const bool mixed = Below(4) == 0;
        std::string bytes = Below(4) != 0 ? "[" + Name() + "]" + end : "";
        for (uint32_t lines = Below(20); lines > 0; --lines) {
            bytes += Blanks() + Line() + Blanks() + (mixed ? OneOf("\r\n|\n|\r") : end);
        }
        bytes += Below(3) == 0 ? Line() : "";
        bytes += Below(30) == 0 ? std::string(Below(300), 'x') + end + std::string(Below(300), '\xE4') : "";
        switch (Below(12)) {
        case 0:
            bytes.insert(0, "\xEF\xBB\xBF");
            break;
        case 1:
            return Wide(bytes, false);
        case 2:
            return Wide(bytes, true);
        case 3:
            bytes.insert(0, OneOf("\xFF\xFE|\xFE\xFF|\xEF\xBB|\xFF|\xEF\xBB\xBF\xEF\xBB\xBF"));
            break;
        default:
            break;
        }
        // Half a unit at the end of wide text means to the platform what happens to lie in its memory.
        const bool wide = bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF";
        return wide && bytes.size() % 2 != 0 ? bytes + "x" : bytes;
    }

private:
    std::string Wide(const std::string &bytes, bool swapped)
    {
        std::string wide = swapped ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : bytes) {
            const char high = Below(40) == 0 ? static_cast<char>(Below(256)) : '\0';
            wide += swapped ? high : c;
            wide += swapped ? c : high;
        }
        return wide;
    }

    std::mt19937 mRandom;
};

// Gives a file an age: the platform reads a young one anew for each question.
void LetRest(const std::string &path)
{
    const FILETIME longAgo = {0, 0x01D00000};
    const CHandle file(CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    SetFileTime(file.Get(), nullptr, nullptr, &longAgo);
}

} // namespace

TEST(ProfileReader, AnswersAsThePlatformDoesForRandomAndHostileFiles)
{
    const CScratchFolder folder;
    int asked = 0, differences = 0;
    for (int seed = 0; seed < kFiles && differences < 20; ++seed) {
        CFileMaker maker(static_cast<uint32_t>(seed));
        COneFile source;
        source.mBytes = maker.File();
        const std::string path = folder.Write("p" + std::to_string(seed) + ".dat", source.mBytes);
        LetRest(path);
        CProfileReader reader(source, CCodePage(GetACP()));
        for (int question = 0; question < 24 && differences < 20; ++question) {
            const std::string section = maker.Name().c_str(), key = maker.Name().c_str();
            const std::string standard = maker.OneOf("|d|d  | d|\"d\"|\xE4|\x81");
            const uint32_t size = maker.Below(3) != 0 ? kValueBufferSize : 2 + maker.Below(40);
            const auto number = static_cast<int>(maker.Below(3));
            std::string theirs(kValueBufferSize, '#'), ours = theirs;
            uint32_t their = 0, our = 0;
            const char *what = "section";
            if (question % 3 == 0) {
                their = GetPrivateProfileSectionA(section.c_str(), theirs.data(), size, path.c_str());
                our = reader.ReadSection(path, section, ours.data(), size);
                theirs.resize(their + 2), ours.resize(our + 2);
            } else if (question % 3 == 1) {
                what = "value";
                their = GetPrivateProfileStringA(section.c_str(), key.c_str(), standard.c_str(), theirs.data(), size,
                                                 path.c_str());
                our = reader.ReadValue(path, section, key, standard, ours.data(), size);
                theirs.resize(their + 1), ours.resize(our + 1);
            } else {
                what = "number";
                their = GetPrivateProfileIntA(section.c_str(), key.c_str(), number, path.c_str());
                our = reader.ReadNumber(path, section, key, static_cast<uint32_t>(number));
            }
            ++asked;
            if (their != our || theirs != ours) {
                ++differences;
                ADD_FAILURE() << what << " [" << Visible(section) << "] " << Visible(key) << " size " << size
                              << " default " << Visible(standard) << number << "\n"
                              << "platform " << their << ": " << Visible(theirs.substr(0, 300)) << "\nours     " << our
                              << ": " << Visible(ours.substr(0, 300)) << "\nof " << Visible(source.mBytes);
            }
        }
        DeleteFileA(path.c_str());
    }
    EXPECT_EQ(asked, 24 * kFiles);
}

TEST(ProfileReader, KnowsEachLetterOfTheCodePages)
{
    for (const uint32_t number : CCodePage::Known()) {
        const CCodePage page(number);
        int differences = 0;
        for (uint32_t code = 0; code < 0x10000; ++code) {
            const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(code)};
            wchar_t wide[4] = {};
            const int length = MultiByteToWideChar(number, 0, bytes, 2, wide, 4);
            const std::u16string ours = page.ToWide(std::string_view(bytes, 2));
            differences +=
                ours != std::u16string(reinterpret_cast<const char16_t *>(wide), static_cast<size_t>(length)) ? 1 : 0;
            const auto letter = static_cast<wchar_t>(code);
            char back[8] = {};
            const int size = WideCharToMultiByte(number, 0, &letter, 1, back, 8, nullptr, nullptr);
            const auto unit = static_cast<char16_t>(code);
            differences +=
                page.FromWide(std::u16string_view(&unit, 1)) != std::string(back, static_cast<size_t>(size)) ? 1 : 0;
        }
        EXPECT_EQ(differences, 0) << number;
    }
}
