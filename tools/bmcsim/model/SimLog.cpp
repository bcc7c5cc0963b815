// Appending to the exchange log and writing its lines.
#include "SimLog.h"

#include <cstdio>

#include "SimFaults.h"

void SimLogExchange(sBmcSimState* psState, eSimRoute eRoute, const sSimRequest& sRequest,
                    const sSimExchangeResult& sResult)
{
    sSimLogEntry sEntry;
    sEntry.u32Sequence = psState->u32NextLogSequence++;
    sEntry.eRoute = eRoute;
    sEntry.u8NetFn = sRequest.u8NetFn;
    sEntry.u8Command = sRequest.u8Command;
    sEntry.eFault = sResult.eFault;
    sEntry.bAnswered = sResult.bAnswered;
    sEntry.u8CompletionCode = sResult.bAnswered ? sResult.sResponse.u8CompletionCode : 0;
    if (sRequest.u16Length > 0 && sRequest.pu8Data != nullptr) {
        sEntry.vu8Request.assign(sRequest.pu8Data, sRequest.pu8Data + sRequest.u16Length);
    }
    if (sResult.bAnswered) {
        sEntry.vu8Response.assign(sResult.sResponse.au8Data, sResult.sResponse.au8Data + sResult.sResponse.u16Length);
    }
    if (psState->vsLog.size() >= BMCSIM_LOG_LIMIT) {
        psState->vsLog.erase(psState->vsLog.begin());
    }
    psState->vsLog.push_back(sEntry);
}

std::string SimHexString(const uint8_t* pu8Data, size_t uLength)
{
    if (uLength == 0) {
        return "-";
    }
    static const char kDigits[] = "0123456789abcdef";
    std::string sText;
    sText.reserve(uLength * 2);
    for (size_t i = 0; i < uLength; i++) {
        sText += kDigits[pu8Data[i] >> 4];
        sText += kDigits[pu8Data[i] & 0x0F];
    }
    return sText;
}

std::string SimFormatLogLine(const sSimLogEntry& sEntry)
{
    char achHead[96];
    snprintf(achHead, sizeof(achHead), "seq=%u route=%s netfn=%02x cmd=%02x reqlen=%u req=", sEntry.u32Sequence,
             SimRouteName(sEntry.eRoute), sEntry.u8NetFn, sEntry.u8Command,
             static_cast<unsigned>(sEntry.vu8Request.size()));
    char achCode[8];
    if (sEntry.bAnswered) {
        snprintf(achCode, sizeof(achCode), "%02x", sEntry.u8CompletionCode);
    } else {
        snprintf(achCode, sizeof(achCode), "--");
    }
    char achLength[16];
    snprintf(achLength, sizeof(achLength), "%u", static_cast<unsigned>(sEntry.vu8Response.size()));
    return std::string(achHead) + SimHexString(sEntry.vu8Request.data(), sEntry.vu8Request.size()) + " cc=" +
           achCode + " rsplen=" + achLength + " rsp=" +
           SimHexString(sEntry.vu8Response.data(), sEntry.vu8Response.size()) + " fault=" + SimFaultName(sEntry.eFault);
}
