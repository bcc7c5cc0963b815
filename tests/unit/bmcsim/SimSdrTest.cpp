// The SDR repository commands of the simulated BMC, as an IPMI 2.0 BMC answers them.
#include <gtest/gtest.h>

#include "SimTestHelpers.h"

namespace {

class SimSdrTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        SimInitState(&m_sState);
        m_sState.bFixedClock = true;
        m_sState.u32Clock = 0x11223344;
    }
    sBmcSimState m_sState;
};

TEST_F(SimSdrTest, RepositoryInfoReportsCountSpaceStampsAndSupport)
{
    m_sState.sRepository.u32Capacity = 100;
    ASSERT_NE(AddRecord(&m_sState, MakeRecord(0x01, 20)), 0);
    m_sState.sRepository.i32CountOffset = 2;
    m_sState.sRepository.bOverflow = true;
    sAnswer sInfo = Storage(&m_sState, SIM_CMD_GET_SDR_REPOSITORY_INFO);
    EXPECT_EQ(sInfo.u8Code, 0);
    EXPECT_EQ(sInfo.vu8Data, (std::vector<uint8_t>{0x51, 3, 0, 80, 0, 0x44, 0x33, 0x22, 0x11, 0, 0, 0, 0, 0xA6}));

    m_sState.sRepository.u8SupportBits = 0x20;  // partial add and reserve dropped
    m_sState.sRepository.i32CountOffset = -5;   // more than there are: reported as 0
    m_sState.sRepository.u32Capacity = 0x20000;
    sInfo = Storage(&m_sState, SIM_CMD_GET_SDR_REPOSITORY_INFO);
    EXPECT_EQ(sInfo.vu8Data[1], 0);
    EXPECT_EQ(sInfo.vu8Data[3] | (sInfo.vu8Data[4] << 8), 0xFFFE);  // FFFFh would mean unspecified
    EXPECT_EQ(sInfo.vu8Data[13], 0xA0);
}

TEST_F(SimSdrTest, NewReservationCancelsTheOldOneAndItsPartialAdd)
{
    std::vector<uint8_t> vu8Record = MakeRecord(0x01, 32);
    ASSERT_NE(AddRecord(&m_sState, MakeRecord(0x12, 10)), 0);
    uint16_t u16First = Reserve(&m_sState);
    sAnswer sPiece = Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16First, 0, vu8Record, 0, 16, 0));
    ASSERT_EQ(sPiece.u8Code, 0);
    uint16_t u16RecordID = static_cast<uint16_t>(sPiece.vu8Data[0] | (sPiece.vu8Data[1] << 8));
    uint16_t u16Second = Reserve(&m_sState);
    EXPECT_NE(u16First, u16Second);

    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16First, 0, 0, 5)).u8Code, SIM_CC_INVALID_RESERVATION);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16First, u16RecordID, vu8Record, 16, 16, 1)).u8Code,
              SIM_CC_INVALID_RESERVATION);
    // The piece under the new reservation finds no record in progress any more.
    sAnswer sLate = Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Second, u16RecordID, vu8Record, 16, 16, 1));
    EXPECT_EQ(sLate.u8Code, SIM_CC_INVALID_DATA_FIELD);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Second, 0, 0, 5)).u8Code, 0);
    // Reservation 0000h is accepted for a read from offset 0 only.
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(0, 0, 0, 5)).u8Code, 0);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(0, 0, 1, 4)).u8Code, SIM_CC_INVALID_RESERVATION);
}

TEST_F(SimSdrTest, PartialAddAssignsIDsAndStoresTheRecordUnderIt)
{
    std::vector<uint8_t> vu8Record = MakeRecord(0x01, 32);
    vu8Record[0] = 0x77;  // the ID in the record's own header is replaced
    EXPECT_EQ(AddRecord(&m_sState, vu8Record), 1);
    EXPECT_EQ(AddRecord(&m_sState, MakeRecord(0x02, 5)), 2);
    EXPECT_EQ(AddRecord(&m_sState, MakeRecord(0x03, 17)), 3);
    ASSERT_EQ(m_sState.sRepository.vsRecords.size(), 3u);
    const sSimSdrRecord& sStored = m_sState.sRepository.vsRecords[0];
    vu8Record[0] = 0x01;
    EXPECT_EQ(std::vector<uint8_t>(sStored.au8Data, sStored.au8Data + sStored.u16Length), vu8Record);
    EXPECT_EQ(m_sState.sRepository.u32AdditionTime, 0x11223344u);

    // After an erase numbering starts again; IDs in use are skipped.
    uint16_t u16Reservation = Reserve(&m_sState);
    ASSERT_EQ(Storage(&m_sState, SIM_CMD_CLEAR_SDR_REPOSITORY,
                      {Lo(u16Reservation), Hi(u16Reservation), 'C', 'L', 'R', 0xAA}).u8Code, 0);
    std::vector<uint8_t> vu8Own = MakeRecord(0x01, 8);
    ASSERT_EQ(SimAppendRecord(&m_sState.sRepository, 2, vu8Own.data(), 8), 1);
    m_sState.sRepository.u16NextRecordID = 1;
    EXPECT_EQ(AddRecord(&m_sState, MakeRecord(0x01, 8)), 1);
    EXPECT_EQ(AddRecord(&m_sState, MakeRecord(0x01, 8)), 3);
}

struct sAddRefusal {
    const char* pchCase;
    uint16_t u16RecordID;  // 0xFFFF: the one assigned to the first piece
    uint8_t u8Offset;
    uint8_t u8Count;
    uint8_t u8Progress;
    uint8_t u8Expected;
};

class SimPartialAddRefusalTest : public SimSdrTest, public ::testing::WithParamInterface<sAddRefusal> {};

// A 40-byte record whose first 16 bytes went in; then the second piece is sent wrongly.
TEST_P(SimPartialAddRefusalTest, RefusesAPieceOutOfSequence)
{
    const sAddRefusal& sCase = GetParam();
    std::vector<uint8_t> vu8Record = MakeRecord(0x01, 40);
    vu8Record.resize(64, 0xEE);  // room for pieces that run past the record
    uint16_t u16Reservation = Reserve(&m_sState);
    sAnswer sFirst = Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Reservation, 0, vu8Record, 0, 16, 0));
    ASSERT_EQ(sFirst.u8Code, 0);
    uint16_t u16Assigned = static_cast<uint16_t>(sFirst.vu8Data[0] | (sFirst.vu8Data[1] << 8));
    uint16_t u16RecordID = (sCase.u16RecordID == 0xFFFF) ? u16Assigned : sCase.u16RecordID;
    sAnswer sSecond = Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR,
                              AddPiece(u16Reservation, u16RecordID, vu8Record, sCase.u8Offset, sCase.u8Count,
                                       sCase.u8Progress));
    EXPECT_EQ(sSecond.u8Code, sCase.u8Expected) << sCase.pchCase;
    EXPECT_TRUE(sSecond.vu8Data.empty());
    EXPECT_TRUE(m_sState.sRepository.vsRecords.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Pieces, SimPartialAddRefusalTest,
    ::testing::Values(sAddRefusal{"gap in the offsets", 0xFFFF, 17, 16, 0, SIM_CC_INVALID_DATA_FIELD},
                      sAddRefusal{"piece sent again", 0xFFFF, 0, 16, 0, SIM_CC_INVALID_DATA_FIELD},
                      sAddRefusal{"other record ID", 0x0042, 16, 16, 0, SIM_CC_INVALID_DATA_FIELD},
                      sAddRefusal{"more bytes than the header says", 0xFFFF, 16, 32, 1, 0x80},
                      sAddRefusal{"last piece too early", 0xFFFF, 16, 16, 1, 0x80},
                      sAddRefusal{"in-progress value 2", 0xFFFF, 16, 16, 2, SIM_CC_INVALID_DATA_FIELD}));

TEST_F(SimSdrTest, PartialAddRefusesBadFirstPiecesAndMissingRoom)
{
    std::vector<uint8_t> vu8Record = MakeRecord(0x01, 30);
    uint16_t u16Reservation = Reserve(&m_sState);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Reservation, 5, vu8Record, 0, 16, 0)).u8Code,
              SIM_CC_INVALID_DATA_FIELD);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Reservation, 0, vu8Record, 0, 4, 0)).u8Code,
              SIM_CC_INVALID_DATA_FIELD);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(0x7777, 0, vu8Record, 0, 16, 0)).u8Code,
              SIM_CC_INVALID_RESERVATION);
    m_sState.sRepository.u32Capacity = 29;
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_PARTIAL_ADD_SDR, AddPiece(u16Reservation, 0, vu8Record, 0, 16, 0)).u8Code,
              SIM_CC_OUT_OF_SPACE);
    EXPECT_TRUE(m_sState.sRepository.bOverflow);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR_REPOSITORY_INFO).vu8Data[13] & 0x80, 0x80);
    m_sState.sRepository.u32Capacity = 30;  // exactly enough
    EXPECT_NE(AddRecord(&m_sState, vu8Record), 0);
}

TEST_F(SimSdrTest, GetSdrFollowsTheChainAndReadsParts)
{
    std::vector<uint8_t> vu8Big = MakeRecord(0x01, 120);
    uint16_t u16A = AddRecord(&m_sState, MakeRecord(0x01, 20));
    uint16_t u16B = AddRecord(&m_sState, MakeRecord(0x02, 6));
    ASSERT_EQ(SimAppendRecord(&m_sState.sRepository, 9, vu8Big.data(), 120), 1);
    uint16_t u16Res = Reserve(&m_sState);

    sAnswer sFirst = Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Res, 0, 0, 5));
    EXPECT_EQ(sFirst.vu8Data, (std::vector<uint8_t>{Lo(u16B), Hi(u16B), Lo(u16A), Hi(u16A), 0x51, 0x01, 15}));
    sAnswer sTail = Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Res, u16A, 16, 16));  // short at the end
    EXPECT_EQ(sTail.vu8Data, (std::vector<uint8_t>{Lo(u16B), Hi(u16B), 16, 17, 18, 19}));
    sAnswer sWhole = Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Res, u16B, 0, 0xFF));
    EXPECT_EQ(sWhole.vu8Data, (std::vector<uint8_t>{9, 0, Lo(u16B), Hi(u16B), 0x51, 0x02, 1, 5}));
    sAnswer sLast = Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Res, 9, 112, 16));
    EXPECT_EQ(sLast.vu8Data.size(), 2u + 8u);
    EXPECT_EQ(sLast.vu8Data[0] | (sLast.vu8Data[1] << 8), 0xFFFF);

    struct {
        std::vector<uint8_t> vu8Request;
        uint8_t u8Code;
    } asRefusals[] = {
        {GetSdrRequest(u16Res, 9, 0, 0xFF), SIM_CC_CANNOT_RETURN_COUNT},  // 120 bytes don't fit in 100
        {GetSdrRequest(u16Res, 9, 0, 99), SIM_CC_CANNOT_RETURN_COUNT},
        {GetSdrRequest(u16Res, u16B, 6, 1), SIM_CC_PARAMETER_OUT_OF_RANGE},
        {GetSdrRequest(u16Res, 0x4444, 0, 5), SIM_CC_NOT_PRESENT},
        {{Lo(u16Res), Hi(u16Res), 0, 0, 0}, SIM_CC_REQUEST_LENGTH_INVALID},
    };
    for (const auto& sRefusal : asRefusals) {
        EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, sRefusal.vu8Request).u8Code, sRefusal.u8Code);
    }
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(u16Res, 9, 0, 98)).vu8Data.size(), 100u);
}

TEST_F(SimSdrTest, EmptyRepositoryHasNoFirstRecord)
{
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_GET_SDR, GetSdrRequest(0, 0, 0, 5)).u8Code, SIM_CC_NOT_PRESENT);
}

TEST_F(SimSdrTest, EraseReportsProgressForTheConfiguredPolls)
{
    ASSERT_NE(AddRecord(&m_sState, MakeRecord(0x01, 20)), 0);
    m_sState.sRepository.u16ErasePolls = 2;
    m_sState.sRepository.bOverflow = true;
    uint16_t u16Res = Reserve(&m_sState);
    auto Clear = [&](uint8_t u8Action) {
        return Storage(&m_sState, SIM_CMD_CLEAR_SDR_REPOSITORY, {Lo(u16Res), Hi(u16Res), 'C', 'L', 'R', u8Action});
    };
    EXPECT_EQ(Clear(0xAA).vu8Data, std::vector<uint8_t>{0});
    EXPECT_TRUE(m_sState.sRepository.vsRecords.empty());
    EXPECT_FALSE(m_sState.sRepository.bOverflow);
    EXPECT_EQ(Clear(0x00).vu8Data, std::vector<uint8_t>{0});
    EXPECT_EQ(Clear(0x00).vu8Data, std::vector<uint8_t>{0});
    EXPECT_EQ(Clear(0x00).vu8Data, std::vector<uint8_t>{1});
    EXPECT_EQ(Clear(0x00).vu8Data, std::vector<uint8_t>{1});
    m_sState.sRepository.u16ErasePolls = 0;
    EXPECT_EQ(Clear(0xAA).vu8Data, std::vector<uint8_t>{1});

    EXPECT_EQ(Storage(&m_sState, SIM_CMD_CLEAR_SDR_REPOSITORY, {Lo(u16Res), Hi(u16Res), 'C', 'L', 'X', 0xAA}).u8Code,
              SIM_CC_INVALID_DATA_FIELD);
    EXPECT_EQ(Clear(0x55).u8Code, SIM_CC_INVALID_DATA_FIELD);
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_CLEAR_SDR_REPOSITORY,
                      {Lo(u16Res + 1), Hi(u16Res + 1), 'C', 'L', 'R', 0xAA}).u8Code,
              SIM_CC_INVALID_RESERVATION);
}

TEST_F(SimSdrTest, InitAgentAnswersItsSequenceFromEachRun)
{
    m_sState.sInitAgent.vu8Sequence = {0, 0, 1};
    std::vector<uint8_t> vu8Statuses;
    for (uint8_t u8Request : {1, 0, 0, 0, 1, 0}) {
        sAnswer sAnswer = Storage(&m_sState, SIM_CMD_RUN_INITIALIZATION_AGENT, {u8Request});
        ASSERT_EQ(sAnswer.u8Code, 0);
        vu8Statuses.push_back(sAnswer.vu8Data.at(0));
    }
    EXPECT_EQ(vu8Statuses, (std::vector<uint8_t>{0, 0, 1, 1, 0, 0}));
    EXPECT_EQ(Storage(&m_sState, SIM_CMD_RUN_INITIALIZATION_AGENT, {2}).u8Code, SIM_CC_INVALID_DATA_FIELD);
}

TEST_F(SimSdrTest, RequestsOfTheWrongLengthOrUnknownCommandsAreRefused)
{
    struct {
        uint8_t u8NetFn, u8Command;
        size_t uLength;
        uint8_t u8Code;
    } asCases[] = {
        {SIM_NETFN_APP, SIM_CMD_GET_DEVICE_ID, 1, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_GET_SDR_REPOSITORY_INFO, 1, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_RESERVE_SDR_REPOSITORY, 2, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_PARTIAL_ADD_SDR, 5, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_CLEAR_SDR_REPOSITORY, 7, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_RUN_INITIALIZATION_AGENT, 0, SIM_CC_REQUEST_LENGTH_INVALID},
        {SIM_NETFN_STORAGE, SIM_CMD_PARTIAL_ADD_SDR, 65, SIM_CC_REQUEST_TOO_LONG},
        {SIM_NETFN_STORAGE, 0x26, 0, SIM_CC_INVALID_COMMAND},  // Delete SDR is not offered
        {SIM_NETFN_APP, 0x20, 0, SIM_CC_INVALID_COMMAND},
    };
    for (const auto& sCase : asCases) {
        sAnswer sAnswer = Send(&m_sState, sCase.u8NetFn, sCase.u8Command, std::vector<uint8_t>(sCase.uLength, 0));
        EXPECT_EQ(sAnswer.u8Code, sCase.u8Code) << std::hex << int(sCase.u8NetFn) << " " << int(sCase.u8Command);
        EXPECT_TRUE(sAnswer.vu8Data.empty());
    }
    EXPECT_EQ(Send(&m_sState, SIM_NETFN_APP, SIM_CMD_GET_DEVICE_ID, {}).vu8Data.size(), 11u);
}

}  // namespace
