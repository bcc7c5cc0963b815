// SaveFRUFile: the image checked, walked once to make every check, then written; and the
// walk through the header's areas, the common header and the internal use area.
#include "FRUTextWriter.h"

#include "FRUAreaTable.h"
#include "FRUImage.h"
#include "FRUTextReader.h"
#include "FRUValidate.h"
#include "common/DebugOutput.h"

namespace {

typedef int (*TAreaWriter)(sFRUTextWriter* psWriter);

// The writer of each header byte that names an area, by its index.
const TAreaWriter kapfnAreaWriters[FRU_AREA_TABLE_SIZE] = {
    nullptr, FRUWriteInternalArea, FRUWriteChassisArea, FRUWriteBoardArea, FRUWriteProductArea,
    FRUWriteMultiRecordArea, nullptr, nullptr};

const uint16_t ku16InternalAreaLength = 8;  // of an internal use area that no other area follows

// The reader places each area where the one in front of it ends, and compares the offsets
// with that: an area at another place (behind a gap) has no form in the file.
int AreaStartsAtCursor(sFRUTextWriter* psWriter, const sFRUAreaInfo* psRow)
{
    const uint16_t u16Cursor = psWriter->sCursor.u16Offset;
    if (psRow->u16Offset == u16Cursor) {
        return 1;
    }
    std::fputs("<ERROR> The FRU data cannot be saved in a FRU text file. \n", stderr);
    std::fprintf(stderr,
                 "The %s Area starts at offset 0x%X, not at offset 0x%X, where the part in front of it ends: a FRU "
                 "text file holds the areas end to end. \n",
                 FRUAreaName(psRow), psRow->u16Offset, u16Cursor);
    return FRUWriterRefuse(psWriter);
}

// The header and each area that it gives, in its order.
int FRUWriteAreas(sFRUTextWriter* psWriter)
{
    sFRUAreaInfo asTable[FRU_AREA_TABLE_SIZE];
    FRUInitAreaTable(asTable);
    if (!FRUGetAreaInfo(psWriter->sCursor.pu8Data, 1, asTable) || !FRUWriteCommonArea(psWriter)) {
        return 0;
    }
    for (int i = eFRUAreaInternal; i <= eFRUAreaMultiRecord; i++) {
        if (asTable[i].u16Offset != 0 &&
            (!AreaStartsAtCursor(psWriter, &asTable[i]) || !kapfnAreaWriters[i](psWriter))) {
            return 0;
        }
    }
    return 1;
}

// The file: its mark, the start line, the blocks and the end line. 0 after a failed
// write, whose dialogue has closed the stream.
int FRUWriteFile(sFRUTextWriter* psWriter, eFileEncoding eEncoding)
{
    return WriteToFile(psWriter->pStream, psWriter->pchPath, ByteOrderMark(eEncoding)) == WRITE_SUCCESS &&
           FRUWriterText(psWriter, FRU_START_TAG "\n") && FRUWriteAreas(psWriter) &&
           FRUWriterText(psWriter, FRU_END_TAG "\n");
}

}  // namespace

int SaveFRUFile(const char* pchPath, eFileEncoding eEncoding)
{
    if (pchPath == nullptr || G_pu8InventoryFRUDataBuffer == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    sFRUTextWriter sWriter = {nullptr, pchPath,
                              {G_pu8InventoryFRUDataBuffer, 0, eEncoding, G_u16ReadSizeFromFRUInventory}};
    if (!FRUValidateRawData(G_pu8InventoryFRUDataBuffer, G_u16ReadSizeFromFRUInventory, 1) ||
        !FRUWriteAreas(&sWriter)) {
        return 0;
    }
    sWriter.pStream = CreateTextFile(pchPath);
    if (sWriter.pStream == nullptr) {
        std::fprintf(stderr, "<ERROR> Cannot open file %s! \n", pchPath);
        return 0;
    }
    sWriter.sCursor.u16Offset = 0;
    if (!FRUWriteFile(&sWriter, eEncoding)) {
        return 0;
    }
    DebugMessage("\n*** FRU written ***\n");
    DebugMessage("%s", FRU_END_TAG);
    DebugMessage("\n*** End of FRU written ***\n");
    if (std::fclose(sWriter.pStream) != 0) {
        std::fprintf(stderr, "<ERROR> File close error %s.\n", pchPath);
        return 0;
    }
    std::fprintf(stdout, "The FRU data has been saved in file %s! \n", pchPath);
    return 1;
}

int FRUWriteCommonArea(sFRUTextWriter* psWriter)
{
    return FRUWriterText(psWriter, "_SEE_COMMON\n") && FRUWriterFeed(psWriter, FRU_COMMON_HEADER_SIZE);
}

// The length of the area is the distance to the next area that the header gives, as the
// reader takes it; of an area that none follows, nothing tells the end: its first 8
// bytes, as far as the image reaches.
int FRUWriteInternalArea(sFRUTextWriter* psWriter)
{
    const sFeedCursor& sCursor = psWriter->sCursor;
    const uint8_t* pu8Header = sCursor.pu8Data;
    uint32_t u32Length = ku16InternalAreaLength;
    for (int i = eFRUAreaMultiRecord; i > eFRUAreaInternal; i--) {
        u32Length = pu8Header[i] != 0 ? pu8Header[i] * FRU_AREA_UNIT - sCursor.u16Offset : u32Length;
    }
    if (sCursor.u16Offset + u32Length > sCursor.u16DataSize) {
        u32Length = static_cast<uint32_t>(sCursor.u16DataSize - sCursor.u16Offset);
    }
    return FRUWriterText(psWriter, "_SEE_INTERNAL\n") && FRUWriterFeed(psWriter, static_cast<uint16_t>(u32Length));
}
