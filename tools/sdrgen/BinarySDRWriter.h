// Writes records as a binary SDR file of format version 0, 1 or 2.
#ifndef TAVRIN_TOOLS_BINARYSDRWRITER_H
#define TAVRIN_TOOLS_BINARYSDRWRITER_H

#include <cstdint>
#include <vector>

#include "SampleRecords.h"

// The whole file: header, then each record followed by its CRC-16, low byte first.
// Version 2 files may carry trailing 0xFF padding. Header fields that can't hold the
// count or the size are written truncated (that is how tests build broken files).
std::vector<uint8_t> BuildBinarySDRFile(int iVersion, const std::vector<TRecord>& vRecords,
                                        uint32_t u32Padding = 0);

// The CRC-16/XMODEM over a record, as the file carries it.
uint16_t RecordCrc(const TRecord& vRecord);

#endif
