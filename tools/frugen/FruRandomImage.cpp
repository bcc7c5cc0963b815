#include "FruRandomImage.h"

#include <random>

namespace {

typedef std::mt19937 TRandom;

enum : uint8_t { kBinary = 0x00, kBCDPlus = 0x40, kSixBit = 0x80, kTypeThree = 0xC0, kEndMark = 0xC1 };

size_t Below(TRandom& r, size_t uLimit) { return r() % uLimit; }
bool Chance(TRandom& r, unsigned uPercent) { return r() % 100 < uPercent; }

// Bytes from u8Low to u8High; with bNoEndMark, a C1 among them becomes C2.
TFruBytes Bytes(TRandom& r, size_t uCount, uint8_t u8Low, uint8_t u8High, bool bNoEndMark)
{
    TFruBytes v(uCount);
    for (uint8_t& u8 : v) {
        u8 = static_cast<uint8_t>(u8Low + Below(r, u8High - u8Low + 1u));
        u8 = (bNoEndMark && u8 == kEndMark) ? kEndMark + 1 : u8;
    }
    return v;
}

// Mostly short, now and then up to the 63 bytes of a field.
size_t FieldLength(TRandom& r) { return Chance(r, 15) ? Below(r, 64) : Below(r, 12); }

TFruBytes Field(uint8_t u8Type, TFruBytes v)
{
    v.insert(v.begin(), static_cast<uint8_t>(u8Type | v.size()));
    return v;
}

// 6-bit ASCII packed from its characters, or now and then any bytes; BCD Plus of any bytes.
TFruBytes PackedField(TRandom& r)
{
    if (Chance(r, 50)) return Field(kBCDPlus, Bytes(r, FieldLength(r), 0x00, 0xFF, false));
    if (Chance(r, 20)) return Field(kSixBit, Bytes(r, FieldLength(r), 0x00, 0xFF, true));
    const TFruBytes vChars = Bytes(r, FieldLength(r) * 4 / 3, 0x20, 0x5F, false);
    TFruBytes v((3 * vChars.size() + 3) / 4, 0);
    for (size_t i = 0; i < vChars.size(); i++) {  // the codes from the low bits up, 6 bits each
        for (size_t uBit = 0; uBit < 6; uBit++) {
            const size_t uAt = 6 * i + uBit;
            if ((vChars[i] - 0x20) & (1u << uBit)) v[uAt / 8] |= static_cast<uint8_t>(1u << (uAt % 8));
        }
    }
    return Field(kSixBit, v);
}

// Latin-1 text of 2 to 63 bytes (one byte would make the type/length byte C1), now and
// then with a zero byte or a line feed.
TFruBytes EightBitField(TRandom& r)
{
    const bool bAwkward = Chance(r, 15);
    TFruBytes v = Bytes(r, 2 + Below(r, Chance(r, 15) ? 62 : 12), 0x01, 0xFF, bAwkward);
    for (uint8_t& u8 : v) u8 = u8 == '\n' ? ' ' : u8;
    if (bAwkward) v[Below(r, v.size())] = Chance(r, 50) ? 0x00 : '\n';
    return Field(kTypeThree, v);
}

// UTF-16LE units of every range but the surrogates; now and then a unit U+0000, U+000A or
// a surrogate, or a last byte of its own (an odd length).
TFruBytes UnicodeField(TRandom& r)
{
    static const unsigned kauTop[] = {0x7F, 0xFF, 0x7FF, 0xFFFF};
    static const unsigned kauAwkward[] = {0x0000, 0x000A, 0xD800, 0xDFFF};
    const bool bAwkward = Chance(r, 10), bOddLength = Chance(r, 15);
    TFruBytes v;
    for (size_t i = 0, uUnits = 1 + Below(r, 31); i < uUnits; i++) {
        unsigned uUnit = 1 + static_cast<unsigned>(Below(r, kauTop[Below(r, 4)]));
        uUnit = (uUnit >= 0xD800 && uUnit < 0xE000) || uUnit == '\n' ? 0x263A : uUnit;
        uUnit = (bAwkward && i == 0) ? kauAwkward[Below(r, 4)] : uUnit;
        v.push_back(static_cast<uint8_t>(uUnit));
        v.push_back(static_cast<uint8_t>(uUnit >> 8));
    }
    if (bOddLength) v.push_back(static_cast<uint8_t>(0x20 + Below(r, 0x60)));
    for (uint8_t& u8 : v) u8 = (u8 == kEndMark && (bAwkward || bOddLength)) ? kEndMark + 1 : u8;
    return Field(kTypeThree, v);
}

// A chassis (1), board (2) or product (3) area: its standard fields and up to two more.
TFruBytes InfoArea(TRandom& r, int iArea, bool bUnicode)
{
    static const size_t kauStandard[] = {0, 2, 5, 7};
    const uint8_t u8Language = Chance(r, 40) ? 0 : Chance(r, 30) ? 25 : static_cast<uint8_t>(1 + Below(r, 24));
    TFruBytes vFixed = {iArea == 1 ? static_cast<uint8_t>(Below(r, 0x24)) : u8Language};
    if (iArea == 2) {
        const TFruBytes vMade = Bytes(r, 3, 0x00, 0xFF, false);
        vFixed.insert(vFixed.end(), vMade.begin(), vMade.end());
    }
    std::vector<TFruBytes> vFields;
    for (size_t i = 0; i < kauStandard[iArea] + Below(r, 3); i++) {
        const bool bEightBit = iArea == 1 || u8Language == 0 || u8Language == 25 ||
                               (iArea == 2 && (i == 2 || i == 4)) || (iArea == 3 && (i == 4 || i == 6));
        const size_t uKind = Below(r, 4);
        if (uKind == 0) {
            vFields.push_back({static_cast<uint8_t>(bEightBit || bUnicode ? size_t{kTypeThree} : Below(r, 3) << 6)});
        } else if (uKind == 1 || (!bEightBit && !bUnicode)) {
            vFields.push_back(PackedField(r));
        } else if (uKind == 2) {
            vFields.push_back(bEightBit ? EightBitField(r) : UnicodeField(r));
        } else {
            vFields.push_back(Field(kBinary, Bytes(r, FieldLength(r), 0x00, 0xFF, true)));
        }
    }
    return FruInfoArea(vFixed, vFields);
}

// The data of one record: a management access record's text (up to the longest) or its
// system unique ID, or any bytes of another type.
TFruBytes RecordData(TRandom& r, uint8_t u8Type)
{
    if (u8Type != 3) return Bytes(r, Below(r, 30), 0x00, 0xFF, false);
    const size_t uKind = Below(r, 6);
    if (uKind == 0) return Chance(r, 50) ? TFruBytes() : TFruBytes{static_cast<uint8_t>(1 + Below(r, 6))};
    if (uKind == 1) {
        TFruBytes v = Bytes(r, 16, 0x00, 0xFF, false);
        v.insert(v.begin(), 7);  // the system unique ID
        return v;
    }
    const size_t uLength = uKind == 2 ? 200 + Below(r, 55) : Below(r, 40);
    TFruBytes v = Bytes(r, uLength, 0x01, 0xFF, false);
    for (uint8_t& u8 : v) u8 = u8 == '\n' ? ' ' : u8;
    if (uKind == 3 && !v.empty()) v[Below(r, v.size())] = Chance(r, 50) ? 0x00 : '\n';
    v.insert(v.begin(), static_cast<uint8_t>(1 + Below(r, 6)));
    return v;
}

}  // namespace

TFruBytes FruRandomImage(uint32_t u32Seed, bool bUnicode)
{
    TRandom r(u32Seed);
    sFruImageParts s;
    if (Chance(r, 50)) {
        s.vInternal = Bytes(r, 1 + Below(r, 24), 0x00, 0xFF, false);
        s.vInternal[0] = 1;
    }
    if (Chance(r, 60)) s.vChassis = InfoArea(r, 1, bUnicode);
    if (Chance(r, 60)) s.vBoard = InfoArea(r, 2, bUnicode);
    if (Chance(r, 60)) s.vProduct = InfoArea(r, 3, bUnicode);
    const size_t uRecords = Chance(r, 50) ? 1 + Below(r, 4) : 0;
    for (size_t i = 0; i < uRecords; i++) {
        static const uint8_t kau8Types[] = {0x00, 0x01, 0x02, 0x03, 0x03, 0x03, 0x04, 0xC0};
        const uint8_t u8Type = kau8Types[Below(r, sizeof(kau8Types))];
        const TFruBytes vRecord = FruMultiRecord(u8Type, i + 1 == uRecords, RecordData(r, u8Type));
        s.vMultiRecord.insert(s.vMultiRecord.end(), vRecord.begin(), vRecord.end());
    }
    return FruImage(s);
}
