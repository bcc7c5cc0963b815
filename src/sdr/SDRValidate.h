// The rules a record must meet to be read from or written to an SDR text file: its
// type, its length and its five-byte header. Records of binary files never come here.
//
// Each check has two settings, chosen by bRawData, which differ only in their words:
//   0, a text file: u16Position is the line number; the report reads
//      "<ERROR> SDR file format error. \n", the cause, "(line %d) \n";
//   1, raw records (a list from the BMC): u16Position is the record's place among the
//      occupied holders, from 1; the report reads "<ERROR> Incorrect SDR data. \n",
//      the cause, "(record %d) \n".
// All return 1 when the check passes and 0, with the report on standard error, when
// it fails.
#ifndef TAVRIN_SDR_SDRVALIDATE_H
#define TAVRIN_SDR_SDRVALIDATE_H

#include <cstdint>

#include "SDREntry.h"

// Invalid: 00h, 15h-BFh, above C0h. Reserved: 04h-07h, 0Ah-0Fh. The rest pass.
int SDRValidateRecordType(int bRawData, uint16_t u16Position, uint8_t u8Type);

// u8RecordLength against the bounds of u8RecordType, which must have passed: above the
// maximum, then zero, then below the minimum.
int SDRValidateRecordLength(int bRawData, uint16_t u16Position, const SDREntry* psEntry);

// One header byte u8Value; u8DataOffset says which. Byte 2 must be 51h, byte 3 must
// equal u8RecordType, byte 4 plus 5 must equal u8RecordLength; the others pass.
int SDRValidateRecordHeader(int bRawData, uint16_t u16Position, const SDREntry* psEntry, uint8_t u8Value);

// Every occupied holder of the SDR_RECORD_LIMIT holders of the list, in index order:
// type, length, header bytes 0 to 3 (byte 4 is where the length came from). Stops at
// the first failure. Leaves u8DataOffset at 3 in each holder it checks.
int SDRValidateRawData(SDREntry* psList);

#endif
