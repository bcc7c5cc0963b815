// The FRU text writer's walk through the chassis, board and product areas, field by
// field, and through the records of the multi-record area.
#include <cstring>

#include "FRUAreaTable.h"
#include "FRUTextReader.h"
#include "FRUTextWriter.h"

namespace {

enum : uint8_t {
    FRU_INFO_LENGTH_INDEX = 1,
    FRU_INFO_LANGUAGE_INDEX = 2,
    FRU_FIELD_LENGTH_MASK = 0x3F,
    FRU_TYPE_SHIFT = 6,
    FRU_TYPE_UNICODE_OR_LATIN1 = 3,
    FRU_RECORD_HEADER_SIZE = 5,
    FRU_RECORD_FLAGS_INDEX = 1,
    FRU_RECORD_LENGTH_INDEX = 2,
    FRU_RECORD_END_OF_LIST = 0x80,
    FRU_RECORD_MANAGEMENT_ACCESS = 3,
    FRU_SUBTYPE_SYSTEM_UNIQUE_ID = 7,  // binary: no text
};

// What tells one info area from the others.
struct sInfoArea {
    const char* pchTag;
    uint16_t u16FixedLength;  // version, length, then chassis type; language, date/time; language
    bool bHasLanguage;
    const char* pchUnicodeRefusal;  // nullptr: the area holds no Unicode
    const char* pchLengthFailure;
};

const sInfoArea ksChassis = {"_SEE_CHASSIS", 3, false, nullptr,
                             "<ERROR> FRU write - Chassis Info Area length insufficient\n"};
const sInfoArea ksBoard = {"_SEE_BOARD", 6, true,
                           "<ERROR> Board Info Area contains Unicode data\n"
                           "The file encoding format cannot be ASCII\n",
                           "<ERROR> FRU write - Board Info Area length insufficient\n"};
const sInfoArea ksProduct = {"_SEE_PRODUCT", 3, true,
                             "<ERROR> Product Info Area contains Unicode data\n"
                             "The file encoding format cannot be ASCII\n",
                             "<ERROR> FRU write - Product Info Area length insufficient\n"};

const uint8_t* AtCursor(const sFRUTextWriter* psWriter)
{
    return psWriter->sCursor.pu8Data + psWriter->sCursor.u16Offset;
}

const char* AreaName(const char* pchAreaTag)
{
    return pchAreaTag + FRU_AREA_NAME_SKIP;
}

bool IsEightBit(const char* pchAreaTag, uint8_t u8LanguageCode, uint16_t u16FieldIndex)
{
    return FRUIsEightBitField(AreaName(pchAreaTag), u8LanguageCode, static_cast<uint16_t>(u16FieldIndex + 1));
}

// Behind C1 the reader takes the first nonzero byte for the area checksum, the area's
// last byte: any other nonzero byte there would move.
int CheckZeroesBehindEndOfFields(sFRUTextWriter* psWriter, const sInfoArea* psArea, uint16_t u16Count)
{
    const uint8_t* pu8Tail = AtCursor(psWriter);
    for (uint16_t i = 1; i + 1 < u16Count; i++) {
        if (pu8Tail[i] != 0) {
            std::fputs("<ERROR> The FRU data cannot be saved in a FRU text file. \n", stderr);
            std::fprintf(stderr,
                         "In the %s Area, the byte %02Xh at offset 0x%X stands behind C1, the end of the fields, "
                         "where a FRU text file holds only zeroes up to the checksum. \n",
                         AreaName(psArea->pchTag), pu8Tail[i], psWriter->sCursor.u16Offset + i);
            return FRUWriterRefuse(psWriter);
        }
    }
    return 1;
}

// The walk shared by the three areas: the fixed part, the fields up to C1, and the tail
// from C1 to the area checksum. No field is read before it is known to lie inside the
// area, nor the area before it is known to lie inside the image (FRUValidateRawData has
// made sure of that; an image that it hasn't passed gets an internal error).
int WriteInfoArea(sFRUTextWriter* psWriter, const sInfoArea* psArea)
{
    const sFeedCursor& sCursor = psWriter->sCursor;
    const uint8_t* pu8Area = AtCursor(psWriter);
    if (sCursor.u16Offset + psArea->u16FixedLength > sCursor.u16DataSize ||
        sCursor.u16Offset + pu8Area[FRU_INFO_LENGTH_INDEX] * FRU_AREA_UNIT > sCursor.u16DataSize) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const uint8_t u8LanguageCode = psArea->bHasLanguage ? pu8Area[FRU_INFO_LANGUAGE_INDEX] : 0;
    int32_t i32Remaining = pu8Area[FRU_INFO_LENGTH_INDEX] * FRU_AREA_UNIT - psArea->u16FixedLength;
    if (!FRUWriterText(psWriter, psArea->pchTag) || !FRUWriterText(psWriter, "\n") ||
        !FRUWriterFeed(psWriter, psArea->u16FixedLength)) {
        return 0;
    }
    for (uint16_t u16Index = 0; i32Remaining >= 1 && *AtCursor(psWriter) != FRU_END_OF_FIELDS; u16Index++) {
        const uint8_t u8TypeLength = *AtCursor(psWriter);
        if (psArea->bHasLanguage && (u8TypeLength >> FRU_TYPE_SHIFT) == FRU_TYPE_UNICODE_OR_LATIN1 &&
            !IsEightBit(psArea->pchTag, u8LanguageCode, u16Index) && sCursor.eEncoding == eEncodingASCII) {
            std::fputs(psArea->pchUnicodeRefusal, stderr);
            return FRUWriterRefuse(psWriter);
        }
        const int32_t i32Block = (u8TypeLength & FRU_FIELD_LENGTH_MASK) + 1;
        if (i32Block >= i32Remaining) {
            break;  // the field would end at or behind the area's end: no room for C1
        }
        if (!FeedBlock(psWriter, static_cast<uint16_t>(i32Block), u8LanguageCode, psArea->pchTag, u16Index)) {
            return 0;
        }
        i32Remaining -= i32Block;
    }
    if (i32Remaining < 1 || *AtCursor(psWriter) != FRU_END_OF_FIELDS) {
        std::fputs(psArea->pchLengthFailure, stderr);
        return FRUWriterRefuse(psWriter);
    }
    return CheckZeroesBehindEndOfFields(psWriter, psArea, static_cast<uint16_t>(i32Remaining)) &&
           FRUWriterFeed(psWriter, static_cast<uint16_t>(i32Remaining));
}

// One record: its text behind the sub-type as a string line where it has one, else all hex.
int WriteRecord(sFRUTextWriter* psWriter, bool* pbLast)
{
    const sFeedCursor& sCursor = psWriter->sCursor;
    if (sCursor.u16Offset + FRU_RECORD_HEADER_SIZE > sCursor.u16DataSize) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    const uint8_t* pu8Record = AtCursor(psWriter);
    *pbLast = (pu8Record[FRU_RECORD_FLAGS_INDEX] & FRU_RECORD_END_OF_LIST) != 0;
    const uint8_t u8N = pu8Record[FRU_RECORD_LENGTH_INDEX];
    const uint16_t u16Total = static_cast<uint16_t>(u8N + FRU_RECORD_HEADER_SIZE);
    sFRUStringLine sLine;
    // A record of no data has no sub-type; one of a sub-type alone has no text.
    if (pu8Record[0] == FRU_RECORD_MANAGEMENT_ACCESS && u8N > 1 &&
        sCursor.u16Offset + u16Total <= sCursor.u16DataSize &&
        pu8Record[FRU_RECORD_HEADER_SIZE] != FRU_SUBTYPE_SYSTEM_UNIQUE_ID &&
        FRUComposeTextString(pu8Record + FRU_RECORD_HEADER_SIZE + 1, u8N - 1u, &sLine)) {
        return FRUWriterFeed(psWriter, FRU_RECORD_HEADER_SIZE + 1) &&
               FeedQuotedStringInMultiRecordArea(psWriter, u8N - 1u);
    }
    return FRUWriterFeed(psWriter, u16Total);
}

}  // namespace

int FRUWriteChassisArea(sFRUTextWriter* psWriter)
{
    return WriteInfoArea(psWriter, &ksChassis);
}

int FRUWriteBoardArea(sFRUTextWriter* psWriter)
{
    return WriteInfoArea(psWriter, &ksBoard);
}

int FRUWriteProductArea(sFRUTextWriter* psWriter)
{
    return WriteInfoArea(psWriter, &ksProduct);
}

int FRUWriteMultiRecordArea(sFRUTextWriter* psWriter)
{
    if (!FRUWriterText(psWriter, "_SEE_MULTIRECORD\n")) {
        return 0;
    }
    // FRUValidateRawData has followed the list to the record with bit 7, inside the image.
    bool bLast = false;
    while (!bLast) {
        if (!WriteRecord(psWriter, &bLast)) {
            return 0;
        }
    }
    return 1;
}

int FeedBlock(sFRUTextWriter* psWriter, uint16_t u16BlockLength, uint8_t u8LanguageCode, const char* pchAreaTag,
              uint16_t u16FieldIndex)
{
    if (u16BlockLength < 2) {
        return FRUWriterFeed(psWriter, 1);
    }
    const uint8_t* pu8Field = AtCursor(psWriter);
    sFRUStringLine sLine;
    if (FRUComposeFieldString(pu8Field, IsEightBit(pchAreaTag, u8LanguageCode, u16FieldIndex),
                              psWriter->sCursor.eEncoding, &sLine)) {
        return FRUWriterFeed(psWriter, 1) &&
               FeedQuotedStringInChassisBoardProductArea(psWriter, static_cast<uint16_t>(u16BlockLength - 1),
                                                         u8LanguageCode, pchAreaTag, u16FieldIndex);
    }
    // In hex, the byte C1 among the field's bytes would end the fields for the reader.
    if (std::memchr(pu8Field + 1, FRU_END_OF_FIELDS, u16BlockLength - 1u) != nullptr) {
        std::fputs("<ERROR> The FRU data cannot be saved in a FRU text file. \n", stderr);
        std::fprintf(stderr,
                     "Field %d of the %s Area, at offset 0x%X, can only be given in hex bytes, and it holds the byte "
                     "C1, which ends the fields there. \n",
                     u16FieldIndex + 1, AreaName(pchAreaTag), psWriter->sCursor.u16Offset);
        return FRUWriterRefuse(psWriter);
    }
    return FRUWriterHexLine(psWriter, u16BlockLength);
}

int FeedQuotedStringInChassisBoardProductArea(sFRUTextWriter* psWriter, uint16_t u16Length, uint8_t u8LanguageCode,
                                              const char* pchAreaTag, uint16_t u16FieldIndex)
{
    if (psWriter == nullptr || pchAreaTag == nullptr || psWriter->sCursor.u16Offset == 0) {
        std::fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    const sFeedCursor& sCursor = psWriter->sCursor;
    const uint8_t* pu8Field = AtCursor(psWriter) - 1;
    sFRUStringLine sLine;
    if (sCursor.u16Offset + u16Length > sCursor.u16DataSize ||
        (pu8Field[0] & FRU_FIELD_LENGTH_MASK) != u16Length ||
        !FRUComposeFieldString(pu8Field, IsEightBit(pchAreaTag, u8LanguageCode, u16FieldIndex),
                               sCursor.eEncoding, &sLine)) {
        return 0;
    }
    return FRUWriterString(psWriter, &sLine, u16Length);
}

int FeedQuotedStringInMultiRecordArea(sFRUTextWriter* psWriter, uint16_t u16Length)
{
    if (psWriter == nullptr) {
        std::fputs("<ERROR> Internal Error! \n", stderr);
        return 0;
    }
    sFRUStringLine sLine;
    const sFeedCursor& sCursor = psWriter->sCursor;
    if (sCursor.u16Offset + u16Length > sCursor.u16DataSize ||
        !FRUComposeTextString(AtCursor(psWriter), u16Length, &sLine)) {
        return 0;
    }
    return FRUWriterString(psWriter, &sLine, u16Length);
}
