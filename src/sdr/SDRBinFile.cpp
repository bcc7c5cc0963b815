// Recognising a binary SDR file by its header and walking its records.
#include "SDRBinFile.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "common/DebugOutput.h"

namespace {

const uint8_t kMagic[4] = {'K', 'M', 'O', 'R'};
const uint32_t kVersionOneHeaderSize = 8;
const uint32_t kVersionTwoHeaderSize = 21;
const uint32_t kVersionZeroHeaderSize = 2;

// Sum of bytes [u32First, u32Last] modulo 256 is zero.
bool ZeroSum(const uint8_t* pu8Data, uint32_t u32First, uint32_t u32Last)
{
    uint8_t u8Sum = 0;
    for (uint32_t i = u32First; i <= u32Last; i++) {
        u8Sum = static_cast<uint8_t>(u8Sum + pu8Data[i]);
    }
    return u8Sum == 0;
}

uint16_t WordAt(const uint8_t* pu8Data, uint32_t u32Offset)
{
    return static_cast<uint16_t>(pu8Data[u32Offset] | (pu8Data[u32Offset + 1] << 8));
}

// The whole file of a binary format in one buffer; 0 bytes when it can't be read.
struct sFileImage {
    uint8_t* pu8Data = nullptr;
    uint32_t u32Size = 0;
};

// The formats are told by their first bytes. A file whose first bytes can't be read
// counts as matching, so that the whole read fails as it would.
bool StartsWithABinaryHeader(FILE* pFile, long lSize)
{
    uint8_t au8Head[kVersionTwoHeaderSize];
    const size_t uWant = (lSize < static_cast<long>(sizeof(au8Head))) ? static_cast<size_t>(lSize) : sizeof(au8Head);
    const size_t uHead = (fseek(pFile, 0, SEEK_SET) == 0) ? fread(au8Head, 1, uWant, pFile) : 0;
    const uint32_t u32Head = static_cast<uint32_t>(uHead);
    return uHead == 0 || IsNewVersionTwoSDRFile(au8Head, u32Head) || IsNewSDRFile(au8Head, u32Head) ||
           IsOldSDRFile(au8Head, u32Head);
}

eSDRFileState LoadFile(const char* pchPath, sFileImage* psImage)
{
    FILE* pFile = fopen(pchPath, "rb");
    if (pFile == nullptr) {
        fprintf(stderr, "<ERROR> Failure to open SDR file %s. \n", pchPath);
        return eSdrBinaryError;
    }
    long lSize = (fseek(pFile, 0, SEEK_END) == 0) ? ftell(pFile) : -1;
    if (lSize <= 0) {
        fprintf(stderr, "<ERROR> SDR file empty, %s.\n", pchPath);
        fclose(pFile);
        return eSdrBinaryError;
    }
    if (lSize > 0x7FFFFFFFL) {
        fprintf(stderr, "<ERROR> SDR file too large, %s.\n", pchPath);
        fclose(pFile);
        return eSdrBinaryError;
    }
    // A file that matches no format (a text file, which may be large) isn't read whole.
    if (!StartsWithABinaryHeader(pFile, lSize)) {
        fclose(pFile);
        return eSdrNotBinary;
    }
    psImage->pu8Data = static_cast<uint8_t*>(malloc(static_cast<size_t>(lSize)));
    size_t uRead = 0;
    if (psImage->pu8Data != nullptr && fseek(pFile, 0, SEEK_SET) == 0) {
        uRead = fread(psImage->pu8Data, 1, static_cast<size_t>(lSize), pFile);
    }
    fclose(pFile);
    // Only what was really read is walked.
    psImage->u32Size = static_cast<uint32_t>(uRead);
    return (uRead == 0) ? eSdrBinaryError : eSdrBinaryDone;
}

// Records of format versions 0 and 1 follow the header back to back, up to the end.
eSDRFileState ReadConsecutiveRecords(const uint8_t* pu8Data, uint32_t u32FileSize, uint32_t u32HeaderCount,
                                     uint32_t u32Offset, uint16_t* pu16RecordCount)
{
    uint32_t u32LocalCount = 0;
    while (u32Offset < u32FileSize) {
        if (*pu16RecordCount >= SDR_RECORD_LIMIT) {
            fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
            return eSdrBinaryError;
        }
        SDREntry* psEntry = &G_psLocalSDREntryList[*pu16RecordCount];
        if (SDRReadOneBinRecord(pu8Data, u32FileSize, &u32Offset, psEntry) != eSdrRecordRead) {
            return eSdrBinaryError;
        }
        u32LocalCount++;
        (*pu16RecordCount)++;
        if (*pu16RecordCount == SDR_RECORD_LIMIT) {
            fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
            return eSdrBinaryError;
        }
    }
    if (u32LocalCount != u32HeaderCount) {
        fputs("SDR binary file format error:\n", stderr);
        return eSdrBinaryError;
    }
    return eSdrBinaryDone;
}

eSDRFileState ReadRecognisedFile(const uint8_t* pu8Data, uint32_t u32FileSize, uint16_t* pu16RecordCount)
{
    int iVersion;
    uint32_t u32HeaderCount;
    uint32_t u32Offset;
    if (IsNewVersionTwoSDRFile(pu8Data, u32FileSize)) {
        if (u32FileSize != WordAt(pu8Data, 18)) {
            fputs("<ERROR> Actual file size does not match the file size specified in the header! \n", stderr);
            return eSdrBinaryError;
        }
        iVersion = 2;
        u32HeaderCount = WordAt(pu8Data, 5);
        u32Offset = WordAt(pu8Data, 16);
    } else if (IsNewSDRFile(pu8Data, u32FileSize)) {
        iVersion = 1;
        u32HeaderCount = WordAt(pu8Data, 5);
        u32Offset = kVersionOneHeaderSize;
    } else if (IsOldSDRFile(pu8Data, u32FileSize)) {
        iVersion = 0;
        u32HeaderCount = pu8Data[0];
        u32Offset = kVersionZeroHeaderSize;
    } else {
        return eSdrNotBinary;
    }
    fprintf(stdout, "Recognize SDR File as binary format version %d (%d records) \n", iVersion,
            static_cast<int>(u32HeaderCount));
    fprintf(stdout, "Start to process SDR file (total 0x%lX bytes) \n", static_cast<unsigned long>(u32FileSize));
    if (iVersion == 2) {
        return SDRReadVersionTwoBinRecords(pu8Data, u32FileSize, u32HeaderCount, &u32Offset, pu16RecordCount);
    }
    return ReadConsecutiveRecords(pu8Data, u32FileSize, u32HeaderCount, u32Offset, pu16RecordCount);
}

}  // namespace

int IsNewVersionTwoSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize)
{
    return (u32FileSize >= kVersionTwoHeaderSize && memcmp(pu8Data, kMagic, sizeof(kMagic)) == 0 &&
            pu8Data[4] == 2 && ZeroSum(pu8Data, 0, 7) && ZeroSum(pu8Data, 8, 20))
               ? 1
               : 0;
}

int IsNewSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize)
{
    return (u32FileSize >= kVersionOneHeaderSize && memcmp(pu8Data, kMagic, sizeof(kMagic)) == 0 &&
            pu8Data[4] == 1 && ZeroSum(pu8Data, 0, 7))
               ? 1
               : 0;
}

int IsOldSDRFile(const uint8_t* pu8Data, uint32_t u32FileSize)
{
    return (u32FileSize >= kVersionZeroHeaderSize && ZeroSum(pu8Data, 0, 1)) ? 1 : 0;
}

eSDRFileState SDRReadVersionTwoBinRecords(const uint8_t* pu8Data, uint32_t u32FileSize,
                                          uint32_t u32HeaderCount, uint32_t* pu32Offset,
                                          uint16_t* pu16RecordCount)
{
    uint32_t u32LocalCount = 0;
    while (*pu32Offset < u32FileSize) {
        if (*pu16RecordCount >= SDR_RECORD_LIMIT) {
            fprintf(stderr, "The SDR record count exceeds %Xh records. \n", SDR_RECORD_LIMIT);
            return eSdrBinaryError;
        }
        SDREntry* psEntry = &G_psLocalSDREntryList[*pu16RecordCount];
        if (SDRReadOneBinRecord(pu8Data, u32FileSize, pu32Offset, psEntry) != eSdrRecordRead) {
            fputs("SDR binary file format error:\n", stderr);
            return eSdrBinaryError;
        }
        u32LocalCount++;
        (*pu16RecordCount)++;
        if (u32LocalCount == u32HeaderCount) {
            if (PaddingBytesEncountered(*pu32Offset, u32FileSize, pu8Data)) {
                DebugMessage("Padding bytes of 0xFF reached. \n");
                return eSdrBinaryDone;
            }
            fputs("SDR binary file format error:\n", stderr);
            return eSdrBinaryError;
        }
        if (u32LocalCount > u32HeaderCount) {
            return eSdrBinaryError;
        }
    }
    return eSdrBinaryDone;
}

eSDRFileState ReadSDRBinFile(const char* pchPath, uint16_t* pu16RecordCount)
{
    if (pchPath == nullptr || pu16RecordCount == nullptr || G_psLocalSDREntryList == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return eSdrBinaryError;
    }
    sFileImage sImage;
    eSDRFileState eResult = LoadFile(pchPath, &sImage);  // eSdrNotBinary for a text file
    if (eResult == eSdrBinaryDone) {
        eResult = ReadRecognisedFile(sImage.pu8Data, sImage.u32Size, pu16RecordCount);
    }
    free(sImage.pu8Data);
    return eResult;
}
