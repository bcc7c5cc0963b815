// sdr-load, sdr-add, sdr-list and sdr-clear. Binary SDR files are read with Tavrin's
// own reader, so the simulator holds exactly what the tool would take from the file.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "CliCommands.h"
#include "SimIpmiCodes.h"
#include "SimLog.h"
#include "SimStateFile.h"
#include "sdr/SDREntry.h"
#include "sdr/SDRFile.h"

namespace {

// The record's own ID when it is a usable, free one; the next free ID otherwise.
uint16_t ChooseRecordID(const sSimRepository* psRepo, const uint8_t* pu8Data)
{
    uint16_t u16Own = static_cast<uint16_t>(pu8Data[0] | (pu8Data[1] << 8));
    if (u16Own != SIM_SDR_FIRST_RECORD_ID && u16Own != SIM_SDR_LAST_RECORD_ID && SimFindRecord(psRepo, u16Own) < 0) {
        return u16Own;
    }
    return SimNextFreeRecordID(psRepo);
}

int AddRecord(sSimRepository* psRepo, const uint8_t* pu8Data, size_t uLength, uint16_t* pu16RecordID)
{
    if (uLength < BMCSIM_SDR_HEADER_SIZE || uLength != pu8Data[4] + static_cast<size_t>(BMCSIM_SDR_HEADER_SIZE)) {
        return CliFail("a record of %u bytes doesn't match the length in its header",
                       static_cast<unsigned>(uLength));
    }
    if (uLength > SimRepositoryFree(psRepo)) {
        return CliFail("no room for a record of %u bytes: %u bytes free", static_cast<unsigned>(uLength),
                       SimRepositoryFree(psRepo));
    }
    uint16_t u16RecordID = ChooseRecordID(psRepo, pu8Data);
    if (u16RecordID == 0 || !SimAppendRecord(psRepo, u16RecordID, pu8Data, static_cast<uint16_t>(uLength))) {
        return CliFail("no record ID left");
    }
    *pu16RecordID = u16RecordID;
    return 0;
}

// The holders the reader fills, prepared as it expects them.
SDREntry* AllocateLocalList()
{
    SDREntry* psList = static_cast<SDREntry*>(calloc(SDR_RECORD_LIMIT, sizeof(SDREntry)));
    for (size_t i = 0; psList != nullptr && i < SDR_RECORD_LIMIT; i++) {
        psList[i].u16RecordID = SDR_EMPTY_RECORD_ID;
    }
    return psList;
}

int AddReadRecords(sSimRepository* psRepo, const SDREntry* psList, uint16_t u16Count)
{
    uint16_t u16RecordID = 0;
    for (uint16_t i = 0; i < u16Count; i++) {
        if (AddRecord(psRepo, psList[i].au8RecordData, psList[i].u8RecordLength, &u16RecordID) != 0) {
            return 1;
        }
    }
    printf("%u records loaded\n", u16Count);
    return 0;
}

}  // namespace

int CliSdrLoad(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 1, 1, "sdr-load <file>")) {
        return 1;
    }
    G_psLocalSDREntryList = AllocateLocalList();
    if (G_psLocalSDREntryList == nullptr) {
        return CliFail("out of memory");
    }
    uint16_t u16Count = 0;
    int iResult = ReadSDRFile(ppchArgv[0], &u16Count)
                      ? AddReadRecords(&psState->sRepository, G_psLocalSDREntryList, u16Count)
                      : CliFail("%s: no records loaded", ppchArgv[0]);
    free(G_psLocalSDREntryList);
    G_psLocalSDREntryList = nullptr;
    return iResult;
}

int CliSdrAdd(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 1, 1000, "sdr-add <hex>...")) {
        return 1;
    }
    std::string sHex;
    for (int i = 0; i < iArgc; i++) {
        sHex += ppchArgv[i];
    }
    std::vector<uint8_t> vu8Bytes;
    if (!SimParseHexString(sHex, &vu8Bytes) || vu8Bytes.size() > BMCSIM_SDR_RECORD_MAX) {
        return CliFail("a record is 5 to %d bytes in hex", BMCSIM_SDR_RECORD_MAX);
    }
    uint16_t u16RecordID = 0;
    if (AddRecord(&psState->sRepository, vu8Bytes.data(), vu8Bytes.size(), &u16RecordID) != 0) {
        return 1;
    }
    printf("id=%04x\n", u16RecordID);
    return 0;
}

int CliSdrList(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "sdr-list")) {
        return 1;
    }
    for (const sSimSdrRecord& sRecord : psState->sRepository.vsRecords) {
        printf("id=%04x type=%02x len=%u data=%s\n", sRecord.u16RecordID, sRecord.au8Data[3], sRecord.u16Length,
               SimHexString(sRecord.au8Data, sRecord.u16Length).c_str());
    }
    return 0;
}

int CliSdrClear(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "sdr-clear")) {
        return 1;
    }
    SimEraseRepository(&psState->sRepository, SimNow(psState));
    return 0;
}
