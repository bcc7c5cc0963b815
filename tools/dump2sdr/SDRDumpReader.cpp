#include "SDRDumpReader.h"

#include <cstring>

namespace {

const char kTool[] = "tavrin-dump2sdr";

// Reads exactly uCount bytes, or as many as the stream still has. The count read.
size_t ReadUpTo(FILE* pFile, uint8_t* pu8Target, size_t uCount)
{
    return fread(pu8Target, 1, uCount, pFile);
}

// The holder of one record whose header is in au8Header; its body follows in the stream.
// 1, or 0 after the message.
int ReadRecordBody(FILE* pFile, const uint8_t (&au8Header)[SDR_RECORD_HEADER_SIZE], size_t uNumber,
                   unsigned long ulOffset, SDREntry* psEntry)
{
    const size_t uLength = SDR_RECORD_HEADER_SIZE + au8Header[4];
    const unsigned uID = static_cast<unsigned>(au8Header[0] | au8Header[1] << 8);
    if (uLength > SDR_RECORD_DATA_SIZE) {
        fprintf(stderr,
                "%s: record %zu (ID %04Xh, type %02Xh) at byte offset %lu is %zu bytes long; "
                "tavrin takes records of at most %d bytes.\n",
                kTool, uNumber, uID, au8Header[3], ulOffset, uLength, SDR_RECORD_DATA_SIZE);
        return 0;
    }
    memset(psEntry, 0, sizeof(*psEntry));
    memcpy(psEntry->au8RecordData, au8Header, SDR_RECORD_HEADER_SIZE);
    const size_t uBody = uLength - SDR_RECORD_HEADER_SIZE;
    const size_t uRead = ReadUpTo(pFile, psEntry->au8RecordData + SDR_RECORD_HEADER_SIZE, uBody);
    if (uRead != uBody) {
        fprintf(stderr,
                "%s: record %zu (ID %04Xh, type %02Xh) at byte offset %lu is cut short: the dump "
                "holds %zu of its %zu body bytes.\n",
                kTool, uNumber, uID, au8Header[3], ulOffset, uRead, uBody);
        return 0;
    }
    psEntry->u16RecordID = static_cast<uint16_t>(uID);
    psEntry->u8RecordType = au8Header[3];
    psEntry->u8RecordLength = static_cast<uint8_t>(uLength);
    psEntry->u8DataOffset = psEntry->u8RecordLength;
    return 1;
}

}  // namespace

int SDRReadRawDump(FILE* pFile, std::vector<SDREntry>* pvRecords)
{
    unsigned long ulOffset = 0;
    for (;;) {
        uint8_t au8Header[SDR_RECORD_HEADER_SIZE];
        const size_t uRead = ReadUpTo(pFile, au8Header, sizeof(au8Header));
        const size_t uNumber = pvRecords->size() + 1;
        if (uRead == 0 && !ferror(pFile)) {
            break;
        }
        if (ferror(pFile)) {
            fprintf(stderr, "%s: the dump can't be read at byte offset %lu.\n", kTool, ulOffset);
            return 0;
        }
        if (uRead < sizeof(au8Header)) {
            fprintf(stderr, "%s: record %zu at byte offset %lu is cut short: the dump holds %zu of its %zu "
                    "header bytes.\n", kTool, uNumber, ulOffset, uRead, sizeof(au8Header));
            return 0;
        }
        if (pvRecords->size() == SDR_DUMP_RECORD_LIMIT) {
            fprintf(stderr, "%s: the dump holds more than %zu records, the most a binary SDR file holds.\n", kTool,
                    SDR_DUMP_RECORD_LIMIT);
            return 0;
        }
        SDREntry sEntry;
        if (!ReadRecordBody(pFile, au8Header, uNumber, ulOffset, &sEntry)) {
            return 0;
        }
        pvRecords->push_back(sEntry);
        ulOffset += sEntry.u8RecordLength;
    }
    if (pvRecords->empty()) {
        fprintf(stderr, "%s: the dump holds no records.\n", kTool);
        return 0;
    }
    return 1;
}
