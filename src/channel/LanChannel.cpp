// One ipmitool run per attempt, with up to five retries for every command but Get
// Device ID. Nothing here writes to the user's streams outside the verbose trace.
#include "LanChannel.h"

#include <unistd.h>

#include "common/DebugOutput.h"

namespace {

// Room for every field of sIolData at its longest, the numbers and the words between.
const size_t kTraceHeadSize = 256;

enum eAttempt {
    eAttemptSucceeded,
    eAttemptRefused,     // ipmitool ran and printed a failure, or ended in failure
    eAttemptNotStarted,  // the command could not be started
};

// Judges the outcome of one run and fills the message from its output. A run that
// exited with another status than 0 or died by a signal failed, whatever its text says.
eAttempt JudgeOutput(uint8_t u8Command, eLanRun eRun, const char* pchText, size_t uRead, IPMIMessage* psMessage)
{
    if (eRun == eLanRunNotStarted) {
        return eAttemptNotStarted;
    }
    const bool bRefused = eRun != eLanRunSucceeded || HasLanFailureMarker(pchText);
    if (!bRefused && uRead == 0) {
        psMessage->u8CompletionCode = 0;
        psMessage->u16ResponseLength = 0;
        return eAttemptSucceeded;
    }
    if (!bRefused) {
        if (!ParseLanResponseText(pchText, psMessage)) {
            // More bytes than any response can hold: not an answer to trust.
            DebugMessage("\r   Execute ipmitool: more than %d response bytes\n", IPMI_RESPONSE_DATA_SIZE);
            psMessage->u8CompletionCode = 0xFF;
            return eAttemptRefused;
        }
        psMessage->u8CompletionCode = 0;
        return eAttemptSucceeded;
    }
    char achErrorLine[LAN_OUTPUT_LIMIT + 1];
    GetLanErrorLine(pchText, achErrorLine, sizeof(achErrorLine));
    if (u8Command == IPMI_CMD_GET_DEVICE_ID) {
        if (HasLanCipherMarker(pchText)) {
            DebugMessage("\r   Unsupported Cipher Suite ID\n");
        } else {
            DebugMessage("\r   Execute ipmitool: %s\n", achErrorLine);
        }
        return eAttemptRefused;
    }
    DebugMessage("\r   Execute ipmitool: %s\n", achErrorLine);
    ReadLanCompletionCode(achErrorLine, psMessage);
    return eAttemptRefused;
}

}  // namespace

int DoIPMILanCommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage)
{
    uint8_t u8NetFn = static_cast<uint8_t>(u8NetFnLun >> 2);
    DebugMessage("   NetFn=0x%X, Cmd=0x%X, ReqLen=0x%X\n   ReqData=", u8NetFn, u8Command, psMessage->u8RequestLength);
    DebugPrintArray(psMessage->au8RequestData, psMessage->u8RequestLength);

    char achHead[kTraceHeadSize];
    sLanArgv sArgv;
    bool bError = true;
    for (int iAttempt = 0; iAttempt < LAN_ATTEMPTS; iAttempt++) {
        if (iAttempt > 0) {
            DebugMessage("   Retry %d\n", iAttempt);
        }
        if (!BuildLanTraceHead(u8NetFn, u8Command, achHead, sizeof(achHead)) ||
            !BuildLanArgv(u8NetFn, u8Command, psMessage, &sArgv)) {
            bError = true;
            break;
        }
        DebugMessage("   %s", achHead);
        for (uint8_t i = 0; i < psMessage->u8RequestLength && i < IPMI_REQUEST_DATA_SIZE; i++) {
            DebugMessage("0x%02x ", psMessage->au8RequestData[i]);
        }
        char achText[LAN_OUTPUT_LIMIT + 1] = {0};
        size_t uRead = 0;
        const eLanRun eRun = RunLanProcess(sArgv.apchArgv, achText, LAN_OUTPUT_LIMIT, &uRead);
        const eAttempt eResult = JudgeOutput(u8Command, eRun, achText, uRead, psMessage);
        bError = (eResult != eAttemptSucceeded);
        if (!bError || (eResult == eAttemptRefused && u8Command == IPMI_CMD_GET_DEVICE_ID)) {
            break;
        }
        if (eResult == eAttemptNotStarted) {
            DebugMessage("   Error to execute ipmitool\n");
            DebugMessage("\r   Execute ipmitool: ");
            DebugMessage("Response=0x%X", psMessage->u8CompletionCode);
            usleep(LAN_START_RETRY_WAIT_US);
            DebugMessage("\r   Wait %d ms before retry\n", LAN_START_RETRY_WAIT_US / 1000);
        }
    }
    DebugMessage("   cCode=0x%X, RspLen=0x%X\n   RspData=", psMessage->u8CompletionCode, psMessage->u16ResponseLength);
    DebugPrintArray(psMessage->au8ResponseData, psMessage->u16ResponseLength);
    DebugMessage("\n");
    return (!bError && psMessage->u8CompletionCode == 0) ? 1 : 0;
}
