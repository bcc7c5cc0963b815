// ipmitool look-alike: one raw request over "lanplus", answered by the simulated BMC
// whose state file TAVRIN_BMCSIM_STATE names (bmcsim.state without it).
#include <cstdio>
#include <cstring>

#include "IpmitoolArgs.h"
#include "IpmitoolOutput.h"
#include "SimServe.h"

namespace {

const char kVersionLine[] = "ipmitool version 1.8.19\n";

int Serve(const sIpmitoolCall& sCall)
{
    sSimRequest sRequest = {sCall.u8NetFn, sCall.u8Command, sCall.au8Data, sCall.u16DataLength};
    sSimLanLogin sLogin = {sCall.achUser, sCall.achPassword, sCall.iCipherSuite};
    sSimExchangeResult sResult;
    sSimError sError;
    if (!SimServeExchange(SimStatePath(), eSimRouteLan, sRequest, &sLogin, &sResult, &sError)) {
        fprintf(stderr, "bmcsim: %s\n", sError.achText);
        return PrintSessionFailure(sCall);
    }
    return PrintIpmitoolOutcome(sCall, sResult);
}

}  // namespace

int main(int iArgc, char** ppchArgv)
{
    sIpmitoolCall sCall;
    if (!ParseIpmitoolArgs(iArgc, ppchArgv, &sCall)) {
        return 1;
    }
    if (sCall.bVersion) {
        fputs(kVersionLine, stdout);
        return 0;
    }
    if (strcmp(sCall.achInterface, "lanplus") != 0) {
        fprintf(stderr, "Error loading interface %s\n", sCall.achInterface[0] != '\0' ? sCall.achInterface : "open");
        return 1;
    }
    if (!sCall.bHostGiven) {
        fputs("No hostname specified!\n", stderr);
        return PrintSessionFailure(sCall);
    }
    return Serve(sCall);
}
