#include "FRUAreaTable.h"

#include <cstdio>
#include <cstring>

namespace {

const char* const kAreaTags[FRU_AREA_TABLE_SIZE] = {
    "_SEE_COMMON",  "_SEE_INTERNAL",    "_SEE_CHASSIS", "_SEE_BOARD",
    "_SEE_PRODUCT", "_SEE_MULTIRECORD", "_SEE_PAD",     "checksum",
};

// The next present area behind row i, or 0 when there is none.
int NextPresentArea(const sFRUAreaInfo* psTable, int i)
{
    for (int j = i + 1; j <= eFRUAreaMultiRecord; j++) {
        if (psTable[j].u16Offset != 0) {
            return j;
        }
    }
    return 0;
}

}  // namespace

void FRUInitAreaTable(sFRUAreaInfo* psTable)
{
    for (int i = 0; i < FRU_AREA_TABLE_SIZE; i++) {
        std::memset(&psTable[i], 0, sizeof(psTable[i]));
        std::strncpy(psTable[i].achTag, kAreaTags[i], FRU_AREA_TAG_SIZE - 1);
    }
}

const char* FRUAreaName(const sFRUAreaInfo* psRow)
{
    return std::strlen(psRow->achTag) > FRU_AREA_NAME_SKIP ? psRow->achTag + FRU_AREA_NAME_SKIP : psRow->achTag;
}

int FRUGetAreaInfo(const uint8_t* pu8Header, int bInventoryData, sFRUAreaInfo* psTable)
{
    for (int i = eFRUAreaInternal; i <= eFRUAreaMultiRecord; i++) {
        psTable[i].u16Offset = static_cast<uint16_t>(pu8Header[i] * FRU_AREA_UNIT);
    }
    for (int i = eFRUAreaInternal; i <= eFRUAreaMultiRecord; i++) {
        const int j = NextPresentArea(psTable, i);
        if (psTable[i].u16Offset == 0 || j == 0) {
            continue;
        }
        if (psTable[i].u16Offset >= psTable[j].u16Offset) {
            std::fputs(bInventoryData ? "<ERROR> Unable to handle the FRU data. \n"
                                      : "<ERROR> Unable to handle the FRU binary file. \n",
                       stderr);
            std::fprintf(stderr, "In %s Area, the %s offset >= %s offset. \n", FRUAreaName(&psTable[eFRUAreaCommon]),
                         FRUAreaName(&psTable[i]), FRUAreaName(&psTable[j]));
            return 0;
        }
        psTable[i].u16Length = static_cast<uint16_t>(psTable[j].u16Offset - psTable[i].u16Offset);
    }
    return 1;
}

int CanKnowFRULengthFromCommonArea(const sFRUAreaInfo* psTable)
{
    for (int i = eFRUAreaChassis; i <= eFRUAreaMultiRecord; i++) {
        if (psTable[i].u16Offset != 0) {
            return 1;
        }
    }
    return psTable[eFRUAreaInternal].u16Offset == 0 ? 1 : 0;
}

int FRUAreaChecksumCorrect(const uint8_t* pu8Data, uint16_t u16Length, uint16_t u16Extra)
{
    uint16_t u16Sum = u16Extra;
    for (uint16_t i = 0; i < u16Length; i++) {
        u16Sum = static_cast<uint16_t>(u16Sum + pu8Data[i]);
    }
    return (u16Sum & 0xFF) == 0 ? 1 : 0;
}
