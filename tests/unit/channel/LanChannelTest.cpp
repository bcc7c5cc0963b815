// The LAN route against a scripted stand-in for ipmitool: the command line byte for
// byte, the reading of its output, and the retry rules.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "channel/LanChannel.h"

namespace {

// What the stand-in prints, and shell code that it runs afterwards (an exit status, a
// signal to itself).
struct FakeAnswer {
    FakeAnswer(const char* pchText, const char* pchThen = "") : sText(pchText), sThen(pchThen) {}
    FakeAnswer(const std::string& sTextIn) : sText(sTextIn) {}
    std::string sText;
    std::string sThen;
};

// A stand-in ipmitool, first on PATH, that logs each command line and prints the
// next of the answers it was given (the last one repeats).
class FakeIpmitool {
public:
    explicit FakeIpmitool(const std::vector<FakeAnswer>& vAnswers)
    {
        for (size_t i = 0; i < vAnswers.size(); i++) {
            WriteFileText(m_sDir.File("answer" + std::to_string(i)), vAnswers[i].sText);
            WriteFileText(m_sDir.File("then" + std::to_string(i)), vAnswers[i].sThen + "\n");
        }
        WriteFileText(m_sDir.File("ipmitool"),
                      "#!/bin/sh\n"
                      "d=$(dirname \"$0\")\n"
                      "echo \"$*\" >> \"$d/log\"\n"
                      "n=$(wc -l < \"$d/log\")\n"
                      "i=$((n - 1)); [ $i -ge " + std::to_string(vAnswers.size()) + " ] && i=" +
                          std::to_string(vAnswers.size() - 1) + "\n"
                      "cat \"$d/answer$i\"\n"
                      ". \"$d/then$i\"\n");
        std::string sChmod = "chmod +x " + m_sDir.File("ipmitool");
        EXPECT_EQ(0, system(sChmod.c_str()));
        m_sOldPath = getenv("PATH");
        setenv("PATH", (m_sDir.Path() + ":" + m_sOldPath).c_str(), 1);
    }
    ~FakeIpmitool() { setenv("PATH", m_sOldPath.c_str(), 1); }

    std::vector<std::string> Calls() const
    {
        std::vector<std::string> vCalls;
        std::string sLog = ReadFileText(m_sDir.File("log"));
        for (size_t uStart = 0, uEnd; (uEnd = sLog.find('\n', uStart)) != std::string::npos; uStart = uEnd + 1) {
            vCalls.push_back(sLog.substr(uStart, uEnd - uStart));
        }
        return vCalls;
    }

private:
    TempDir m_sDir;
    std::string m_sOldPath;
};

void SetLanData(uint16_t u16Cipher)
{
    memset(&sIolData, 0, sizeof(sIolData));
    strcpy(sIolData.achHostIP, "127.0.0.1");
    strcpy(sIolData.achUserName, "admin");
    strcpy(sIolData.achPassWord, "secret");
    strcpy(sIolData.achLanIF, "LANPLUS");
    sIolData.u16CipherSuiteID = u16Cipher;
}

IPMIMessage GetSDRRequest()
{
    IPMIMessage sMessage;
    memset(&sMessage, 0, sizeof(sMessage));
    const uint8_t au8Request[] = {0x34, 0x12, 0x00, 0x00, 0x00, 0x05};
    memcpy(sMessage.au8RequestData, au8Request, sizeof(au8Request));
    sMessage.u8RequestLength = sizeof(au8Request);
    sMessage.u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
    return sMessage;
}

const char kRefusal[] = "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x23 rsp=0xc5): Reservation cancelled\n";

std::vector<std::string> Words(const sLanArgv& sArgv)
{
    std::vector<std::string> vWords;
    for (char* const* p = sArgv.apchArgv; *p != nullptr; p++) vWords.push_back(*p);
    return vWords;
}

TEST(LanCommandLine, HasBothFormsWordForWordWithTheCanonicalAddress)
{
    IPMIMessage sMessage = GetSDRRequest();
    sLanArgv sArgv;
    char achHead[256];
    SetLanData(3);
    strcpy(sIolData.achHostIP, "127.000.0.010");
    ASSERT_EQ(1, BuildLanArgv(0x0A, 0x23, &sMessage, &sArgv));
    EXPECT_EQ((std::vector<std::string>{"ipmitool", "-C", "3", "-I", "LANPLUS", "-U", "admin", "-P", "secret", "-H",
                                        "127.0.0.10", "raw", "0x0a", "0x23", "0x34", "0x12", "0x00", "0x00", "0x00",
                                        "0x05"}),
              Words(sArgv));
    ASSERT_EQ(1, BuildLanTraceHead(0x0A, 0x23, achHead, sizeof(achHead)));  // the address as typed
    EXPECT_STREQ("ipmitool -C 3 -I LANPLUS -U admin -P secret -H 127.000.0.010 raw 0x0a 0x23 ", achHead);
    SetLanData(0xFF);
    sMessage.u8RequestLength = 0;
    ASSERT_EQ(1, BuildLanArgv(0x06, 0x01, &sMessage, &sArgv));
    EXPECT_EQ((std::vector<std::string>{"ipmitool", "-I", "LANPLUS", "-U", "admin", "-P", "secret", "-H", "127.0.0.1",
                                        "raw", "0x06", "0x01"}),
              Words(sArgv));
    EXPECT_EQ(0, BuildLanTraceHead(0x06, 0x01, achHead, 20));
    strcpy(sIolData.achHostIP, "host.example");
    EXPECT_EQ(0, BuildLanArgv(0x06, 0x01, &sMessage, &sArgv));
}

TEST(LanCommandLine, AddressesLoseTheirLeadingZeros)
{
    const struct { const char* pchTyped; const char* pchCanonical; } kCases[] = {
        {"10.0.0.1", "10.0.0.1"}, {"010.000.000.001", "10.0.0.1"}, {"127.0.0.010", "127.0.0.10"},
        {"00000255.0.0.0", "255.0.0.0"}, {"256.0.0.1", nullptr}, {"1.2.3", nullptr}, {"1.2.3.4.", nullptr},
        {"1..2.3", nullptr}, {"1.2.3.4 ", nullptr}, {"", nullptr}};
    for (const auto& c : kCases) {
        char achOut[LAN_ADDRESS_SIZE] = {0};
        EXPECT_EQ(c.pchCanonical != nullptr ? 1 : 0, CanonicalIPv4Address(c.pchTyped, achOut, sizeof(achOut)))
            << c.pchTyped;
        if (c.pchCanonical != nullptr) {
            EXPECT_STREQ(c.pchCanonical, achOut);
        }
    }
}

TEST(LanResponse, ReadsPrintedBytesAndCompletionCodes)
{
    IPMIMessage s;
    memset(&s, 0, sizeof(s));
    ASSERT_EQ(1, ParseLanResponseText(" 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f\n 10 zz\n", &s));
    ASSERT_EQ(18, s.u16ResponseLength);
    EXPECT_EQ(0x0F, s.au8ResponseData[15]);
    EXPECT_EQ(0x10, s.au8ResponseData[16]);
    EXPECT_EQ(0x00, s.au8ResponseData[17]);  // a piece without digits still counts

    std::string sMany;
    for (int i = 0; i < 101; i++) sMany += " 01";
    EXPECT_EQ(0, ParseLanResponseText(sMany.c_str(), &s));  // never past the 100-byte area

    char achLine[300];
    GetLanErrorLine("\n\nError: first\nsecond", achLine, sizeof(achLine));
    EXPECT_STREQ("Error: first", achLine);

    const struct {
        const char* pchLine;
        uint8_t u8Before;
        uint8_t u8After;
    } kCodes[] = {{kRefusal, 0, 0xC5}, {"no parenthesis", 0x12, 0x12}, {"ab)", 0, 0xFF}, {"(rsp=0xc3) x", 0, 0xC3}};
    for (const auto& c : kCodes) {
        s.u8CompletionCode = c.u8Before;
        ReadLanCompletionCode(c.pchLine, &s);
        EXPECT_EQ(c.u8After, s.u8CompletionCode) << c.pchLine;
    }
    EXPECT_EQ(1, HasLanFailureMarker("x failed"));
    EXPECT_EQ(0, HasLanFailureMarker("FAILED error"));
    EXPECT_EQ(1, HasLanCipherMarker("no support for IPMI_AUTH_RMCP"));
}

struct RetryCase {
    const char* pchName;
    uint8_t u8Command;
    std::vector<FakeAnswer> vAnswers;
    size_t uCalls;
    int iResult;
    uint8_t u8CompletionCode;
    std::vector<uint8_t> vResponse;
};

class LanRetryTest : public ::testing::TestWithParam<RetryCase> {};

TEST_P(LanRetryTest, RunsIpmitoolAsOftenAsTheRulesSay)
{
    const RetryCase& c = GetParam();
    SetLanData(3);
    FakeIpmitool sTool(c.vAnswers);
    IPMIMessage sMessage = GetSDRRequest();
    uint8_t u8NetFnLun = (c.u8Command == IPMI_CMD_GET_DEVICE_ID) ? IPMI_NETFN_APP_LUN0 : IPMI_NETFN_STORAGE_LUN0;
    EXPECT_EQ(c.iResult, DoIPMILanCommand(u8NetFnLun, c.u8Command, &sMessage));
    std::vector<std::string> vCalls = sTool.Calls();
    EXPECT_EQ(c.uCalls, vCalls.size());
    for (const std::string& sCall : vCalls) EXPECT_EQ(vCalls[0], sCall);  // identical every time
    EXPECT_EQ(c.u8CompletionCode, sMessage.u8CompletionCode);
    if (c.iResult == 1) {
        EXPECT_EQ(c.vResponse,
              std::vector<uint8_t>(sMessage.au8ResponseData, sMessage.au8ResponseData + sMessage.u16ResponseLength));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, LanRetryTest,
    ::testing::Values(
        RetryCase{"Success", 0x23, {" 05 00 01 00\n"}, 1, 1, 0, {5, 0, 1, 0}},
        RetryCase{"SilenceIsSuccess", 0x23, {""}, 1, 1, 0, {}},
        RetryCase{"RefusedSixTimes", 0x23, {kRefusal}, 6, 0, 0xC5, {}},
        RetryCase{"SecondAttemptWins", 0x23, {kRefusal, " 07 08\n"}, 2, 1, 0, {7, 8}},
        RetryCase{"MarkerAfterValidBytes", 0x23, {" 01 02 Error\n"}, 6, 0, 0, {}},
        RetryCase{"MarkerBeyond256BytesIsNotSeen", 0x23, {std::string(100, ' ') + "01" + std::string(200, ' ') + "failed"},
                  1, 1, 0, {1}},
        RetryCase{"GetDeviceIDRunsOnce", 0x01, {"Error: Unable to establish IPMI v2 / RMCP+ session\n"}, 1, 0, 0, {}},
        // The end of the run counts as much as its text: a status other than 0 or a
        // death by a signal fails the attempt even without any marker.
        RetryCase{"ExitOneWithoutMarker", 0x23, {{"No hostname specified!\n", "exit 1"}}, 6, 0, 0, {}},
        RetryCase{"ExitOneSilently", 0x23, {{"", "exit 1"}}, 6, 0, 0, {}},
        RetryCase{"KilledAfterValidBytes", 0x23, {{" 01 02\n", "kill -KILL $$"}}, 6, 0, 0, {}},
        RetryCase{"NotFoundFromAShell", 0x23, {{"sh: 1: ipmitool: not found\n", "exit 127"}, " 09\n"}, 2, 1, 0, {9}},
        RetryCase{"GetDeviceIDExitOneRunsOnce", 0x01, {{" 20 01\n", "exit 1"}}, 1, 0, 0, {}}),
    [](const ::testing::TestParamInfo<RetryCase>& i) { return std::string(i.param.pchName); });

// A command that can't be started (not on the search path, not executable) is retried
// after a wait, and all six attempts fail.
TEST(LanStart, AnIpmitoolThatCannotStartFailsEveryAttempt)
{
    for (bool bPresent : {false, true}) {
        TempDir sDir;
        if (bPresent) WriteFileText(sDir.File("ipmitool"), "#!/bin/sh\necho 00\n");  // not executable
        std::string sOldPath = getenv("PATH");
        setenv("PATH", sDir.Path().c_str(), 1);
        SetLanData(3);
        IPMIMessage sMessage = GetSDRRequest();
        sMessage.u8CompletionCode = 0x5A;
        EXPECT_EQ(0, DoIPMILanCommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_SDR, &sMessage));
        EXPECT_EQ(0x5A, sMessage.u8CompletionCode);  // untouched: no answer came
        setenv("PATH", sOldPath.c_str(), 1);
    }
}

}  // namespace
