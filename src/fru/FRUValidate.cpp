#include "FRUValidate.h"

#include <cstdio>

namespace {

enum {
    FRU_AREA_LENGTH_INDEX = 1,         // of a chassis, board or product area
    FRU_AREA_FIXED_HEAD = 2,           // version and length byte
    FRU_RECORD_HEADER_SIZE = 5,
    FRU_RECORD_FLAGS_INDEX = 1,
    FRU_RECORD_LENGTH_INDEX = 2,
    FRU_RECORD_DATA_CHECKSUM_INDEX = 3,
    FRU_RECORD_END_OF_LIST = 0x80,
};

// The first line of every area failure.
void ReportIncorrect(int bInventoryData)
{
    std::fputs(bInventoryData ? "<ERROR> Incorrect FRU data. \n" : "<ERROR> Incorrect FRU binary file. \n", stderr);
}

void ReportVersion(uint8_t u8Version, const sFRUAreaInfo* psRow, int bInventoryData)
{
    ReportIncorrect(bInventoryData);
    std::fprintf(stderr, "The version field (0x%02X) in %s Area != 0x%02X. \n", u8Version, FRUAreaName(psRow),
                 FRU_FORMAT_VERSION);
}

void ReportArea(const char* pchFormat, const sFRUAreaInfo* psRow, int bInventoryData)
{
    ReportIncorrect(bInventoryData);
    std::fprintf(stderr, pchFormat, FRUAreaName(psRow));
}

void ReportRecord(const char* pchFormat, const sFRUAreaInfo* psRow, int iRecord, int bInventoryData)
{
    ReportIncorrect(bInventoryData);
    std::fprintf(stderr, pchFormat, FRUAreaName(psRow), iRecord);
}

// Whether u32Length bytes from u32Start lie inside the image. Reckoned in 32 bits, so
// that no sum of 16-bit values wraps.
bool InsideImage(const sFRUValidateState* psState, uint32_t u32Start, uint32_t u32Length)
{
    return u32Start + u32Length <= psState->u16TotalLength;
}

// One record of the multi-record list at u32Position, whose bounds count from
// u16ValidatedLength plus u32Consumed as well. Adds the record's length to *pu32Consumed
// and says whether it was the last one. 1, or 0 after the message.
int FRUValidateRecord(const sFRUValidateState* psState, const sFRUAreaInfo* psRow, int iRecord, uint32_t* pu32Consumed,
                      bool* pbLast, int bInventoryData)
{
    const uint32_t u32Position = psRow->u16Offset + *pu32Consumed;
    const uint32_t u32Counted = psState->u16ValidatedLength + *pu32Consumed;
    // An inventory image may have a gap in front of the area: then the position is the
    // stricter bound, and the walk must never leave the image.
    if (!InsideImage(psState, u32Counted, FRU_RECORD_HEADER_SIZE) ||
        !InsideImage(psState, u32Position, FRU_RECORD_HEADER_SIZE)) {
        ReportRecord("Data is insufficient in %s Area record %d's header. \n", psRow, iRecord, bInventoryData);
        return 0;
    }
    const uint8_t* pu8Header = psState->pu8Data + u32Position;
    *pbLast = (pu8Header[FRU_RECORD_FLAGS_INDEX] & FRU_RECORD_END_OF_LIST) != 0;
    const uint8_t u8DataLength = pu8Header[FRU_RECORD_LENGTH_INDEX];
    const uint8_t u8DataChecksum = pu8Header[FRU_RECORD_DATA_CHECKSUM_INDEX];
    if (!FRUAreaChecksumCorrect(pu8Header, FRU_RECORD_HEADER_SIZE, 0)) {
        ReportRecord("Error checksum in %s Area record %d's header. \n", psRow, iRecord, bInventoryData);
        return 0;
    }
    *pu32Consumed += FRU_RECORD_HEADER_SIZE;
    if (!InsideImage(psState, u32Counted + FRU_RECORD_HEADER_SIZE, u8DataLength) ||
        !InsideImage(psState, u32Position + FRU_RECORD_HEADER_SIZE, u8DataLength)) {
        ReportRecord("Data is insufficient in %s Area record %d's record data. \n", psRow, iRecord, bInventoryData);
        return 0;
    }
    if (!FRUAreaChecksumCorrect(pu8Header + FRU_RECORD_HEADER_SIZE, u8DataLength, u8DataChecksum)) {
        ReportRecord("Error checksum in %s Area record %d's record data. \n", psRow, iRecord, bInventoryData);
        return 0;
    }
    *pu32Consumed += u8DataLength;
    return 1;
}

}  // namespace

int FRUValidateRawData(const uint8_t* pu8Data, uint16_t u16Length, int bInventoryData)
{
    if (pu8Data == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    sFRUValidateState sState = {0, u16Length, pu8Data};
    sFRUAreaInfo asTable[FRU_AREA_TABLE_SIZE];
    FRUInitAreaTable(asTable);
    if (!FRUValidateCommonArea(&sState, &asTable[eFRUAreaCommon], bInventoryData)) {
        return 0;
    }
    if (asTable[eFRUAreaInternal].u16Offset != 0 &&
        !FRUValidateInternalArea(&sState, &asTable[eFRUAreaInternal], bInventoryData)) {
        return 0;
    }
    for (int i = eFRUAreaChassis; i <= eFRUAreaProduct; i++) {
        if (asTable[i].u16Offset != 0 && !FRUValidateChassisBoardProductArea(&sState, &asTable[i], bInventoryData)) {
            return 0;
        }
    }
    if (asTable[eFRUAreaMultiRecord].u16Offset != 0 &&
        !FRUValidateMultiRecordArea(&sState, &asTable[eFRUAreaMultiRecord], bInventoryData)) {
        return 0;
    }
    if (!bInventoryData && CanKnowFRULengthFromCommonArea(asTable) &&
        sState.u16ValidatedLength != sState.u16TotalLength) {
        std::fputs("<ERROR> Incorrect FRU file. \n", stderr);
        std::fputs("Found data outside the scope of a FRU record. \n", stderr);
        return 0;
    }
    return 1;
}

int FRUValidateCommonArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData)
{
    if (psState->u16TotalLength < FRU_COMMON_HEADER_SIZE) {
        ReportIncorrect(bInventoryData);
        std::fprintf(stderr, "The FRU data length < %d. \n", FRU_COMMON_HEADER_SIZE);
        return 0;
    }
    const uint8_t* pu8Header = psState->pu8Data;
    if (pu8Header[0] != FRU_FORMAT_VERSION) {
        ReportVersion(pu8Header[0], psRow, bInventoryData);
        return 0;
    }
    if (pu8Header[FRU_HEADER_PAD_INDEX] != 0) {
        ReportIncorrect(bInventoryData);
        std::fprintf(stderr, "The PAD field (0x%02X) in %s Area != 0x%02X. \n", pu8Header[FRU_HEADER_PAD_INDEX],
                     FRUAreaName(psRow), 0);
        return 0;
    }
    if (!FRUAreaChecksumCorrect(pu8Header, FRU_COMMON_HEADER_SIZE, 0)) {
        ReportArea("Error checksum in %s Area. \n", psRow, bInventoryData);
        return 0;
    }
    if (!FRUGetAreaInfo(pu8Header, bInventoryData, psRow)) {
        return 0;
    }
    psState->u16ValidatedLength = static_cast<uint16_t>(psState->u16ValidatedLength + FRU_COMMON_HEADER_SIZE);
    return 1;
}

int FRUValidateInternalArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData)
{
    // As the last area its length is unknown: only its version byte is reached.
    const uint16_t u16Length = psRow->u16Length != 0 ? psRow->u16Length : 1;
    if (!InsideImage(psState, psRow->u16Offset, u16Length)) {
        ReportArea("Data is insufficient in %s Area. \n", psRow, bInventoryData);
        return 0;
    }
    const uint8_t u8Version = psState->pu8Data[psRow->u16Offset];
    if (u8Version != FRU_FORMAT_VERSION) {
        ReportVersion(u8Version, psRow, bInventoryData);
        return 0;
    }
    psState->u16ValidatedLength = static_cast<uint16_t>(psState->u16ValidatedLength + u16Length);
    return 1;
}

int FRUValidateChassisBoardProductArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData)
{
    if (!InsideImage(psState, psRow->u16Offset, FRU_AREA_FIXED_HEAD)) {
        ReportArea("Data is insufficient in %s Area. \n", psRow, bInventoryData);
        return 0;
    }
    const uint8_t* pu8Area = psState->pu8Data + psRow->u16Offset;
    if (pu8Area[0] != FRU_FORMAT_VERSION) {
        ReportVersion(pu8Area[0], psRow, bInventoryData);
        return 0;
    }
    const uint8_t u8Units = pu8Area[FRU_AREA_LENGTH_INDEX];
    const uint16_t u16AreaLength = static_cast<uint16_t>(u8Units * FRU_AREA_UNIT);
    if (u8Units == 0) {
        ReportIncorrect(bInventoryData);
        std::fprintf(stderr, "The area length field (0x%02X) in %s Area is not correct. \n", u8Units,
                     FRUAreaName(psRow));
        return 0;
    }
    if (psRow->u16Length != 0 && psRow->u16Length != u16AreaLength) {
        ReportIncorrect(bInventoryData);
        std::fprintf(stderr,
                     "The area length field (0x%02X) in %s Area is not consistent with the information in %s Area. \n",
                     u8Units, FRUAreaName(psRow), "COMMON");
        return 0;
    }
    if (!InsideImage(psState, psRow->u16Offset, u16AreaLength)) {
        ReportArea("Data is insufficient in %s Area. \n", psRow, bInventoryData);
        return 0;
    }
    if (!FRUAreaChecksumCorrect(pu8Area, u16AreaLength, 0)) {
        ReportArea("Error checksum in %s Area. \n", psRow, bInventoryData);
        return 0;
    }
    psState->u16ValidatedLength = static_cast<uint16_t>(psState->u16ValidatedLength + u16AreaLength);
    return 1;
}

int FRUValidateMultiRecordArea(sFRUValidateState* psState, sFRUAreaInfo* psRow, int bInventoryData)
{
    // Only the end-of-list flag ends the walk; each record moves it forward by at least
    // its header, inside the image, so it ends.
    uint32_t u32Consumed = 0;
    bool bLast = false;
    for (int iRecord = 1; !bLast; iRecord++) {
        if (!FRUValidateRecord(psState, psRow, iRecord, &u32Consumed, &bLast, bInventoryData)) {
            return 0;
        }
    }
    psState->u16ValidatedLength = static_cast<uint16_t>(psState->u16ValidatedLength + u32Consumed);
    return 1;
}
