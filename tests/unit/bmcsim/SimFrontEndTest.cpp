// The simulated BMC's three front ends, end to end: the ipmitool look-alike and the CLI
// run as programs, the route libraries loaded with dlopen and called through their
// exports.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>

#include "SimIpmiCodes.h"
#include "SimLog.h"
#include "SimStateFile.h"
#include "TestSupport.h"
#include "channel/RouteLibraryApi.h"

namespace {

class SimFrontEndTest : public ::testing::Test {
protected:
    void SetUp() override { m_sState = m_sDir.File("bmc.state"); }

    RunResult Cli(const std::vector<std::string>& vArgs)
    {
        std::vector<std::string> vLine = {BuildDir() + "/sim/bin/tavrin-bmcsim", "--state", m_sState};
        vLine.insert(vLine.end(), vArgs.begin(), vArgs.end());
        return RunProgram(vLine);
    }

    // ipmitool found on PATH as the LAN channel finds it, with the state from the environment.
    RunResult Ipmitool(const std::vector<std::string>& vArgs)
    {
        std::vector<std::string> vLine = {"ipmitool"};
        vLine.insert(vLine.end(), vArgs.begin(), vArgs.end());
        const char* pchPath = getenv("PATH");
        RunOptions sOptions;
        sOptions.vEnv = {{"PATH", BuildDir() + "/sim/bin:" + (pchPath != nullptr ? pchPath : "/usr/bin:/bin")},
                         {BMCSIM_STATE_ENV, m_sState}};
        return RunProgram(vLine, sOptions);
    }

    RunResult Raw(const std::vector<std::string>& vBytes, const char* pchPassword = "secret")
    {
        std::vector<std::string> vArgs = {"-C", "3", "-I", "lanplus", "-U", "admin", "-P", pchPassword,
                                          "-H", "127.0.0.1", "raw"};
        vArgs.insert(vArgs.end(), vBytes.begin(), vBytes.end());
        return Ipmitool(vArgs);
    }

    sBmcSimState LoadState()
    {
        sBmcSimState sState;
        sSimError sError;
        EXPECT_EQ(SimLoadState(m_sState.c_str(), &sState, &sError), 1) << sError.achText;
        return sState;
    }

    TempDir m_sDir;
    std::string m_sState;
};

void ExpectRun(const RunResult& sRun, int iStatus, const std::string& sOut, const std::string& sErr)
{
    EXPECT_EQ(sRun.iStatus, iStatus);
    EXPECT_EQ(sRun.sOut, sOut);
    EXPECT_EQ(sRun.sErr, sErr);
}

TEST_F(SimFrontEndTest, IpmitoolPrintsAnswersAndFailuresAsTheRealTool)
{
    ASSERT_EQ(Cli({"init", "admin", "secret"}).iStatus, 0);
    ASSERT_EQ(Cli({"sdr-add", "000051120f", "1112131415161718191a1b1c1d1e1f"}).iStatus, 0);  // 20 bytes, ID 1
    ExpectRun(Ipmitool({"-V"}), 0, "ipmitool version 1.8.19\n", "");

    ExpectRun(Raw({"0x0a", "0x23", "0x00", "0x00", "0x00", "0x00", "0x00", "0xff"}), 0,
              " ff ff 01 00 51 12 0f 11 12 13 14 15 16 17 18 19\n 1a 1b 1c 1d 1e 1f\n", "");
    ExpectRun(Raw({"0x0a", "0x23", "0x34", "0x12", "0x00", "0x00", "0x00", "0x05"}), 1, "",
              "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x23 rsp=0xc5): "
              "Reservation cancelled or invalid\n");
    ExpectRun(Raw({"0x06", "0x01"}, "guess"), 1, "",
              "Error: Unable to establish IPMI v2 / RMCP+ session\n"
              "Unable to send RAW command (channel=0x0 netfn=0x6 lun=0x0 cmd=0x1)\n");
    // The form without -C, as for cipher 0xFF.
    ExpectRun(Ipmitool({"-I", "lanplus", "-U", "admin", "-P", "secret", "-H", "::1", "raw", "0x0a", "0x22"}), 0,
              " 01 00\n", "");
}

TEST_F(SimFrontEndTest, IpmitoolShowsLanFaults)
{
    ASSERT_EQ(Cli({"init", "admin", "secret"}).iStatus, 0);
    for (const char* pchFault : {"nodata", "lan-nostart", "lan-timeout", "lan-silent", "lan-flood"}) {
        ASSERT_EQ(Cli({"fault", "any", "any", "1", pchFault}).iStatus, 0);
        RunResult sRun = Raw({"0x0a", "0x22"});
        ASSERT_EQ(Cli({"fault-clear"}).iStatus, 0);
        if (std::string(pchFault) == "nodata") {
            ExpectRun(sRun, 0, "\n", "");
        } else if (std::string(pchFault) == "lan-nostart") {
            ExpectRun(sRun, 127, "", "sh: 1: ipmitool: not found\n");
        } else if (std::string(pchFault) == "lan-timeout") {
            ExpectRun(sRun, 1, "", "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x22)\n");
        } else if (std::string(pchFault) == "lan-silent") {
            ExpectRun(sRun, 1, "", "");
        } else {
            EXPECT_EQ(sRun.sOut.substr(0, 7), " 02 00\n");
            EXPECT_GT(sRun.sOut.size(), 256u);
        }
    }
    // Only the nodata and the flood exchange reached the BMC: reservations 1 and 2.
    RunResult sLog = Cli({"log"});
    EXPECT_EQ(sLog.sOut,
              "seq=1 route=lan netfn=0a cmd=22 reqlen=0 req=- cc=00 rsplen=0 rsp=- fault=nodata\n"
              "seq=2 route=lan netfn=0a cmd=22 reqlen=0 req=- cc=-- rsplen=0 rsp=- fault=lan-nostart\n"
              "seq=3 route=lan netfn=0a cmd=22 reqlen=0 req=- cc=-- rsplen=0 rsp=- fault=lan-timeout\n"
              "seq=4 route=lan netfn=0a cmd=22 reqlen=0 req=- cc=-- rsplen=0 rsp=- fault=lan-silent\n"
              "seq=5 route=lan netfn=0a cmd=22 reqlen=0 req=- cc=00 rsplen=2 rsp=0200 fault=lan-flood\n");
}

TEST_F(SimFrontEndTest, RouteLibrariesServeTheModelThroughTheirExports)
{
    ASSERT_EQ(Cli({"init"}).iStatus, 0);
    ASSERT_EQ(Cli({"sdr-add", "0000510103aabbcc"}).iStatus, 0);
    ASSERT_EQ(Cli({"fault", "0x0a", "0x20", "1", "errno", "110"}).iStatus, 0);
    setenv(BMCSIM_STATE_ENV, m_sState.c_str(), 1);

    void* hSarnic = dlopen((BuildDir() + "/sim/lib/libsarnic.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(hSarnic, nullptr) << dlerror();
    auto pfnOpen = reinterpret_cast<TRawOpen>(dlsym(hSarnic, "RawOpen"));
    auto pfnClose = reinterpret_cast<TRawClose>(dlsym(hSarnic, "RawClose"));
    auto pfnRequest = reinterpret_cast<TRawRequest>(dlsym(hSarnic, "RawRequest"));
    auto pfnIpmb = reinterpret_cast<TRawIPMBRequest>(dlsym(hSarnic, "RawIPMBRequest"));
    ASSERT_TRUE(pfnOpen && pfnClose && pfnRequest && pfnIpmb);
    TRouteHandle hRaw = pfnOpen();
    ASSERT_NE(hRaw, nullptr);

    uint8_t au8Request[6] = {0, 0, 0, 0, 0, 0xFF};
    uint8_t u8Code = 0xEE;
    uint8_t au8Response[100];
    uint16_t u16Length = sizeof(au8Response);
    EXPECT_EQ(pfnRequest(hRaw, 0x18, 0x01, au8Request, 0, &u8Code, au8Response, &u16Length), 0);
    EXPECT_EQ(u8Code, 0);
    EXPECT_EQ(u16Length, 11);
    u16Length = 4;  // less room than the 10-byte answer
    EXPECT_EQ(pfnIpmb(hRaw, 0x20, 0x28, 0x23, au8Request, 6, &u8Code, au8Response, &u16Length), EMSGSIZE);
    EXPECT_EQ(u16Length, 4);
    EXPECT_EQ(std::vector<uint8_t>(au8Response, au8Response + 4), (std::vector<uint8_t>{0xFF, 0xFF, 0x01, 0x00}));
    u16Length = sizeof(au8Response);
    EXPECT_EQ(pfnRequest(hRaw, 0x28, 0x20, au8Request, 0, &u8Code, au8Response, &u16Length), 110);
    EXPECT_EQ(pfnRequest(nullptr, 0x28, 0x20, au8Request, 0, &u8Code, au8Response, &u16Length), EBADF);
    pfnClose(hRaw);
    ASSERT_EQ(Cli({"set", "open-refused", "1"}).iStatus, 0);
    EXPECT_EQ(pfnOpen(), nullptr);
    ASSERT_EQ(Cli({"set", "open-refused", "0"}).iStatus, 0);
    dlclose(hSarnic);

    void* hBrevok = dlopen((BuildDir() + "/sim/lib/libbrevok.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(hBrevok, nullptr) << dlerror();
    auto pfnInit = reinterpret_cast<TInitKCSIO>(dlsym(hBrevok, "InitKCSIO"));
    auto pfnUinit = reinterpret_cast<TUinitKCSIO>(dlsym(hBrevok, "UinitKCSIO"));
    auto pfnKcs = reinterpret_cast<TKCSIORequest>(dlsym(hBrevok, "KCSIORequest"));
    auto pfnWait = reinterpret_cast<TKCSIOSetTimeValue>(dlsym(hBrevok, "KCSIOSetWaitTimeBeforeReadRsp"));
    ASSERT_TRUE(pfnInit && pfnUinit && pfnKcs && pfnWait && dlsym(hBrevok, "KCSIOSetIOTimeOut") &&
                dlsym(hBrevok, "KCSIOSetMessageTransferTimeOut"));
    EXPECT_EQ(dlsym(hBrevok, "RawOpen"), nullptr);
    TRouteHandle hKcs = pfnInit(0xCA2, SixteenBitBoundary);
    ASSERT_NE(hKcs, nullptr);
    EXPECT_EQ(pfnWait(hKcs, 7), 0);
    u16Length = sizeof(au8Response);
    EXPECT_EQ(pfnKcs(hKcs, 0x28, 0x22, au8Request, 0, &u8Code, au8Response, &u16Length), 0);
    EXPECT_EQ(u16Length, 2);
    pfnUinit(hKcs);
    dlclose(hBrevok);
    unsetenv(BMCSIM_STATE_ENV);

    sBmcSimState sState = LoadState();
    EXPECT_EQ(sState.sRoute.u32KcsPort, 0xCA2u);
    EXPECT_EQ(sState.sRoute.i32KcsSpacing, SixteenBitBoundary);
    EXPECT_EQ(sState.sRoute.au8KcsTimeouts[2], 7);
    ASSERT_EQ(sState.vsLog.size(), 4u);
    EXPECT_EQ(SimFormatLogLine(sState.vsLog[1]),
              "seq=2 route=ipmb netfn=0a cmd=23 reqlen=6 req=0000000000ff cc=00 rsplen=10 rsp=ffff0100510103aabbcc "
              "fault=none");
    EXPECT_EQ(sState.vsLog[3].eRoute, eSimRouteKcs);
}

// A binary SDR file of format version 0: count, checksum, then each record and its
// CRC-16/XMODEM, low byte first.
std::vector<uint8_t> BinarySdrFile(const std::vector<std::vector<uint8_t>>& vvu8Records)
{
    std::vector<uint8_t> vu8File = {static_cast<uint8_t>(vvu8Records.size()),
                                    static_cast<uint8_t>(0x100 - vvu8Records.size())};
    for (const auto& vu8Record : vvu8Records) {
        uint16_t u16Crc = 0;
        for (uint8_t u8Byte : vu8Record) {
            u16Crc = static_cast<uint16_t>(u16Crc ^ (u8Byte << 8));
            for (int i = 0; i < 8; i++) {
                u16Crc = static_cast<uint16_t>((u16Crc & 0x8000) ? (u16Crc << 1) ^ 0x1021 : u16Crc << 1);
            }
        }
        vu8File.insert(vu8File.end(), vu8Record.begin(), vu8Record.end());
        vu8File.push_back(static_cast<uint8_t>(u16Crc & 0xFF));
        vu8File.push_back(static_cast<uint8_t>(u16Crc >> 8));
    }
    return vu8File;
}

TEST_F(SimFrontEndTest, CliLoadsInspectsAndConfiguresAState)
{
    ASSERT_EQ(Cli({"init"}).iStatus, 0);
    WriteFileBytes(m_sDir.File("sdr.bin"), BinarySdrFile({{0x10, 0x00, 0x51, 0x01, 0x02, 0xAA, 0xBB},
                                                          {0x10, 0x00, 0x51, 0x12, 0x01, 0xCC}}));
    RunResult sLoad = Cli({"sdr-load", m_sDir.File("sdr.bin")});
    EXPECT_EQ(sLoad.iStatus, 0) << sLoad.sErr;
    // The second record's ID is taken already, so it gets the next free one.
    ExpectRun(Cli({"sdr-list"}), 0,
              "id=0010 type=01 len=7 data=10005101" "02aabb\n"
              "id=0011 type=12 len=6 data=110051120" "1cc\n",
              "");
    EXPECT_EQ(Cli({"sdr-load", m_sDir.File("missing.bin")}).iStatus, 1);

    WriteFileBytes(m_sDir.File("fru.bin"), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
    ASSERT_EQ(Cli({"fru-load", "2", m_sDir.File("fru.bin"), "20"}).iStatus, 0);
    ExpectRun(Cli({"fru-dump", "2"}), 0,
              "0000: 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10\n0010: 11 ff ff ff\n", "");
    ASSERT_EQ(Cli({"fru-save", "2", m_sDir.File("out.bin")}).iStatus, 0);
    EXPECT_EQ(ReadFileBytes(m_sDir.File("out.bin")).size(), 20u);
    EXPECT_EQ(Cli({"fru-load", "2", m_sDir.File("fru.bin"), "16"}).iStatus, 1);

    ASSERT_EQ(Cli({"fault", "0x0a", "0x25", "2", "cc", "0xc4", "always"}).iStatus, 0);
    ExpectRun(Cli({"fault-list"}), 0, "kind=cc netfn=0a cmd=25 n=2 mode=always value=0xc4 seen=0\n", "");
    ASSERT_EQ(Cli({"set", "init-agent", "0*3000,1"}).iStatus, 0);
    ASSERT_EQ(Cli({"set", "free-space", "100"}).iStatus, 0);
    RunResult sShow = Cli({"show"});
    EXPECT_NE(sShow.sOut.find("init-agent 0*3000,1\n"), std::string::npos);
    EXPECT_NE(sShow.sOut.find("free-space 100\n"), std::string::npos);

    ExpectRun(Cli({"set", "speed", "1"}), 1, "",
              "tavrin-bmcsim: unknown setting \"speed\"; \"tavrin-bmcsim help\" lists them\n");
    EXPECT_EQ(Cli({"fault", "0x0a", "0x25", "0", "nodata"}).iStatus, 1);
    EXPECT_EQ(Cli({"fault", "0x0a", "0x25", "1", "cc"}).iStatus, 1);
    EXPECT_EQ(Cli({"reboot"}).iStatus, 2);
    RunResult sHelp = Cli({"help"});
    EXPECT_EQ(sHelp.iStatus, 0);
    EXPECT_NE(sHelp.sOut.find("TAVRIN_BMCSIM_STATE"), std::string::npos);
    std::remove(m_sState.c_str());
    EXPECT_EQ(Cli({"show"}).iStatus, 1);
}

}  // namespace
