// Whole transfers of SDR records between the record lists and the BMC's SDR repository.
// A download replaces the repository: it keeps a back-up of the repository in
// G_psRepositorySDREntryList and writes it back if the download breaks.
#ifndef TAVRIN_REPOSITORY_SDRTRANSFER_H
#define TAVRIN_REPOSITORY_SDRTRANSFER_H

#include <cstdint>

#include "repository/RepositoryState.h"
#include "sdr/SDREntry.h"

// Writes the first u16RecordCount records of G_psLocalSDREntryList to the repository,
// then runs the Initialization Agent. 1 when the download succeeded, 0 when it failed.
int DoSDRAddToBMC(uint16_t u16RecordCount);

// Reads the whole repository into G_psRepositorySDREntryList. 1 with *pu16RecordCount
// set to the number of records, 0 on failure.
int DoSDRGetFromBMC(uint16_t* pu16RecordCount);

// Erases the repository and adds u16RecordCount records of psList, each under its own
// reservation. eStatePartialAddLast on success, eStateFailed otherwise.
eState DownloadSDRHandler(uint16_t u16RecordCount, SDREntry* psList, const char* pchOperation);

// Reads the repository's chain of records into psList. *pu16RecordCount is the expected
// count in, and the count read out. eStateGetSDRLast on success, eStateFailed otherwise.
eState UploadSDRHandler(uint16_t* pu16RecordCount, SDREntry* psList, const char* pchOperation);

// The sum of u8RecordLength over the first u16RecordCount holders of
// G_psLocalSDREntryList, wrapping at 16 bits.
uint16_t GetRequiredSDRSize(uint16_t u16RecordCount);

// Verbose trace of the record just read into G_psRepositorySDREntryList[u16ListIndex].
void DebugPrintGetSDR(uint16_t u16RecordID, uint16_t u16NextRecordID, uint16_t u16ListIndex,
                      uint16_t u16RecordTotal);

#endif
