// The IPMI Storage commands of the SDR repository (IPMI v2.0, section 33).
#include "repository/SDRRepositoryCommands.h"

#include <cstdio>
#include <cstring>

#include "channel/ByteHelpers.h"
#include "common/DebugOutput.h"
#include "repository/RepositoryOutput.h"

namespace {

// Byte 13 of the Get SDR Repository Info response: Operation Support.
enum {
    SDR_SUPPORT_OVERFLOW = 0x80,
    SDR_SUPPORT_UPDATE_MASK = 0x60,
    SDR_SUPPORT_UPDATE_SHIFT = 5,
    SDR_SUPPORT_DELETE = 0x08,
    SDR_SUPPORT_PARTIAL_ADD = 0x04,
    SDR_SUPPORT_RESERVE = 0x02,
    SDR_SUPPORT_ALLOCATION_INFO = 0x01,
    SDR_INFO_SUPPORT_BYTE = 13,
};

enum {
    SDR_REQUEST_HEAD_SIZE = 6,      // Get SDR, Partial Add SDR, Clear SDR Repository
    SDR_RESPONSE_ID_SIZE = 2,       // the record ID in front of Get SDR's record bytes
    SDR_ERASE_PROGRESS_MASK = 0x07,
    SDR_ERASE_COMPLETED = 0x01,
    SDR_INIT_AGENT_RUN = 1,
    SDR_INIT_AGENT_GET_STATUS = 0,
    SDR_INIT_AGENT_COMPLETED = 1,
};

void PrepareStorageMessage(IPMIMessage* psMessage, uint8_t u8RequestLength)
{
    std::memset(psMessage, 0, sizeof(*psMessage));
    psMessage->u8RequestLength = u8RequestLength;
    psMessage->u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
}

void PutWord(uint8_t* pu8Data, uint16_t u16Word)
{
    pu8Data[0] = GetLowByteOfWord(u16Word);
    pu8Data[1] = GetHighByteOfWord(u16Word);
}

// A record that doesn't fit a holder. Not marked as an error during a back-up, whose
// failure doesn't end the download.
void ReportRecordTooLong(uint16_t u16RecordID, bool bBackup)
{
    std::fprintf(stderr, "%sSDR record ID %04Xh is longer than %d bytes. \n", bBackup ? "" : "<ERROR> ", u16RecordID,
                 SDR_RECORD_DATA_SIZE);
}

// The holder can take a chunk at u8DataOffset without leaving au8RecordData.
bool SDRHolderInBounds(const SDREntry* psEntry, bool bBackup)
{
    if (psEntry->u8RecordLength > SDR_RECORD_DATA_SIZE) {
        ReportRecordTooLong(psEntry->u16RecordID, bBackup);
        return false;
    }
    if (psEntry->u8DataOffset > psEntry->u8RecordLength) {
        RepositoryReportInternalError();
        return false;
    }
    return true;
}

uint8_t SDRChunkSize(const SDREntry* psEntry)
{
    const int iRest = psEntry->u8RecordLength - psEntry->u8DataOffset;
    return static_cast<uint8_t>(iRest <= SDR_CHUNK_SIZE ? iRest : SDR_CHUNK_SIZE);
}

// Copies the record bytes that were received, up to the chunk size; bytes of the chunk
// that the BMC did not send become 0.
void SDRStoreChunk(const IPMIMessage* psMessage, SDREntry* psEntry, uint8_t u8ChunkSize)
{
    uint16_t u16Received = psMessage->u16ResponseLength;
    if (u16Received > IPMI_RESPONSE_DATA_SIZE) {
        u16Received = IPMI_RESPONSE_DATA_SIZE;
    }
    const int iAvailable = u16Received > SDR_RESPONSE_ID_SIZE ? u16Received - SDR_RESPONSE_ID_SIZE : 0;
    const int iCopy = iAvailable < u8ChunkSize ? iAvailable : u8ChunkSize;
    uint8_t* pu8Target = psEntry->au8RecordData + psEntry->u8DataOffset;
    std::memcpy(pu8Target, psMessage->au8ResponseData + SDR_RESPONSE_ID_SIZE, iCopy);
    std::memset(pu8Target + iCopy, 0, u8ChunkSize - iCopy);
}

// Takes ID, type and length from the record header just read. A record longer than the
// holder is refused: cut, it would later be restored or verified wrongly.
bool SDRTakeRecordHeader(SDREntry* psEntry, const char* pchOperation, bool bBackup)
{
    const uint8_t* pu8Record = psEntry->au8RecordData;
    const unsigned uLength = pu8Record[4] + SDR_RECORD_HEADER_SIZE;
    psEntry->u16RecordID = ParseByIndex(pu8Record, 0, 2);
    psEntry->u8RecordType = pu8Record[3];
    DebugMessage("   Response Record ID=%04X, Type=%02Xh, Length=0x%2X\n", psEntry->u16RecordID,
                 psEntry->u8RecordType, uLength);
    if (uLength > SDR_RECORD_DATA_SIZE) {
        ReportRecordTooLong(psEntry->u16RecordID, bBackup);
        return false;
    }
    psEntry->u8RecordLength = static_cast<uint8_t>(uLength);
    std::printf("    Start to %s SDR record ID %04Xh, type %Xh ... \n", pchOperation,
                psEntry->u16RecordID, psEntry->u8RecordType);
    std::fflush(stdout);
    return true;
}

}  // namespace

eState GetSDRRepositoryInfoCommand(SDRRepositoryInfo* psInfo, uint8_t u8Mode)
{
    if (psInfo == nullptr) {
        RepositoryReportInternalError();
        return eStateInfoFailed;
    }
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, 0);
    DebugMessage("\n=> CMD_GET_SDR_REPOSITORY_INFO\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_SDR_REPOSITORY_INFO, &sMessage) == 0) {
        std::fputs("<ERROR> Error in executing IPMI command because of: "
                   "Failure to check SDR repository info.\n\n", stderr);
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateInfoFailed;
    }
    SetRepositoryInfo(sMessage.au8ResponseData, psInfo);
    DebugMessage("   Record Count = %04X \n", psInfo->u16RecordCount);
    DebugMessage("   Support Partial Add = %s\n", psInfo->bPartialAddSupported ? "Yes" : "No");
    return GetSDRRepOperationSupport(psInfo, u8Mode);
}

void SetRepositoryInfo(const uint8_t (&au8ResponseData)[IPMI_RESPONSE_DATA_SIZE], SDRRepositoryInfo* psInfo)
{
    const uint8_t u8Support = au8ResponseData[SDR_INFO_SUPPORT_BYTE];
    psInfo->u8SDRVersion = au8ResponseData[0];
    psInfo->u16RecordCount = ParseByIndex(au8ResponseData, 1, 2);
    psInfo->u16FreeSpace = ParseByIndex(au8ResponseData, 3, 2);
    psInfo->bOverflow = (u8Support & SDR_SUPPORT_OVERFLOW) != 0;
    psInfo->u8UpdateSupport = static_cast<uint8_t>((u8Support & SDR_SUPPORT_UPDATE_MASK) >> SDR_SUPPORT_UPDATE_SHIFT);
    psInfo->bDeleteSupported = (u8Support & SDR_SUPPORT_DELETE) != 0;
    psInfo->bPartialAddSupported = (u8Support & SDR_SUPPORT_PARTIAL_ADD) != 0;
    psInfo->bReserveSupported = (u8Support & SDR_SUPPORT_RESERVE) != 0;
    psInfo->bAllocationInfoSupported = (u8Support & SDR_SUPPORT_ALLOCATION_INFO) != 0;
}

eState GetSDRRepOperationSupport(const SDRRepositoryInfo* psInfo, uint8_t u8Mode)
{
    const bool bWrite = u8Mode == SDR_INFO_MODE_WRITE;
    if (bWrite && psInfo->bOverflow) {
        std::fputs("SDR could not be written due to lack of space in SDR Repository. \n", stdout);
        std::fflush(stdout);
    }
    if (bWrite && !psInfo->bPartialAddSupported) {
        std::fputs("Partial Add SDR command is not supported. \n", stderr);
        return eStateNotSupported;
    }
    if (!psInfo->bReserveSupported) {
        std::fputs("Reserve SDR command is not supported. \n", stderr);
        return eStateNotSupported;
    }
    return eStateInfoOK;
}

eState ReserveSDRCommand(uint16_t* pu16ReserveID)
{
    if (pu16ReserveID == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, 0);
    DebugMessage("\n=> CMD_RESERVE_SDR\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_RESERVE_SDR_REPOSITORY, &sMessage) == 0) {
        RepositoryWriteLine(stderr, "<ERROR> Error in executing IPMI command because of: "
                                    "Failure to reserve SDR repository.");
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateFailed;
    }
    *pu16ReserveID = ParseByIndex(sMessage.au8ResponseData, 0, 2);
    DebugMessage("   Reserve ID = %X \n", *pu16ReserveID);
    return eStateReserved;
}

eState GetSDRCommand(uint16_t u16ReserveID, uint16_t u16RecordID, uint16_t* pu16NextRecordID,
                     SDREntry* psEntry, const char* pchOperation)
{
    if (pu16NextRecordID == nullptr || psEntry == nullptr || pchOperation == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    const bool bBackup = std::strcmp(pchOperation, "backup") == 0;
    if (!SDRHolderInBounds(psEntry, bBackup)) {
        return eStateFailed;
    }
    const uint8_t u8ChunkSize = SDRChunkSize(psEntry);
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, SDR_REQUEST_HEAD_SIZE);
    PutWord(&sMessage.au8RequestData[0], u16ReserveID);
    PutWord(&sMessage.au8RequestData[2], u16RecordID);
    sMessage.au8RequestData[4] = psEntry->u8DataOffset;
    sMessage.au8RequestData[5] = u8ChunkSize;
    DebugMessage("\n=> CMD_GET_SDR --- ReserveID=%04X, RequestRecordID=%04X, Offset=%02X, ReadSize=%02X ",
                 u16ReserveID, u16RecordID, psEntry->u8DataOffset, u8ChunkSize);
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_SDR, &sMessage) == 0) {
        RepositoryWriteLine(stderr, bBackup ? "Executing IPMI command failed because of: "
                                              "Failure to get data from SDR repository."
                                            : "<ERROR> Error in executing IPMI command because of: "
                                              "Failure to get data from SDR repository.");
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateFailed;
    }
    *pu16NextRecordID = ParseByIndex(sMessage.au8ResponseData, 0, 2);
    SDRStoreChunk(&sMessage, psEntry, u8ChunkSize);
    if (psEntry->u8DataOffset == 0 && !SDRTakeRecordHeader(psEntry, pchOperation, bBackup)) {
        return eStateFailed;
    }
    psEntry->u8DataOffset = static_cast<uint8_t>(psEntry->u8DataOffset + u8ChunkSize);
    return psEntry->u8DataOffset < psEntry->u8RecordLength ? eStateGetSDRMore : eStateGetSDRLast;
}

eState PartialAddCommand(uint16_t u16ReserveID, SDREntry* psEntry)
{
    if (psEntry == nullptr) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    DebugMessage("   PartialAddCommand ReserveID=%X, RecordSDRID=%X, DataOffset = %X\n", u16ReserveID,
                 psEntry->u16RecordID, psEntry->u8DataOffset);
    if (!SDRHolderInBounds(psEntry, false)) {
        return eStateFailed;
    }
    const bool bLast = psEntry->u8DataOffset + SDR_CHUNK_SIZE >= psEntry->u8RecordLength;
    const uint8_t u8ChunkSize = SDRChunkSize(psEntry);
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, static_cast<uint8_t>(SDR_REQUEST_HEAD_SIZE + u8ChunkSize));
    PutWord(&sMessage.au8RequestData[0], u16ReserveID);
    PutWord(&sMessage.au8RequestData[2], psEntry->u16RecordID);
    sMessage.au8RequestData[4] = psEntry->u8DataOffset;
    sMessage.au8RequestData[5] = bLast ? 1 : 0;
    std::memcpy(&sMessage.au8RequestData[SDR_REQUEST_HEAD_SIZE], psEntry->au8RecordData + psEntry->u8DataOffset,
                u8ChunkSize);
    DebugMessage("   RecordData\n");
    DebugPrintArray(sMessage.au8RequestData, SDR_REQUEST_HEAD_SIZE + SDR_CHUNK_SIZE);
    DebugMessage("\n=> CMD_PARTIAL_ADD_SDR\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_PARTIAL_ADD_SDR, &sMessage) == 0) {
        RepositoryWriteLine(stderr, "<ERROR> Error in executing IPMI command because of: "
                                    "Failure to add data to SDR repository.");
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateFailed;
    }
    psEntry->u16RecordID = ParseByIndex(sMessage.au8ResponseData, 0, 2);
    DebugMessage("   SDRRecordID=%d\n", psEntry->u16RecordID);
    return bLast ? eStatePartialAddLast : eStatePartialAddInProgress;
}

eState ClearSDRCommand(uint16_t u16ReserveID, uint8_t u8Action)
{
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, SDR_REQUEST_HEAD_SIZE);
    PutWord(&sMessage.au8RequestData[0], u16ReserveID);
    sMessage.au8RequestData[2] = 'C';
    sMessage.au8RequestData[3] = 'L';
    sMessage.au8RequestData[4] = 'R';
    sMessage.au8RequestData[5] = u8Action;
    DebugMessage("\n=> CMD_CLEAR_SDR_REPOSITORY\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_CLEAR_SDR_REPOSITORY, &sMessage) == 0) {
        return eStateFailed;
    }
    const bool bCompleted = (sMessage.au8ResponseData[0] & SDR_ERASE_PROGRESS_MASK) == SDR_ERASE_COMPLETED;
    return bCompleted ? eStateEraseCompleted : eStateEraseInProgress;
}

eState ToClearSDR()
{
    uint16_t u16ReserveID = 0;
    if (ReserveSDRCommand(&u16ReserveID) != eStateReserved) {
        return eStateFailed;
    }
    eState eResult = ClearSDRCommand(u16ReserveID, SDR_ERASE_START);
    if (eResult != eStateFailed) {
        // A failed status poll counts as one of the polls and ends nothing.
        for (int iPoll = 0; eResult != eStateEraseCompleted && iPoll < SDR_ERASE_POLL_LIMIT; iPoll++) {
            eResult = ClearSDRCommand(u16ReserveID, SDR_ERASE_GET_STATUS);
        }
        if (eResult == eStateEraseCompleted) {
            return eStateEraseCompleted;
        }
    }
    RepositoryWriteLine(stderr, "\n<ERROR> Error in executing IPMI command because of: Failure to clear SDR.");
    return eStateFailed;
}

eState RunInitializationAgentCommand()
{
    IPMIMessage sMessage;
    PrepareStorageMessage(&sMessage, 1);
    sMessage.au8RequestData[0] = SDR_INIT_AGENT_RUN;
    DebugMessage("\n=> CMD_RUN_INITIALIZATION_AGENT\n");
    int iSent = DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_RUN_INITIALIZATION_AGENT, &sMessage);
    if (iSent != 0) {
        // The agent ends by a status other than "in progress" or a failed exchange; a BMC
        // that says "in progress" for ever has a failed agent once the polls run out.
        uint32_t u32Polls = 0;
        while (iSent != 0 && sMessage.au8ResponseData[0] == 0 && u32Polls < SDR_INIT_AGENT_POLL_LIMIT) {
            if (++u32Polls == SDR_INIT_AGENT_PATIENCE_POLLS) {
                std::fputs("(please wait)... ", stdout);
                std::fflush(stdout);
            }
            DebugMessage("   CMD_RUN_INITIALIZATION_AGENT --- status = %X \n\n", sMessage.au8ResponseData[0]);
            sMessage.au8RequestData[0] = SDR_INIT_AGENT_GET_STATUS;
            sMessage.u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
            iSent = DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_RUN_INITIALIZATION_AGENT, &sMessage);
        }
        DebugMessage("   CMD_RUN_INITIALIZATION_AGENT --- status = %X \n\n", sMessage.au8ResponseData[0]);
        if (iSent != 0 && sMessage.au8ResponseData[0] == SDR_INIT_AGENT_COMPLETED) {
            return eStateInitAgentCompleted;
        }
    }
    RepositoryWriteLine(stderr, "<ERROR> Error in executing IPMI command: Failure to Run Initialization Agent Command.");
    RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
    return eStateFailed;
}
