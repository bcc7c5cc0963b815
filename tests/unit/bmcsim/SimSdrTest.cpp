// The SDR repository commands of the simulated BMC, as an IPMI 2.0 BMC answers them:
// the refusals and corner cases that whole downloads (tests/e2e) never provoke.
#include <gtest/gtest.h>

#include "SimTestHelpers.h"

namespace {

const uint8_t k80 = SIM_CC_PARTIAL_ADD_LENGTH_MISMATCH, kC5 = SIM_CC_INVALID_RESERVATION,
              kCC = SIM_CC_INVALID_DATA_FIELD, kGet = IPMI_CMD_GET_SDR, kAdd = IPMI_CMD_PARTIAL_ADD_SDR,
              kClear = IPMI_CMD_CLEAR_SDR_REPOSITORY;

// Clear SDR Repository: the reservation, "CLR", the action.
TBytes ClearRequest(uint16_t u16Reservation, uint8_t u8Action)
{
    return Request(u16Reservation, 'C' | ('L' << 8), {'R', u8Action});
}

// One repository through reservations, reads and an erase, request by request.
TEST(SimSdrTest, ReservationsReadsAndEraseAnswerAsABmcDoes)
{
    sBmcSimState sState;
    SimInitState(&sState);
    sState.sRepository.u16ErasePolls = 2;
    ASSERT_TRUE(Append(&sState, 1, MakeRecord(0x01, 20)) && Append(&sState, 2, MakeRecord(0x02, 6)) &&
                Append(&sState, 9, MakeRecord(0x01, 120)));
    TBytes vu8Record = MakeRecord(0x01, 32);
    const uint16_t u16Old = 1, u16Res = 2;
    RunSteps(&sState, {
        {IPMI_CMD_RESERVE_SDR_REPOSITORY, {}, 0, {1, 0}},
        {kAdd, Piece(u16Old, 0, vu8Record, 0, 16, 0), 0, {10, 0}},  // ID 10: the next after the last
        // A new reservation cancels the old one and its partial add.
        {IPMI_CMD_RESERVE_SDR_REPOSITORY, {}, 0, {2, 0}},
        {kGet, Request(u16Old, 1, {0, 5}), kC5, {}},
        {kAdd, Piece(u16Old, 10, vu8Record, 16, 16, 1), kC5, {}},
        {kClear, ClearRequest(u16Old, 0xAA), kC5, {}},
        {kAdd, Piece(u16Res, 10, vu8Record, 16, 16, 1), kCC, {}},
        {kGet, Request(0, 0, {0, 5}), 0, {2, 0, 1, 0, 0x51, 0x01, 15}},  // 0000h will do from offset 0 only
        {kGet, Request(0, 1, {1, 4}), kC5, {}},
        // The chain, parts of records, and what does not fit in a response.
        {kGet, Request(u16Res, 1, {16, 16}), 0, {2, 0, 16, 17, 18, 19}},  // short at the end
        {kGet, Request(u16Res, 2, {0, 0xFF}), 0, {9, 0, 2, 0, 0x51, 0x02, 1, 5}},
        {kGet, Request(u16Res, 9, {112, 16}), 0, {0xFF, 0xFF, 112, 113}, 10},
        {kGet, Request(u16Res, 9, {0, 98}), 0, {0xFF, 0xFF, 9, 0}, 100},
        {kGet, Request(u16Res, 9, {0, 99}), SIM_CC_CANNOT_RETURN_COUNT, {}},
        {kGet, Request(u16Res, 9, {22, 0xFF}), 0, {0xFF, 0xFF, 22, 23}, 100},  // the rest, just fits
        {kGet, Request(u16Res, 9, {21, 0xFF}), SIM_CC_CANNOT_RETURN_COUNT, {}},
        {kGet, Request(u16Res, 2, {6, 1}), SIM_CC_PARAMETER_OUT_OF_RANGE, {}},
        {kGet, Request(u16Res, 0x4444, {0, 5}), SIM_CC_NOT_PRESENT, {}},
        {kGet, Request(u16Res, 0, {0}), SIM_CC_REQUEST_LENGTH_INVALID, {}},
        {kAdd, TBytes(5, 0), SIM_CC_REQUEST_LENGTH_INVALID, {}},
        {kAdd, TBytes(65, 0), SIM_CC_REQUEST_TOO_LONG, {}},
        {0x26, {}, SIM_CC_INVALID_COMMAND, {}},  // Delete SDR is not offered
        // The erase: in progress for the initiating answer and two status polls.
        {kClear, ClearRequest(u16Res, 0x55), kCC, {}},
        {kClear, ClearRequest(u16Res, 0xAA), 0, {0}},
        {kClear, ClearRequest(u16Res, 0x00), 0, {0}},
        {kClear, ClearRequest(u16Res, 0x00), 0, {0}},
        {kClear, ClearRequest(u16Res, 0x00), 0, {1}},
        {kGet, Request(0, 0, {0, 5}), SIM_CC_NOT_PRESENT, {}},
    });
    sState.sRepository.u16ErasePolls = 0;
    RunSteps(&sState, {{kClear, ClearRequest(u16Res, 0xAA), 0, {1}}});
}

// Pieces of one 40-byte record into a fresh BMC, each with the code it gets: the
// reservation is 1, and so is the record ID that the first piece is given.
TEST(SimPartialAddTest, SequencesPiecesOrRefusesThem)
{
    TBytes vu8Record = MakeRecord(0x01, 40);
    vu8Record[0] = 0x77;                    // the BMC writes the ID it assigns over this one
    TBytes vu8Stored = {0xFF, 0xFF, 1, 0};  // as Get SDR reads it: the only record, under its ID
    vu8Stored.insert(vu8Stored.end(), vu8Record.begin() + 2, vu8Record.end());
    vu8Record.resize(64, 0xEE);  // room for pieces that run past the record
    auto Chunk = [&](uint16_t u16RecordID, uint8_t u8Offset, uint8_t u8Count, uint8_t u8Progress, uint8_t u8Code) {
        return sStep{kAdd, Piece(1, u16RecordID, vu8Record, u8Offset, u8Count, u8Progress), u8Code,
                     u8Code == SIM_CC_OK ? TBytes{1, 0} : TBytes()};
    };
    struct {
        const char* pchName;
        uint32_t u32Capacity;
        std::vector<sStep> vsPieces;
        bool bStored;
    } asCases[] = {
        {"three pieces just fit", 40, {Chunk(0, 0, 16, 0, 0), Chunk(1, 16, 16, 0, 0), Chunk(1, 32, 8, 1, 0)}, true},
        {"one byte too little room", 39, {Chunk(0, 0, 16, 0, SIM_CC_OUT_OF_SPACE)}, false},
        {"first piece with a record ID", 99, {Chunk(5, 0, 16, 0, kCC)}, false},
        {"first piece shorter than a header", 99, {Chunk(0, 0, 4, 0, kCC)}, false},
        {"first piece longer than the header says", 99, {Chunk(0, 0, 48, 0, k80)}, false},
        {"piece without a first", 99, {Chunk(1, 16, 16, 0, kCC)}, false},
        {"gap in the offsets", 99, {Chunk(0, 0, 16, 0, 0), Chunk(1, 17, 16, 0, kCC)}, false},
        {"other record ID", 99, {Chunk(0, 0, 16, 0, 0), Chunk(0x42, 16, 16, 0, kCC)}, false},
        {"in-progress value 2", 99, {Chunk(0, 0, 16, 0, 0), Chunk(1, 16, 16, 2, kCC)}, false},
        {"last piece too early", 99, {Chunk(0, 0, 16, 0, 0), Chunk(1, 16, 16, 1, k80)}, false},
        {"overrun ends the record", 99,
         {Chunk(0, 0, 16, 0, 0), Chunk(1, 16, 32, 0, k80), Chunk(1, 16, 16, 0, kCC)}, false},
    };
    for (const auto& sCase : asCases) {
        SCOPED_TRACE(sCase.pchName);
        sBmcSimState sState;
        SimInitState(&sState);
        sState.sRepository.u32Capacity = sCase.u32Capacity;
        std::vector<sStep> vsSteps = {{IPMI_CMD_RESERVE_SDR_REPOSITORY, {}, 0, {1, 0}}};
        vsSteps.insert(vsSteps.end(), sCase.vsPieces.begin(), sCase.vsPieces.end());
        vsSteps.push_back({kGet, Request(0, 0, {0, 0xFF}), sCase.bStored ? SIM_CC_OK : SIM_CC_NOT_PRESENT,
                           sCase.bStored ? vu8Stored : TBytes()});
        RunSteps(&sState, vsSteps);
        bool bOverflow = sCase.vsPieces.back().u8Code == SIM_CC_OUT_OF_SPACE;  // reported in the repository info
        EXPECT_EQ(Storage(&sState, IPMI_CMD_GET_SDR_REPOSITORY_INFO).vu8Data.at(13) & 0x80, bOverflow ? 0x80 : 0);
    }
}

}  // namespace
