#include "Shell/XmlCodePages.h"

#include <windows.h>

#include <libxml/encoding.h>

#include <algorithm>

namespace {

constexpr int kBadText = -2;

// Bytes of the character at `from` in UTF-8, 0 when the page has no such character.
int DecodeCharacter(UINT codePage, const unsigned char *from, int size, char (&utf8_O)[8])
{
    wchar_t wide[4];
    const int units =
        MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, reinterpret_cast<LPCSTR>(from), size, wide, 4);
    return units > 0 ? WideCharToMultiByte(CP_UTF8, 0, wide, units, utf8_O, sizeof utf8_O, nullptr, nullptr) : 0;
}

// As the library asks for it: takes and gives what there is and what fits, and tells how much that was. Half a
// character at the end is left for the next call. Answers the bytes given, or kBadText.
template <UINT TCodePage>
int Decode(unsigned char *out, int *outlen, const unsigned char *in, int *inlen)
{
    const unsigned char *const inEnd = in != nullptr ? in + *inlen : in;
    const unsigned char *from = in;
    unsigned char *to = out;
    unsigned char *const outEnd = out + *outlen;
    bool bad = false;
    while (from < inEnd && to < outEnd && !bad) {
        if (*from < 0x80) { // the same in all of these pages, and nearly everything
            *to++ = *from++;
            continue;
        }
        const int size = IsDBCSLeadByteEx(TCodePage, *from) ? 2 : 1;
        if (size > inEnd - from) {
            break;
        }
        char utf8[8];
        const int length = DecodeCharacter(TCodePage, from, size, utf8);
        bad = length == 0;
        if (bad || length > outEnd - to) {
            break;
        }
        to = std::copy(utf8, utf8 + length, to);
        from += size;
    }
    *inlen = static_cast<int>(from - in);
    *outlen = static_cast<int>(to - out);
    return bad ? kBadText : *outlen;
}

// Names of the registry of character sets and their common short forms.
constexpr struct {
    const char *mName;
    xmlCharEncodingInputFunc mDecode;
} kCodePages[] = {
    {"windows-874", Decode<874>},   {"windows-1250", Decode<1250>},  {"windows-1251", Decode<1251>},
    {"windows-1252", Decode<1252>}, {"windows-1253", Decode<1253>},  {"windows-1254", Decode<1254>},
    {"windows-1255", Decode<1255>}, {"windows-1256", Decode<1256>},  {"windows-1257", Decode<1257>},
    {"windows-1258", Decode<1258>}, {"KOI8-R", Decode<20866>},       {"Shift_JIS", Decode<932>},
    {"windows-31J", Decode<932>},   {"GB2312", Decode<936>},         {"GBK", Decode<936>},
    {"EUC-KR", Decode<949>},        {"KS_C_5601-1987", Decode<949>}, {"Big5", Decode<950>},
};

} // namespace

void RegisterXmlCodePages()
{
    for (const auto &page : kCodePages) {
        xmlNewCharEncodingHandler(page.mName, page.mDecode, nullptr);
    }
}
