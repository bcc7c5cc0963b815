// The blocks of a FRU text file, one for each area of the image: each is read from its
// tag to its last byte, and its offset, version, length and checksums are compared with
// what has been built.
#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "common/DebugOutput.h"

namespace {

enum : uint8_t {
    FRU_COMMON_OFFSETS_AND_PAD = 6,
    FRU_AREA_VERSION_AND_LENGTH = 2,
    FRU_BOARD_DATE_TIME = 3,
    FRU_RECORD_HEADER_SIZE = 5,
    FRU_RECORD_LAST_FLAG = 0x80,
};

// Hex bytes that the caller needs whole. A block that ends early, at a tag or ")", is
// incomplete: its caller would otherwise look at bytes of an earlier block, or at bytes
// before the image.
int ReadWholeHexBlock(sFRUTextReader* psReader, const char* pchAreaName, uint16_t u16Count)
{
    const uint16_t u16Before = G_u16RawDataSizeFromFRUFile;
    if (!FRUReadHexBlock(psReader, pchAreaName, u16Count)) {
        return 0;
    }
    if (G_u16RawDataSizeFromFRUFile - u16Before != u16Count) {
        FRUReportFormatError("%s Area is not complete. \n", pchAreaName);
        return 0;
    }
    return 1;
}

uint8_t LastStoredByte() { return G_pu8LocalFRUDataBuffer[G_u16RawDataSizeFromFRUFile - 1]; }

// The last u16Length bytes stored, whose sum with u16Extra must be 0 modulo 256.
bool LastBytesSumToZero(uint16_t u16Length, uint16_t u16Extra)
{
    return u16Length <= G_u16RawDataSizeFromFRUFile &&
           FRUAreaChecksumCorrect(G_pu8LocalFRUDataBuffer + G_u16RawDataSizeFromFRUFile - u16Length, u16Length,
                                  u16Extra);
}

// An area stands where the header says it does.
int AreaIsAtItsOffset(const sFRUAreaInfo* psRow)
{
    if (psRow->u16Offset != G_u16RawDataSizeFromFRUFile) {
        FRUReportFormatError("The offset to %s Area is not correct. \n", FRUAreaName(psRow));
        return 0;
    }
    return 1;
}

// The bytes between the length byte and the fields: the chassis type, the language code
// and for a board the manufacturing date/time. Sets the language (0 for a chassis) and
// returns the size of the fixed part with version and length, or 0 after the report.
uint16_t ReadFixedPart(sFRUTextReader* psReader, const char* pchAreaName, uint8_t* pu8LanguageCode)
{
    const bool bChassis = std::strcmp(pchAreaName, "CHASSIS") == 0;
    const bool bBoard = std::strcmp(pchAreaName, "BOARD") == 0;
    if (!ReadWholeHexBlock(psReader, pchAreaName, 1)) {
        return 0;
    }
    *pu8LanguageCode = bChassis ? 0 : LastStoredByte();
    if (bBoard && !ReadWholeHexBlock(psReader, pchAreaName, FRU_BOARD_DATE_TIME)) {
        return 0;
    }
    return static_cast<uint16_t>(FRU_AREA_VERSION_AND_LENGTH + 1 + (bBoard ? FRU_BOARD_DATE_TIME : 0));
}

}  // namespace

int FRUReadCommonArea(sFRUTextReader* psReader)
{
    const char* pchName = "COMMON";
    if (!SearchAreaTag(psReader, "_SEE_COMMON") || !ReadWholeHexBlock(psReader, pchName, 1)) {
        return 0;
    }
    if (LastStoredByte() != FRU_FORMAT_VERSION) {
        FRUReportFormatError("The version field (0x%02X) in %s Area != 0x%02X. (line %d) \n", LastStoredByte(),
                             pchName, FRU_FORMAT_VERSION, psReader->sContext.u16LineNumber);
        return 0;
    }
    if (!ReadWholeHexBlock(psReader, pchName, FRU_COMMON_OFFSETS_AND_PAD)) {
        return 0;
    }
    if (LastStoredByte() != 0) {
        FRUReportFormatError("The PAD field (0x%02X) in %s Area != %x02X. (line %d) \n", LastStoredByte(), pchName, 0,
                             psReader->sContext.u16LineNumber);
        return 0;
    }
    if (!ReadWholeHexBlock(psReader, pchName, 1)) {
        return 0;
    }
    if (!LastBytesSumToZero(FRU_COMMON_HEADER_SIZE, 0)) {
        FRUReportFormatError("Error checksum in %s Header in FRU file. \n", pchName);
        return 0;
    }
    return 1;
}

int FRUReadInternalArea(sFRUTextReader* psReader, const sFRUAreaInfo* psRow)
{
    // As the last area, its length is what the text gives, up to ")".
    const uint16_t u16Count = psRow->u16Length != 0 ? psRow->u16Length : uint16_t{FRU_IMAGE_SIZE_LIMIT};
    return SearchAreaTag(psReader, psRow->achTag) && AreaIsAtItsOffset(psRow) &&
           FRUReadHexBlock(psReader, FRUAreaName(psRow), u16Count);
}

int FRUReadChassisBoardProductArea(sFRUTextReader* psReader, const sFRUAreaInfo* psRow)
{
    const char* pchName = FRUAreaName(psRow);
    if (!SearchAreaTag(psReader, psRow->achTag) || !AreaIsAtItsOffset(psRow) ||
        !ReadWholeHexBlock(psReader, pchName, FRU_AREA_VERSION_AND_LENGTH)) {
        return 0;
    }
    const uint8_t u8Version = G_pu8LocalFRUDataBuffer[G_u16RawDataSizeFromFRUFile - 2];
    const uint8_t u8Length = LastStoredByte();
    const uint16_t u16AreaLength = static_cast<uint16_t>(u8Length * FRU_AREA_UNIT);
    if (u8Version != FRU_FORMAT_VERSION) {
        FRUReportFormatError("The area version field (0x%02X) in %s Area is not correct. (line %d) \n", u8Version,
                             pchName, psReader->sContext.u16LineNumber);
        return 0;
    }
    if (psRow->u16Length != 0 && psRow->u16Length != u16AreaLength) {
        FRUReportFormatError("The area length field (0x%02X) in %s Area is not consistent with the information in "
                             "%s Area. (line %d) \n",
                             u8Length, pchName, "COMMON", psReader->sContext.u16LineNumber);
        return 0;
    }
    uint8_t u8LanguageCode = 0;
    const uint16_t u16Fixed = ReadFixedPart(psReader, pchName, &u8LanguageCode);
    // A length byte of 0 makes a block that no file completes: it fails at its end.
    if (u16Fixed == 0 || !FRUReadHexDataQuotedStringMixBlockWithLanguageCode(
                             psReader, pchName, static_cast<uint16_t>(u16AreaLength - u16Fixed), u8LanguageCode)) {
        return 0;
    }
    if (!LastBytesSumToZero(u16AreaLength, 0)) {
        FRUReportFormatError("Error checksum in %s Area in FRU file. \n", pchName);
        return 0;
    }
    DebugMessage("[debug] FRUAreaChecksumCorrect check sum ok\n");
    return 1;
}

int FRUReadMultiRecordArea(sFRUTextReader* psReader)
{
    const char* pchName = "MULTIRECORD";
    if (!SearchAreaTag(psReader, "_SEE_MULTIRECORD")) {
        return 0;
    }
    bool bLastRecord = false;
    for (uint16_t u16Record = 0;; u16Record++) {
        const uint16_t u16Before = G_u16RawDataSizeFromFRUFile;
        if (!FRUReadHexBlock(psReader, pchName, FRU_RECORD_HEADER_SIZE)) {
            return 0;
        }
        // Only ")" ends the list, and only behind a record that says it is the last.
        if (G_u16RawDataSizeFromFRUFile == u16Before && psReader->achPendingLine[0] == ')') {
            if (!bLastRecord) {
                FRUReportFormatError("'%s' is found but the record is not the last one in %s Area. \n", FRU_END_TAG,
                                     pchName);
            }
            return bLastRecord ? 1 : 0;
        }
        if (G_u16RawDataSizeFromFRUFile - u16Before != FRU_RECORD_HEADER_SIZE) {
            FRUReportFormatError("%s Area is not complete. \n", pchName);
            return 0;
        }
        const uint8_t* pu8Header = G_pu8LocalFRUDataBuffer + u16Before;
        const uint8_t u8DataLength = pu8Header[2];
        const uint8_t u8DataChecksum = pu8Header[3];
        bLastRecord = (pu8Header[1] & FRU_RECORD_LAST_FLAG) != 0;
        if (!FRUAreaChecksumCorrect(pu8Header, FRU_RECORD_HEADER_SIZE, 0)) {
            FRUReportFormatError("Error checksum in %s Area record %d's header in FRU file. \n", pchName, u16Record);
            return 0;
        }
        if (!FRUReadHexDataQuotedStringMixBlockWithLanguageCode(psReader, pchName, u8DataLength, 0)) {
            return 0;
        }
        if (!LastBytesSumToZero(u8DataLength, u8DataChecksum)) {
            FRUReportFormatError("Error checksum in %s Area record %d's record data in FRU file. \n", pchName,
                                 u16Record);
            return 0;
        }
    }
}
