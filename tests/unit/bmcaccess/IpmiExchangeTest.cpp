// The IPMI device exchange of libsarnic against a simulated kernel driver.
#include <gtest/gtest.h>

#include <cerrno>
#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "IpmiDevice.h"
#include "IpmiKernelInterface.h"

namespace {

// One message the simulated driver hands out: by default the response to the
// latest request.
struct sQueued {
    std::vector<uint8_t> vData;
    long lMsgIdOffset = 0;  // added to the latest request's id
    int iRecvType = IPMI_RESPONSE_RECV_TYPE;
    bool bTruncatedByDriver = false;
};

struct sSimulatedDriver {
    struct ipmi_addr sAddress = {};
    struct ipmi_msg sMessage = {};
    std::vector<uint8_t> vRequest;
    long lMsgId = 0;
    std::deque<sQueued> qMessages;
    int64_t i64NowMs = 1000;
    int64_t i64MsPerPoll = 0;  // time that passes in each poll that finds a message
    int iPolls = 0;
};

sSimulatedDriver* Driver(void* pvContext)
{
    return static_cast<sSimulatedDriver*>(pvContext);
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
    std::copy(sMessage.vData.begin(), sMessage.vData.begin() + uCopied, psReceived->msg.data);
    psReceived->msg.data_len = static_cast<unsigned short>(uCopied);
    if (sMessage.bTruncatedByDriver) {
        errno = EMSGSIZE;
        return -1;
    }
    return 0;
}

int SimIoctl(void* pvContext, int, unsigned long ulRequest, void* pvArgument)
{
    sSimulatedDriver* psDriver = Driver(pvContext);
    if (ulRequest != IPMICTL_SEND_COMMAND) {
        return SimReceive(psDriver, static_cast<struct ipmi_recv*>(pvArgument));
    }
    const struct ipmi_req* psRequest = static_cast<const struct ipmi_req*>(pvArgument);
    memcpy(&psDriver->sAddress, psRequest->addr, psRequest->addr_len);
    psDriver->sMessage = psRequest->msg;
    psDriver->vRequest.assign(psRequest->msg.data, psRequest->msg.data + psRequest->msg.data_len);
    psDriver->lMsgId = psRequest->msgid;
    return 0;
}

// Nothing queued: the whole time-out passes.
int SimPoll(void* pvContext, int, int iTimeOutMs)
{
    sSimulatedDriver* psDriver = Driver(pvContext);
    psDriver->iPolls++;
    psDriver->i64NowMs += psDriver->qMessages.empty() ? iTimeOutMs : psDriver->i64MsPerPoll;
    return psDriver->qMessages.empty() ? 0 : 1;
}

const sIpmiDeviceOps kSimulatedOps = {[](void*, const char*) { return 7; }, [](void*, int) { return 0; }, SimIoctl,
                                      SimPoll, [](void* pvContext) { return Driver(pvContext)->i64NowMs; }};

class IpmiExchangeTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(0, IpmiDeviceOpen(&sDevice, &kSimulatedOps, &sDriver)); }
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

TEST_F(IpmiExchangeTest, RequestsGoToTheBmcOrAnIpmbTarget)
{
    sDriver.qMessages.push_back({{0x00, 0xAA, 0xBB}});
    ASSERT_EQ(0, Request(false, 0x29, {0x01, 0x02}));
    const auto* psSystem = reinterpret_cast<const struct ipmi_system_interface_addr*>(&sDriver.sAddress);
    EXPECT_EQ(IPMI_SYSTEM_INTERFACE_ADDR_TYPE, psSystem->addr_type);
    EXPECT_EQ(IPMI_BMC_CHANNEL, psSystem->channel);
    EXPECT_EQ(1, psSystem->lun);
    EXPECT_EQ(0x0A, sDriver.sMessage.netfn);
    EXPECT_EQ(0x23, sDriver.sMessage.cmd);
    EXPECT_EQ((std::vector<uint8_t>{0x01, 0x02}), sDriver.vRequest);

    sDriver.qMessages.push_back({{0xC1}});
    ASSERT_EQ(0, Request(true, 0x18));
    const auto* psIpmb = reinterpret_cast<const struct ipmi_ipmb_addr*>(&sDriver.sAddress);
    EXPECT_EQ(IPMI_IPMB_ADDR_TYPE, psIpmb->addr_type);
    EXPECT_EQ(IPMI_PRIMARY_IPMB_CHANNEL, psIpmb->channel);
    EXPECT_EQ(0x20, psIpmb->slave_addr);
    EXPECT_EQ(0x06, sDriver.sMessage.netfn);
}

struct sResponseCase {
    const char* pchName;
    std::vector<sQueued> vMessages;
    uint16_t u16Room;
    int iResult;
    uint8_t u8CompletionCode;
    std::vector<uint8_t> vResponse;  // the bytes delivered; not checked when empty after a failure
};

void PrintTo(const sResponseCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.pchName;
}

class IpmiResponses : public IpmiExchangeTest, public ::testing::WithParamInterface<sResponseCase> {};

TEST_P(IpmiResponses, AreMatchedAndDelivered)
{
    const sResponseCase& sCase = GetParam();
    sDriver.qMessages.assign(sCase.vMessages.begin(), sCase.vMessages.end());
    u16Room = sCase.u16Room;
    EXPECT_EQ(sCase.iResult, Request(false, 0x28));
    EXPECT_EQ(sCase.u8CompletionCode, u8CompletionCode);
    if (sCase.iResult == 0 || !sCase.vResponse.empty()) {
        EXPECT_EQ(sCase.vResponse, std::vector<uint8_t>(au8Response, au8Response + u16Length));
    }
}

const sQueued kEvent{{0x55}, 0, IPMI_ASYNC_EVENT_RECV_TYPE};

INSTANTIATE_TEST_SUITE_P(
    IpmiExchange, IpmiResponses,
    ::testing::Values(
        sResponseCase{"DataAfterCompletionCode", {{{0x00, 0xAA, 0xBB}}}, 100, 0, 0x00, {0xAA, 0xBB}},
        sResponseCase{"CompletionCodeOnly", {{{0xC1}}}, 100, 0, 0xC1, {}},
        sResponseCase{"EventsAndStaleSkipped", {kEvent, {{0xC3}, -1}, {{0x00, 0x42}}}, 100, 0, 0x00, {0x42}},
        sResponseCase{"LongerThanRoom", {{{0x00, 1, 2, 3, 4}}}, 2, EMSGSIZE, 0xFF, {1, 2}},
        sResponseCase{"TruncatedByDriver", {{{0x00, 1}, 0, IPMI_RESPONSE_RECV_TYPE, true}}, 100, EMSGSIZE, 0xFF, {}},
        sResponseCase{"NoCompletionCode", {{{}}}, 100, EPROTO, 0xFF, {}},
        sResponseCase{"NothingComes", {}, 100, ETIMEDOUT, 0xFF, {}}),
    [](const ::testing::TestParamInfo<sResponseCase>& sInfo) { return std::string(sInfo.param.pchName); });

// Unrelated messages keep coming, but the time runs out all the same.
TEST_F(IpmiExchangeTest, StreamOfStaleMessagesTimesOut)
{
    sDriver.qMessages.assign(100, sQueued{{0x00}, 5});
    sDriver.i64MsPerPoll = IPMI_DEVICE_RESPONSE_TIMEOUT_MS / 4;
    EXPECT_EQ(ETIMEDOUT, Request(false, 0x28));
    EXPECT_LE(sDriver.iPolls, 5);
}

}  // namespace

