// FRU transfers against a FRU device behind DoIPMICommand: the exact requests, the
// sizes that the reads reach, the size check, and the buffer commands.
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
struct Request { uint8_t u8Command; Bytes vData; };

// One FRU device, ID 2: reads short at the end of the area, one read refused by offset.
struct FakeFruDevice {
    Bytes vArea;
    int iRefuseReadAt = -1;
    int iShortReadAt = -1;  // this read's reply holds 4 data bytes
    std::vector<Request> vLog;
} s_sDevice;

uint8_t Answer(uint8_t u8Command, const Bytes& v, Bytes* pvReply)
{
    if (v.empty() || v[0] != 2) return 0xCB;
    const size_t uOffset = v.size() >= 3 ? v[1] | v[2] << 8 : 0;
    if (u8Command == IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO) {
        *pvReply = {static_cast<uint8_t>(s_sDevice.vArea.size()), static_cast<uint8_t>(s_sDevice.vArea.size() >> 8), 0};
    } else if (u8Command == IPMI_CMD_READ_FRU_DATA) {
        if (static_cast<int>(uOffset) == s_sDevice.iRefuseReadAt || uOffset >= s_sDevice.vArea.size()) return 0xC9;
        const size_t uLimit = uOffset == size_t(s_sDevice.iShortReadAt) ? 4u : 255u;
        const size_t uCount = std::min<size_t>({v[3], s_sDevice.vArea.size() - uOffset, uLimit});
        *pvReply = {static_cast<uint8_t>(uCount)};
        pvReply->insert(pvReply->end(), s_sDevice.vArea.begin() + uOffset, s_sDevice.vArea.begin() + uOffset + uCount);
    } else if (u8Command == IPMI_CMD_WRITE_FRU_DATA) {
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

class FRUTransferTest : public ::testing::Test {
protected:
    void SetUp() override { s_sDevice = FakeFruDevice(); }
    void TearDown() override
    {
        free(G_pu8LocalFRUDataBuffer), free(G_pu8InventoryFRUDataBuffer);
        G_pu8LocalFRUDataBuffer = G_pu8InventoryFRUDataBuffer = nullptr;
    }
    void SetFile(size_t uSize)
    {
        free(G_pu8LocalFRUDataBuffer);
        G_pu8LocalFRUDataBuffer = static_cast<uint8_t*>(malloc(uSize + 1));
        for (size_t i = 0; i < uSize; i++) G_pu8LocalFRUDataBuffer[i] = static_cast<uint8_t>(i * 7 + 1);
        G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(uSize);
    }
    std::vector<Request> Logged(uint8_t u8Command) const
    {
        std::vector<Request> v;
        for (const Request& s : s_sDevice.vLog) if (s.u8Command == u8Command) v.push_back(s);
        return v;
    }
};

TEST_F(FRUTransferTest, WritesInBlocksOfSixteenWithAShortLastOne)
{
    for (size_t uSize : {1u, 16u, 17u, 32u, 255u}) {
        SetUp();
        s_sDevice.vArea.assign(256, 0xFF);
        SetFile(uSize);
        testing::internal::CaptureStdout();
        EXPECT_EQ(1, DoFRUAddToBMC(0x102));  // the low byte is the FRU ID
        EXPECT_EQ("Start to download FRU data! \n", testing::internal::GetCapturedStdout());
        std::vector<Request> vWrites = Logged(IPMI_CMD_WRITE_FRU_DATA);
        ASSERT_EQ((uSize + 15) / 16, vWrites.size()) << uSize;
        for (size_t i = 0; i < vWrites.size(); i++) {
            const size_t uBlock = std::min<size_t>(16, uSize - 16 * i);
            Bytes vExpected = {2, static_cast<uint8_t>(16 * i), 0};
            const uint8_t* pu8Block = G_pu8LocalFRUDataBuffer + 16 * i;
            vExpected.insert(vExpected.end(), pu8Block, pu8Block + uBlock);
            EXPECT_EQ(vExpected, vWrites[i].vData) << uSize << " block " << i;
        }
        EXPECT_EQ(Bytes(G_pu8LocalFRUDataBuffer, G_pu8LocalFRUDataBuffer + uSize),
                  Bytes(s_sDevice.vArea.begin(), s_sDevice.vArea.begin() + uSize));
        EXPECT_EQ(0xFF, s_sDevice.vArea[uSize]);
        TearDown();
    }
}

TEST_F(FRUTransferTest, AFileLargerThanTheAreaIsRefusedBeforeAnyWrite)
{
    s_sDevice.vArea.assign(0x57, 0);
    SetFile(0x58);
    testing::internal::CaptureStderr();
    EXPECT_EQ(eStateFRUInfoOK, GetFRUInventoryAreaInfoCommand(2));
    EXPECT_EQ(eStateFailed, DownloadFRUHandler(2));
    EXPECT_EQ("FRU file size too big, can not download. \n", testing::internal::GetCapturedStderr());
    EXPECT_TRUE(Logged(IPMI_CMD_WRITE_FRU_DATA).empty());
    SetFile(0);  // an empty image writes nothing and is no download
    EXPECT_EQ(eStateFRUInfoOK, DownloadFRUHandler(2));
}

struct ReadCase {
    size_t uArea;
    int iRefuseAt, iShortAt;
    size_t uReads;
    uint16_t u16ReadSize;
    const char* pchErr;
};

TEST_F(FRUTransferTest, ReadsWholeBlocksUpToTheEndOfTheArea)
{
    const std::string kFailed = "<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\n";
    const std::string kRefused = kFailed + "cc = C9 \n";
    const std::string kShort = kFailed + "cc = 0 \nOnly 4 of 16 bytes came back from offset 0x20. \n";
    for (const ReadCase& c : {ReadCase{0x50, -1, -1, 5, 0x50, ""}, ReadCase{0x51, -1, -1, 6, 0x60, ""},
                              ReadCase{0xFFFF, -1, -1, 4096, 0xFFFF, ""},
                              ReadCase{0x80, 0x40, -1, 5, 0x50, kRefused.c_str()},
                              ReadCase{0x80, -1, 0x20, 3, 0x30, kShort.c_str()}}) {
        SetUp();
        s_sDevice.vArea.resize(c.uArea);
        for (size_t i = 0; i < c.uArea; i++) s_sDevice.vArea[i] = static_cast<uint8_t>(i ^ 0x5A);
        s_sDevice.iRefuseReadAt = c.iRefuseAt, s_sDevice.iShortReadAt = c.iShortAt;
        testing::internal::CaptureStderr();
        EXPECT_EQ(1, DoFRUGetFromBMC(2));
        EXPECT_EQ(c.pchErr, testing::internal::GetCapturedStderr());
        EXPECT_EQ(c.u16ReadSize, G_u16ReadSizeFromFRUInventory) << c.uArea;
        std::vector<Request> vReads = Logged(IPMI_CMD_READ_FRU_DATA);
        ASSERT_EQ(c.uReads, vReads.size());
        for (size_t i = 0; i < vReads.size(); i++) {
            EXPECT_EQ((Bytes{2, static_cast<uint8_t>(16 * i), static_cast<uint8_t>(16 * i >> 8), 16}), vReads[i].vData);
        }
        const size_t uGood = c.iRefuseAt >= 0 ? size_t(c.iRefuseAt) : c.iShortAt >= 0 ? size_t(c.iShortAt) : c.uArea;
        EXPECT_EQ(Bytes(s_sDevice.vArea.begin(), s_sDevice.vArea.begin() + uGood),
                  Bytes(G_pu8InventoryFRUDataBuffer, G_pu8InventoryFRUDataBuffer + uGood));
        TearDown();
    }
}

TEST_F(FRUTransferTest, ComparesOnlyTheFileLengthAndNothingThatWasNotRead)
{
    s_sDevice.vArea.assign(0x40, 0);
    SetFile(0x30);
    std::copy(G_pu8LocalFRUDataBuffer, G_pu8LocalFRUDataBuffer + 0x30, s_sDevice.vArea.begin());
    ASSERT_EQ(1, DoFRUGetFromBMC(2));
    EXPECT_EQ(1, FRUCompare());
    G_pu8LocalFRUDataBuffer[0x2F]++;
    EXPECT_EQ(0, FRUCompare());
    G_u16RawDataSizeFromFRUFile = 0x41;  // longer than what was read
    EXPECT_EQ(0, FRUCompare());
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, DoFRUGetFromBMC(7));
    EXPECT_EQ("<ERROR> Error in executing IPMI command because of: \nFRU Device 0x7 error or not exist.\ncc = CB \n"
              "Failure to check the FRU Inventory device.\n",
              testing::internal::GetCapturedStderr());
}

TEST_F(FRUTransferTest, BufferCommandsMoveExactlyTheBytesAsked)
{
    s_sDevice.vArea.assign(0x80, 0);
    for (size_t i = 0; i < 0x80; i++) s_sDevice.vArea[i] = static_cast<uint8_t>(i);
    uint8_t au8Buffer[8] = {};
    EXPECT_EQ(eStateFRUReadOK, ReadFRUDataCommandToLocalBuffer(2, 0x1B, 3, au8Buffer, 4));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0x1B, 0x1C, 0x1D, 0}), Bytes(au8Buffer, au8Buffer + 8));
    EXPECT_EQ(eStateFRUWriteOK, WriteFRUDataCommandFromLocalBuffer(2, 0x60, 2, au8Buffer, 5));
    EXPECT_EQ((Bytes{2, 0x60, 0, 0x1C, 0x1D}), s_sDevice.vLog.back().vData);
    EXPECT_EQ(0x1C, s_sDevice.vArea[0x60]);
    // Fewer bytes than asked (the end of the area) fail: a field is never half read.
    testing::internal::CaptureStderr();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0x7E, 3, au8Buffer, 0));
    const size_t uExchanges = s_sDevice.vLog.size();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0, 1, nullptr, 0));
    EXPECT_EQ("<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\ncc = 0 \n"
              "Only 2 of 3 bytes came back from offset 0x7E. \n<ERROR> Internal Error.",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ(uExchanges, s_sDevice.vLog.size());
}

}  // namespace
