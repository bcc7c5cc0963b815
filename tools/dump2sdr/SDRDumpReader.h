// Reading a raw SDR record dump: records back to back, each its five header bytes and
// as many body bytes as its header says, with no file header and no CRC. This is what
// "ipmitool sdr dump" writes.
#ifndef TAVRIN_TOOLS_SDRDUMPREADER_H
#define TAVRIN_TOOLS_SDRDUMPREADER_H

#include <cstdio>
#include <vector>

#include "sdr/SDREntry.h"

// The records that a binary SDR file can hold: one fewer than the holders of a list.
constexpr size_t SDR_DUMP_RECORD_LIMIT = SDR_RECORD_LIMIT - 1;

// Reads the whole stream into pvRecords, one holder a record, in the order of the dump.
// 1 on success; 0 after a message on standard error that names the record and its byte
// offset: a record cut short by the end of the dump, one longer than a holder, more
// records than a binary SDR file holds, a dump without records, or a read error.
int SDRReadRawDump(FILE* pFile, std::vector<SDREntry>* pvRecords);

#endif
