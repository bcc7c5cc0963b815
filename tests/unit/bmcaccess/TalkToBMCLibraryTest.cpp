// TTalkToBMC against stand-in route libraries. CTest runs each suite with
// LD_LIBRARY_PATH on one directory of stand-ins (see CMakeLists.txt):
//   FullLibraries          both libraries with every export
//   MissingOneExport       RawIPMBRequest / KCSIOSetWaitTimeBeforeReadRsp left out
//   MissingSeveralExports  RawOpen+RawRequest / InitKCSIO+KCSIORequest+KCSIOSetIOTimeOut left out
//   NoLibraries            neither library
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

// Holds a stand-in library loaded for the whole test, so that its records outlive
// the TTalkToBMC that loads and unloads it too.
class PinnedLibrary {
public:
    explicit PinnedLibrary(const char* pchName) : m_hLibrary(dlopen(pchName, RTLD_NOW)) {}
    ~PinnedLibrary()
    {
        if (m_hLibrary != nullptr) {
            dlclose(m_hLibrary);
        }
    }
    sFakeRouteControl* Control()
    {
        void* pvSymbol = (m_hLibrary != nullptr) ? dlsym(m_hLibrary, "FakeRouteControl") : nullptr;
        if (pvSymbol == nullptr) {
            return nullptr;
        }
        sFakeRouteControl* psControl = reinterpret_cast<TFakeRouteControl>(pvSymbol)();
        memset(psControl, 0, sizeof(*psControl));
        return psControl;
    }

private:
    void* m_hLibrary;
};

// A KCS route object whose intf.ini lives in a scratch directory (absent unless written).
struct sKcsRoute {
    TempDir sDir;
    TTalkToBMC sTalk{INTERFACE_KCS_IO};
    sKcsRoute() { sTalk.SaveIniFilePath(sDir.File("intf.ini").c_str()); }
    bool Init() { return sTalk.Init(nullptr, kInitPort, SixteenBitBoundary); }
};

class FullLibraries : public ::testing::Test {
protected:
    void SetUp() override
    {
        psRaw = sRawLibrary.Control();
        psKcs = sKcsLibrary.Control();
        ASSERT_NE(nullptr, psRaw);
        ASSERT_NE(nullptr, psKcs);
    }
    PinnedLibrary sRawLibrary{"libsarnic.so"};
    PinnedLibrary sKcsLibrary{"libbrevok.so"};
    sFakeRouteControl* psRaw = nullptr;
    sFakeRouteControl* psKcs = nullptr;
    uint8_t au8Request[3] = {0x11, 0x22, 0x33};
    uint8_t au8Response[100] = {};
    uint16_t u16Length = sizeof(au8Response);
};

TEST_F(FullLibraries, RawRouteHandsRequestThroughAndBack)
{
    psRaw->u8CompletionCode = 0xC1;
    psRaw->u16ResponseLength = 2;
    psRaw->au8Response[0] = 0x51;
    psRaw->au8Response[1] = 0x02;
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    ASSERT_TRUE(sTalk.Init(nullptr, 0, ByteBoundary));
    EXPECT_TRUE(sTalk.IsConnectToBMCOK());

    EXPECT_EQ(0, sTalk.RequestBMC(0x0A, 0x23, 1, au8Request, 3, au8Response, &u16Length));
    EXPECT_EQ(0x29, psRaw->u8NetFnLun);
    EXPECT_EQ(0x23, psRaw->u8Command);
    EXPECT_EQ(3, psRaw->u8RequestLength);
    EXPECT_EQ(0, memcmp(au8Request, psRaw->au8Request, 3));
    EXPECT_EQ(100, psRaw->u16ResponseRoom);
    EXPECT_EQ(0xC1, sTalk.CompletionCode());
    EXPECT_EQ(2, u16Length);
    EXPECT_EQ(0x51, au8Response[0]);

    u16Length = sizeof(au8Response);
    EXPECT_EQ(0, sTalk.RequestIPMB(0x20, 0x06, 0x01, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0x20, psRaw->u8TargetAddress);
    EXPECT_EQ(0x18, psRaw->u8NetFnLun);
}

TEST_F(FullLibraries, FailedLibraryCallGivesSevenAndOsText)
{
    psRaw->iResult = EIO;
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    ASSERT_TRUE(sTalk.Init(nullptr, 0, ByteBoundary));
    EXPECT_EQ(7, sTalk.RequestBMC(0x0A, 0x20, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_STREQ(strerror(EIO), sTalk.ErrorMessage(7));
    EXPECT_EQ(0xFF, sTalk.CompletionCode());
}

TEST_F(FullLibraries, RefusedOpenLeavesObjectClosed)
{
    psRaw->bRefuseOpen = 1;
    TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
    EXPECT_FALSE(sTalk.Init(nullptr, 0, ByteBoundary));
    EXPECT_FALSE(sTalk.IsConnectToBMCOK());
    EXPECT_EQ(4, sTalk.RequestBMC(0x0A, 0x20, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0xFF, sTalk.CompletionCode());
}

TEST_F(FullLibraries, SecondInitFailsAndDestructorCloses)
{
    {
        TTalkToBMC sTalk(INTERFACE_OS_DRIVER);
        ASSERT_TRUE(sTalk.Init(nullptr, 0, ByteBoundary));
        EXPECT_FALSE(sTalk.Init(nullptr, 0, ByteBoundary));
        EXPECT_EQ(1, psRaw->iOpenCalls);
        EXPECT_TRUE(sTalk.IsConnectToBMCOK());
    }
    EXPECT_EQ(1, psRaw->iCloseCalls);
    EXPECT_NE(nullptr, psRaw->hClosed);
    {
        sKcsRoute sRoute;
        ASSERT_TRUE(sRoute.Init());
        EXPECT_FALSE(sRoute.Init());
        EXPECT_EQ(1, psKcs->iOpenCalls);
    }
    EXPECT_EQ(1, psKcs->iCloseCalls);
}

struct sKcsIniCase {
    const char* pchName;
    const char* pchContent;  // null: no intf.ini
    bool bOpened;
    unsigned int uPort;
    int iSpacing;
    long lFirmwareInfo;
};

void PrintTo(const sKcsIniCase& sCase, std::ostream* pOut)
{
    *pOut << sCase.pchName;
}

class KcsRouteIni : public FullLibraries, public ::testing::WithParamInterface<sKcsIniCase> {};

TEST_P(KcsRouteIni, OpensWithPortAndSpacing)
{
    const sKcsIniCase& sCase = GetParam();
    sKcsRoute sRoute;
    if (sCase.pchContent != nullptr) {
        WriteFileText(sRoute.sDir.File("intf.ini"), sCase.pchContent);
    }
    EXPECT_EQ(sCase.bOpened, sRoute.Init());
    EXPECT_EQ(sCase.bOpened, sRoute.sTalk.IsConnectToBMCOK());
    EXPECT_EQ(sCase.bOpened ? 1 : 0, psKcs->iOpenCalls);
    if (sCase.bOpened) {
        EXPECT_EQ(sCase.uPort, psKcs->uPortAddress);
        EXPECT_EQ(sCase.iSpacing, psKcs->iSpacing);
        EXPECT_EQ(sCase.lFirmwareInfo, sRoute.sTalk.GetAddressToFirmwareInfo());
    }
}

INSTANTIATE_TEST_SUITE_P(
    FullLibraries, KcsRouteIni,
    ::testing::Values(sKcsIniCase{"NoFile", nullptr, true, kInitPort, SixteenBitBoundary, 0},
                      sKcsIniCase{"EmptyFile", "", true, 0xCA8, ThirtyTwoBitBoundary, 0x3000},
                      sKcsIniCase{"ReservedHandedOn", "kcs\nCA4\nreserved\n4000\n", true, 0xCA4, Reserved, 0x4000},
                      sKcsIniCase{"InvalidPort", "KCS\nFFFF\n", false, 0, 0, 0},
                      sKcsIniCase{"InvalidInterface", "IPMB\n", false, 0, 0, 0}),
    [](const ::testing::TestParamInfo<sKcsIniCase>& sInfo) { return std::string(sInfo.param.pchName); });

TEST_F(FullLibraries, KcsRouteRequestsAndSetters)
{
    psKcs->u16ResponseLength = 1;
    sKcsRoute sRoute;
    ASSERT_TRUE(sRoute.Init());
    EXPECT_EQ(0, sRoute.sTalk.RequestBMC(0x0A, 0x22, 0, au8Request, 0, au8Response, &u16Length));
    EXPECT_EQ(0x28, psKcs->u8NetFnLun);
    EXPECT_EQ(2, sRoute.sTalk.RequestIPMB(0x20, 0x0A, 0x22, 0, au8Request, 0, au8Response, &u16Length));

    EXPECT_TRUE(sRoute.sTalk.SetRegisterTimeOut(7));
    EXPECT_STREQ("KCSIOSetIOTimeOut", psKcs->pchSetter);
    EXPECT_EQ(7, psKcs->u8SetterValue);
    EXPECT_TRUE(sRoute.sTalk.SetMessageTransferTimeOut(8));
    EXPECT_STREQ("KCSIOSetMessageTransferTimeOut", psKcs->pchSetter);
    EXPECT_TRUE(sRoute.sTalk.SetWaitTimeBeforeReadRsp(9));
    EXPECT_STREQ("KCSIOSetWaitTimeBeforeReadRsp", psKcs->pchSetter);
    psKcs->iResult = EINVAL;
    EXPECT_FALSE(sRoute.sTalk.SetRegisterTimeOut(0));
    EXPECT_FALSE(sRoute.sTalk.SetMessageTransferTimeOut(0));
    EXPECT_FALSE(sRoute.sTalk.SetWaitTimeBeforeReadRsp(0));

    TTalkToBMC sRaw(INTERFACE_OS_DRIVER);
    ASSERT_TRUE(sRaw.Init(nullptr, 0, ByteBoundary));
    EXPECT_FALSE(sRaw.SetRegisterTimeOut(7));
}

TEST_F(FullLibraries, RefusedInitKCSIOLeavesObjectClosed)
{
    psKcs->bRefuseOpen = 1;
    sKcsRoute sRoute;
    EXPECT_FALSE(sRoute.Init());
    EXPECT_FALSE(sRoute.sTalk.IsConnectToBMCOK());
}

// Init must fail without calling into a library that lacks exports.
void ExpectNoRouteOpens(bool bLibrariesPresent)
{
    PinnedLibrary sRawLibrary("libsarnic.so");
    PinnedLibrary sKcsLibrary("libbrevok.so");
    sFakeRouteControl* psRaw = sRawLibrary.Control();
    sFakeRouteControl* psKcs = sKcsLibrary.Control();

    TTalkToBMC sRaw(INTERFACE_OS_DRIVER);
    EXPECT_FALSE(sRaw.Init(nullptr, 0, ByteBoundary));
    EXPECT_FALSE(sRaw.IsConnectToBMCOK());
    sKcsRoute sRoute;
    EXPECT_FALSE(sRoute.Init());
    EXPECT_FALSE(sRoute.sTalk.IsConnectToBMCOK());
    if (bLibrariesPresent) {
        ASSERT_NE(nullptr, psRaw);
        ASSERT_NE(nullptr, psKcs);
        EXPECT_EQ(0, psRaw->iOpenCalls);
        EXPECT_EQ(0, psKcs->iOpenCalls);
    }
}

TEST(MissingOneExport, InitFails)
{
    ExpectNoRouteOpens(true);
}

TEST(MissingSeveralExports, InitFails)
{
    ExpectNoRouteOpens(true);
}

TEST(NoLibraries, InitFails)
{
    EXPECT_EQ(nullptr, OpenDllFile("libsarnic.so"));
    EXPECT_EQ(nullptr, OpenDllFile("libbrevok.so"));
    ExpectNoRouteOpens(false);
}

}  // namespace
