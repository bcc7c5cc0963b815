// -updateFRU: one field of a FRU device changed in place, the manufacturing date/time or a
// serial number string. Only the field, its type/length byte and the area's length and
// checksum bytes are read; the new checksum follows from the old one and the difference
// of the field's bytes. All reading comes first, then the writes in a fixed order:
// type/length byte, field bytes, checksum.
#include <cstdio>
#include <cstring>

#include "FRUUpdateData.h"
#include "OptionHandlers.h"
#include "ProgramState.h"
#include "channel/CommandChannel.h"
#include "repository/FRUCommands.h"
#include "text/DatTrans.h"

namespace {

enum {
    FRU_HEADER_SIZE = 8,
    FRU_AREA_UNIT = 8,        // area offsets and lengths count in units of 8 bytes
    FRU_TRANSFER_LIMIT = 16,  // bytes of one read or write of a field
    FRU_LENGTH_BITS = 0x3F,
    FRU_TYPE_SHIFT = 6,
    HEADER_CHASSIS = 2,       // common header bytes of the areas
    HEADER_BOARD = 3,
    HEADER_PRODUCT = 4,
};

uint8_t AreaHeaderIndex(const sFRUUpdateData* psData)
{
    if (strcmp(psData->achFieldName, "snChassis") == 0) {
        return HEADER_CHASSIS;
    }
    return strcmp(psData->achFieldName, "snProduct") == 0 ? HEADER_PRODUCT : HEADER_BOARD;
}

uint8_t PieceSize(uint8_t u8Length, uint8_t u8Done)
{
    const uint8_t u8Left = static_cast<uint8_t>(u8Length - u8Done);
    return u8Left < FRU_TRANSFER_LIMIT ? u8Left : static_cast<uint8_t>(FRU_TRANSFER_LIMIT);
}

// u8Length bytes at u16Offset into pu8Buffer from u8Position: one transfer for up to 15
// bytes, otherwise 16 at a time from the start of the field and then the rest.
int ReadFRUBytes(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Length, uint8_t* pu8Buffer, uint8_t u8Position)
{
    for (uint8_t u8Done = 0; u8Done < u8Length;) {
        const uint8_t u8Piece = PieceSize(u8Length, u8Done);
        if (ReadFRUDataCommandToLocalBuffer(u8FruID, static_cast<uint16_t>(u16Offset + u8Done), u8Piece, pu8Buffer,
                                            static_cast<uint8_t>(u8Position + u8Done)) != eStateFRUReadOK) {
            return 0;
        }
        u8Done = static_cast<uint8_t>(u8Done + u8Piece);
    }
    return 1;
}

// The same transfers as ReadFRUBytes the other way. *pu16Written grows by what the device
// reports as written; a refused write, or one that the device ends short, stops it with 0.
int WriteFRUBytes(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Length, const uint8_t* pu8Buffer,
                  uint8_t u8Position, uint16_t* pu16Written)
{
    for (uint8_t u8Done = 0; u8Done < u8Length;) {
        const uint8_t u8Piece = PieceSize(u8Length, u8Done);
        uint8_t u8Landed = 0;
        if (WriteFRUDataCommandFromLocalBuffer(u8FruID, static_cast<uint16_t>(u16Offset + u8Done), u8Piece, pu8Buffer,
                                               static_cast<uint8_t>(u8Position + u8Done),
                                               &u8Landed) != eStateFRUWriteOK) {
            return 0;
        }
        *pu16Written = static_cast<uint16_t>(*pu16Written + (u8Landed < u8Piece ? u8Landed : u8Piece));
        if (u8Landed < u8Piece) {
            return 0;
        }
        u8Done = static_cast<uint8_t>(u8Done + u8Piece);
    }
    return 1;
}

// The old type/length byte goes behind the old field bytes, as the new one stands behind
// the new ones, so that the checksum update covers both.
int ReadOldString(sFRUUpdateData* psData, uint8_t* pu8OldData)
{
    const uint8_t u8Length = psData->u8StringLength;
    if (!ReadFRUBytes(psData->u8FRUID, static_cast<uint16_t>(psData->u16Offset - 1), 1, pu8OldData, u8Length)) {
        return 0;
    }
    if ((pu8OldData[u8Length] & FRU_LENGTH_BITS) != u8Length) {
        fputs("<ERROR> String length specified must match string length in the FRU Inventory! \n", stderr);
        return 0;
    }
    psData->au8NewData[u8Length] = static_cast<uint8_t>((psData->u32StringType << FRU_TYPE_SHIFT) + u8Length);
    return ReadFRUBytes(psData->u8FRUID, psData->u16Offset, u8Length, pu8OldData, 0);
}

// The area's length byte and then its checksum byte, each into the work byte.
int ReadAreaChecksum(sFRUUpdateData* psData, uint8_t u8AreaOffset, uint16_t* pu16ChecksumOffset)
{
    if (!ReadFRUBytes(psData->u8FRUID, static_cast<uint16_t>(u8AreaOffset * FRU_AREA_UNIT + 1), 1,
                      &psData->u8Checksum, 0)) {
        return 0;
    }
    *pu16ChecksumOffset = static_cast<uint16_t>((u8AreaOffset + psData->u8Checksum) * FRU_AREA_UNIT - 1);
    return ReadFRUBytes(psData->u8FRUID, *pu16ChecksumOffset, 1, &psData->u8Checksum, 0);
}

// "0x0062" or "0x0062-0x0065".
void PrintDeviceRange(uint16_t u16Start, uint16_t u16Count)
{
    fprintf(stderr, "0x%04X", u16Start);
    if (u16Count > 1) {
        fprintf(stderr, "-0x%04X", static_cast<uint16_t>(u16Start + u16Count - 1));
    }
}

// Whether the area still sums to 0 after the first u16Written bytes of the run: only if
// they add up to what they replaced. A string's run starts with its type/length byte,
// which stands behind the field bytes in both buffers.
bool ChecksumStillHolds(const sFRUUpdateData* psData, const uint8_t* pu8OldData, uint16_t u16Written)
{
    const uint8_t u8Length = psData->u8StringLength;
    unsigned uChange = 0;
    for (uint16_t i = 0; i < u16Written; i++) {
        const uint16_t u16Index = IsFRUUpdateOfDateTime(psData) ? i : (i == 0 ? u8Length : i - 1);
        uChange += psData->au8NewData[u16Index] - pu8OldData[u16Index];
    }
    return (uChange & 0xFF) == 0;
}

// A write failed: which of the field's bytes (a contiguous run from u16Start, since they
// are written in order) the device now holds, and which not. The checksum comes last, so
// it is never written then.
void ReportUnfinishedUpdate(uint8_t u8FruID, uint16_t u16Start, uint16_t u16Total, uint16_t u16Written,
                            uint16_t u16ChecksumOffset, bool bChecksumHolds)
{
    if (u16Written == 0) {
        fprintf(stderr, "Nothing was written: FRU device 0x%02X is unchanged. \n", u8FruID);
        return;
    }
    fprintf(stderr, "Written to FRU device 0x%02X: ", u8FruID);
    PrintDeviceRange(u16Start, u16Written);
    fputs(". Not written: ", stderr);
    if (u16Written < u16Total) {
        PrintDeviceRange(static_cast<uint16_t>(u16Start + u16Written), static_cast<uint16_t>(u16Total - u16Written));
        fputs(" and ", stderr);
    }
    fprintf(stderr, "the area checksum at 0x%04X. \n", u16ChecksumOffset);
    fputs(bChecksumHolds ? "The area checksum still matches the area. \n"
                         : "The area checksum no longer matches the area. \n", stderr);
}

// Type/length byte (of a string), field bytes, then the checksum.
int WriteNewField(sFRUUpdateData* psData, const uint8_t* pu8OldData, uint16_t u16ChecksumOffset)
{
    const int bDateTime = IsFRUUpdateOfDateTime(psData);
    const uint8_t u8Length = bDateTime ? static_cast<uint8_t>(FRU_DATETIME_SIZE) : psData->u8StringLength;
    const uint16_t u16Start = static_cast<uint16_t>(bDateTime ? psData->u16Offset : psData->u16Offset - 1);
    uint16_t u16Written = 0;
    uint16_t u16ChecksumWritten = 0;
    if ((bDateTime || WriteFRUBytes(psData->u8FRUID, u16Start, 1, psData->au8NewData, u8Length, &u16Written)) &&
        WriteFRUBytes(psData->u8FRUID, psData->u16Offset, u8Length, psData->au8NewData, 0, &u16Written) &&
        WriteFRUBytes(psData->u8FRUID, u16ChecksumOffset, 1, &psData->u8Checksum, 0, &u16ChecksumWritten)) {
        return 1;
    }
    ReportUnfinishedUpdate(psData->u8FRUID, u16Start, static_cast<uint16_t>(bDateTime ? u8Length : u8Length + 1),
                           u16Written, u16ChecksumOffset, ChecksumStillHolds(psData, pu8OldData, u16Written));
    return 0;
}

// Everything between the start of the lists and their end: 1 when the field and the
// checksum are written.
int UpdateFRUField(sFRUUpdateData* psData)
{
    uint8_t au8Header[FRU_HEADER_SIZE] = {0};
    uint8_t au8OldData[FRU_UPDATE_DATA_SIZE] = {0};
    if (!ReadFRUBytes(psData->u8FRUID, 0, FRU_HEADER_SIZE, au8Header, 0)) {
        return 0;
    }
    const int bDateTime = IsFRUUpdateOfDateTime(psData);
    if (!(bDateTime ? ReadFRUBytes(psData->u8FRUID, psData->u16Offset, FRU_DATETIME_SIZE, au8OldData, 0)
                    : ReadOldString(psData, au8OldData))) {
        return 0;
    }
    uint16_t u16ChecksumOffset = 0;
    if (!ReadAreaChecksum(psData, au8Header[AreaHeaderIndex(psData)], &u16ChecksumOffset)) {
        return 0;
    }
    const uint16_t u16Count =
        bDateTime ? static_cast<uint16_t>(FRU_DATETIME_SIZE) : static_cast<uint16_t>(psData->u8StringLength + 1);
    if (!ComputeChecksum(psData->u8Checksum, u16Count, au8OldData, psData->au8NewData, &psData->u8Checksum)) {
        fputs("Fail to compute new checksum!", stderr);
        return 0;
    }
    return WriteNewField(psData, au8OldData, u16ChecksumOffset);
}

}  // namespace

eReturnCodeTag UpdateFRU(uint16_t u16ArgCount, char** ppchArgs)
{
    sFRUUpdateData sData;
    memset(&sData, 0, sizeof(sData));
    if (!ValidateAnalyzeFRUUpdateDataParameters(u16ArgCount, ppchArgs, &sData)) {
        fprintf(stdout, "Use %s -h for help.\n", TAVRIN);
        return eRcHandlerFailed;
    }
    if (!InitializeInterface()) {
        return eRcHandlerFailed;
    }
    if (!TavrinInit()) {
        TerminateConnSession();
        return eRcHandlerFailed;
    }
    const int bUpdated = UpdateFRUField(&sData);
    TavrinExit();
    TerminateConnSession();
    fputs(bUpdated ? "Update FRU data successful!\n\n" : "Update FRU data failed!\n\n", stdout);
    return bUpdated ? eRcSuccess : eRcHandlerFailed;
}
