// The string lines of the FRU text writer: a field's contents in the form of its
// type/length byte, and a record's text. Each is composed only if the reader takes it
// back into exactly the same bytes; otherwise the caller writes the bytes in hex.
#include <cstring>

#include "FRUTextReader.h"
#include "FRUTextWriter.h"
#include "text/DatTrans.h"

namespace {

enum : uint8_t {
    FRU_TYPE_BINARY = 0,
    FRU_TYPE_BCD_PLUS = 1,
    FRU_TYPE_SIX_BIT = 2,
    FRU_TYPE_SHIFT = 6,
    FRU_LENGTH_MASK = 0x3F,
};

// The longest string line, a record's text of 254 characters with its apostrophes and line
// end, fills the line buffer; in UTF-16 or UTF-8 it takes at most twice as many bytes,
// which the reader takes as one line.
static_assert(2 * (FRU_LINE_BUFFER_SIZE - 1) <= FRU_RAW_LINE_LIMIT, "the reader must take a string line whole");

const char kchQuote = '\'';
const char kchLineFeed = '\n';

// Text that the reader takes back from a string line: no zero byte, which would end it,
// no line feed, which would end the line, and no start tag, which the reader would take
// for a second one.
bool IsCarriable(const char* pchText, size_t uLength)
{
    return std::memchr(pchText, '\0', uLength) == nullptr && std::memchr(pchText, kchLineFeed, uLength) == nullptr &&
           std::strstr(pchText, FRU_START_TAG) == nullptr;
}

// The one-byte string line of uLength characters: apostrophe, text, apostrophe, line feed.
int ComposeOneByteLine(const char* pchText, size_t uLength, sFRUStringLine* psLine)
{
    char* pchLine = psLine->achText;
    if (uLength + 4 > sizeof(psLine->achText)) {
        return 0;
    }
    std::memset(pchLine, 0, sizeof(psLine->achText));
    pchLine[0] = kchQuote;
    std::memcpy(pchLine + 1, pchText, uLength);
    pchLine[uLength + 1] = kchQuote;
    pchLine[uLength + 2] = kchLineFeed;
    psLine->uLength = uLength + 3;
    psLine->bRaw = false;
    return IsCarriable(pchLine + 1, uLength) ? 1 : 0;
}

// BCD Plus or 6-bit ASCII, decoded. Every byte of BCD Plus comes back; of 6-bit ASCII,
// the bits behind the last character of a rest of one or two bytes don't.
int ComposePackedLine(const uint8_t* pu8Bytes, uint8_t u8N, bool bBCDPlus, sFRUStringLine* psLine)
{
    char achText[FRU_LINE_BUFFER_SIZE] = {};
    uint8_t au8Again[FRU_LENGTH_MASK] = {};
    const bool bDecoded = bBCDPlus ? ConvertBCDPlusToASCIIStr(pu8Bytes, u8N, achText, sizeof(achText) - 1)
                                   : ConvertSixBitASCIIToASCIIStr(pu8Bytes, u8N, achText, sizeof(achText) - 1);
    if (!bDecoded || (!bBCDPlus && (!ConvertASCIIStrToSixBitASCII(achText, au8Again, sizeof(au8Again)) ||
                                    std::memcmp(au8Again, pu8Bytes, u8N) != 0))) {
        return 0;
    }
    return ComposeOneByteLine(achText, std::strlen(achText), psLine);
}

// The 16-bit units of a Unicode field, the last byte of an odd length as a unit of its
// own. Each must stand alone in a line and come back through iconv: no U+0000, no line
// feed, no half of a surrogate pair; and the characters up to U+00FF must not spell the
// start tag.
bool UnitsCarriable(const uint8_t* pu8Bytes, uint8_t u8N)
{
    char achNarrow[FRU_LINE_BUFFER_SIZE] = {};
    for (uint8_t i = 0; i < u8N; i = static_cast<uint8_t>(i + 2)) {
        const unsigned uUnit = pu8Bytes[i] | (i + 1 < u8N ? pu8Bytes[i + 1] << 8 : 0u);
        if (uUnit == 0 || uUnit == static_cast<unsigned>(kchLineFeed) || (uUnit >= 0xD800 && uUnit <= 0xDFFF)) {
            return false;
        }
        achNarrow[i / 2] = uUnit <= 0xFF ? static_cast<char>(uUnit) : '\x01';
    }
    return std::strstr(achNarrow, FRU_START_TAG) == nullptr;
}

// Unicode: in UTF-16 the field's bytes themselves between two-byte apostrophes, which
// takes whole units; in UTF-8 its units converted; an ASCII file has no form for it.
int ComposeUnicodeLine(const uint8_t* pu8Bytes, uint8_t u8N, eFileEncoding eEncoding, sFRUStringLine* psLine)
{
    char* pchLine = psLine->achText;
    psLine->bRaw = true;
    if (!UnitsCarriable(pu8Bytes, u8N)) {
        return 0;
    }
    if (eEncoding == eEncodingUTF16 && u8N % 2 == 0) {
        std::memcpy(pchLine, "'\0", 2);
        std::memcpy(pchLine + 2, pu8Bytes, u8N);
        std::memcpy(pchLine + 2 + u8N, "'\0\n\0", 4);
        psLine->uLength = u8N + 6u;
        return 1;
    }
    uint8_t u8Length = 0;
    if (eEncoding != eEncodingUTF8 ||
        !UTF16ToUTF8(pu8Bytes, u8N, pchLine + 1, sizeof(psLine->achText) - 3, &u8Length)) {
        return 0;
    }
    pchLine[0] = kchQuote;
    pchLine[u8Length + 1] = kchQuote;
    pchLine[u8Length + 2] = kchLineFeed;
    psLine->uLength = u8Length + 3u;
    return 1;
}

}  // namespace

int FRUComposeFieldString(const uint8_t* pu8Field, bool bEightBit, eFileEncoding eEncoding, sFRUStringLine* psLine)
{
    const uint8_t u8Type = static_cast<uint8_t>(pu8Field[0] >> FRU_TYPE_SHIFT);
    const uint8_t u8N = static_cast<uint8_t>(pu8Field[0] & FRU_LENGTH_MASK);
    if (u8Type == FRU_TYPE_BINARY) {
        return 0;
    }
    if (u8Type == FRU_TYPE_BCD_PLUS || u8Type == FRU_TYPE_SIX_BIT) {
        return ComposePackedLine(pu8Field + 1, u8N, u8Type == FRU_TYPE_BCD_PLUS, psLine);
    }
    if (!bEightBit) {
        return ComposeUnicodeLine(pu8Field + 1, u8N, eEncoding, psLine);
    }
    return ComposeOneByteLine(reinterpret_cast<const char*>(pu8Field + 1), u8N, psLine);
}

int FRUComposeTextString(const uint8_t* pu8Text, uint16_t u16Length, sFRUStringLine* psLine)
{
    return ComposeOneByteLine(reinterpret_cast<const char*>(pu8Text), u16Length, psLine);
}
