// The in-memory form of a set of SDR records, shared by every SDR subsystem.
#ifndef TAVRIN_SDR_SDRENTRY_H
#define TAVRIN_SDR_SDRENTRY_H

#include <cstdint>

enum {
    SDR_RECORD_DATA_SIZE = 101,    // bytes of one holder: header and body
    SDR_RECORD_HEADER_SIZE = 5,
    SDR_RECORD_LIMIT = 65535,      // holders in each list
    SDR_EMPTY_RECORD_ID = 0xFFFF,  // marks a holder without a record
};

// One SDR record, whole: the five-byte header, then the body.
struct SDREntry {
    uint16_t u16RecordID;     // from record bytes 0-1; SDR_EMPTY_RECORD_ID when empty
    uint8_t u8RecordType;     // record byte 3
    uint8_t u8RecordLength;   // body length plus the header
    uint8_t u8DataOffset;     // fill position, or the next partial transfer's offset
    uint8_t au8RecordData[SDR_RECORD_DATA_SIZE];
};

// Flat arrays of SDR_RECORD_LIMIT holders, allocated by TavrinInit, freed by TavrinExit.
extern SDREntry* G_psLocalSDREntryList;       // records read from a local file
extern SDREntry* G_psRepositorySDREntryList;  // records read from the BMC

// A holder holds a record when its ID isn't SDR_EMPTY_RECORD_ID and its length isn't 0.
inline bool SDRIsOccupied(const SDREntry& sEntry)
{
    return sEntry.u16RecordID != SDR_EMPTY_RECORD_ID && sEntry.u8RecordLength != 0;
}

enum eSDRFileState {
    eSdrFailed = 0,
    eSdrValueRead = 1,
    eSdrEndOfSection = 2,
    eSdrRecordRead = 3,
    eSdrNotBinary = 4,
    eSdrBinaryDone = 5,
    eSdrBinaryError = 6,
};

#endif
