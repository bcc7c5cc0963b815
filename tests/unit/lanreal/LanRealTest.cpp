// The LAN route end to end: the real ipmitool against OpenIPMI's BMC simulator on the
// loopback address, one simulator per test.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "IpmiSimServer.h"
#include "TestSupport.h"
#include "channel/CommandChannel.h"

namespace {

// Two records for the simulator's main SDR repository; it gives them IDs 1 and 2.
// A Management Controller Device Locator of 22 bytes, so that a read of its body takes
// a full 16-byte chunk, which ipmitool prints over two lines.
const std::vector<uint8_t> kControllerLocator = {
    0x00, 0x00, 0x51, 0x12, 0x11,                     // header: ID, version, type, length
    0x20, 0x00, 0x00, 0x9F, 0x00, 0x00, 0x00,         // address, channel, power, caps, reserved
    0x2E, 0x60, 0x00, 0xC6, 'T', 'a', 'v', 'r', 'i', 'n'};
const std::vector<uint8_t> kOemRecord = {0x00, 0x00, 0x51, 0xC0, 0x05, 0x57, 0x01, 0x00, 0xAA, 0x55};

const uint8_t kSupportsReserve = 0x02;     // operation support, Get SDR Repository Info byte 13
const uint8_t kSupportsPartialAdd = 0x04;
const char kDeviceIdFailure[] = "\n\nGet Device ID failed. Please check LAN+ configuration.\n\n";

void SetLanData(const char* pchPassword)
{
    memset(&sIolData, 0, sizeof(sIolData));
    strcpy(sIolData.achHostIP, IpmiSimServer::kHost);
    strcpy(sIolData.achUserName, IpmiSimServer::kUserName);
    strcpy(sIolData.achPassWord, pchPassword);
    strcpy(sIolData.achLanIF, "lanplus");
    sIolData.u16CipherSuiteID = IpmiSimServer::kCipherSuite;
}

IPMIMessage Request(const std::vector<uint8_t>& vData)
{
    IPMIMessage sMessage;
    memset(&sMessage, 0, sizeof(sMessage));
    if (!vData.empty()) memcpy(sMessage.au8RequestData, vData.data(), vData.size());
    sMessage.u8RequestLength = static_cast<uint8_t>(vData.size());
    sMessage.u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
    return sMessage;
}

class LanRealTest : public testing::Test {
protected:
    void SetUp() override
    {
        TAVRIN_REQUIRE_IPMI_SIM();
        ASSERT_TRUE(m_sSim.Start({kControllerLocator, kOemRecord})) << m_sSim.Failure();
        eInterfaceInUse = eIntfLANPlus;
        SetLanData(IpmiSimServer::kPassword);
    }
    void TearDown() override
    {
        eInterfaceInUse = eIntfOpenIPMI;
        memset(&sIolData, 0, sizeof(sIolData));
    }

    uint16_t Reserve()
    {
        IPMIMessage sMessage = Request({});
        EXPECT_EQ(1, DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_RESERVE_SDR_REPOSITORY, &sMessage));
        EXPECT_EQ(2, sMessage.u16ResponseLength);
        return static_cast<uint16_t>(sMessage.au8ResponseData[0] | sMessage.au8ResponseData[1] << 8);
    }

    // Get SDR of record 1 from the offset; the response without the next record ID.
    std::vector<uint8_t> ReadRecordOne(uint16_t u16Reservation, uint8_t u8Offset, uint8_t u8Count)
    {
        IPMIMessage sMessage = Request({static_cast<uint8_t>(u16Reservation), static_cast<uint8_t>(u16Reservation >> 8),
                                        0x01, 0x00, u8Offset, u8Count});
        EXPECT_EQ(1, DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_SDR, &sMessage));
        EXPECT_EQ(0, sMessage.u8CompletionCode);
        EXPECT_EQ(2 + u8Count, sMessage.u16ResponseLength);
        EXPECT_EQ(0x02, sMessage.au8ResponseData[0]) << "next record ID, low byte";
        if (sMessage.u16ResponseLength < 2) return {};
        const uint8_t* pu8Data = sMessage.au8ResponseData;
        return std::vector<uint8_t>(pu8Data + 2, pu8Data + sMessage.u16ResponseLength);
    }

    IpmiSimServer m_sSim;
};

TEST_F(LanRealTest, InitializeInterfaceGetsTheDeviceID)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(1, InitializeInterface());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST_F(LanRealTest, WrongPasswordFailsInitializeInterfaceWithItsMessage)
{
    SetLanData("wrong-pass");
    testing::internal::CaptureStderr();
    EXPECT_EQ(0, InitializeInterface());
    EXPECT_EQ(kDeviceIdFailure, testing::internal::GetCapturedStderr());
}

TEST_F(LanRealTest, RepositoryInfoCountsThePreloadedRecords)
{
    IPMIMessage sMessage = Request({});
    ASSERT_EQ(1, DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_SDR_REPOSITORY_INFO, &sMessage));
    ASSERT_EQ(14, sMessage.u16ResponseLength);
    EXPECT_EQ(0x51, sMessage.au8ResponseData[0]) << "SDR version";
    EXPECT_EQ(2, sMessage.au8ResponseData[1] | sMessage.au8ResponseData[2] << 8) << "record count";
    const uint8_t u8Support = sMessage.au8ResponseData[13];
    EXPECT_EQ(kSupportsReserve, u8Support & kSupportsReserve) << "operation support " << int(u8Support);
    // ipmi_sim implements no Partial Add SDR: a whole download can't run against it.
    EXPECT_EQ(0, u8Support & kSupportsPartialAdd) << "operation support " << int(u8Support);
}

TEST_F(LanRealTest, EachReservationIsTwoBytesAndNew)
{
    const uint16_t u16First = Reserve();
    const uint16_t u16Second = Reserve();
    EXPECT_NE(0, u16First);
    EXPECT_NE(u16First, u16Second);
}

TEST_F(LanRealTest, PreloadedRecordReadsBackInChunks)
{
    const uint16_t u16Reservation = Reserve();
    std::vector<uint8_t> vRecord = ReadRecordOne(u16Reservation, 0, 5);
    for (const auto& vChunk : {ReadRecordOne(u16Reservation, 5, 16), ReadRecordOne(u16Reservation, 21, 1)}) {
        vRecord.insert(vRecord.end(), vChunk.begin(), vChunk.end());
    }
    std::vector<uint8_t> vExpected = kControllerLocator;
    vExpected[0] = 0x01;  // the ID that the simulator gave it
    EXPECT_EQ(vExpected, vRecord);
}

// A refusal comes back as ipmitool's error text; after the retries the completion code
// is the one that text names.
TEST_F(LanRealTest, RefusedCommandsFailWithTheirCompletionCode)
{
    const uint16_t u16Reservation = Reserve();
    const uint8_t u8ResLow = static_cast<uint8_t>(u16Reservation);
    const uint8_t u8ResHigh = static_cast<uint8_t>(u16Reservation >> 8);
    const struct {
        uint8_t u8Command;
        std::vector<uint8_t> vRequest;
        uint8_t u8CompletionCode;
    } asCases[] = {
        {IPMI_CMD_GET_SDR, {u8ResLow, u8ResHigh, 0x42, 0x00, 0x00, 0x05}, 0xCB},  // no such record
        {IPMI_CMD_PARTIAL_ADD_SDR, {u8ResLow, u8ResHigh, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x51, 0xC0, 0x00}, 0xC1},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(int(sCase.u8Command));
        IPMIMessage sMessage = Request(sCase.vRequest);
        EXPECT_EQ(0, DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, sCase.u8Command, &sMessage));
        EXPECT_EQ(sCase.u8CompletionCode, sMessage.u8CompletionCode);
    }
}

TEST_F(LanRealTest, ProgramAcceptsTheLanOptionsAndFindsIpmitool)
{
    RunOptions sOptions;
    sOptions.sWorkDir = SourceDir() + "/examples";
    RunResult sResult = RunProgram({BuildDir() + "/tavrin", "-t", "sample-v0.sdr", "-n", "lanplus", "-H",
                                    IpmiSimServer::kHost, "-U", IpmiSimServer::kUserName, "-P",
                                    IpmiSimServer::kPassword, "-C", std::to_string(IpmiSimServer::kCipherSuite)},
                                   sOptions);
    EXPECT_EQ(0, sResult.iStatus) << sResult.sOut << sResult.sErr;
    EXPECT_EQ("", sResult.sErr);
    EXPECT_NE(std::string::npos, sResult.sOut.find("No error found in SDR file sample-v0.sdr!"));
}

}  // namespace
