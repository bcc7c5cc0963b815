// init, user and show.
#include <cstdio>
#include <cstring>
#include <string>

#include "CliCommands.h"
#include "SimStateFile.h"

namespace {

int StoreLogin(sBmcSimState* psState, const char* pchUser, const char* pchPassword)
{
    if (strlen(pchUser) >= BMCSIM_TEXT_MAX || strlen(pchPassword) >= BMCSIM_TEXT_MAX) {
        return CliFail("user name and password may have at most %d characters", BMCSIM_TEXT_MAX - 1);
    }
    memset(psState->sLan.achUser, 0, sizeof(psState->sLan.achUser));
    memset(psState->sLan.achPassword, 0, sizeof(psState->sLan.achPassword));
    strcpy(psState->sLan.achUser, pchUser);
    strcpy(psState->sLan.achPassword, pchPassword);
    return 0;
}

// "0,3,17" for the accepted cipher suites, "all" when every one is.
std::string CipherList(uint32_t u32Mask)
{
    if (u32Mask == 0xFFFFFFFFu) {
        return "all";
    }
    std::string sList;
    for (int i = 0; i < 32; i++) {
        if ((u32Mask & (1u << i)) != 0) {
            sList += (sList.empty() ? "" : ",") + std::to_string(i);
        }
    }
    return sList.empty() ? "none" : sList;
}

// "0,0,1" with runs of three or more written as "0*3000".
std::string SequenceList(const std::vector<uint8_t>& vu8Sequence)
{
    std::string sList;
    for (size_t i = 0; i < vu8Sequence.size();) {
        size_t uRun = 1;
        while (i + uRun < vu8Sequence.size() && vu8Sequence[i + uRun] == vu8Sequence[i]) {
            uRun++;
        }
        size_t uWritten = (uRun >= 3) ? uRun : 1;
        sList += (sList.empty() ? "" : ",") + std::to_string(vu8Sequence[i]);
        if (uWritten > 1) {
            sList += "*" + std::to_string(uWritten);
        }
        i += uWritten;
    }
    return sList.empty() ? "-" : sList;
}

void ShowRepository(const sBmcSimState& sState)
{
    const sSimRepository& sRepo = sState.sRepository;
    printf("capacity %u\n", sRepo.u32Capacity);
    printf("used %u\n", SimRepositoryUsed(&sRepo));
    printf("free-space %u\n", SimRepositoryFree(&sRepo));
    printf("records %u\n", static_cast<unsigned>(sRepo.vsRecords.size()));
    printf("support 0x%02x\n", sRepo.u8SupportBits);
    printf("overflow %d\n", sRepo.bOverflow ? 1 : 0);
    printf("count-offset %d\n", sRepo.i32CountOffset);
    printf("reservation 0x%04x\n", sRepo.u16ReservationID);
    printf("partial-add %s\n", sRepo.sPartial.bActive ? "open" : "none");
    printf("erase-polls %u\n", sRepo.u16ErasePolls);
    printf("init-agent %s\n", SequenceList(sState.sInitAgent.vu8Sequence).c_str());
}

void ShowRoutes(const sBmcSimState& sState)
{
    const sSimRouteInfo& sRoute = sState.sRoute;
    printf("user %s\n", sState.sLan.achUser);
    printf("password %s\n", sState.sLan.achPassword);
    printf("ciphers %s\n", CipherList(sState.sLan.u32CipherMask).c_str());
    printf("open-refused %d\n", sRoute.bOpenRefused ? 1 : 0);
    if (sRoute.i32KcsSpacing < 0) {
        printf("kcs-port -\nkcs-spacing -\n");
    } else {
        printf("kcs-port 0x%x\nkcs-spacing %d\n", sRoute.u32KcsPort, sRoute.i32KcsSpacing);
    }
    printf("kcs-timeouts %u %u %u\n", sRoute.au8KcsTimeouts[0], sRoute.au8KcsTimeouts[1], sRoute.au8KcsTimeouts[2]);
}

}  // namespace

int CliInit(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (iArgc != 0 && iArgc != 2) {
        return CliFail("usage: tavrin-bmcsim init [<user> <password>]");
    }
    SimInitState(psState);
    return (iArgc == 2) ? StoreLogin(psState, ppchArgv[0], ppchArgv[1]) : 0;
}

int CliUser(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 2, 2, "user <user> <password>")) {
        return 1;
    }
    return StoreLogin(psState, ppchArgv[0], ppchArgv[1]);
}

int CliShow(sBmcSimState* psState, int iArgc, char** /*ppchArgv*/)
{
    if (!CliExpect(iArgc, 0, 0, "show")) {
        return 1;
    }
    ShowRepository(*psState);
    ShowRoutes(*psState);
    if (psState->bFixedClock) {
        printf("clock %u\n", psState->u32Clock);
    } else {
        printf("clock real\n");
    }
    printf("fru-devices %u\n", static_cast<unsigned>(psState->vsFru.size()));
    printf("faults %u\n", static_cast<unsigned>(psState->vsFaults.size()));
    printf("log %u\n", static_cast<unsigned>(psState->vsLog.size()));
    return 0;
}
