// TTalkToBMC against stand-in route libraries. CTest runs each suite with
// LD_LIBRARY_PATH on one directory of stand-ins (see CMakeLists.txt):
//   FullLibraries  both libraries with every export
//   MissingExport  each library lacks the export looked up last
//   NoLibraries    neither library
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "FakeRouteControl.h"
#include "TestSupport.h"
#include "channel/TBMC_OSA.h"

namespace {

const unsigned int kInitPort = 0xCA2;  // differs from the default, to tell them apart

// The records of a stand-in, cleared; null without the library. The library stays
// loaded for the rest of the process, so that the records outlive every TTalkToBMC
// that loads and unloads it.
sFakeRouteControl* Control(const char* pchLibrary)
{
    void* hLibrary = dlopen(pchLibrary, RTLD_NOW);
    void* pvSymbol = (hLibrary != nullptr) ? dlsym(hLibrary, "FakeRouteControl") : nullptr;
    if (pvSymbol == nullptr) {
        return nullptr;
    }
    sFakeRouteControl* psControl = reinterpret_cast<TFakeRouteControl>(pvSymbol)();
    *psControl = sFakeRouteControl{};
    return psControl;
}

// Both routes; the KCS one reads intf.ini from sDir, where it is absent unless written.
struct sRoutes {
    TempDir sDir;
    TTalkToBMC sRaw{INTERFACE_OS_DRIVER};
    TTalkToBMC sKcs{INTERFACE_KCS_IO};
    bool InitRaw() { return sRaw.Init(nullptr, 0, ByteBoundary); }
    bool InitKcs()
    {
        sKcs.SaveIniFilePath(sDir.File("intf.ini").c_str());
        return sKcs.Init(nullptr, kInitPort, SixteenBitBoundary);
    }
};

void ExpectClosed(TTalkToBMC* psTalk)
{
    uint8_t au8Data[4] = {};
    uint16_t u16Length = sizeof(au8Data);
    EXPECT_FALSE(psTalk->IsConnectToBMCOK());
    EXPECT_EQ(4, psTalk->RequestBMC(0x06, 0x01, 0, au8Data, 0, au8Data, &u16Length));
    EXPECT_EQ(0xFF, psTalk->CompletionCode());
    EXPECT_FALSE(psTalk->SetRegisterTimeOut(5));
}

class FullLibraries : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(nullptr, psRaw = Control("libsarnic.so"));
        ASSERT_NE(nullptr, psKcs = Control("libbrevok.so"));
    }
    sFakeRouteControl* psRaw = nullptr;
    sFakeRouteControl* psKcs = nullptr;
    uint8_t au8Request[3] = {0x11, 0x22, 0x33};
    uint8_t au8Response[100] = {};
    uint16_t u16Length = sizeof(au8Response);
};

TEST_F(FullLibraries, RawRouteHandsRequestsThroughAndMapsFailures)
{
    psRaw->u8CompletionCode = 0xC1;
    psRaw->u16ResponseLength = 2;
    psRaw->au8Response[0] = 0x51;
    sRoutes sRoutes;
    ASSERT_TRUE(sRoutes.InitRaw());
    TTalkToBMC& sTalk = sRoutes.sRaw;
    EXPECT_EQ(0, sTalk.RequestBMC(0x0A, 0x23, 1, au8Request, 3, au8Response, &u16Length));
    EXPECT_EQ(0x29, psRaw->u8NetFnLun);
    EXPECT_EQ(0x23, psRaw->u8Command);
    EXPECT_EQ(3, psRaw->u8RequestLength);
    EXPECT_EQ(0xC1, sTalk.CompletionCode());
    EXPECT_EQ(2, u16Length);
    EXPECT_EQ(0x51, au8Response[0]);

    EXPECT_EQ(0, sTalk.RequestIPMB(0x20, 0x06, 0x01, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0x20, psRaw->u8TargetAddress);
    EXPECT_EQ(0x18, psRaw->u8NetFnLun);

    psRaw->iResult = EIO;
    EXPECT_EQ(7, sTalk.RequestBMC(0x0A, 0x20, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_STREQ(strerror(EIO), sTalk.ErrorMessage(7));
    EXPECT_EQ(0xFF, sTalk.CompletionCode());
}

TEST_F(FullLibraries, OneOpenPerObjectClosedByItsDestructor)
{
    {
        sRoutes sRoutes;
        ASSERT_TRUE(sRoutes.InitRaw());
        ASSERT_TRUE(sRoutes.InitKcs());
        EXPECT_FALSE(sRoutes.InitRaw());
        EXPECT_FALSE(sRoutes.InitKcs());
        EXPECT_TRUE(sRoutes.sRaw.IsConnectToBMCOK());
        EXPECT_TRUE(sRoutes.sKcs.IsConnectToBMCOK());
        EXPECT_EQ(nullptr, psRaw->hClosed);
    }
    EXPECT_EQ(1, psRaw->iOpenCalls);
    EXPECT_EQ(1, psKcs->iOpenCalls);
    EXPECT_EQ(psRaw, psRaw->hClosed);  // a stand-in's handle is its record
    EXPECT_EQ(psKcs, psKcs->hClosed);
}

TEST_F(FullLibraries, RefusedOpenLeavesObjectsClosed)
{
    psRaw->bRefuseOpen = true;
    psKcs->bRefuseOpen = true;
    sRoutes sRoutes;
    EXPECT_FALSE(sRoutes.InitRaw());
    EXPECT_FALSE(sRoutes.InitKcs());
    ExpectClosed(&sRoutes.sRaw);
    ExpectClosed(&sRoutes.sKcs);
}

TEST_F(FullLibraries, KcsRouteRequestAndSetters)
{
    sRoutes sRoutes;
    ASSERT_TRUE(sRoutes.InitKcs());
    TTalkToBMC& sTalk = sRoutes.sKcs;
    EXPECT_EQ(0, sTalk.RequestBMC(0x0A, 0x22, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0x28, psKcs->u8NetFnLun);
    EXPECT_TRUE(sTalk.SetRegisterTimeOut(1));
    EXPECT_STREQ("KCSIOSetIOTimeOut", psKcs->pchSetter);
    EXPECT_TRUE(sTalk.SetMessageTransferTimeOut(2));
    EXPECT_STREQ("KCSIOSetMessageTransferTimeOut", psKcs->pchSetter);
    EXPECT_TRUE(sTalk.SetWaitTimeBeforeReadRsp(3));
    EXPECT_STREQ("KCSIOSetWaitTimeBeforeReadRsp", psKcs->pchSetter);
    EXPECT_EQ(3, psKcs->u8SetterValue);
    psKcs->iResult = EINVAL;
    EXPECT_FALSE(sTalk.SetMessageTransferTimeOut(2));
}

struct sIniCase {
    const char* pchName;
    const char* pchContent;  // null: no intf.ini
    bool bOpened;
    unsigned int uPort;  // as InitKCSIO gets them
    int iSpacing;
    long lFirmwareInfo;
};

void PrintTo(const sIniCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.pchName;
}

class KcsRouteIni : public FullLibraries, public ::testing::WithParamInterface<sIniCase> {};

TEST_P(KcsRouteIni, OpensWithPortAndSpacing)
{
    const sIniCase& sCase = GetParam();
    sRoutes sRoutes;
    if (sCase.pchContent != nullptr) {
        WriteFileText(sRoutes.sDir.File("intf.ini"), sCase.pchContent);
    }
    EXPECT_EQ(sCase.bOpened, sRoutes.InitKcs());
    EXPECT_EQ(sCase.bOpened ? 1 : 0, psKcs->iOpenCalls);
    if (sCase.bOpened) {
        EXPECT_EQ(sCase.uPort, psKcs->uPortAddress);
        EXPECT_EQ(sCase.iSpacing, psKcs->iSpacing);
        EXPECT_EQ(sCase.lFirmwareInfo, sRoutes.sKcs.GetAddressToFirmwareInfo());
    }
}

// The first line fills the 64-byte line buffer, so its rest is read as the port.
const std::string kSpillingLine = "KCS" + std::string(60, ' ') + "CA4\nReserved\n";

INSTANTIATE_TEST_SUITE_P(
    FullLibraries, KcsRouteIni,
    ::testing::Values(sIniCase{"NoFile", nullptr, true, kInitPort, SixteenBitBoundary, 0},
                      sIniCase{"EmptyFile", "", true, 0xCA8, ThirtyTwoBitBoundary, 0x3000},
                      sIniCase{"AllFourLines", "KCS\nCA4\nReserved\n4000\n", true, 0xCA4, Reserved, 0x4000},
                      sIniCase{"AnyCaseCrLf", "kcs\r\nca6\r\nbyteBOUNDARY\r\n", true, 0xCA6, ByteBoundary, 0x3000},
                      sIniCase{"UnderscoreEndsToken", "KCS_SMIC\n", true, 0xCA8, ThirtyTwoBitBoundary, 0x3000},
                      sIniCase{"LowestPort", "KCS\n10\n", true, 0x10, ThirtyTwoBitBoundary, 0x3000},
                      sIniCase{"HighestPort", "KCS\nFFFE\n", true, 0xFFFE, ThirtyTwoBitBoundary, 0x3000},
                      sIniCase{"LongLineSpills", kSpillingLine.c_str(), true, 0xCA4, Reserved, 0x3000},
                      sIniCase{"PortTooLow", "KCS\n0F\n", false, 0, 0, 0},
                      sIniCase{"PortTooHigh", "KCS\nFFFF\n", false, 0, 0, 0},
                      sIniCase{"PortLetters", "KCS\nxyz\n", false, 0, 0, 0},
                      sIniCase{"NullInterface", "NULL\n", false, 0, 0, 0},
                      sIniCase{"EmptySpacingLine", "KCS\nCA2\n\n", false, 0, 0, 0}),
    [](const ::testing::TestParamInfo<sIniCase>& sInfo) { return std::string(sInfo.param.pchName); });

// Init must fail without calling into a library that is absent or lacks an export.
void ExpectNoRouteOpens(bool bLibrariesPresent)
{
    sFakeRouteControl* psRaw = Control("libsarnic.so");
    sFakeRouteControl* psKcs = Control("libbrevok.so");
    ASSERT_EQ(bLibrariesPresent, psRaw != nullptr && psKcs != nullptr);
    sRoutes sRoutes;
    EXPECT_FALSE(sRoutes.InitRaw());
    EXPECT_FALSE(sRoutes.InitKcs());
    ExpectClosed(&sRoutes.sRaw);
    ExpectClosed(&sRoutes.sKcs);
    EXPECT_TRUE(!bLibrariesPresent || (psRaw->iOpenCalls == 0 && psKcs->iOpenCalls == 0));
}

TEST(MissingExport, InitFails)
{
    ExpectNoRouteOpens(true);
}

TEST(NoLibraries, InitFails)
{
    ExpectNoRouteOpens(false);
}

TEST(NoLibraries, ObjectBeforeInit)
{
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    ExpectClosed(&sTalk);
    EXPECT_STREQ("Invalid raw handle!", sTalk.ErrorMessage(4));
    uint8_t au8Data[1] = {};
    EXPECT_EQ(3, sTalk.RequestBMC(0x06, 0x01, 0, au8Data, 0, au8Data, nullptr));
    EXPECT_FALSE(sTalk.SaveIniFilePath(nullptr));
    EXPECT_TRUE(sTalk.SaveIniFilePath(std::string(255, 'a').c_str()));
    EXPECT_FALSE(sTalk.SaveIniFilePath(std::string(256, 'a').c_str()));
}

}  // namespace
