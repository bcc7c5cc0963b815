// Whole SDR transfers: download with back-up and restore, upload, and their helpers.
#include "repository/SDRTransfer.h"

#include <cstdio>
#include <cstring>

#include "common/DebugOutput.h"
#include "repository/RepositoryOutput.h"
#include "repository/SDRBackupFile.h"
#include "repository/SDRInterruptHold.h"
#include "repository/SDRRepositoryCommands.h"

namespace {

const char* const SDR_OPERATION_BACKUP = "backup";
const char* const SDR_OPERATION_UPLOAD = "upload";
const char* const SDR_OPERATION_DOWNLOAD = "download";
const char* const SDR_OPERATION_RESTORE = "restore";

bool ListsAllocated()
{
    if (G_psLocalSDREntryList == nullptr || G_psRepositorySDREntryList == nullptr) {
        RepositoryReportInternalError();
        return false;
    }
    return true;
}

// Copies the repository into G_psRepositorySDREntryList. true when the copy is usable.
bool TakeSDRBackup(uint16_t* pu16BackupCount)
{
    RepositoryWriteLine(stdout, "Backup data from SDR Repository. ");
    RepositoryWriteLine(stdout, "The back-up data will restore the SDR Repository if downloading is failed. ");
    if (UploadSDRHandler(pu16BackupCount, G_psRepositorySDREntryList, SDR_OPERATION_BACKUP) == eStateGetSDRLast) {
        RepositoryWriteLine(stdout, "Backup data from SDR Repository Successful. \n");
        return true;
    }
    RepositoryWriteLine(stdout, "Warning: Backup data from SDR Repository Failed. ");
    RepositoryWriteLine(stdout, "Warning: The SDR Repository may have invalid SDR record if downloading is failed. \n");
    return false;
}

// A failed Initialization Agent is reported but doesn't undo the download.
void RunAgentAfterDownload(uint16_t u16RecordCount)
{
    std::printf("Download SDR data Successful. (%Xh SDR records downloaded!) \n", u16RecordCount);
    std::fputs("Run Initialization Agent Command... ", stdout);
    std::fflush(stdout);
    const bool bCompleted = RunInitializationAgentCommand() == eStateInitAgentCompleted;
    RepositoryWriteLine(stdout, bCompleted ? "Completed! " : "Failed! ");
}

// true when the repository holds the back-up again.
bool RestoreSDRBackup(uint16_t u16BackupCount)
{
    RepositoryWriteLine(stdout, "Restore SDR Repository. ");
    std::printf("There are %Xh SDR records to restore! \n", u16BackupCount);
    std::fflush(stdout);
    if (DownloadSDRHandler(u16BackupCount, G_psRepositorySDREntryList, SDR_OPERATION_RESTORE) == eStateFailed) {
        std::fputs("Restore SDR Repository Failed. \n", stderr);
        return false;
    }
    RepositoryWriteLine(stdout, "Restore SDR Repository Successful. ");
    return true;
}

// The download proper and, when it failed, the restore of a usable back-up. The back-up
// file goes once the repository holds a whole set again; otherwise the user is told
// where it is. true when the download succeeded.
bool ReplaceSDRRepository(uint16_t u16RecordCount, bool bBackupUsable, uint16_t u16BackupCount,
                          const char* pchBackupFile)
{
    const eState eResult = DownloadSDRHandler(u16RecordCount, G_psLocalSDREntryList, SDR_OPERATION_DOWNLOAD);
    DebugMessage("Download finished --- eState = %d \n", eResult);
    if (eResult != eStateFailed) {
        RemoveSDRBackupFile(pchBackupFile);
        return true;
    }
    RepositoryWriteLine(stderr, "Failure to download SDR data!\n");
    if (!bBackupUsable) {
        return false;
    }
    if (RestoreSDRBackup(u16BackupCount)) {
        RemoveSDRBackupFile(pchBackupFile);
    } else if (pchBackupFile[0] != '\0') {
        std::fprintf(stderr, "The SDR Repository back-up is kept in file %s; download it with -d to restore. \n",
                     pchBackupFile);
        std::fflush(stderr);
    }
    return false;
}

// An interrupt held back during the download ends it at the next exchange.
bool DownloadInterrupted(bool bInterruptible)
{
    if (!bInterruptible || !InterruptSignalPending()) {
        return false;
    }
    std::fputs("<ERROR> Interrupted. \n", stderr);
    std::fflush(stderr);
    return true;
}

// Reads one whole record, under a reservation of its own, into psEntry.
eState ReadSDRRecord(uint16_t u16RecordID, uint16_t* pu16NextRecordID, SDREntry* psEntry, const char* pchOperation)
{
    uint16_t u16ReserveID = 0;
    if (ReserveSDRCommand(&u16ReserveID) != eStateReserved) {
        return eStateFailed;
    }
    psEntry->u8DataOffset = 0;
    psEntry->u8RecordLength = SDR_RECORD_HEADER_SIZE;  // the header tells the true length
    eState eResult;
    do {
        eResult = GetSDRCommand(u16ReserveID, u16RecordID, pu16NextRecordID, psEntry, pchOperation);
    } while (eResult == eStateGetSDRMore);
    return eResult;
}

// The record IDs that a walk of the repository has met, one bit for each ID.
struct sRecordIDSet {
    uint8_t au8Bits[(SDR_EMPTY_RECORD_ID + 1) / 8];
};

// Adds the ID to the set; false if it was there already.
bool TakeRecordID(sRecordIDSet* psSet, uint16_t u16RecordID)
{
    uint8_t& u8Byte = psSet->au8Bits[u16RecordID / 8];
    const uint8_t u8Bit = static_cast<uint8_t>(1u << (u16RecordID % 8));
    const bool bNew = (u8Byte & u8Bit) == 0;
    u8Byte = static_cast<uint8_t>(u8Byte | u8Bit);
    return bNew;
}

// A chain whose next record ID was met before would be walked for ever (or until the
// list is full), reading the same records again: it is refused as a failed read. Not
// marked as an error during a back-up, whose failure doesn't end the download.
void ReportRecordChainLoop(uint16_t u16RecordID, const char* pchOperation)
{
    const bool bBackup = std::strcmp(pchOperation, SDR_OPERATION_BACKUP) == 0;
    std::fprintf(stderr, "%sThe chain of SDR records loops back to record ID %04Xh. \n", bBackup ? "" : "<ERROR> ",
                 u16RecordID);
    std::fflush(stderr);
}

// Adds one whole record, under a reservation of its own, in chunks; the BMC assigns its ID.
eState WriteSDRRecord(uint16_t u16ListIndex, SDREntry* psEntry, const char* pchOperation, bool bInterruptible)
{
    uint16_t u16ReserveID = 0;
    if (DownloadInterrupted(bInterruptible) || ReserveSDRCommand(&u16ReserveID) != eStateReserved) {
        return eStateFailed;
    }
    std::printf("    Start to %s #%2Xh SDR record  ... \n", pchOperation, u16ListIndex);
    std::fflush(stdout);
    psEntry->u16RecordID = 0;
    eState eResult = eStateFailed;
    for (uint8_t u8Offset = 0; u8Offset < psEntry->u8RecordLength; u8Offset += SDR_CHUNK_SIZE) {
        if (DownloadInterrupted(bInterruptible)) {
            return eStateFailed;
        }
        psEntry->u8DataOffset = u8Offset;
        eResult = PartialAddCommand(u16ReserveID, psEntry);
        if (eResult == eStateFailed) {
            break;
        }
    }
    return eResult;
}

}  // namespace

int DoSDRAddToBMC(uint16_t u16RecordCount)
{
    if (!ListsAllocated()) {
        return 0;
    }
    SDRRepositoryInfo sInfo = {};
    if (GetSDRRepositoryInfoCommand(&sInfo, SDR_INFO_MODE_WRITE) != eStateInfoOK) {
        return 0;
    }
    const uint16_t u16Required = GetRequiredSDRSize(u16RecordCount);
    // An empty repository needs no back-up, and its free space is not looked at.
    const bool bTakeBackup = sInfo.u16RecordCount != 0;
    if (bTakeBackup && sInfo.u16FreeSpace < u16Required) {
        std::printf("Lack of space in the SDR Repository, required=%d, free space=%d. \n", u16Required,
                    sInfo.u16FreeSpace);
    }
    uint16_t u16BackupCount = sInfo.u16RecordCount;
    const bool bBackupUsable = bTakeBackup && TakeSDRBackup(&u16BackupCount);
    // On disk before the erase, so that the old records outlive a failed restore or a
    // killed process. A file that can't be written leaves the back-up in memory only.
    char achBackupFile[SDR_BACKUP_NAME_SIZE] = "";
    if (bBackupUsable) {
        SaveSDRBackupFile(G_psRepositorySDREntryList, u16BackupCount, achBackupFile, sizeof(achBackupFile));
    }
    std::printf("There are %Xh SDR records to download! \n", u16RecordCount);
    std::fflush(stdout);
    // From the erase until the download or the restore has ended, an interrupt must not
    // leave a half-written repository behind.
    sInterruptHold sHold;
    HoldInterruptSignals(&sHold);
    const bool bDownloaded = ReplaceSDRRepository(u16RecordCount, bBackupUsable, u16BackupCount, achBackupFile);
    ReleaseInterruptSignals(&sHold);
    if (!bDownloaded) {
        return 0;
    }
    RunAgentAfterDownload(u16RecordCount);
    return 1;
}

int DoSDRGetFromBMC(uint16_t* pu16RecordCount)
{
    if (pu16RecordCount == nullptr || !ListsAllocated()) {
        return 0;
    }
    SDRRepositoryInfo sInfo = {};
    if (GetSDRRepositoryInfoCommand(&sInfo, SDR_INFO_MODE_READ) != eStateInfoOK) {
        return 0;
    }
    if (sInfo.u16RecordCount == 0) {
        RepositoryWriteLine(stderr, "The SDR repository is empty.");
        return 0;
    }
    *pu16RecordCount = sInfo.u16RecordCount;
    return UploadSDRHandler(pu16RecordCount, G_psRepositorySDREntryList, SDR_OPERATION_UPLOAD) == eStateGetSDRLast
               ? 1
               : 0;
}

eState DownloadSDRHandler(uint16_t u16RecordCount, SDREntry* psList, const char* pchOperation)
{
    if (psList == nullptr || pchOperation == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    // The download gives way to an interrupt; a restore runs to its end.
    const bool bInterruptible = std::strcmp(pchOperation, SDR_OPERATION_DOWNLOAD) == 0;
    if (ToClearSDR() != eStateEraseCompleted) {
        return eStateFailed;
    }
    // Stops at the first error and leaves the records added so far in the repository.
    eState eResult = eStateFailed;
    for (uint32_t u32Index = 0; u32Index < u16RecordCount; u32Index++) {
        eResult = WriteSDRRecord(static_cast<uint16_t>(u32Index), &psList[u32Index], pchOperation, bInterruptible);
        if (eResult == eStateFailed) {
            return eStateFailed;
        }
    }
    return DownloadInterrupted(bInterruptible) ? eStateFailed : eResult;
}

eState UploadSDRHandler(uint16_t* pu16RecordCount, SDREntry* psList, const char* pchOperation)
{
    if (pu16RecordCount == nullptr || psList == nullptr || pchOperation == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    uint16_t u16RecordID = 0;  // 0 asks for the first record
    uint16_t u16NextRecordID = 0;
    uint32_t u32Index = 0;
    psList[0].u16RecordID = 0;
    sRecordIDSet sMet = {};
    TakeRecordID(&sMet, u16RecordID);
    for (;;) {
        const eState eResult = ReadSDRRecord(u16RecordID, &u16NextRecordID, &psList[u32Index], pchOperation);
        if (eResult != eStateGetSDRLast) {
            return eStateFailed;
        }
        if (u32Index == 0) {
            TakeRecordID(&sMet, psList[0].u16RecordID);  // what ID 0 stood for
        }
        DebugPrintGetSDR(psList[u32Index].u16RecordID, u16NextRecordID, static_cast<uint16_t>(u32Index),
                         *pu16RecordCount);
        if (u16NextRecordID == SDR_EMPTY_RECORD_ID || u32Index == SDR_RECORD_LIMIT - 1) {
            break;
        }
        if (!TakeRecordID(&sMet, u16NextRecordID)) {
            ReportRecordChainLoop(u16NextRecordID, pchOperation);
            return eStateFailed;
        }
        DebugMessage("\n\n*** Get Next SDR Record ***\n");
        u32Index++;
        u16RecordID = u16NextRecordID;
    }
    DebugMessage("\n\n### No More SDR Records Available ###\n\n");
    const uint32_t u32Read = u32Index + 1;
    if (u32Read == SDR_RECORD_LIMIT) {
        std::fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
        return eStateFailed;
    }
    if (u32Read != *pu16RecordCount) {
        std::fprintf(stderr, "SDR Record: needs %Xh, Got %Xh. \n", *pu16RecordCount, u32Read);
        return eStateFailed;
    }
    *pu16RecordCount = static_cast<uint16_t>(u32Read);
    return eStateGetSDRLast;
}

uint16_t GetRequiredSDRSize(uint16_t u16RecordCount)
{
    uint16_t u16Size = 0;
    for (uint32_t u32Index = 0; G_psLocalSDREntryList != nullptr && u32Index < u16RecordCount; u32Index++) {
        u16Size = static_cast<uint16_t>(u16Size + G_psLocalSDREntryList[u32Index].u8RecordLength);
    }
    return u16Size;
}

void DebugPrintGetSDR(uint16_t u16RecordID, uint16_t u16NextRecordID, uint16_t u16ListIndex,
                      uint16_t u16RecordTotal)
{
    if (G_bVerboseMode == 0 || G_psRepositorySDREntryList == nullptr || u16ListIndex >= SDR_RECORD_LIMIT) {
        return;
    }
    const SDREntry& sEntry = G_psRepositorySDREntryList[u16ListIndex];
    const uint16_t u16Room = SDR_RECORD_DATA_SIZE;
    const uint16_t u16Length = sEntry.u8RecordLength < u16Room ? sEntry.u8RecordLength : u16Room;
    DebugMessage("   SDRRecordID=%04X, RecordLength=%04X\n", u16RecordID, sEntry.u8RecordLength);
    DebugMessage("   RecordData=");
    DebugPrintArray(sEntry.au8RecordData, u16Length);
    DebugMessage("   RecordGot=%X, RecordTotal=%X, RecordLimit=%04X\n", u16ListIndex + 1, u16RecordTotal,
                 SDR_RECORD_LIMIT);
    DebugMessage("   NextSDRRecordID=%04X\n", u16NextRecordID);
}
