#include "RandomRecords.h"

#include <random>
#include <set>

#include "sdr/SDRRecordTypes.h"

namespace {

const uint8_t kKnownTypes[] = {0x01, 0x02, 0x03, 0x08, 0x09, 0x10, 0x11, 0x12, 0x13, 0x14, 0xC0};

// Plain modulo of the engine's output: std::mt19937 is the same everywhere, while the
// standard distributions are not.
uint32_t Pick(std::mt19937& rGen, uint32_t u32Low, uint32_t u32High)
{
    return u32Low + static_cast<uint32_t>(rGen() % (u32High - u32Low + 1));
}

uint16_t UniqueRecordID(std::mt19937& rGen, std::set<uint16_t>& rUsed)
{
    uint16_t u16ID = 0;
    do {
        u16ID = static_cast<uint16_t>(Pick(rGen, 1, 0xFFFE));
    } while (!rUsed.insert(u16ID).second);
    return u16ID;
}

// The ID string behind its code at u8Start - 1: quoted 8-bit text or raw bytes.
void FillIDString(std::mt19937& rGen, TRecord& vRecord, uint8_t u8Start)
{
    const uint8_t u8Count = static_cast<uint8_t>(vRecord.size() - u8Start);
    const bool bText = Pick(rGen, 0, 1) == 1;
    const uint8_t u8Form = bText ? uint8_t{SDR_ID_STRING_8BIT} : static_cast<uint8_t>(Pick(rGen, 0, 2) << 6);
    vRecord[u8Start - 1] = static_cast<uint8_t>(u8Form | u8Count);
    for (size_t i = u8Start; i < vRecord.size(); i++) {
        uint8_t u8Byte = static_cast<uint8_t>(Pick(rGen, 0, 0xFF));
        while (bText && (u8Byte == 0x00 || u8Byte == '\n')) {
            u8Byte = static_cast<uint8_t>(Pick(rGen, 0, 0xFF));
        }
        vRecord[i] = u8Byte;
    }
}

TRecord RandomRecord(std::mt19937& rGen, uint16_t u16RecordID)
{
    const uint8_t u8Type = kKnownTypes[Pick(rGen, 0, sizeof(kKnownTypes) - 1)];
    const bool bOem = u8Type == SDR_RECORD_TYPE_OEM;
    const uint32_t u32Min = bOem ? uint32_t{SDR_RECORD_MIN_LEN_TYPE_C0} : SDR_RECORD_MIN_LEN[u8Type];
    const uint32_t u32Max = bOem ? uint32_t{SDR_RECORD_MAX_LEN_TYPE_C0} : SDR_RECORD_MAX_LEN[u8Type];
    const uint8_t u8Length = static_cast<uint8_t>(Pick(rGen, u32Min, u32Max));
    TRecord vRecord(u8Length);
    for (uint8_t& u8Byte : vRecord) u8Byte = static_cast<uint8_t>(Pick(rGen, 0, 0xFF));
    vRecord[0] = static_cast<uint8_t>(u16RecordID & 0xFF);
    vRecord[1] = static_cast<uint8_t>(u16RecordID >> 8);
    vRecord[2] = SDR_REQUIRED_VERSION;
    vRecord[3] = u8Type;
    vRecord[4] = static_cast<uint8_t>(u8Length - 5);
    if (SDRHasIDString(u8Type)) {
        FillIDString(rGen, vRecord, SDRStringStart(u8Type, u8Length));
    }
    return vRecord;
}

}  // namespace

std::vector<TRecord> RandomRecordSet(uint32_t u32Seed, size_t uCount)
{
    std::mt19937 sGen(u32Seed);
    std::set<uint16_t> sUsedIDs;
    std::vector<TRecord> vRecords;
    for (size_t i = 0; i < uCount; i++) {
        vRecords.push_back(RandomRecord(sGen, UniqueRecordID(sGen, sUsedIDs)));
    }
    return vRecords;
}
