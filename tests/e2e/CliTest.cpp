// The tavrin executable run as a user runs it: exact standard output, standard error
// and exit status for the command lines that need no BMC.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "TestSupport.h"

namespace {

const std::string kRule(79, '-');
const std::string kBanner = kRule + "\n                          Tavrin Utility\n" +
                            "        SDR and FRU data transfer for IPMI baseboard management controllers\n" + kRule + "\n";
const std::string kNotes =
    "\nNote: If the option, -msgintf kcsio, is used,\n      make sure KCS driver modules are not loaded!\n\n";

RunResult Tavrin(const std::vector<std::string>& vArgs, const std::string& sWorkDir = "")
{
    std::vector<std::string> vArgv = {BuildDir() + "/tavrin"};
    vArgv.insert(vArgv.end(), vArgs.begin(), vArgs.end());
    RunOptions sOptions;
    sOptions.sWorkDir = sWorkDir;
    return RunProgram(vArgv, sOptions);
}

std::string Example(const std::string& sName)
{
    return SourceDir() + "/examples/" + sName;
}

struct GoldenCase {
    std::vector<std::string> vArgs;
    int iStatus;
    std::string sOut;  // behind the banner
    std::string sErr;
};

class CliGoldenTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(CliGoldenTest, PrintsExactlyThis)
{
    const GoldenCase& c = GetParam();
    RunResult s = Tavrin(c.vArgs, SourceDir() + "/examples");
    EXPECT_EQ(c.iStatus, s.iStatus);
    EXPECT_EQ(kBanner + c.sOut, s.sOut);
    EXPECT_EQ(c.sErr, s.sErr);
}

const std::string kUseHelp = "Invalid operations. \nUse TAVRIN -h for help.\n";

INSTANTIATE_TEST_SUITE_P(
    CommandLines, CliGoldenTest,
    ::testing::Values(
        GoldenCase{{}, 4, "", "<ERROR> No command option specified. \n" + kUseHelp},
        GoldenCase{{"-x"}, 4, "", "<ERROR> Unrecognized command option. \n" + kUseHelp},
        GoldenCase{{"-t", "a", "-t", "b"}, 4, "", "<ERROR> Duplicate command option. \n" + kUseHelp},
        GoldenCase{{"sample-v0.sdr", "-t"}, 4, "", "<ERROR> Incorrect command format. \n" + kUseHelp},
        GoldenCase{{"-debugmsg", "-h"}, 4, "", "<ERROR> Incompatible options are specified. \n" + kUseHelp},
        GoldenCase{{"-t", "a", "-H", "1.2.3.4"}, 4, "", "<ERROR> Invalid LAN+ interface options. \n" + kUseHelp},
        GoldenCase{{"-debugmsg"}, 4, "",
                   "<ERROR> No operational command specified. (-d/-u/-v/-t/-h/-version/-updateFRU) \n" + kUseHelp},
        GoldenCase{{"-version"}, 0, "\n\n Version 1.24.3.112 (FreeBSD) \n\n", ""},
        // Every line of the help, as the program's documentation lists it.
        GoldenCase{{"-h"}, 0, ReadFileText(SourceDir() + "/tests/e2e/golden/help.txt"), ""},
        GoldenCase{{"-t", "missing.sdr"}, 1, "", "<ERROR> File missing.sdr does not exist.\n" + kNotes},
        GoldenCase{{"-t", "sample-v2.sdr", "fruID=0xFF"}, 1, "", "<ERROR> FRU ID (0xFF) is reserved! \n \n" + kNotes},
        GoldenCase{{"-t", "sample-v0.sdr"}, 0,
                   "Recognize SDR File as binary format version 0 (6 records) \n"
                   "Start to process SDR file (total 0xEC bytes) \n"
                   "No error found in SDR file sample-v0.sdr! \n \n",
                   ""},
        GoldenCase{{"/t", "sample-v1.sdr"}, 0,
                   "Recognize SDR File as binary format version 1 (6 records) \n"
                   "Start to process SDR file (total 0xF2 bytes) \n"
                   "No error found in SDR file sample-v1.sdr! \n \n",
                   ""},
        GoldenCase{{"-t", "sample-v2.sdr"}, 0,
                   "Recognize SDR File as binary format version 2 (6 records) \n"
                   "Start to process SDR file (total 0xFF bytes) \n"
                   "No error found in SDR file sample-v2.sdr! \n \n",
                   ""},
        GoldenCase{{"-t", "sample-ascii.sdr"}, 0, "No error found in SDR file sample-ascii.sdr! \n \n", ""},
        GoldenCase{{"-t", "sample-utf8.sdr"}, 0, "No error found in SDR file sample-utf8.sdr! \n \n", ""},
        GoldenCase{{"-t", "sample-utf16.sdr"}, 0, "No error found in SDR file sample-utf16.sdr! \n \n", ""}));

TEST(Cli, DebugModeIsInForceWhereverItStands)
{
    RunResult s = Tavrin({"-t", "sample-v2.sdr", "-debugmsg"}, SourceDir() + "/examples");
    EXPECT_EQ(0, s.iStatus);
    EXPECT_NE(std::string::npos, s.sOut.find("CRC 16: Calculated["));
    EXPECT_EQ(s.sOut.size() - std::string("memory space deallocation successful\n").size(),
              s.sOut.rfind("memory space deallocation successful\n"));
}

TEST(Cli, BrokenFileIsReportedAndFails)
{
    TempDir sDir;
    std::vector<uint8_t> vFile = ReadFileBytes(Example("sample-v1.sdr"));
    vFile[20] ^= 0x40;  // inside the first record: its CRC no longer matches
    WriteFileBytes(sDir.File("bad.sdr"), vFile);
    RunResult s = Tavrin({"-t", "bad.sdr"}, sDir.Path());
    EXPECT_EQ(1, s.iStatus);
    EXPECT_EQ(0u, s.sErr.find("SDR binary file format error. \n"));
    EXPECT_NE(std::string::npos, s.sErr.find("Error found in SDR file bad.sdr. \n" + kNotes));
}

TEST(Cli, OnlyARegularFileIsTakenAndNothingWaitsForOne)
{
    TempDir sDir;
    ASSERT_EQ(0, mkfifo(sDir.File("fifo").c_str(), 0600));  // no writer: reading it would block for ever
    ASSERT_EQ(0, mkdir(sDir.File("dir").c_str(), 0700));
    for (const char* pchOperation : {"-t", "-d", "-v"}) {
        for (const std::string sName : {"fifo", "dir"}) {
            RunResult s = Tavrin({pchOperation, sName}, sDir.Path());
            EXPECT_EQ(1, s.iStatus);
            EXPECT_EQ(kBanner, s.sOut);
            EXPECT_EQ("<ERROR> File " + sName + " does not exist.\n" + kNotes, s.sErr);
        }
    }
}

TEST(Cli, ALineTooLongForTheArgumentCountIsRefused)
{
    // 65,538 arguments would count as 2 in 16 bits, and 32,770 as a negative number.
    for (size_t uExtra : {65536u, 32768u}) {
        std::vector<std::string> vArgs = {"-t", "sample-v0.sdr"};
        vArgs.resize(vArgs.size() + uExtra, "x");
        RunResult s = Tavrin(vArgs, SourceDir() + "/examples");
        EXPECT_EQ(4, s.iStatus);
        EXPECT_EQ(kBanner, s.sOut);
        EXPECT_EQ("<ERROR> Incorrect command format. \n" + kUseHelp, s.sErr);
    }
}

TEST(Cli, APasswordMovedOutOfTheProcessListIsStillJudgedWhole)
{
    for (size_t uLength : {39u, 40u, 45u}) {
        RunResult s = Tavrin({"-t", "sample-v0.sdr", "-n", "lanplus", "-H", "10.0.0.1", "-U", "u", "-P",
                              std::string(uLength, 'p'), "-C", "3"},
                             SourceDir() + "/examples");
        EXPECT_EQ(uLength < 40 ? 0 : 1, s.iStatus) << s.sErr;
        EXPECT_EQ(uLength < 40 ? "" : "<ERROR> Unrecognized property value for -P. \n" + kUseHelp, s.sErr);
    }
}

TEST(Cli, ExamplesAreWhatTheGeneratorMakes)
{
    TempDir sDir;
    for (std::string sKind : {"0", "1", "2", "ascii", "utf8", "utf16"}) {
        std::string sOut = sDir.File(sKind);
        std::vector<std::string> vArgs = {BuildDir() + "/tools/tavrin-sdrgen", sKind, sOut};
        if (sKind.size() > 1) vArgs.insert(vArgs.begin() + 1, "text");
        ASSERT_EQ(0, RunProgram(vArgs).iStatus);
        EXPECT_EQ(ReadFileBytes(Example("sample-" + std::string(sKind.size() > 1 ? "" : "v") + sKind + ".sdr")),
                  ReadFileBytes(sOut))
            << "run scripts/make-examples.sh";
    }
}

}  // namespace

namespace {

// An installed tree: tavrin finds its route libraries through its run path alone, and the
// installed tavrin-bmcsim runs it against the installed simulator. Once as this build
// installs (relative library folder), once configured afresh as Debian's packaging
// configures (absolute library folder below the prefix).
class InstallTest : public ::testing::TestWithParam<bool> {};

TEST_P(InstallTest, FindsItsLibrariesAndItsSimulator)
{
#if defined(TAVRIN_SANITIZED_BUILD)
    // AddressSanitizer intercepts dlopen, so the search runs with the sanitizer runtime's
    // own run path instead of tavrin's: only a plain build shows the installed lookup.
    GTEST_SKIP() << "the sanitizer runtime changes dlopen's search path";
#endif
    TempDir sDir;
    std::string sPrefix = sDir.File("usr");
    std::string sLibDir = "lib";
    RunResult sInstall;
    if (GetParam()) {
        sLibDir = "lib/x86_64-linux-gnu";
        std::string sTree = sDir.File("build");
        RunResult sConfigure = RunProgram({"cmake", "-S", SourceDir(), "-B", sTree, "-DCMAKE_BUILD_TYPE=None",
                                           "-DTAVRIN_TESTS=OFF", "-DCMAKE_INSTALL_PREFIX=" + sPrefix,
                                           "-DCMAKE_INSTALL_LIBDIR=" + sPrefix + "/" + sLibDir});
        ASSERT_EQ(0, sConfigure.iStatus) << sConfigure.sErr;
        RunResult sBuild = RunProgram({"cmake", "--build", sTree, "-j2"});
        ASSERT_EQ(0, sBuild.iStatus) << sBuild.sOut << sBuild.sErr;
        sInstall = RunProgram({"cmake", "--install", sTree});
    } else {
        sInstall = RunProgram({"cmake", "--install", BuildDir(), "--prefix", sPrefix});
    }
    ASSERT_EQ(0, sInstall.iStatus) << sInstall.sErr;
    WriteFileBytes(sDir.File("x.sdr"), ReadFileBytes(Example("sample-v2.sdr")));
    RunOptions sOptions;
    sOptions.sWorkDir = sDir.Path();
    sOptions.vEnv = {{"LD_DEBUG", "libs"}, {"LD_LIBRARY_PATH", ""}};
    RunResult s = RunProgram({sPrefix + "/bin/tavrin", "-v", "x.sdr"}, sOptions);
    EXPECT_NE(std::string::npos, s.sErr.find("calling init: " + sPrefix + "/bin/../" + sLibDir + "/tavrin/libsarnic.so"))
        << s.sErr.substr(0, 2000);

    std::string sSim = sPrefix + "/bin/tavrin-bmcsim";
    ASSERT_EQ(0, RunProgram({sSim, "--state", sDir.File("s"), "init"}).iStatus);
    ASSERT_EQ(0, RunProgram({sSim, "--state", sDir.File("s"), "sdr-load", sDir.File("x.sdr")}).iStatus);
    sOptions.vEnv = {};
    s = RunProgram({sSim, "--state", sDir.File("s"), "run", "--", sPrefix + "/bin/tavrin", "-v", "x.sdr"}, sOptions);
    EXPECT_EQ(0, s.iStatus) << s.sErr;
}

INSTANTIATE_TEST_SUITE_P(LibraryFolder, InstallTest, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& sInfo) {
                             return std::string(sInfo.param ? "Absolute" : "Relative");
                         });

}  // namespace
