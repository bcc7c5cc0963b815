// Sending requests to a simulated BMC held in memory, for the model's tests.
#ifndef TAVRIN_TESTS_BMCSIM_SIMTESTHELPERS_H
#define TAVRIN_TESTS_BMCSIM_SIMTESTHELPERS_H

#include <algorithm>
#include <cstdint>
#include <vector>

#include "SimExchange.h"
#include "SimIpmiCodes.h"

struct sAnswer {
    uint8_t u8Code;
    std::vector<uint8_t> vu8Data;
};

inline sAnswer Send(sBmcSimState* psState, uint8_t u8NetFn, uint8_t u8Command, const std::vector<uint8_t>& vu8Request)
{
    sSimRequest sRequest = {u8NetFn, u8Command, vu8Request.data(), static_cast<uint16_t>(vu8Request.size())};
    sSimExchangeResult sResult;
    SimExchange(psState, eSimRouteDirect, sRequest, nullptr, &sResult);
    return {sResult.sResponse.u8CompletionCode,
            std::vector<uint8_t>(sResult.sResponse.au8Data, sResult.sResponse.au8Data + sResult.sResponse.u16Length)};
}

inline sAnswer Storage(sBmcSimState* psState, uint8_t u8Command, const std::vector<uint8_t>& vu8Request = {})
{
    return Send(psState, SIM_NETFN_STORAGE, u8Command, vu8Request);
}

inline uint16_t Reserve(sBmcSimState* psState)
{
    sAnswer sAnswer = Storage(psState, SIM_CMD_RESERVE_SDR_REPOSITORY);
    return static_cast<uint16_t>(sAnswer.vu8Data.at(0) | (sAnswer.vu8Data.at(1) << 8));
}

inline uint8_t Lo(uint16_t u16) { return static_cast<uint8_t>(u16 & 0xFF); }
inline uint8_t Hi(uint16_t u16) { return static_cast<uint8_t>(u16 >> 8); }

// A record of the given total length: ID 0, version 51h, type, body of 1, 2, 3, ...
inline std::vector<uint8_t> MakeRecord(uint8_t u8Type, uint8_t u8Length)
{
    std::vector<uint8_t> vu8Record = {0x00, 0x00, 0x51, u8Type, static_cast<uint8_t>(u8Length - 5)};
    for (uint8_t i = 5; i < u8Length; i++) {
        vu8Record.push_back(i);
    }
    return vu8Record;
}

// Partial Add SDR request for a piece of the record.
inline std::vector<uint8_t> AddPiece(uint16_t u16Reservation, uint16_t u16RecordID,
                                     const std::vector<uint8_t>& vu8Record, uint8_t u8Offset, uint8_t u8Count,
                                     uint8_t u8Progress)
{
    std::vector<uint8_t> vu8Request = {Lo(u16Reservation), Hi(u16Reservation), Lo(u16RecordID), Hi(u16RecordID),
                                       u8Offset, u8Progress};
    vu8Request.insert(vu8Request.end(), vu8Record.begin() + u8Offset, vu8Record.begin() + u8Offset + u8Count);
    return vu8Request;
}

// Adds a whole record as Tavrin does: one reservation, pieces of 16, ID 0 first.
inline uint16_t AddRecord(sBmcSimState* psState, const std::vector<uint8_t>& vu8Record)
{
    uint16_t u16Reservation = Reserve(psState);
    uint16_t u16RecordID = 0;
    for (size_t uOffset = 0; uOffset < vu8Record.size(); uOffset += 16) {
        size_t uCount = std::min<size_t>(16, vu8Record.size() - uOffset);
        uint8_t u8Progress = (uOffset + uCount == vu8Record.size()) ? 1 : 0;
        sAnswer sAnswer = Storage(psState, SIM_CMD_PARTIAL_ADD_SDR,
                                  AddPiece(u16Reservation, u16RecordID, vu8Record, static_cast<uint8_t>(uOffset),
                                           static_cast<uint8_t>(uCount), u8Progress));
        if (sAnswer.u8Code != 0) {
            return 0;
        }
        u16RecordID = static_cast<uint16_t>(sAnswer.vu8Data.at(0) | (sAnswer.vu8Data.at(1) << 8));
    }
    return u16RecordID;
}

inline std::vector<uint8_t> GetSdrRequest(uint16_t u16Reservation, uint16_t u16RecordID, uint8_t u8Offset,
                                          uint8_t u8Count)
{
    return {Lo(u16Reservation), Hi(u16Reservation), Lo(u16RecordID), Hi(u16RecordID), u8Offset, u8Count};
}

#endif
