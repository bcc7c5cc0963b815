// Record-by-record comparison of the local list with the repository list.
#include "repository/SDRCompare.h"

#include <cstdio>

#include "common/DebugOutput.h"
#include "repository/RepositoryOutput.h"
#include "sdr/SDREntry.h"

namespace {

// The first index from u32Index on whose holder holds a record, or u16Count.
uint32_t SkipEmptyHolders(const SDREntry* psList, uint32_t u32Index, uint16_t u16Count)
{
    while (u32Index < u16Count && psList[u32Index].u16RecordID == SDR_EMPTY_RECORD_ID) {
        u32Index++;
    }
    return u32Index;
}

uint16_t SDRBytesInHolder(const SDREntry& sEntry)
{
    const uint16_t u16Room = SDR_RECORD_DATA_SIZE;
    return sEntry.u8RecordLength < u16Room ? sEntry.u8RecordLength : u16Room;
}

// Everything but the record ID (bytes 0 and 1), which the BMC assigns at download.
bool SDRRecordsEqual(const SDREntry& sFile, const SDREntry& sBMC, uint32_t u32Index)
{
    if (sFile.u8RecordType != sBMC.u8RecordType) {
        std::fprintf(stderr, "<ERROR> Different record type in record %u!\n", u32Index);
        return false;
    }
    if (sFile.u8RecordLength != sBMC.u8RecordLength) {
        std::fprintf(stderr, "Different record length in record %u!\n", u32Index);
        return false;
    }
    for (uint16_t u16Byte = 2; u16Byte < SDRBytesInHolder(sFile); u16Byte++) {
        if (sFile.au8RecordData[u16Byte] != sBMC.au8RecordData[u16Byte]) {
            std::fprintf(stderr, "<ERROR> Different record data in record %u, %u  byte!\n", u32Index, u16Byte);
            return false;
        }
    }
    return true;
}

}  // namespace

int SDRCompare(uint16_t u16FileCount, uint16_t u16BMCCount)
{
    DebugMessage("Record number: in local file is %d, in BMC is %d \n", u16FileCount, u16BMCCount);
    if (u16FileCount != u16BMCCount) {
        std::fprintf(stderr, "Record number different: in file is %d, in BMC is %d\n", u16FileCount, u16BMCCount);
        return 0;
    }
    if (G_psLocalSDREntryList == nullptr || G_psRepositorySDREntryList == nullptr) {
        RepositoryReportInternalError();
        return 0;
    }
    uint32_t u32File = 0;
    uint32_t u32BMC = 0;
    for (;; u32File++, u32BMC++) {
        u32File = SkipEmptyHolders(G_psLocalSDREntryList, u32File, u16FileCount);
        u32BMC = SkipEmptyHolders(G_psRepositorySDREntryList, u32BMC, u16BMCCount);
        if (u32File >= u16FileCount || u32BMC >= u16BMCCount) {
            return 1;
        }
        const SDREntry& sFile = G_psLocalSDREntryList[u32File];
        const SDREntry& sBMC = G_psRepositorySDREntryList[u32BMC];
        DebugMessage("File Seq=%04d, ID=%04Xh, Data=", static_cast<int>(u32File + 1), u32File + 1);
        DebugPrintArray(sFile.au8RecordData, SDRBytesInHolder(sFile));
        DebugMessage("BMC  Seq=%04d, ID=%04Xh, Data=", static_cast<int>(u32BMC + 1), u32BMC + 1);
        DebugPrintArray(sBMC.au8RecordData, SDRBytesInHolder(sBMC));
        if (!SDRRecordsEqual(sFile, sBMC, u32File)) {
            return 0;
        }
    }
}
