// Reader of the three binary SDR file formats (format versions 0, 1 and 2).
#ifndef TAVRIN_SDR_SDRBINFILE_H
#define TAVRIN_SDR_SDRBINFILE_H

#include <cstdint>

#include "SDREntry.h"

// Reads the file into G_psLocalSDREntryList from index *pu16RecordCount on and counts
// up *pu16RecordCount. Returns eSdrBinaryDone, eSdrBinaryError or eSdrNotBinary.
eSDRFileState ReadSDRBinFile(const char* pchPath, uint16_t* pu16RecordCount);

// Header tests on the file's bytes; a file too short for a header doesn't match it.
int IsNewVersionTwoSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize);
int IsNewSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize);
int IsOldSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize);

// The record walk of format version 2; *pu32Offset starts at the first record.
eSDRFileState SDRReadVersionTwoBinRecords(const uint8_t* pu8Data, uint32_t u32FileSize,
                                          uint32_t u32HeaderCount, uint32_t* pu32Offset,
                                          uint16_t* pu16RecordCount);

// Reads the framed record (record and CRC) at *pu32Offset into psEntry and moves
// *pu32Offset behind it. Returns eSdrRecordRead or eSdrBinaryError.
eSDRFileState SDRReadOneBinRecord(const uint8_t* pu8Data, uint32_t u32FileSize, uint32_t* pu32Offset,
                                  SDREntry* psEntry);

// 1 if every byte in [u32Start, u32End) is 0xFF; an empty range gives 1.
int PaddingBytesEncountered(uint32_t u32Start, uint32_t u32End, const uint8_t* pu8Data);

#endif
