// The exchange of libsarnic with the operating system's IPMI device: one request is
// sent with IPMICTL_SEND_COMMAND and its response, matched by message id, is fetched
// with IPMICTL_RECEIVE_MSG_TRUNC once poll() reports it, within a time limit.
// The system calls sit behind sIpmiDeviceOps so that tests can stand in for the driver.
#ifndef TAVRIN_DRIVERS_SARNIC_IPMIDEVICE_H
#define TAVRIN_DRIVERS_SARNIC_IPMIDEVICE_H

#include <cstdint>

// The device layer. Each function behaves like the system call of its name: -1 and
// errno on failure.
struct sIpmiDeviceOps {
    int (*pfnOpen)(void* pvContext, const char* pchPath);  // a descriptor
    int (*pfnClose)(void* pvContext, int iFd);
    int (*pfnIoctl)(void* pvContext, int iFd, unsigned long ulRequest, void* pvArgument);
    int (*pfnPoll)(void* pvContext, int iFd, int iTimeOutMs);  // 1 readable, 0 time-out
    int64_t (*pfnNowMs)(void* pvContext);                      // a monotonic clock
};

struct sIpmiDevice {
    const sIpmiDeviceOps* psOps;
    void* pvContext;
    int iFd;
    long lLastMsgId;
    int iResponseTimeOutMs;
};

// Where a request goes: the BMC on the system interface, or a controller on the
// primary IPMB behind it.
struct sIpmiTarget {
    bool bIpmb;
    uint8_t u8Address;  // IPMB slave address when bIpmb
};

enum {
    // A safety net above the driver's own retries and time-outs.
    IPMI_DEVICE_RESPONSE_TIMEOUT_MS = 15000,
    IPMI_PRIMARY_IPMB_CHANNEL = 0,
    IPMI_RECEIVE_BUFFER_SIZE = 300,  // above the largest message the drivers deliver
};

// The real system calls.
const sIpmiDeviceOps* SystemIpmiDeviceOps();

// The device nodes tried in order, ending with a null entry.
const char* const* IpmiDeviceNodes();

// Opens the first device node that can be opened for reading and writing.
// 0, or the errno value of the last attempt.
int IpmiDeviceOpen(sIpmiDevice* psDevice, const sIpmiDeviceOps* psOps, void* pvContext);
void IpmiDeviceClose(sIpmiDevice* psDevice);

// One request and its response. The length goes in as the room of pu8Response and
// comes back as the number of response bytes behind the completion code.
// 0, or an errno value: EINVAL for bad arguments, ETIMEDOUT when no response came in
// time, EPROTO for a response without completion code, EMSGSIZE when the response
// did not fit (the bytes that fit are delivered, the completion code is not), or what
// the driver reported.
int IpmiDeviceRequest(sIpmiDevice* psDevice, const sIpmiTarget* psTarget, uint8_t u8NetFnLun,
                      uint8_t u8Command, const uint8_t* pu8Request, uint8_t u8RequestLength,
                      uint8_t* pu8CompletionCode, uint8_t* pu8Response, uint16_t* pu16ResponseLength);

#endif
