// set <name> <value>: the repository's parameters, the clock, the LAN ciphers and the
// route libraries' open refusal.
#include <cstdlib>
#include <cstring>
#include <string>

#include "CliCommands.h"

namespace {

typedef int (*TSetter)(sBmcSimState* psState, const char* pchValue);

int SetFlag(const char* pchValue, bool* pbFlag, const char* pchWhat)
{
    uint32_t u32Value = 0;
    if (!CliUnsigned(pchValue, 1, &u32Value, pchWhat)) {
        return 1;
    }
    *pbFlag = (u32Value != 0);
    return 0;
}

int SetCapacity(sBmcSimState* psState, const char* pchValue)
{
    return CliUnsigned(pchValue, 0xFFFFFFFFu, &psState->sRepository.u32Capacity, "capacity") ? 0 : 1;
}

int SetFreeSpace(sBmcSimState* psState, const char* pchValue)
{
    uint32_t u32Free = 0;
    uint32_t u32Used = SimRepositoryUsed(&psState->sRepository);
    if (!CliUnsigned(pchValue, 0xFFFFFFFFu - u32Used, &u32Free, "free-space")) {
        return 1;
    }
    psState->sRepository.u32Capacity = u32Used + u32Free;
    return 0;
}

int SetSupport(sBmcSimState* psState, const char* pchValue)
{
    uint32_t u32Value = 0;
    if (!CliUnsigned(pchValue, 0x7F, &u32Value, "support")) {
        return 1;
    }
    psState->sRepository.u8SupportBits = static_cast<uint8_t>(u32Value);
    return 0;
}

int SetOverflow(sBmcSimState* psState, const char* pchValue)
{
    return SetFlag(pchValue, &psState->sRepository.bOverflow, "overflow");
}

int SetCountOffset(sBmcSimState* psState, const char* pchValue)
{
    return CliSigned(pchValue, -0x10000, 0x10000, &psState->sRepository.i32CountOffset, "count-offset") ? 0 : 1;
}

int SetErasePolls(sBmcSimState* psState, const char* pchValue)
{
    uint32_t u32Value = 0;
    if (!CliUnsigned(pchValue, 0xFFFF, &u32Value, "erase-polls")) {
        return 1;
    }
    psState->sRepository.u16ErasePolls = static_cast<uint16_t>(u32Value);
    return 0;
}

// "0,0,1" or "0*3000,1": statuses, each with an optional repeat count.
int SetInitAgent(sBmcSimState* psState, const char* pchValue)
{
    std::vector<uint8_t> vu8Sequence;
    std::string sList(pchValue);
    size_t uStart = 0;
    while (uStart <= sList.size()) {
        size_t uComma = sList.find(',', uStart);
        std::string sItem = sList.substr(uStart, (uComma == std::string::npos ? sList.size() : uComma) - uStart);
        size_t uStar = sItem.find('*');
        uint32_t u32Status = 0, u32Repeat = 1;
        if (!CliUnsigned(sItem.substr(0, uStar).c_str(), 0xFF, &u32Status, "an init-agent status") ||
            (uStar != std::string::npos &&
             !CliUnsigned(sItem.substr(uStar + 1).c_str(), 0x10000, &u32Repeat, "a repeat count"))) {
            return 1;
        }
        if (vu8Sequence.size() + u32Repeat > 0x10000) {
            return CliFail("init-agent sequence longer than 65536 statuses");
        }
        vu8Sequence.insert(vu8Sequence.end(), u32Repeat, static_cast<uint8_t>(u32Status));
        uStart = (uComma == std::string::npos) ? sList.size() + 1 : uComma + 1;
    }
    psState->sInitAgent.vu8Sequence = vu8Sequence;
    psState->sInitAgent.u32Position = 0;
    return 0;
}

int SetClock(sBmcSimState* psState, const char* pchValue)
{
    if (strcmp(pchValue, "real") == 0) {
        psState->bFixedClock = false;
        return 0;
    }
    psState->bFixedClock = true;
    return CliUnsigned(pchValue, 0xFFFFFFFFu, &psState->u32Clock, "clock") ? 0 : 1;
}

int SetCiphers(sBmcSimState* psState, const char* pchValue)
{
    if (strcmp(pchValue, "all") == 0) {
        psState->sLan.u32CipherMask = 0xFFFFFFFFu;
        return 0;
    }
    uint32_t u32Mask = 0;
    std::string sList(pchValue);
    size_t uStart = 0;
    while (uStart <= sList.size()) {
        size_t uComma = sList.find(',', uStart);
        size_t uEnd = (uComma == std::string::npos) ? sList.size() : uComma;
        uint32_t u32Suite = 0;
        if (!CliUnsigned(sList.substr(uStart, uEnd - uStart).c_str(), 31, &u32Suite, "a cipher suite")) {
            return 1;
        }
        u32Mask |= 1u << u32Suite;
        uStart = uEnd + 1;
    }
    psState->sLan.u32CipherMask = u32Mask;
    return 0;
}

int SetOpenRefused(sBmcSimState* psState, const char* pchValue)
{
    return SetFlag(pchValue, &psState->sRoute.bOpenRefused, "open-refused");
}

struct sSetting {
    const char* pchName;
    TSetter pfnSetter;
};

const sSetting kSettings[] = {
    {"capacity", SetCapacity},       {"free-space", SetFreeSpace}, {"support", SetSupport},
    {"overflow", SetOverflow},       {"count-offset", SetCountOffset}, {"erase-polls", SetErasePolls},
    {"init-agent", SetInitAgent},    {"clock", SetClock},          {"ciphers", SetCiphers},
    {"open-refused", SetOpenRefused},
};

}  // namespace

int CliSet(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 2, 2, "set <name> <value>")) {
        return 1;
    }
    for (const sSetting& sSetting : kSettings) {
        if (strcmp(sSetting.pchName, ppchArgv[0]) == 0) {
            return sSetting.pfnSetter(psState, ppchArgv[1]);
        }
    }
    return CliFail("unknown setting \"%s\"; \"tavrin-bmcsim help\" lists them", ppchArgv[0]);
}
