// Sending requests to a simulated BMC held in memory, for the model's tests.
#ifndef TAVRIN_TESTS_BMCSIM_SIMTESTHELPERS_H
#define TAVRIN_TESTS_BMCSIM_SIMTESTHELPERS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "SimExchange.h"
#include "SimIpmiCodes.h"

typedef std::vector<uint8_t> TBytes;

struct sAnswer {
    uint8_t u8Code;
    TBytes vu8Data;
};

inline sAnswer Storage(sBmcSimState* psState, uint8_t u8Command, const TBytes& vu8Request = {})
{
    sSimRequest sRequest = {SIM_NETFN_STORAGE, u8Command, vu8Request.data(), static_cast<uint16_t>(vu8Request.size())};
    sSimExchangeResult sResult;
    SimExchange(psState, eSimRouteDirect, sRequest, nullptr, &sResult);
    const sSimResponse& sResponse = sResult.sResponse;
    return {sResponse.u8CompletionCode, TBytes(sResponse.au8Data, sResponse.au8Data + sResponse.u16Length)};
}

// A whole record under the ID, straight into the repository; 1 on success.
inline int Append(sBmcSimState* psState, uint16_t u16RecordID, const TBytes& vu8Record)
{
    uint16_t u16Length = static_cast<uint16_t>(vu8Record.size());
    return SimAppendRecord(&psState->sRepository, u16RecordID, vu8Record.data(), u16Length);
}

// The head of the SDR requests: reservation and record ID, low byte first; then the rest.
inline TBytes Request(uint16_t u16Reservation, uint16_t u16RecordID, const TBytes& vu8Rest)
{
    // Sized once and filled: GCC 12 misjudges the bounds of an insert that grows a
    // four-byte vector (-Warray-bounds in optimised builds).
    TBytes vu8Request(4 + vu8Rest.size());
    vu8Request[0] = static_cast<uint8_t>(u16Reservation);
    vu8Request[1] = static_cast<uint8_t>(u16Reservation >> 8);
    vu8Request[2] = static_cast<uint8_t>(u16RecordID);
    vu8Request[3] = static_cast<uint8_t>(u16RecordID >> 8);
    std::copy(vu8Rest.begin(), vu8Rest.end(), vu8Request.begin() + 4);
    return vu8Request;
}

// A record of the given total length: ID 0, version 51h, type, body of 5, 6, 7, ...
inline TBytes MakeRecord(uint8_t u8Type, uint8_t u8Length)
{
    TBytes vu8Record = {0x00, 0x00, 0x51, u8Type, static_cast<uint8_t>(u8Length - 5)};
    for (uint8_t i = 5; i < u8Length; i++) vu8Record.push_back(i);
    return vu8Record;
}

// Partial Add SDR request for the record's bytes [u8Offset, u8Offset + u8Count).
inline TBytes Piece(uint16_t u16Reservation, uint16_t u16RecordID, const TBytes& vu8Record, uint8_t u8Offset,
                    uint8_t u8Count, uint8_t u8Progress)
{
    TBytes vu8Rest(2 + u8Count);
    vu8Rest[0] = u8Offset;
    vu8Rest[1] = u8Progress;
    std::copy(vu8Record.begin() + u8Offset, vu8Record.begin() + u8Offset + u8Count, vu8Rest.begin() + 2);
    return Request(u16Reservation, u16RecordID, vu8Rest);
}

// One request, and the completion code and data the BMC must answer: the data's first
// bytes, and its length when that is more.
struct sStep {
    uint8_t u8Command;
    TBytes vu8Request;
    uint8_t u8Code;
    TBytes vu8Head;
    size_t uLength = 0;
};

// Sends the requests one after the other to the same BMC.
inline void RunSteps(sBmcSimState* psState, const std::vector<sStep>& vsSteps)
{
    for (size_t i = 0; i < vsSteps.size(); i++) {
        const sStep& s = vsSteps[i];
        sAnswer sAnswer = Storage(psState, s.u8Command, s.vu8Request);
        const TBytes& vu8Data = sAnswer.vu8Data;
        EXPECT_EQ(sAnswer.u8Code, s.u8Code) << "step " << i;
        EXPECT_EQ(vu8Data.size(), std::max(s.uLength, s.vu8Head.size())) << "step " << i;
        EXPECT_EQ(TBytes(vu8Data.begin(), vu8Data.begin() + std::min(vu8Data.size(), s.vu8Head.size())), s.vu8Head)
            << "step " << i;
    }
}

#endif
