// Foreign script files through the portable reader of profiles.
#include <algorithm>

#include "Pack/ProfileReader.h"
#include "Require.h"

namespace {

class COneFile : public IScriptSource {
public:
    explicit COneFile(std::string bytes) : mBytes(std::move(bytes)) {}
    std::optional<std::string> ReadFile(const std::string &) override { return mBytes; }

private:
    std::string mBytes;
};

} // namespace

void CheckInput(const std::string &bytes)
{
    for (const uint32_t number : {1252U, 936U}) {
        const CCodePage codePage(number);
        COneFile source(bytes);
        CProfileReader reader(source, codePage);
        const CProfileFile &file = *reader.File(".\\x");
        size_t ends = 0;
        for (const ProfileSection &section : file.Sections()) {
            // A place is where the piece stands in the file.
            Require(section.mPlace.mLine <= file.LineCount());
            for (const ProfileLine &line : section.mLines) {
                Require(line.mKeyPlace.mLine >= section.mPlace.mLine && line.mKeyPlace.mLine <= file.LineCount());
                const std::string_view text = file.LineText(line.mKeyPlace.mLine);
                Require(line.mKeyPlace.mColumn >= 1 && line.mKeyPlace.mColumn <= text.size());
                Require(!line.mHasValue || line.mValuePlace.mColumn <= text.size());
                Require(file.Encoding() != EProfileEncoding::ECodePage || line.mKey.empty() || number != 1252 ||
                        text.substr(line.mKeyPlace.mColumn - 1, 1) == codePage.FromWide(line.mKey.substr(0, 1)));
            }
            // A section is its lines with NULs behind them, and a value is inside of its line.
            const std::string name = codePage.FromWide(UpToNul(section.mName));
            for (const uint32_t room : {10240U, 2U + static_cast<uint32_t>(bytes.size() % 40)}) {
                std::vector<char> buffer(room, '#');
                const uint32_t length = reader.ReadSection(".\\x", name, buffer.data(), room);
                bool cut = false;
                std::string lines;
                for (const SectionLine &line : reader.SectionLines(".\\x", name, &cut, room)) {
                    lines += line.mText + '\0';
                }
                Require(length + 1 < room &&
                        std::string(buffer.data(), length).substr(0, lines.size()) == lines.substr(0, length));
                Require(cut ? length == room - 2 : length == lines.size());
                std::fill(buffer.begin(), buffer.end(), '#');
                const std::string key = section.mLines.empty() ? "k" : codePage.FromWide(section.mLines[0].mKey);
                Require(reader.ReadValue(".\\x", name, key.c_str(), "d", buffer.data(), room) < room);
                reader.ReadNumber(".\\x", name, key.c_str(), 1);
            }
            ++ends;
        }
        Require(ends >= 1);
    }
}
