// The simulated BMC's three front ends end to end: the CLI and the ipmitool look-alike
// run as programs, the route libraries loaded by path and called through their exports.
// Whole transfers through them are in tests/e2e.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>

#include "SimStateFile.h"
#include "TestSupport.h"
#include "channel/RouteLibraryApi.h"

namespace {

enum eProgram { eCli, eIpmitool, eRaw };  // eRaw: "ipmitool ... raw" with the LAN login admin/secret

struct sRun {
    eProgram eWhich;
    std::vector<std::string> vArgs;
    int iStatus;
    const char* pchOut;  // null: not compared
    const char* pchErr;
};

class SimFrontEndTest : public ::testing::Test {
protected:
    // Both programs found on PATH, as the LAN channel finds ipmitool, and the state named
    // by the environment.
    RunResult Run(eProgram eRun, const std::vector<std::string>& vArgs)
    {
        std::vector<std::string> vLine = {eRun == eCli ? "tavrin-bmcsim" : "ipmitool"};
        if (eRun == eRaw) {
            vLine.insert(vLine.end(), {"-C", "3", "-I", "lanplus", "-U", "admin", "-P", "secret", "-H", "::1", "raw"});
        }
        vLine.insert(vLine.end(), vArgs.begin(), vArgs.end());
        const char* pchPath = getenv("PATH");
        RunOptions sOptions;
        sOptions.vEnv = {{"PATH", BuildDir() + "/sim/bin:" + (pchPath != nullptr ? pchPath : "/usr/bin:/bin")},
                         {BMCSIM_STATE_ENV, m_sState}};
        return RunProgram(vLine, sOptions);
    }

    void RunAll(const std::vector<sRun>& vsRuns)
    {
        for (const sRun& s : vsRuns) {
            RunResult sResult = Run(s.eWhich, s.vArgs);
            SCOPED_TRACE((s.eWhich == eCli ? "tavrin-bmcsim " : "ipmitool ") + s.vArgs[0]);
            EXPECT_EQ(sResult.iStatus, s.iStatus) << sResult.sErr;
            EXPECT_EQ(sResult.sOut, s.pchOut != nullptr ? std::string(s.pchOut) : sResult.sOut);
            EXPECT_EQ(sResult.sErr, s.pchErr != nullptr ? std::string(s.pchErr) : sResult.sErr);
        }
    }

    TempDir m_sDir;
    std::string m_sState = m_sDir.File("bmc.state");
};

TEST_F(SimFrontEndTest, CliAndIpmitoolShowTheStateAsTheirUsersExpect)
{
    WriteFileBytes(m_sDir.File("fru.bin"), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
    RunAll({
        {eCli, {"init", "admin", "secret"}, 0, "", ""},
        {eCli, {"sdr-add", "1000510102", "aabb"}, 0, "id=0010\n", ""},
        {eCli, {"sdr-add", "10005112", "01cc"}, 0, "id=0011\n", ""},  // its own ID is taken
        {eCli, {"sdr-list"}, 0, "id=0010 type=01 len=7 data=1000510102aabb\nid=0011 type=12 len=6 data=1100511201cc\n",
         ""},
        {eCli, {"fru-load", "2", m_sDir.File("fru.bin"), "20"}, 0, "", ""},  // padded with FFh
        {eCli, {"fru-dump", "2"}, 0, "0000: 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10\n0010: 11 ff ff ff\n", ""},
        {eCli, {"fru-load", "2", m_sDir.File("fru.bin"), "16"}, 1, "", nullptr},  // the file does not fit
        {eCli, {"fault", "0x0a", "0x25", "2", "cc", "0xc4", "always"}, 0, "", ""},
        {eCli, {"fault-list"}, 0, "kind=cc netfn=0a cmd=25 n=2 mode=always value=0xc4 seen=0\n", ""},
        {eCli, {"set", "speed", "1"}, 1, "",
         "tavrin-bmcsim: unknown setting \"speed\"; \"tavrin-bmcsim help\" lists them\n"},
        {eCli, {"reboot"}, 2, "", nullptr},
        {eIpmitool, {"-V"}, 0, "ipmitool version 1.8.19\n", ""},
        {eRaw, {"0x0a", "0x11", "0x02", "0x00", "0x00", "0x14"}, 0,
         " 14 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f\n 10 11 ff ff ff\n", ""},
        {eRaw, {"0x0a", "0x23", "0x34", "0x12", "0x00", "0x00", "0x00", "0x05"}, 1, "",
         "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x23 rsp=0xc5): "
         "Reservation cancelled or invalid\n"},
        // A wrong password, in the form without -C that is used for cipher suite FFh.
        {eIpmitool, {"-I", "lanplus", "-U", "admin", "-P", "guess", "-H", "127.0.0.1", "raw", "0x06", "0x01"}, 1, "",
         "Error: Unable to establish IPMI v2 / RMCP+ session\n"
         "Unable to send RAW command (channel=0x0 netfn=0x6 lun=0x0 cmd=0x1)\n"},
        {eCli, {"fault", "any", "any", "1", "lan-nostart"}, 0, "", ""},
        {eRaw, {"0x0a", "0x22"}, 127, "", "sh: 1: ipmitool: not found\n"},
    });
}

template <typename T>
T Export(void* hLibrary, const char* pchName)
{
    return reinterpret_cast<T>(dlsym(hLibrary, pchName));
}

TEST_F(SimFrontEndTest, RouteLibrariesServeTheStateThroughTheirExports)
{
    RunAll({{eCli, {"init"}, 0, "", ""},
            {eCli, {"sdr-add", "0000510103aabbcc"}, 0, "id=0001\n", ""},
            {eCli, {"fault", "0x0a", "0x20", "1", "errno", "110"}, 0, "", ""}});
    setenv(BMCSIM_STATE_ENV, m_sState.c_str(), 1);
    void* hSarnic = dlopen((BuildDir() + "/sim/lib/libsarnic.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    void* hBrevok = dlopen((BuildDir() + "/sim/lib/libbrevok.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(hSarnic != nullptr && hBrevok != nullptr) << dlerror();
    TRouteHandle hRaw = Export<TRawOpen>(hSarnic, "RawOpen")();
    TRouteHandle hKcs = Export<TInitKCSIO>(hBrevok, "InitKCSIO")(0xCA2, SixteenBitBoundary);
    ASSERT_TRUE(hRaw != nullptr && hKcs != nullptr);
    auto pfnRequest = Export<TRawRequest>(hSarnic, "RawRequest");
    uint8_t au8Request[6] = {0, 0, 0, 0, 0, 0xFF}, au8Response[100], u8Code = 0xEE;
    uint16_t u16Length = sizeof(au8Response);
    EXPECT_EQ(pfnRequest(hRaw, 0x28, 0x20, au8Request, 0, &u8Code, au8Response, &u16Length), 110);
    EXPECT_EQ(pfnRequest(nullptr, 0x28, 0x20, au8Request, 0, &u8Code, au8Response, &u16Length), EBADF);
    u16Length = 4;  // less room than the 10-byte answer
    EXPECT_EQ(Export<TRawIPMBRequest>(hSarnic, "RawIPMBRequest")(hRaw, 0x20, 0x28, 0x23, au8Request, 6, &u8Code,
                                                                 au8Response, &u16Length), EMSGSIZE);
    EXPECT_EQ(std::vector<uint8_t>(au8Response, au8Response + u16Length), (std::vector<uint8_t>{0xFF, 0xFF, 1, 0}));
    EXPECT_EQ(Export<TKCSIOSetTimeValue>(hBrevok, "KCSIOSetWaitTimeBeforeReadRsp")(hKcs, 7), 0);
    EXPECT_EQ(Export<TKCSIORequest>(hBrevok, "KCSIORequest")(hKcs, 0x28, 0x22, au8Request, 0, &u8Code, au8Response,
                                                             &u16Length), 0);
    Export<TRawClose>(hSarnic, "RawClose")(hRaw);
    Export<TUinitKCSIO>(hBrevok, "UinitKCSIO")(hKcs);
    dlclose(hSarnic);
    dlclose(hBrevok);
    unsetenv(BMCSIM_STATE_ENV);
    RunAll({{eCli, {"log"}, 0,
             "seq=1 route=driver netfn=0a cmd=20 reqlen=0 req=- cc=-- rsplen=0 rsp=- fault=errno\n"
             "seq=2 route=ipmb netfn=0a cmd=23 reqlen=6 req=0000000000ff cc=00 rsplen=10 rsp=ffff0100510103aabbcc "
             "fault=none\n"
             "seq=3 route=kcs netfn=0a cmd=22 reqlen=0 req=- cc=00 rsplen=2 rsp=0100 fault=none\n",
             ""}});
    std::string sShow = Run(eCli, {"show"}).sOut;
    EXPECT_NE(sShow.find("kcs-port 0xca2\nkcs-spacing 2\nkcs-timeouts 0 0 7\n"), std::string::npos) << sShow;
}

}  // namespace
