// TTalkToBMC without any route library: intf.ini, the name tables, the status texts
// and the loader helpers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "TestSupport.h"
#include "channel/TBMC_OSA.h"

namespace {

struct sConfigCase {
    const char* pchName;
    std::string sContent;
    int iResult;
    SystemInterface eSysIntf;
    uint16_t u16Port;
    RegisterSpacing eSpacing;
    long lAddress;
};

void PrintTo(const sConfigCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.pchName;
}

// Values before the call, so that untouched ones show.
const SystemInterface kSysIntfBefore = SysIntfNULL;
const uint16_t kPortBefore = 0x1234;
const RegisterSpacing kSpacingBefore = SixteenBitBoundary;
const long kAddressBefore = -1;

class GetConfigTable : public ::testing::TestWithParam<sConfigCase> {};

TEST_P(GetConfigTable, ReadsLinesInOrder)
{
    const sConfigCase& sCase = GetParam();
    TempDir sDir;
    WriteFileText(sDir.File("intf.ini"), sCase.sContent);
    TTalkToBMC sTalk(INTERFACE_KCS_IO);
    ASSERT_TRUE(sTalk.SaveIniFilePath(sDir.File("intf.ini").c_str()));

    SystemInterface eSysIntf = kSysIntfBefore;
    uint16_t u16Port = kPortBefore;
    RegisterSpacing eSpacing = kSpacingBefore;
    long lAddress = kAddressBefore;
    EXPECT_EQ(sCase.iResult, sTalk.GetConfig(&eSysIntf, &u16Port, &eSpacing, &lAddress));
    EXPECT_EQ(sCase.eSysIntf, eSysIntf);
    EXPECT_EQ(sCase.u16Port, u16Port);
    EXPECT_EQ(sCase.eSpacing, eSpacing);
    EXPECT_EQ(sCase.lAddress, lAddress);
}

const std::string kSpilledFirstLine = "KCS" + std::string(60, ' ');  // 63 characters: one read

INSTANTIATE_TEST_SUITE_P(
    IntfIni, GetConfigTable,
    ::testing::Values(
        sConfigCase{"Empty", "", 0, kSysIntfBefore, kPortBefore, kSpacingBefore, 0x3000},
        sConfigCase{"OnlyKCS", "KCS\n", 0, SysIntfKCS, kPortBefore, kSpacingBefore, 0x3000},
        sConfigCase{"AllFour", "SMIC\n0xCA2\nByteBoundary\n7F00\n", 0, SysIntfSMIC, 0xCA2, ByteBoundary, 0x7F00},
        sConfigCase{"AnyCaseCRLF", "bt\r\nca2\r\nthirtytwobitboundary\r\n", 0, SysIntfBT, 0xCA2, ThirtyTwoBitBoundary,
                    0x3000},
        sConfigCase{"ReservedSpacing", "KCS\nCA8\nReserved\n", 0, SysIntfKCS, 0xCA8, Reserved, 0x3000},
        sConfigCase{"UnderscoreEndsToken", "KCS_SMIC\n", 0, SysIntfKCS, kPortBefore, kSpacingBefore, 0x3000},
        sConfigCase{"LowestPort", "KCS\n10\n", 0, SysIntfKCS, 0x10, kSpacingBefore, 0x3000},
        sConfigCase{"HighestPort", "KCS\nFFFE\n", 0, SysIntfKCS, 0xFFFE, kSpacingBefore, 0x3000},
        sConfigCase{"PortTooLow", "KCS\n0F\n", 1, SysIntfKCS, kPortBefore, kSpacingBefore, kAddressBefore},
        sConfigCase{"PortTooHigh", "KCS\nFFFF\n", 1, SysIntfKCS, kPortBefore, kSpacingBefore, kAddressBefore},
        sConfigCase{"PortLetters", "KCS\nxyz\n", 1, SysIntfKCS, kPortBefore, kSpacingBefore, kAddressBefore},
        sConfigCase{"NullInterface", "NULL\nCA2\n", 1, kSysIntfBefore, kPortBefore, kSpacingBefore, kAddressBefore},
        sConfigCase{"EmptyFirstLine", "\nCA2\n", 1, kSysIntfBefore, kPortBefore, kSpacingBefore, kAddressBefore},
        sConfigCase{"EmptyThirdLine", "KCS\nCA2\n\n", 1, SysIntfKCS, 0xCA2, kSpacingBefore, kAddressBefore},
        sConfigCase{"UnknownSpacing", "KCS\nCA2\nWord\n", 1, SysIntfKCS, 0xCA2, kSpacingBefore, kAddressBefore},
        // The first line fills the 64-byte buffer, so its rest is read as the port.
        sConfigCase{"LongLineSpills", kSpilledFirstLine + "CA4\nReserved\n", 0, SysIntfKCS, 0xCA4, Reserved, 0x3000}),
    [](const ::testing::TestParamInfo<sConfigCase>& sInfo) { return std::string(sInfo.param.pchName); });

TEST(GetConfig, MissingFileLeavesValues)
{
    TempDir sDir;
    TTalkToBMC sTalk(INTERFACE_KCS_IO);
    ASSERT_TRUE(sTalk.SaveIniFilePath(sDir.File("intf.ini").c_str()));
    SystemInterface eSysIntf = kSysIntfBefore;
    uint16_t u16Port = kPortBefore;
    RegisterSpacing eSpacing = kSpacingBefore;
    long lAddress = kAddressBefore;
    EXPECT_EQ(8, sTalk.GetConfig(&eSysIntf, &u16Port, &eSpacing, &lAddress));
    EXPECT_EQ(kPortBefore, u16Port);
    EXPECT_EQ(kAddressBefore, lAddress);
    EXPECT_EQ(3, sTalk.GetConfig(&eSysIntf, &u16Port, &eSpacing, nullptr));
    EXPECT_EQ(3, sTalk.GetConfig(nullptr, &u16Port, &eSpacing, &lAddress));
}

TEST(GetConfig, DefaultsToIntfIniInWorkingDirectory)
{
    TempDir sDir;
    WriteFileText(sDir.File("intf.ini"), "KCS\nCA6\n");
    char achOld[PATH_MAX];
    ASSERT_NE(nullptr, getcwd(achOld, sizeof(achOld)));
    ASSERT_EQ(0, chdir(sDir.Path().c_str()));
    TTalkToBMC sTalk(INTERFACE_KCS_IO);
    SystemInterface eSysIntf = SysIntfNone;
    uint16_t u16Port = 0;
    RegisterSpacing eSpacing = ByteBoundary;
    long lAddress = 0;
    int iResult = sTalk.GetConfig(&eSysIntf, &u16Port, &eSpacing, &lAddress);
    ASSERT_EQ(0, chdir(achOld));
    EXPECT_EQ(0, iResult);
    EXPECT_EQ(0xCA6, u16Port);
}

TEST(SaveIniFilePath, RefusesNullAndTooLong)
{
    TTalkToBMC sTalk(INTERFACE_KCS_IO);
    EXPECT_FALSE(sTalk.SaveIniFilePath(nullptr));
    EXPECT_TRUE(sTalk.SaveIniFilePath(std::string(255, 'a').c_str()));
    EXPECT_FALSE(sTalk.SaveIniFilePath(std::string(256, 'a').c_str()));
}

TEST(NameTables, ConvertIgnoringCase)
{
    EXPECT_EQ(1, ConvertIntfType("kcs"));
    EXPECT_EQ(2, ConvertIntfType("SMIC"));
    EXPECT_EQ(3, ConvertIntfType("bT"));
    EXPECT_EQ(-1, ConvertIntfType(""));
    EXPECT_EQ(-1, ConvertIntfType("NULL"));
    EXPECT_EQ(-1, ConvertIntfType("KCSX"));
    EXPECT_EQ(-1, ConvertIntfType(nullptr));
    EXPECT_EQ(0, ConvertRegSpace("byteboundary"));
    EXPECT_EQ(1, ConvertRegSpace("THIRTYTWOBITBOUNDARY"));
    EXPECT_EQ(2, ConvertRegSpace("SixteenBitBoundary"));
    EXPECT_EQ(3, ConvertRegSpace("reserved"));
    EXPECT_EQ(-1, ConvertRegSpace("Byte"));
    EXPECT_EQ(-1, ConvertRegSpace(nullptr));
}

TEST(ErrorMessage, TextsOfStatusCodes)
{
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    const char* const apchTexts[] = {"Success!",
                                     "General error!",
                                     "Interface not supported!",
                                     "BMC didn't accept the data you sent!",
                                     "Invalid raw handle!",
                                     "Failed to load dynamic link library!",
                                     "Invalid function address!"};
    for (int i = 0; i < 7; i++) {
        EXPECT_STREQ(apchTexts[i], sTalk.ErrorMessage(i)) << i;
    }
    EXPECT_STREQ("Unknown error!", sTalk.ErrorMessage(8));
    EXPECT_STREQ("Unknown error!", sTalk.ErrorMessage(9));
    EXPECT_STREQ("Unknown error!", sTalk.ErrorMessage(-1));
}

TEST(TalkToBMC, StartsClosed)
{
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    uint8_t au8Request[1] = {0};
    uint8_t au8Response[100];
    uint16_t u16Length = sizeof(au8Response);
    EXPECT_FALSE(sTalk.IsConnectToBMCOK());
    EXPECT_EQ(4, sTalk.RequestBMC(0x06, 0x01, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0xFF, sTalk.CompletionCode());
    EXPECT_EQ(3, sTalk.RequestBMC(0x06, 0x01, 0, au8Request, 0, au8Response, nullptr));
    EXPECT_FALSE(sTalk.SetRegisterTimeOut(5));
    EXPECT_FALSE(sTalk.SetMessageTransferTimeOut(5));
    EXPECT_FALSE(sTalk.SetWaitTimeBeforeReadRsp(5));
}

TEST(TalkToBMC, OtherKindsNeverOpen)
{
    int iParameter = 0;
    TTalkToBMC sLan(INTERFACE_LAN);
    EXPECT_FALSE(sLan.Init(nullptr, BMC_DEFAULT_KCS_PORT, ThirtyTwoBitBoundary));
    EXPECT_FALSE(sLan.Init(&iParameter, BMC_DEFAULT_KCS_PORT, ThirtyTwoBitBoundary));
    TTalkToBMC sOther(1);
    EXPECT_FALSE(sOther.Init(nullptr, BMC_DEFAULT_KCS_PORT, ThirtyTwoBitBoundary));
    EXPECT_FALSE(sOther.IsConnectToBMCOK());
}

TEST(DllLoader, RefusesNullsAndLoadsByBareName)
{
    EXPECT_EQ(nullptr, OpenDllFile(nullptr));
    EXPECT_EQ(nullptr, OpenDllFile("libtavrin-no-such-library.so"));
    EXPECT_EQ(nullptr, GetDllFunction(nullptr, "strlen"));
    EXPECT_FALSE(CloseDllFile(nullptr));
#if defined(__FreeBSD__)
    void* hLibrary = OpenDllFile("libc.so.7");
#else
    void* hLibrary = OpenDllFile("libc.so.6");
#endif
    ASSERT_NE(nullptr, hLibrary);
    EXPECT_NE(nullptr, GetDllFunction(hLibrary, "strlen"));
    EXPECT_EQ(nullptr, GetDllFunction(hLibrary, nullptr));
    EXPECT_EQ(nullptr, GetDllFunction(hLibrary, "TavrinNoSuchSymbol"));
    EXPECT_TRUE(CloseDllFile(hLibrary));
}

}  // namespace
