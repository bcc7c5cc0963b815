// The IPMI device exchange of libsarnic against a simulated kernel driver.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "IpmiDevice.h"
#include "IpmiKernelInterface.h"

namespace {

// One message the simulated driver hands out: a response to the latest request
// unless told otherwise.
struct sQueued {
    std::vector<uint8_t> vData;
    long lMsgIdOffset = 0;  // added to the latest request's id
    int iRecvType = IPMI_RESPONSE_RECV_TYPE;
    bool bTruncatedByDriver = false;
};

struct sSimulatedDriver {
    std::vector<std::string> vTried;
    size_t uOpenableNode = 0;  // index of the node that opens; beyond the list: none
    int iSendErrno = 0;
    struct ipmi_addr sAddress = {};
    struct ipmi_msg sMessage = {};
    std::vector<uint8_t> vRequest;
    long lMsgId = 0;
    std::deque<sQueued> qMessages;
    int64_t i64NowMs = 1000;
    int64_t i64MsPerPoll = 0;  // time that passes in each poll that finds a message
    int iPolls = 0;
    bool bClosed = false;
};

sSimulatedDriver* Driver(void* pvContext)
{
    return static_cast<sSimulatedDriver*>(pvContext);
}

int SimOpen(void* pvContext, const char* pchPath)
{
    sSimulatedDriver* psDriver = Driver(pvContext);
    psDriver->vTried.push_back(pchPath);
    if (psDriver->vTried.size() - 1 == psDriver->uOpenableNode) {
        return 7;
    }
    errno = (psDriver->vTried.size() == 1) ? EACCES : ENOENT;
    return -1;
}

int SimClose(void* pvContext, int)
{
    Driver(pvContext)->bClosed = true;
    return 0;
}

int SimSend(sSimulatedDriver* psDriver, const struct ipmi_req* psRequest)
{
    if (psDriver->iSendErrno != 0) {
        errno = psDriver->iSendErrno;
        return -1;
    }
    memcpy(&psDriver->sAddress, psRequest->addr, psRequest->addr_len);
    psDriver->sMessage = psRequest->msg;
    psDriver->vRequest.assign(psRequest->msg.data, psRequest->msg.data + psRequest->msg.data_len);
    psDriver->lMsgId = psRequest->msgid;
    return 0;
}

int SimReceive(sSimulatedDriver* psDriver, struct ipmi_recv* psReceived)
{
    if (psDriver->qMessages.empty()) {
        errno = EAGAIN;
        return -1;
    }
    sQueued sMessage = psDriver->qMessages.front();
    psDriver->qMessages.pop_front();
    psReceived->recv_type = sMessage.iRecvType;
    psReceived->msgid = psDriver->lMsgId + sMessage.lMsgIdOffset;
    size_t uCopied = std::min<size_t>(sMessage.vData.size(), psReceived->msg.data_len);
    if (uCopied > 0) {
        memcpy(psReceived->msg.data, sMessage.vData.data(), uCopied);
    }
    psReceived->msg.data_len = static_cast<unsigned short>(uCopied);
    if (sMessage.bTruncatedByDriver) {
        errno = EMSGSIZE;
        return -1;
    }
    return 0;
}

int SimIoctl(void* pvContext, int, unsigned long ulRequest, void* pvArgument)
{
    if (ulRequest == IPMICTL_SEND_COMMAND) {
        return SimSend(Driver(pvContext), static_cast<struct ipmi_req*>(pvArgument));
    }
    if (ulRequest == IPMICTL_RECEIVE_MSG_TRUNC) {
        return SimReceive(Driver(pvContext), static_cast<struct ipmi_recv*>(pvArgument));
    }
    errno = ENOTTY;
    return -1;
}

// Nothing queued: the whole time-out passes.
int SimPoll(void* pvContext, int, int iTimeOutMs)
{
    sSimulatedDriver* psDriver = Driver(pvContext);
    psDriver->iPolls++;
    if (psDriver->qMessages.empty()) {
        psDriver->i64NowMs += iTimeOutMs;
        return 0;
    }
    psDriver->i64NowMs += psDriver->i64MsPerPoll;
    return 1;
}

int64_t SimNowMs(void* pvContext)
{
    return Driver(pvContext)->i64NowMs;
}

const sIpmiDeviceOps kSimulatedOps = {SimOpen, SimClose, SimIoctl, SimPoll, SimNowMs};

class IpmiExchangeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        sDriver.uOpenableNode = 0;
        ASSERT_EQ(0, IpmiDeviceOpen(&sDevice, &kSimulatedOps, &sDriver));
    }
    int Request(bool bIpmb, uint8_t u8NetFnLun, std::vector<uint8_t> vData = {})
    {
        const sIpmiTarget sTarget = {bIpmb, 0x20};
        u16Length = u16Room;
        return IpmiDeviceRequest(&sDevice, &sTarget, u8NetFnLun, 0x23, vData.data(),
                                 static_cast<uint8_t>(vData.size()), &u8CompletionCode, au8Response, &u16Length);
    }
    sSimulatedDriver sDriver;
    sIpmiDevice sDevice = {};
    uint8_t u8CompletionCode = 0xFF;
    uint8_t au8Response[100] = {};
    uint16_t u16Room = sizeof(au8Response);
    uint16_t u16Length = 0;
};

TEST_F(IpmiExchangeTest, SystemInterfaceRequestAndResponse)
{
    sDriver.qMessages.push_back({{0x00, 0xAA, 0xBB}});
    ASSERT_EQ(0, Request(false, 0x29, {0x01, 0x02}));
    const struct ipmi_system_interface_addr* psAddress =
        reinterpret_cast<const struct ipmi_system_interface_addr*>(&sDriver.sAddress);
    EXPECT_EQ(IPMI_SYSTEM_INTERFACE_ADDR_TYPE, psAddress->addr_type);
    EXPECT_EQ(IPMI_BMC_CHANNEL, psAddress->channel);
    EXPECT_EQ(1, psAddress->lun);
    EXPECT_EQ(0x0A, sDriver.sMessage.netfn);
    EXPECT_EQ(0x23, sDriver.sMessage.cmd);
    EXPECT_EQ((std::vector<uint8_t>{0x01, 0x02}), sDriver.vRequest);
    EXPECT_EQ(0x00, u8CompletionCode);
    ASSERT_EQ(2, u16Length);
    EXPECT_EQ(0xBB, au8Response[1]);
}

TEST_F(IpmiExchangeTest, IpmbRequestGoesToTarget)
{
    sDriver.qMessages.push_back({{0xC1}});
    ASSERT_EQ(0, Request(true, 0x18));
    const struct ipmi_ipmb_addr* psAddress = reinterpret_cast<const struct ipmi_ipmb_addr*>(&sDriver.sAddress);
    EXPECT_EQ(IPMI_IPMB_ADDR_TYPE, psAddress->addr_type);
    EXPECT_EQ(IPMI_PRIMARY_IPMB_CHANNEL, psAddress->channel);
    EXPECT_EQ(0x20, psAddress->slave_addr);
    EXPECT_EQ(0x06, sDriver.sMessage.netfn);
    EXPECT_EQ(0xC1, u8CompletionCode);
    EXPECT_EQ(0, u16Length);
}

TEST_F(IpmiExchangeTest, EventsAndStaleResponsesAreSkipped)
{
    sQueued sEvent{{0x55}};
    sEvent.iRecvType = IPMI_ASYNC_EVENT_RECV_TYPE;
    sQueued sStale{{0xC3}};
    sStale.lMsgIdOffset = -1;
    sDriver.qMessages = {sEvent, sStale, {{0x00, 0x42}}};
    ASSERT_EQ(0, Request(false, 0x28));
    EXPECT_EQ(0x00, u8CompletionCode);
    EXPECT_EQ(0x42, au8Response[0]);
    EXPECT_NE(sDevice.lLastMsgId, 0);
}

TEST_F(IpmiExchangeTest, ResponsesThatCannotBeDelivered)
{
    u16Room = 2;
    sDriver.qMessages.push_back({{0x00, 1, 2, 3, 4}});
    EXPECT_EQ(EMSGSIZE, Request(false, 0x28));
    EXPECT_EQ(2, u16Length);
    EXPECT_EQ(2, au8Response[1]);
    EXPECT_EQ(0xFF, u8CompletionCode);

    sQueued sCut{{0x00, 1}};
    sCut.bTruncatedByDriver = true;
    sDriver.qMessages.push_back(sCut);
    EXPECT_EQ(EMSGSIZE, Request(false, 0x28));

    sDriver.qMessages.push_back({{}});
    EXPECT_EQ(EPROTO, Request(false, 0x28));
    EXPECT_EQ(0xFF, u8CompletionCode);
}

TEST_F(IpmiExchangeTest, NoResponseTimesOut)
{
    EXPECT_EQ(ETIMEDOUT, Request(false, 0x28));
    EXPECT_EQ(1, sDriver.iPolls);

    // Unrelated messages keep coming, but the time runs out all the same.
    sQueued sStale{{0x00}};
    sStale.lMsgIdOffset = 5;
    sDriver.qMessages.assign(100, sStale);
    sDriver.i64MsPerPoll = IPMI_DEVICE_RESPONSE_TIMEOUT_MS / 4;
    EXPECT_EQ(ETIMEDOUT, Request(false, 0x28));
    EXPECT_LE(sDriver.iPolls, 1 + 5);
}

TEST_F(IpmiExchangeTest, SendFailureIsReported)
{
    sDriver.iSendErrno = ENXIO;
    EXPECT_EQ(ENXIO, Request(false, 0x28));
    uint16_t u16Length = 0;
    EXPECT_EQ(EINVAL, IpmiDeviceRequest(&sDevice, nullptr, 0x28, 0x23, nullptr, 0, &u8CompletionCode, au8Response,
                                        &u16Length));
}

TEST(IpmiDeviceOpen, TriesNodesInOrder)
{
    sSimulatedDriver sDriver;
    sIpmiDevice sDevice;
    sDriver.uOpenableNode = 2;
    size_t uNodes = 0;
    while (IpmiDeviceNodes()[uNodes] != nullptr) {
        uNodes++;
    }
    if (uNodes < 3) {
        GTEST_SKIP() << "one device node on this system";
    }
    ASSERT_EQ(0, IpmiDeviceOpen(&sDevice, &kSimulatedOps, &sDriver));
    EXPECT_EQ((std::vector<std::string>{"/dev/ipmi0", "/dev/ipmi/0", "/dev/ipmidev/0"}), sDriver.vTried);
    IpmiDeviceClose(&sDevice);
    EXPECT_TRUE(sDriver.bClosed);

    sSimulatedDriver sNone;
    sNone.uOpenableNode = 99;
    EXPECT_EQ(ENOENT, IpmiDeviceOpen(&sDevice, &kSimulatedOps, &sNone));
    EXPECT_EQ(3u, sNone.vTried.size());
}

}  // namespace
