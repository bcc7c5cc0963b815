// FRU transfers against a FRU device behind DoIPMICommand: the exact requests, how far
// the reads reach, and the buffer commands that read and write single fields.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "channel/CommandChannel.h"
#include "fru/FRUImage.h"
#include "repository/FRUCommands.h"
#include "repository/FRUTransfer.h"

namespace {

using Bytes = std::vector<uint8_t>;

// FRU device 2: reads short at the end of the area; one read refused, one answered short.
struct FakeFruDevice {
    Bytes vArea;
    size_t uRefuseReadAt = ~size_t{0}, uShortReadAt = ~size_t{0};
    std::vector<std::pair<uint8_t, Bytes>> vLog;  // command, request
} s_sDevice;

uint8_t Answer(uint8_t u8Command, const Bytes& v, Bytes* pvReply)
{
    const size_t uOffset = v.size() >= 3 ? v[1] | v[2] << 8 : 0, uSize = s_sDevice.vArea.size();
    if (v.empty() || v[0] != 2) return 0xCB;
    if (u8Command == IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO) {
        *pvReply = {static_cast<uint8_t>(uSize), static_cast<uint8_t>(uSize >> 8), 0};
    } else if (u8Command == IPMI_CMD_READ_FRU_DATA) {
        if (uOffset == s_sDevice.uRefuseReadAt || uOffset >= uSize) return 0xC9;
        const size_t uCount = std::min<size_t>({v[3], uSize - uOffset, uOffset == s_sDevice.uShortReadAt ? 4u : 99u});
        *pvReply = {static_cast<uint8_t>(uCount)};
        pvReply->insert(pvReply->end(), s_sDevice.vArea.begin() + uOffset, s_sDevice.vArea.begin() + uOffset + uCount);
    } else {
        std::copy(v.begin() + 3, v.end(), s_sDevice.vArea.begin() + uOffset);
        *pvReply = {static_cast<uint8_t>(v.size() - 3)};
    }
    return 0;
}

}  // namespace

int DoIPMICommand(uint8_t, uint8_t u8Command, IPMIMessage* psMessage)
{
    Bytes vRequest(psMessage->au8RequestData, psMessage->au8RequestData + psMessage->u8RequestLength), vReply;
    s_sDevice.vLog.push_back({u8Command, vRequest});
    std::memset(psMessage->au8ResponseData, 0, sizeof(psMessage->au8ResponseData));
    psMessage->u8CompletionCode = Answer(u8Command, vRequest, &vReply);
    psMessage->u16ResponseLength = static_cast<uint16_t>(vReply.size());
    std::copy(vReply.begin(), vReply.end(), psMessage->au8ResponseData);
    return psMessage->u8CompletionCode == 0 ? 1 : 0;
}

namespace {

// A fresh device of uArea bytes counting up, and a local image of uFile bytes.
void Reset(size_t uArea, size_t uFile)
{
    s_sDevice = FakeFruDevice();
    for (size_t i = 0; i < uArea; i++) s_sDevice.vArea.push_back(static_cast<uint8_t>(i ^ 0x5A));
    free(G_pu8LocalFRUDataBuffer), free(G_pu8InventoryFRUDataBuffer);
    G_pu8InventoryFRUDataBuffer = nullptr;
    G_pu8LocalFRUDataBuffer = static_cast<uint8_t*>(malloc(uFile + 1));
    for (size_t i = 0; i < uFile; i++) G_pu8LocalFRUDataBuffer[i] = static_cast<uint8_t>(i * 7 + 1);
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(uFile);
}

std::vector<Bytes> Requests(uint8_t u8Command)
{
    std::vector<Bytes> v;
    for (const auto& s : s_sDevice.vLog) {
        if (s.first == u8Command) v.push_back(s.second);
    }
    return v;
}

TEST(FRUTransfer, WritesBlocksOfSixteenFromOffsetZeroWithAShortLastOne)
{
    for (size_t uSize : {1u, 17u, 32u}) {
        Reset(256, uSize);
        testing::internal::CaptureStdout();
        EXPECT_EQ(1, DoFRUAddToBMC(0x102));  // the low byte is the FRU ID
        EXPECT_EQ("Start to download FRU data! \n", testing::internal::GetCapturedStdout());
        std::vector<Bytes> vWrites = Requests(IPMI_CMD_WRITE_FRU_DATA);
        ASSERT_EQ((uSize + 15) / 16, vWrites.size()) << uSize;
        for (size_t i = 0; i < vWrites.size(); i++) {
            Bytes vExpected = {2, static_cast<uint8_t>(16 * i), 0};
            const uint8_t* pu8Block = G_pu8LocalFRUDataBuffer + 16 * i;
            vExpected.insert(vExpected.end(), pu8Block, pu8Block + std::min<size_t>(16, uSize - 16 * i));
            EXPECT_EQ(vExpected, vWrites[i]) << uSize << " block " << i;
        }
        EXPECT_EQ(0x5A ^ uSize, s_sDevice.vArea[uSize]);  // behind the image nothing changed
    }
}

struct ReadCase {
    size_t uArea, uRefuseAt, uShortAt, uReads;
    uint16_t u16ReadSize;
    std::string sErr;
};

TEST(FRUTransfer, ReadsWholeBlocksUpToTheEndOfTheAreaOrTheFirstFailure)
{
    const std::string kFailed = "<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\n";
    const size_t kNone = ~size_t{0};
    for (const ReadCase& c : {ReadCase{0x50, kNone, kNone, 5, 0x50, ""}, ReadCase{0x51, kNone, kNone, 6, 0x60, ""},
                              ReadCase{0xFFFF, kNone, kNone, 4096, 0xFFFF, ""},
                              ReadCase{0x80, 0x40, kNone, 5, 0x50, kFailed + "cc = C9 \n"},
                              ReadCase{0x80, kNone, 0x20, 3, 0x30,
                                       kFailed + "cc = 0 \nOnly 4 of 16 bytes came back from offset 0x20. \n"}}) {
        Reset(c.uArea, 0x40);
        s_sDevice.uRefuseReadAt = c.uRefuseAt, s_sDevice.uShortReadAt = c.uShortAt;
        testing::internal::CaptureStderr();
        EXPECT_EQ(1, DoFRUGetFromBMC(2));
        EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
        EXPECT_EQ(c.u16ReadSize, G_u16ReadSizeFromFRUInventory) << c.uArea;
        std::vector<Bytes> vReads = Requests(IPMI_CMD_READ_FRU_DATA);
        ASSERT_EQ(c.uReads, vReads.size());
        for (size_t i = 0; i < vReads.size(); i++) {
            EXPECT_EQ((Bytes{2, static_cast<uint8_t>(16 * i), static_cast<uint8_t>(16 * i >> 8), 16}), vReads[i]);
        }
        const size_t uGood = std::min({c.uArea, c.uRefuseAt, c.uShortAt});
        EXPECT_EQ(Bytes(s_sDevice.vArea.begin(), s_sDevice.vArea.begin() + uGood),
                  Bytes(G_pu8InventoryFRUDataBuffer, G_pu8InventoryFRUDataBuffer + uGood));
        // A file is compared over its length, and never with bytes that weren't read.
        G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(std::min<size_t>(0x40, uGood));
        std::copy(s_sDevice.vArea.begin(), s_sDevice.vArea.begin() + 0x40, G_pu8LocalFRUDataBuffer);
        EXPECT_EQ(1, FRUCompare());
        if (c.u16ReadSize < 0x40) {
            G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(c.u16ReadSize + 1);
            EXPECT_EQ(0, FRUCompare()) << "a file longer than what was read";
        }
    }
}

TEST(FRUTransfer, BufferCommandsMoveExactlyTheBytesAsked)
{
    Reset(0x80, 0);
    uint8_t au8Buffer[8] = {};
    EXPECT_EQ(eStateFRUReadOK, ReadFRUDataCommandToLocalBuffer(2, 0x1B, 3, au8Buffer, 4));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0x41, 0x46, 0x47, 0}), Bytes(au8Buffer, au8Buffer + 8));
    EXPECT_EQ(eStateFRUWriteOK, WriteFRUDataCommandFromLocalBuffer(2, 0x60, 2, au8Buffer, 5));
    EXPECT_EQ((Bytes{2, 0x60, 0, 0x46, 0x47}), s_sDevice.vLog.back().second);
    // Fewer bytes than asked (the end of the area) fail: a field is never half read.
    testing::internal::CaptureStderr();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0x7E, 3, au8Buffer, 0));
    const size_t uExchanges = s_sDevice.vLog.size();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0, 1, nullptr, 0));
    EXPECT_EQ("<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\ncc = 0 \n"
              "Only 2 of 3 bytes came back from offset 0x7E. \n<ERROR> Internal Error.",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ(uExchanges, s_sDevice.vLog.size());
    Reset(0, 0);
}

}  // namespace
