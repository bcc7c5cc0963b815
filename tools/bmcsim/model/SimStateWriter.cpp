// The state in its text form (the format is described in SimStateFile.h).
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "SimFaults.h"
#include "SimLog.h"
#include "SimStateFile.h"

namespace {

std::string Fields(const char* pchFormat, ...) __attribute__((format(printf, 1, 2)));

std::string Fields(const char* pchFormat, ...)
{
    char achFields[256];
    va_list pArgs;
    va_start(pArgs, pchFormat);
    vsnprintf(achFields, sizeof(achFields), pchFormat, pArgs);
    va_end(pArgs);
    return achFields;
}

std::string Hex(const uint8_t* pu8Data, size_t uLength)
{
    return SimHexString(pu8Data, uLength);
}

std::string TextHex(const char* pchText)
{
    return Hex(reinterpret_cast<const uint8_t*>(pchText), strnlen(pchText, BMCSIM_TEXT_MAX - 1));
}

std::string SettingsText(const sBmcSimState& sState)
{
    const sSimRepository& sRepo = sState.sRepository;
    const sSimRouteInfo& sRoute = sState.sRoute;
    const std::vector<uint8_t>& vu8Sequence = sState.sInitAgent.vu8Sequence;
    std::string sText = Fields("tavrin-bmcsim-state %d\n", BMCSIM_STATE_VERSION);
    sText += Fields("clock %d %u\n", sState.bFixedClock ? 1 : 0, sState.u32Clock);
    sText += "lan " + TextHex(sState.sLan.achUser) + " " + TextHex(sState.sLan.achPassword) +
             Fields(" %u\n", sState.sLan.u32CipherMask);
    sText += Fields("route %d %u %d %u %u %u\n", sRoute.bOpenRefused ? 1 : 0, sRoute.u32KcsPort,
                    sRoute.i32KcsSpacing, sRoute.au8KcsTimeouts[0], sRoute.au8KcsTimeouts[1],
                    sRoute.au8KcsTimeouts[2]);
    sText += Fields("repository %u %u %d %d %u %u %u %u %u %u %u\n", sRepo.u32Capacity, sRepo.u8SupportBits,
                    sRepo.bOverflow ? 1 : 0, sRepo.i32CountOffset, sRepo.u32AdditionTime, sRepo.u32EraseTime,
                    sRepo.u16ReservationID, sState.u16LastReservationID, sRepo.u16NextRecordID,
                    sRepo.u16ErasePolls, sRepo.u16EraseRemaining);
    sText += Fields("init-agent %u ", sState.sInitAgent.u32Position) + Hex(vu8Sequence.data(), vu8Sequence.size()) +
             "\n";
    return sText;
}

std::string ContentText(const sBmcSimState& sState)
{
    std::string sText;
    const sSimPartialAdd& sPartial = sState.sRepository.sPartial;
    if (sPartial.bActive) {
        sText += Fields("partial %u %u ", sPartial.u16RecordID, sPartial.u16Expected) +
                 Hex(sPartial.au8Data, sPartial.u16Received) + "\n";
    }
    for (const sSimSdrRecord& sRecord : sState.sRepository.vsRecords) {
        sText += Fields("sdr %u ", sRecord.u16RecordID) + Hex(sRecord.au8Data, sRecord.u16Length) + "\n";
    }
    for (const sSimFruDevice& sDevice : sState.vsFru) {
        sText += Fields("fru %u ", sDevice.u8FruID) + Hex(sDevice.vu8Data.data(), sDevice.vu8Data.size()) + "\n";
    }
    return sText;
}

std::string FaultAndLogText(const sBmcSimState& sState)
{
    std::string sText;
    for (const sSimFault& sFault : sState.vsFaults) {
        sText += Fields("fault %s %u %u %u %d %u %u\n", SimFaultName(sFault.eKind), sFault.u16NetFn,
                        sFault.u16Command, sFault.u32Nth, sFault.bAlways ? 1 : 0, sFault.u32Value, sFault.u32Seen);
    }
    sText += Fields("log-next %u\n", sState.u32NextLogSequence);
    for (const sSimLogEntry& sEntry : sState.vsLog) {
        sText += Fields("log %u %s %u %u %s %d %u ", sEntry.u32Sequence, SimRouteName(sEntry.eRoute),
                        sEntry.u8NetFn, sEntry.u8Command, SimFaultName(sEntry.eFault), sEntry.bAnswered ? 1 : 0,
                        sEntry.u8CompletionCode) +
                 Hex(sEntry.vu8Request.data(), sEntry.vu8Request.size()) + " " +
                 Hex(sEntry.vu8Response.data(), sEntry.vu8Response.size()) + "\n";
    }
    return sText;
}

}  // namespace

std::string SimStateToText(const sBmcSimState& sState)
{
    return SettingsText(sState) + ContentText(sState) + FaultAndLogText(sState) + "end\n";
}
