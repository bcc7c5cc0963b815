// The IPMI Storage commands of the SDR repository: one function per command, each one
// request on the command channel, decoded into a record holder or a small structure.
#ifndef TAVRIN_REPOSITORY_SDRREPOSITORYCOMMANDS_H
#define TAVRIN_REPOSITORY_SDRREPOSITORYCOMMANDS_H

#include <cstdint>

#include "channel/CommandChannel.h"
#include "repository/RepositoryState.h"
#include "sdr/SDREntry.h"

enum {
    SDR_CHUNK_SIZE = 16,                 // record bytes per Get SDR / Partial Add SDR
    SDR_INFO_MODE_WRITE = 0,             // the caller is about to write the repository
    SDR_INFO_MODE_READ = 1,              // the caller only reads it
    SDR_ERASE_START = 0xAA,              // Clear SDR Repository: initiate erase
    SDR_ERASE_GET_STATUS = 0x00,         // Clear SDR Repository: get erasure status
    SDR_ERASE_POLL_LIMIT = 3,            // status polls after the erase was started
    SDR_INIT_AGENT_PATIENCE_POLLS = 3000,  // polls before "(please wait)... " shows
    SDR_INIT_AGENT_POLL_LIMIT = 10 * SDR_INIT_AGENT_PATIENCE_POLLS,  // then the agent has failed
};

// The decoded response of Get SDR Repository Info.
struct SDRRepositoryInfo {
    uint8_t u8SDRVersion;
    uint16_t u16RecordCount;
    uint16_t u16FreeSpace;
    bool bOverflow;                 // an earlier write failed for lack of space
    uint8_t u8UpdateSupport;        // modal/non-modal update field; stored only
    bool bDeleteSupported;          // stored only
    bool bPartialAddSupported;
    bool bReserveSupported;
    bool bAllocationInfoSupported;  // stored only
};

// u8Mode is SDR_INFO_MODE_WRITE before a download, anything else for a read.
// eStateInfoOK, eStateNotSupported or eStateInfoFailed.
eState GetSDRRepositoryInfoCommand(SDRRepositoryInfo* psInfo, uint8_t u8Mode);
void SetRepositoryInfo(const uint8_t (&au8ResponseData)[IPMI_RESPONSE_DATA_SIZE],
                       SDRRepositoryInfo* psInfo);
// eStateInfoOK or eStateNotSupported.
eState GetSDRRepOperationSupport(const SDRRepositoryInfo* psInfo, uint8_t u8Mode);

// eStateReserved or eStateFailed.
eState ReserveSDRCommand(uint16_t* pu16ReserveID);

// Reads one chunk of a record into psEntry at u8DataOffset; the caller starts every record
// with u8DataOffset 0 and u8RecordLength 5. pchOperation is "backup", "upload"...
// eStateGetSDRMore, eStateGetSDRLast or eStateFailed.
eState GetSDRCommand(uint16_t u16ReserveID, uint16_t u16RecordID, uint16_t* pu16NextRecordID,
                     SDREntry* psEntry, const char* pchOperation);

// Sends the chunk of psEntry at u8DataOffset under u16RecordID (0 for a new record) and
// stores the ID that the BMC answers. eStatePartialAddInProgress, eStatePartialAddLast or
// eStateFailed.
eState PartialAddCommand(uint16_t u16ReserveID, SDREntry* psEntry);

// u8Action is SDR_ERASE_START or SDR_ERASE_GET_STATUS. Silent on failure.
// eStateEraseInProgress, eStateEraseCompleted or eStateFailed.
eState ClearSDRCommand(uint16_t u16ReserveID, uint8_t u8Action);

// Reserves and erases the whole repository. eStateEraseCompleted or eStateFailed.
eState ToClearSDR();

// Runs the Initialization Agent and polls it to its end, SDR_INIT_AGENT_POLL_LIMIT
// status polls at most. eStateInitAgentCompleted or eStateFailed.
eState RunInitializationAgentCommand();

#endif
