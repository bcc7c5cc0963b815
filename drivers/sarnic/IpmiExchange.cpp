// Request and response through the IPMI device (see IpmiDevice.h).
#include "IpmiDevice.h"

#include <cerrno>
#include <climits>
#include <cstring>

#include "IpmiKernelInterface.h"

namespace {

union uIpmiAddress {
    struct ipmi_system_interface_addr sSystem;
    struct ipmi_ipmb_addr sIpmb;
};

// Fills the address of the target; returns its size.
unsigned int BuildAddress(const sIpmiTarget* psTarget, uint8_t u8Lun, uIpmiAddress* puAddress)
{
    memset(puAddress, 0, sizeof(*puAddress));
    if (psTarget->bIpmb) {
        puAddress->sIpmb.addr_type = IPMI_IPMB_ADDR_TYPE;
        puAddress->sIpmb.channel = IPMI_PRIMARY_IPMB_CHANNEL;
        puAddress->sIpmb.slave_addr = psTarget->u8Address;
        puAddress->sIpmb.lun = u8Lun;
        return sizeof(puAddress->sIpmb);
    }
    puAddress->sSystem.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
    puAddress->sSystem.channel = IPMI_BMC_CHANNEL;
    puAddress->sSystem.lun = u8Lun;
    return sizeof(puAddress->sSystem);
}

int SendRequest(sIpmiDevice* psDevice, const sIpmiTarget* psTarget, uint8_t u8NetFnLun, uint8_t u8Command,
                const uint8_t* pu8Request, uint8_t u8RequestLength, long lMsgId)
{
    uIpmiAddress uAddress;
    struct ipmi_req sRequest;
    memset(&sRequest, 0, sizeof(sRequest));
    sRequest.addr_len = BuildAddress(psTarget, static_cast<uint8_t>(u8NetFnLun & 0x03), &uAddress);
    sRequest.addr = reinterpret_cast<unsigned char*>(&uAddress);
    sRequest.msgid = lMsgId;
    sRequest.msg.netfn = static_cast<unsigned char>(u8NetFnLun >> 2);
    sRequest.msg.cmd = u8Command;
    sRequest.msg.data_len = u8RequestLength;
    // The driver only reads the request bytes.
    sRequest.msg.data = (u8RequestLength > 0) ? const_cast<uint8_t*>(pu8Request) : nullptr;
    if (psDevice->psOps->pfnIoctl(psDevice->pvContext, psDevice->iFd, IPMICTL_SEND_COMMAND, &sRequest) < 0) {
        return errno;
    }
    return 0;
}

// Waits for readable data within the time left. 0 when there is data, else an errno value.
int WaitReadable(sIpmiDevice* psDevice, int64_t i64DeadlineMs)
{
    for (;;) {
        int64_t i64LeftMs = i64DeadlineMs - psDevice->psOps->pfnNowMs(psDevice->pvContext);
        if (i64LeftMs <= 0) {
            return ETIMEDOUT;
        }
        int iTimeOutMs = (i64LeftMs > INT_MAX) ? INT_MAX : static_cast<int>(i64LeftMs);
        int iReady = psDevice->psOps->pfnPoll(psDevice->pvContext, psDevice->iFd, iTimeOutMs);
        if (iReady > 0) {
            return 0;
        }
        if (iReady == 0) {
            return ETIMEDOUT;
        }
        if (errno != EINTR) {
            return errno;
        }
    }
}

// Takes messages off the device until the response with lMsgId arrives; events and
// stale responses are dropped. The received bytes (completion code first) go to
// pu8Data, of IPMI_RECEIVE_BUFFER_SIZE bytes.
int AwaitResponse(sIpmiDevice* psDevice, long lMsgId, uint8_t* pu8Data, uint16_t* pu16Length)
{
    int64_t i64DeadlineMs = psDevice->psOps->pfnNowMs(psDevice->pvContext) + psDevice->iResponseTimeOutMs;
    for (;;) {
        int iWait = WaitReadable(psDevice, i64DeadlineMs);
        if (iWait != 0) {
            return iWait;
        }
        struct ipmi_addr sFrom;
        struct ipmi_recv sReceived;
        memset(&sReceived, 0, sizeof(sReceived));
        sReceived.addr = reinterpret_cast<unsigned char*>(&sFrom);
        sReceived.addr_len = sizeof(sFrom);
        sReceived.msg.data = pu8Data;
        sReceived.msg.data_len = IPMI_RECEIVE_BUFFER_SIZE;
        bool bTruncated = false;
        if (psDevice->psOps->pfnIoctl(psDevice->pvContext, psDevice->iFd, IPMICTL_RECEIVE_MSG_TRUNC, &sReceived) < 0) {
            if (errno == EAGAIN || errno == EINTR) {
                continue;
            }
            if (errno != EMSGSIZE) {
                return errno;
            }
            bTruncated = true;  // taken off the queue, cut to the buffer
        }
        if (sReceived.recv_type != IPMI_RESPONSE_RECV_TYPE || sReceived.msgid != lMsgId) {
            continue;
        }
        if (bTruncated || sReceived.msg.data_len > IPMI_RECEIVE_BUFFER_SIZE) {
            return EMSGSIZE;
        }
        *pu16Length = sReceived.msg.data_len;
        return 0;
    }
}

// Splits the completion code from the data and copies the data into the caller's room.
int DeliverResponse(const uint8_t* pu8Data, uint16_t u16Length, uint8_t* pu8CompletionCode, uint8_t* pu8Response,
                    uint16_t* pu16ResponseLength)
{
    if (u16Length == 0) {
        return EPROTO;
    }
    uint16_t u16DataLength = static_cast<uint16_t>(u16Length - 1);
    if (u16DataLength > *pu16ResponseLength) {
        memcpy(pu8Response, pu8Data + 1, *pu16ResponseLength);
        return EMSGSIZE;
    }
    memcpy(pu8Response, pu8Data + 1, u16DataLength);
    *pu16ResponseLength = u16DataLength;
    *pu8CompletionCode = pu8Data[0];
    return 0;
}

}  // namespace

const char* const* IpmiDeviceNodes()
{
#if defined(__linux__)
    static const char* const s_apchNodes[] = {"/dev/ipmi0", "/dev/ipmi/0", "/dev/ipmidev/0", nullptr};
#else
    static const char* const s_apchNodes[] = {"/dev/ipmi0", nullptr};
#endif
    return s_apchNodes;
}

int IpmiDeviceOpen(sIpmiDevice* psDevice, const sIpmiDeviceOps* psOps, void* pvContext)
{
    memset(psDevice, 0, sizeof(*psDevice));
    psDevice->psOps = psOps;
    psDevice->pvContext = pvContext;
    psDevice->iResponseTimeOutMs = IPMI_DEVICE_RESPONSE_TIMEOUT_MS;
    psDevice->iFd = -1;
    int iError = ENOENT;
    for (const char* const* ppchNode = IpmiDeviceNodes(); *ppchNode != nullptr; ppchNode++) {
        int iFd = psOps->pfnOpen(pvContext, *ppchNode);
        if (iFd >= 0) {
            psDevice->iFd = iFd;
            return 0;
        }
        iError = errno;
    }
    return iError;
}

void IpmiDeviceClose(sIpmiDevice* psDevice)
{
    if (psDevice->iFd >= 0) {
        psDevice->psOps->pfnClose(psDevice->pvContext, psDevice->iFd);
        psDevice->iFd = -1;
    }
}

int IpmiDeviceRequest(sIpmiDevice* psDevice, const sIpmiTarget* psTarget, uint8_t u8NetFnLun, uint8_t u8Command,
                      const uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                      uint8_t* pu8Response, uint16_t* pu16ResponseLength)
{
    if (psDevice == nullptr || psDevice->iFd < 0 || psTarget == nullptr || pu8CompletionCode == nullptr ||
        pu8Response == nullptr || pu16ResponseLength == nullptr || (pu8Request == nullptr && u8RequestLength > 0)) {
        return EINVAL;
    }
    long lMsgId = ++psDevice->lLastMsgId;
    int iResult = SendRequest(psDevice, psTarget, u8NetFnLun, u8Command, pu8Request, u8RequestLength, lMsgId);
    if (iResult != 0) {
        return iResult;
    }
    uint8_t au8Received[IPMI_RECEIVE_BUFFER_SIZE];
    uint16_t u16Received = 0;
    iResult = AwaitResponse(psDevice, lMsgId, au8Received, &u16Received);
    if (iResult != 0) {
        return iResult;
    }
    return DeliverResponse(au8Received, u16Received, pu8CompletionCode, pu8Response, pu16ResponseLength);
}
