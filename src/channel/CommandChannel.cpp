// Every IPMI request goes through DoIPMICommand; eInterfaceInUse decides the route.
#include "CommandChannel.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "LanChannel.h"
#include "TBMC_OSA.h"
#include "common/DebugOutput.h"

namespace {

const unsigned int kDefaultKCSPort = 0xCA8;

// The commands whose normal response on a local route is the completion code alone
// (one byte with it); every other command needs at least two bytes.
bool HasOneByteResponse(uint8_t u8Command)
{
    return u8Command == IPMI_CMD_CLEAR_SDR_REPOSITORY || u8Command == IPMI_CMD_RUN_INITIALIZATION_AGENT ||
           u8Command == IPMI_CMD_WRITE_FRU_DATA;
}

}  // namespace

int DoIPMICommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage)
{
    if (eInterfaceInUse == eIntfLANPlus) {
        return DoIPMILanCommand(u8NetFnLun, u8Command, psMessage);
    }
    uint8_t u8NetFn = static_cast<uint8_t>(u8NetFnLun >> 2);
    uint8_t u8Lun = static_cast<uint8_t>(u8NetFnLun & 0x03);
    memset(psMessage->au8ResponseData, 0, sizeof(psMessage->au8ResponseData));
    if (psMessage->u16ResponseLength > IPMI_RESPONSE_DATA_SIZE) {
        psMessage->u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;  // the library never gets more room than there is
    }
    uint8_t u8RequestLength = psMessage->u8RequestLength <= IPMI_REQUEST_DATA_SIZE
                                  ? psMessage->u8RequestLength
                                  : static_cast<uint8_t>(IPMI_REQUEST_DATA_SIZE);

    DebugMessage("   NetFn=0x%X, Cmd=0x%X, ReqLen=0x%X\n   ReqData=", u8NetFn, u8Command, psMessage->u8RequestLength);
    DebugPrintArray(psMessage->au8RequestData, u8RequestLength);

    uint8_t u8CompletionCode = 0xFF;
    if (G_pTalkBMC != nullptr) {
        // Its status isn't needed: a request that never took place leaves code 0xFF.
        G_pTalkBMC->RequestBMC(u8NetFn, u8Command, u8Lun, psMessage->au8RequestData, u8RequestLength,
                               psMessage->au8ResponseData, &psMessage->u16ResponseLength);
        u8CompletionCode = G_pTalkBMC->CompletionCode();
    } else {
        psMessage->u16ResponseLength = 0;
    }
    if (psMessage->u16ResponseLength > IPMI_RESPONSE_DATA_SIZE) {
        psMessage->u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
    }
    psMessage->u8CompletionCode = u8CompletionCode;

    DebugMessage("   cCode=0x%X, RspLen=0x%X\n   RspData=", psMessage->u8CompletionCode, psMessage->u16ResponseLength);
    DebugPrintArray(psMessage->au8ResponseData, psMessage->u16ResponseLength);
    DebugMessage("\n");

    return (psMessage->u8CompletionCode == 0 &&
            (psMessage->u16ResponseLength >= 2 || HasOneByteResponse(u8Command)))
               ? 1
               : 0;
}

int InitializeInterface()
{
    if (eInterfaceInUse != eIntfLANPlus) {
        return InitializeKCS();
    }
    if (InitializeRMCPPlus() != 1) {
        return 0;
    }
    if (GetDeviceID() == 0) {
        fputs("\n\nGet Device ID failed. Please check LAN+ configuration.\n\n", stderr);
        return 0;
    }
    return 1;
}

int InitializeKCS()
{
    uint8_t u8Kind = (eInterfaceInUse == eIntfKCSIO) ? INTERFACE_KCS_IO : INTERFACE_OS_DRIVER;
    G_pTalkBMC = new (std::nothrow) TTalkToBMC(u8Kind);
    if (G_pTalkBMC == nullptr) {
        fputs("\n\nKCS creation error. Please check configuration.\n\n", stderr);
        return 0;
    }
    if (!G_pTalkBMC->Init(nullptr, kDefaultKCSPort, ThirtyTwoBitBoundary) || !G_pTalkBMC->IsConnectToBMCOK()) {
        fputs("\n\nKCS initialization error. Please check configuration.\n\n", stderr);
        return 0;
    }
    return 1;
}

int InitializeRMCPPlus()
{
    return 1;
}

int GetDeviceID()
{
    IPMIMessage sMessage;
    memset(&sMessage, 0, sizeof(sMessage));
    sMessage.u8RequestLength = 0;
    sMessage.u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
    DebugMessage("\n=> CMD_GET_DEVICE_ID\n");
    return DoIPMICommand(IPMI_NETFN_APP_LUN0, IPMI_CMD_GET_DEVICE_ID, &sMessage);
}

void TerminateConnSession()
{
    delete G_pTalkBMC;
    G_pTalkBMC = nullptr;
}

void TerminateKCS()
{
    TerminateConnSession();
}
