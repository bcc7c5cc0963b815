#include "FruTextEmitter.h"

#include <cstdio>
#include <vector>

#include "text/DatTrans.h"

namespace {

const std::vector<std::string> kFieldNames[] = {
    {"part number", "serial number"},
    {"manufacturer", "product name", "serial number", "part number", "FRU file ID"},
    {"manufacturer", "product name", "part/model number", "version", "serial number", "asset tag", "FRU file ID"},
};
const char* const kTags[] = {"_SEE_INTERNAL", "_SEE_CHASSIS", "_SEE_BOARD", "_SEE_PRODUCT", "_SEE_MULTIRECORD"};

bool Fail(std::string* psError, const std::string& sWhy)
{
    *psError = sWhy;
    return false;
}

// The file being written: one-byte text goes out in the file's encoding.
struct sEmitter {
    std::string sEncoding;
    bool bAnnotated;
    std::string sOut;
};

void Text(sEmitter& s, const std::string& sText)
{
    for (unsigned char c : sText) {
        if (s.sEncoding == "utf16") {
            s.sOut += {static_cast<char>(c), '\0'};
        } else if (s.sEncoding == "utf8" && c >= 0x80) {
            s.sOut += {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
        } else {
            s.sOut += static_cast<char>(c);
        }
    }
}

void Line(sEmitter& s, const std::string& sText, const std::string& sComment = "")
{
    std::string sLine = sText;
    if (s.bAnnotated && !sComment.empty()) {
        sLine += std::string(sLine.size() < 24 ? 24 - sLine.size() : 1, ' ') + "// " + sComment;
    }
    Text(s, sLine + "\n");
}

std::string Hex(const uint8_t* pu8, size_t uCount)
{
    std::string s;
    for (size_t i = 0; i < uCount; i++) {
        char ach[4];
        std::snprintf(ach, sizeof(ach), "%s%02X", i ? " " : "", pu8[i]);
        s += ach;
    }
    return s;
}

// Hex bytes, 16 to a line when annotated, else one a line; the comment on the first line.
void HexLines(sEmitter& s, const uint8_t* pu8, size_t uCount, const std::string& sComment = "")
{
    const size_t uPerLine = s.bAnnotated ? 16 : 1;
    for (size_t i = 0; i < uCount; i += uPerLine) {
        Line(s, Hex(pu8 + i, uCount - i < uPerLine ? uCount - i : uPerLine), i == 0 ? sComment : "");
    }
}

bool PlainText(const uint8_t* pu8, size_t uCount)
{
    for (size_t i = 0; i < uCount; i++) {
        if (pu8[i] == 0 || pu8[i] == '\n') return false;
    }
    return true;
}

// The decoded form of a packed field, if packing it again gives back the same bytes.
bool Unpacked(uint8_t u8Type, const uint8_t* pu8, uint8_t u8N, std::string* psText)
{
    char ach[256] = {};
    TFruBytes vAgain(u8N, 0);
    if (u8Type == 1) {
        return ConvertBCDPlusToASCIIStr(pu8, u8N, ach, sizeof(ach)) && (*psText = ach, true);
    }
    if (!ConvertSixBitASCIIToASCIIStr(pu8, u8N, ach, sizeof(ach))) return false;
    *psText = ach;
    return ConvertASCIIStrToSixBitASCII(ach, vAgain.data(), vAgain.size()) && TFruBytes(pu8, pu8 + u8N) == vAgain;
}

// A Unicode field as its string line, if the file's encoding can give back its bytes.
bool UnicodeLine(sEmitter& s, const uint8_t* pu8, uint8_t u8N)
{
    for (size_t i = 0; i < u8N; i += 2) {
        const unsigned uUnit = pu8[i] | (i + 1 < u8N ? pu8[i + 1] << 8 : 0);
        if (uUnit == 0 || uUnit == '\n' || (uUnit >= 0xD800 && uUnit < 0xE000)) return false;
    }
    if (s.sEncoding == "utf16" && u8N % 2 == 0) {
        s.sOut += std::string("'\0", 2) + std::string(pu8, pu8 + u8N) + std::string("'\0\n\0", 4);
        return true;
    }
    char ach[256] = {};
    uint8_t u8Length = 0;
    if (s.sEncoding != "utf8" || !UTF16ToUTF8(pu8, u8N, ach, sizeof(ach), &u8Length)) {
        return false;
    }
    s.sOut += "'" + std::string(ach, u8Length) + "'\n";
    return true;
}

// One field of an area: its type/length byte, then its string, or its bytes in hex behind
// the type/length byte on the same line.
void Field(sEmitter& s, const uint8_t* pu8, int iArea, size_t uIndex, uint8_t u8Language)
{
    const std::vector<std::string>& vNames = kFieldNames[iArea - 1];
    const std::string sName = uIndex < vNames.size() ? vNames[uIndex] : "custom field";
    const uint8_t u8Type = pu8[0] >> 6, u8N = pu8[0] & 0x3F;
    const bool bEightBit = u8Language == 0 || u8Language == 25 || iArea == 1 ||
                           (iArea == 2 && (uIndex == 2 || uIndex == 4)) || (iArea == 3 && (uIndex == 4 || uIndex == 6));
    std::string sText;
    const size_t uMark = s.sOut.size();
    Line(s, Hex(pu8, 1), sName);
    if (u8N == 0) return;
    if ((u8Type == 1 || u8Type == 2) && Unpacked(u8Type, pu8 + 1, u8N, &sText)) return Line(s, "'" + sText + "'");
    if (u8Type == 3 && bEightBit && PlainText(pu8 + 1, u8N)) {
        return Line(s, "'" + std::string(pu8 + 1, pu8 + 1 + u8N) + "'");
    }
    if (u8Type == 3 && !bEightBit && UnicodeLine(s, pu8 + 1, u8N)) return;
    s.sOut.resize(uMark);
    Line(s, Hex(pu8, 1u + u8N), sName);
}

bool InfoArea(sEmitter& s, const TFruBytes& v, size_t uAt, int iArea, std::string* psError)
{
    const size_t uEnd = uAt + v[uAt + 1] * 8u, uFixed = iArea == 2 ? 6 : 3;
    if (v[uAt + 1] == 0 || uEnd > v.size()) return Fail(psError, "an area passes the end of the image");
    const uint8_t u8Language = iArea == 1 ? 0 : v[uAt + 2];
    HexLines(s, &v[uAt], s.bAnnotated ? uFixed : 1, "version, length in 8-byte units, " +
             std::string(iArea == 1 ? "chassis type" : iArea == 2 ? "language, made" : "language"));
    if (!s.bAnnotated) HexLines(s, &v[uAt + 1], uFixed - 1);
    size_t uField = uAt + uFixed;
    for (size_t uIndex = 0; uField + 1 < uEnd && v[uField] != 0xC1; uIndex++) {
        if (uField + 1 + (v[uField] & 0x3F) >= uEnd) return Fail(psError, "a field passes the end of its area");
        Field(s, &v[uField], iArea, uIndex, u8Language);
        uField += 1 + (v[uField] & 0x3F);
    }
    if (s.bAnnotated) return Line(s, Hex(&v[uField], uEnd - uField), "end of the fields, zeroes, checksum"), true;
    return HexLines(s, &v[uField], uEnd - uField), true;
}

bool MultiRecords(sEmitter& s, const TFruBytes& v, size_t uAt, std::string* psError)
{
    for (bool bLast = false; !bLast;) {
        if (uAt + 5 > v.size() || uAt + 5 + v[uAt + 2] > v.size()) {
            return Fail(psError, "a record passes the end of the image");
        }
        const uint8_t u8N = v[uAt + 2];
        char achComment[64];
        std::snprintf(achComment, sizeof(achComment), "record type %02Xh: type, flags, length, checksums", v[uAt]);
        HexLines(s, &v[uAt], s.bAnnotated ? 5 : 1, achComment);
        if (!s.bAnnotated) HexLines(s, &v[uAt + 1], 4);
        const uint8_t* pu8Data = &v[uAt + 5];
        if (v[uAt] == 3 && u8N > 1 && pu8Data[0] != 7 && PlainText(pu8Data + 1, u8N - 1u)) {
            Line(s, Hex(pu8Data, 1), "sub-type");
            Line(s, "'" + std::string(pu8Data + 1, pu8Data + u8N) + "'");
        } else {
            HexLines(s, pu8Data, u8N);
        }
        bLast = (v[uAt + 1] & 0x80) != 0;
        uAt += 5u + u8N;
    }
    return true;
}

}  // namespace

bool FruTextFile(const TFruBytes& v, const std::string& sEncoding, bool bAnnotated, const std::string& sTitle,
                 std::string* psFile, std::string* psError)
{
    if (sEncoding != "ascii" && sEncoding != "utf8" && sEncoding != "utf16") {
        return Fail(psError, "unknown encoding \"" + sEncoding + "\" (ascii, utf8 or utf16)");
    }
    if (v.size() < 8) return Fail(psError, "the image has no header");
    sEmitter s = {sEncoding, bAnnotated, sEncoding == "utf8" ? "\xEF\xBB\xBF" : sEncoding == "utf16" ? "\xFF\xFE" : ""};
    if (bAnnotated && !sTitle.empty()) Line(s, "// " + sTitle);
    Line(s, "_FRU (");
    Line(s, "_SEE_COMMON");
    HexLines(s, v.data(), bAnnotated ? 8 : 1, "version, area offsets in 8-byte units, PAD, checksum");
    if (!bAnnotated) HexLines(s, v.data() + 1, 7);
    size_t uAt = 8;
    for (int iArea = 0; iArea < 5; iArea++) {
        if (v[1 + iArea] == 0) continue;
        if (v[1 + iArea] * 8u != uAt) {
            return Fail(psError, std::string(kTags[iArea]) + " isn't where the last area ends");
        }
        Line(s, kTags[iArea]);
        size_t uNext = v.size();
        for (int j = iArea + 1; j < 5 && uNext == v.size(); j++) uNext = v[1 + j] ? v[1 + j] * 8u : uNext;
        if (iArea == 0) {
            HexLines(s, &v[uAt], uNext - uAt, "version, then the bytes of the internal use area");
        } else if (iArea == 4) {
            if (!MultiRecords(s, v, uAt, psError)) return false;
        } else if (!InfoArea(s, v, uAt, iArea, psError)) {
            return false;
        }
        uAt = iArea == 0 || iArea == 4 ? uNext : uAt + v[uAt + 1] * 8u;
    }
    Line(s, ")");
    *psFile = s.sOut;
    return true;
}
