// Writing SDR records as a binary SDR file of format version 1: the header, then each
// record followed by its CRC-16, low byte first. The pieces serve the generator of
// sample files as well, which writes format versions 0 and 2 around them.
#ifndef TAVRIN_SDR_SDRBINWRITER_H
#define TAVRIN_SDR_SDRBINWRITER_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "SDREntry.h"

enum {
    SDR_BIN_HEADER_SIZE = 8,  // magic, format version, record count, header checksum
    SDR_BIN_CRC_SIZE = 2,
    SDR_BIN_FORMAT_VERSION_ONE = 1,
};

// The eight bytes that format versions 1 and 2 begin with: "KMOR", the version, the
// record count and the checksum that makes their sum 0 modulo 256.
void SDRBuildBinHeader(uint8_t u8Version, uint16_t u16RecordCount, uint8_t (&au8Header)[SDR_BIN_HEADER_SIZE]);

// The CRC-16/XMODEM over a record's bytes, as a binary file carries it.
uint16_t SDRComputeRecordCRC16(const uint8_t* pu8Record, size_t uLength);

// Writes the record and its CRC into pu8Frame, which has uRoom bytes. Returns the bytes
// written, or 0 if they don't fit.
size_t SDRBuildBinRecordFrame(const uint8_t* pu8Record, size_t uLength, uint8_t* pu8Frame, size_t uRoom);

// Writes the first u16RecordCount holders of psList to the stream as a file of format
// version 1. 1 on success; 0 if a holder is out of shape or a write failed.
int WriteSDRBinFile(FILE* pFile, const SDREntry* psList, uint16_t u16RecordCount);

#endif
