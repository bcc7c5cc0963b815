// FRU transfers against the simulated BMC's model behind DoIPMICommand: the exact
// requests, how far the reads reach, and the buffer commands for single fields.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "SimExchange.h"
#include "channel/CommandChannel.h"
#include "fru/FRUImage.h"
#include "repository/FRUCommands.h"
#include "repository/FRUTransfer.h"

namespace {

using Bytes = std::vector<uint8_t>;
sBmcSimState s_sBmc;

}  // namespace

int DoIPMICommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage)
{
    const sSimRequest sRequest = {static_cast<uint8_t>(u8NetFnLun >> 2), u8Command, psMessage->au8RequestData,
                                  psMessage->u8RequestLength};
    sSimExchangeResult sResult;
    SimExchange(&s_sBmc, eSimRouteDirect, sRequest, nullptr, &sResult);
    std::memset(psMessage->au8ResponseData, 0, sizeof(psMessage->au8ResponseData));
    std::memcpy(psMessage->au8ResponseData, sResult.sResponse.au8Data, sResult.sResponse.u16Length);
    psMessage->u16ResponseLength = sResult.sResponse.u16Length;
    psMessage->u8CompletionCode = sResult.sResponse.u8CompletionCode;
    return psMessage->u8CompletionCode == 0 ? 1 : 0;
}

namespace {

// A BMC whose FRU device 2 has uArea bytes counting up, with one fault on the n-th
// exchange of a command, and a local image of uFile bytes.
void Reset(size_t uArea, size_t uFile, uint8_t u8FaultCommand = 0, uint32_t u32Nth = 0,
           eSimFaultKind eKind = eSimFaultNone, uint32_t u32Value = 0)
{
    SimInitState(&s_sBmc);
    Bytes vArea(uArea);
    for (size_t i = 0; i < uArea; i++) vArea[i] = static_cast<uint8_t>(i ^ 0x5A);
    SimPutFru(&s_sBmc, 2, vArea);
    if (eKind != eSimFaultNone) s_sBmc.vsFaults.push_back({eKind, 0x0A, u8FaultCommand, u32Nth, false, u32Value, 0});
    free(G_pu8LocalFRUDataBuffer), free(G_pu8InventoryFRUDataBuffer);
    G_pu8InventoryFRUDataBuffer = nullptr;
    G_pu8LocalFRUDataBuffer = static_cast<uint8_t*>(malloc(uFile + 1));
    for (size_t i = 0; i < uFile; i++) G_pu8LocalFRUDataBuffer[i] = static_cast<uint8_t>(i * 7 + 1);
    G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(uFile);
}

std::vector<Bytes> Requests(uint8_t u8Command)
{
    std::vector<Bytes> v;
    for (const sSimLogEntry& s : s_sBmc.vsLog) {
        if (s.u8Command == u8Command) v.push_back(s.vu8Request);
    }
    return v;
}

TEST(FRUTransfer, WritesBlocksOfSixteenFromOffsetZeroWithAShortLastOne)
{
    for (size_t uSize : {1u, 17u, 32u}) {
        Reset(32, uSize);
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
    }
}

struct ReadCase {
    size_t uArea;
    uint32_t u32FaultyRead;
    eSimFaultKind eFault;
    size_t uReads;
    uint16_t u16ReadSize;
    std::string sErr;
};

TEST(FRUTransfer, ReadsWholeBlocksUpToTheEndOfTheAreaOrTheFirstFailure)
{
    const std::string kFailed = "<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\n";
    for (const ReadCase& c : {ReadCase{0x50, 0, eSimFaultNone, 5, 0x50, ""},
                              ReadCase{0x51, 0, eSimFaultNone, 6, 0x60, ""},
                              ReadCase{0xFFFF, 0, eSimFaultNone, 4096, 0xFFFF, ""},
                              ReadCase{0x80, 5, eSimFaultCompletionCode, 5, 0x50, kFailed + "cc = C9 \n"},
                              ReadCase{0x80, 3, eSimFaultPartial, 3, 0x30,
                                       kFailed + "cc = 0 \nOnly 4 of 16 bytes came back from offset 0x20. \n"}}) {
        Reset(c.uArea, 0x40, IPMI_CMD_READ_FRU_DATA, c.u32FaultyRead, c.eFault,
              c.eFault == eSimFaultPartial ? 4 : 0xC9);
        testing::internal::CaptureStderr();
        EXPECT_EQ(1, DoFRUGetFromBMC(2));
        EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
        EXPECT_EQ(c.u16ReadSize, G_u16ReadSizeFromFRUInventory) << c.uArea;
        std::vector<Bytes> vReads = Requests(IPMI_CMD_READ_FRU_DATA);
        ASSERT_EQ(c.uReads, vReads.size());
        for (size_t i = 0; i < vReads.size(); i++) {
            EXPECT_EQ((Bytes{2, static_cast<uint8_t>(16 * i), static_cast<uint8_t>(16 * i >> 8), 16}), vReads[i]);
        }
        // The file is compared over its length, and never with bytes that weren't read.
        const Bytes& vArea = SimFindFru(&s_sBmc, 2)->vu8Data;
        const size_t uGood = std::min<size_t>(c.uArea, c.eFault != eSimFaultNone ? 16 * (c.u32FaultyRead - 1) : 0x40);
        EXPECT_EQ(Bytes(vArea.begin(), vArea.begin() + uGood),
                  Bytes(G_pu8InventoryFRUDataBuffer, G_pu8InventoryFRUDataBuffer + uGood));
        std::copy(vArea.begin(), vArea.begin() + 0x40, G_pu8LocalFRUDataBuffer);
        G_u16RawDataSizeFromFRUFile = static_cast<uint16_t>(std::min<size_t>(0x40, uGood));
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
    EXPECT_EQ((Bytes{2, 0x60, 0, 0x46, 0x47}), s_sBmc.vsLog.back().vu8Request);
    // Fewer bytes than asked (the end of the area) fail: a field is never half read.
    testing::internal::CaptureStderr();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0x7E, 3, au8Buffer, 0));
    const size_t uExchanges = s_sBmc.vsLog.size();
    EXPECT_EQ(eStateFailed, ReadFRUDataCommandToLocalBuffer(2, 0, 1, nullptr, 0));
    EXPECT_EQ("<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.\ncc = 0 \n"
              "Only 2 of 3 bytes came back from offset 0x7E. \n<ERROR> Internal Error.",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ(uExchanges, s_sBmc.vsLog.size());
    Reset(0, 0);
}

}  // namespace
