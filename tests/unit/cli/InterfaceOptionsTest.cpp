// The interface options: value formats, the machine checks and the handlers' texts.
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "cli/InterfaceOptions.h"
#include "cli/MachineChecks.h"
#include "cli/OptionHandlers.h"

namespace {

TEST(ValueFormats, HostAddresses)
{
    for (const char* pch : {"10.0.0.1", "010.000.000.001", "255.255.255.255", "0.0.0.0"}) {
        EXPECT_EQ(1, IsValidHostIPFormat(pch)) << pch;
    }
    for (const char* pch : {"10.0.0", "10.0.0.1.", "10..0.1", ".10.0.0.1", "256.0.0.1", "10.0.0.1.5", "::1",
                            "bmc.example", "", "1.2.3.4 ", "1.2.3.0256"}) {
        EXPECT_EQ(0, IsValidHostIPFormat(pch)) << pch;
    }
    EXPECT_EQ(0, IsValidHostIPFormat(nullptr));
}

TEST(ValueFormats, CipherSuites)
{
    for (const char* pch : {"0", "19", "0x13", "128", "0xBF", "0Xbf"}) EXPECT_EQ(1, IsValidCipherSuite(pch)) << pch;
    for (const char* pch : {"20", "127", "192", "abc", "0x", "-1", "", "99999999999"}) {
        EXPECT_EQ(0, IsValidCipherSuite(pch)) << pch;
    }
    int32_t i32 = 7;
    EXPECT_EQ(0, StringToInteger("1x", &i32));
    EXPECT_EQ(7, i32);
    EXPECT_EQ(1, StringToInteger("0x7FFFFFFF", &i32));
    EXPECT_EQ(INT32_MAX, i32);
    EXPECT_EQ(2, GetCharCount("a:b:", ':'));
    EXPECT_EQ(0, GetCharCount(nullptr, ':'));
}

TEST(MachineChecks, ModuleListing)
{
    EXPECT_EQ(MODULES_IPMI_LOADED, CheckForLoadedIPMIModulesIn("printf 'ext4 1 0\\nipmi_si 2 0\\n'"));
    EXPECT_EQ(MODULES_NONE_LOADED, CheckForLoadedIPMIModulesIn("printf 'ext4 1 0\\nipmi_msghandler 2 0\\n'"));
    EXPECT_EQ(MODULES_LISTING_FAILED, CheckForLoadedIPMIModulesIn("cat /proc/modules-missing 2>&1"));
}

// Runs a check in a directory of its own holding the given intf.ini (none if null).
int CheckConfigIn(const char* pchIni)
{
    TempDir sDir;
    if (pchIni != nullptr) WriteFileText(sDir.File("intf.ini"), pchIni);
    char achOld[PATH_MAX];
    EXPECT_NE(nullptr, getcwd(achOld, sizeof(achOld)));
    EXPECT_EQ(0, chdir(sDir.Path().c_str()));
    int iResult = CheckSystemInterfaceInConfigFile("KCS");
    EXPECT_EQ(0, chdir(achOld));
    return iResult;
}

TEST(MachineChecks, SystemInterfaceOfIntfIni)
{
    EXPECT_EQ(0, CheckConfigIn(nullptr));
    EXPECT_EQ(0, CheckConfigIn(""));
    EXPECT_EQ(0, CheckConfigIn("KCS\nCA2\n"));
    EXPECT_EQ(0, CheckConfigIn("KCS_interface\n"));
    EXPECT_EQ(CONFIG_INTERFACE_MISMATCH, CheckConfigIn("BT\n"));
    EXPECT_EQ(CONFIG_INTERFACE_MISMATCH, CheckConfigIn("kcs\n"));
    EXPECT_EQ(CONFIG_INTERFACE_MISMATCH, CheckConfigIn("   \n"));
}

struct HandlerCase {
    TOptionHandler pfnHandler;
    std::vector<std::string> vArgs;
    int iResult;
    std::string sOut;
    std::string sErr;
};

class InterfaceHandlerTest : public ::testing::TestWithParam<HandlerCase> {};

const std::string kClose = "Invalid operations. \nUse TAVRIN -h for help.\n";

TEST_P(InterfaceHandlerTest, JudgesItsValue)
{
    const HandlerCase& c = GetParam();
    memset(&sIolData, 0, sizeof(sIolData));
    eInterfaceInUse = eIntfOpenIPMI;
    std::vector<std::string> vStorage = c.vArgs;
    std::vector<char*> vSlots;
    for (auto& s : vStorage) vSlots.push_back(&s[0]);
    vSlots.resize(16, nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int iResult = c.pfnHandler(static_cast<uint16_t>(c.vArgs.size()), vSlots.data());
    EXPECT_EQ(c.sErr, testing::internal::GetCapturedStderr());
    EXPECT_EQ(c.sOut, testing::internal::GetCapturedStdout());
    EXPECT_EQ(c.iResult, iResult);
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, InterfaceHandlerTest,
    ::testing::Values(
        HandlerCase{SetMessagingInterface, {"OpenIPMI"}, 0, "", ""},
        HandlerCase{SetMessagingInterface, {" ,"}, 1, "<ERROR> Unknown property value for -msgintf. \n" + kClose, ""},
        HandlerCase{SetMessagingInterface, {"abc"}, 1, "<ERROR> Unrecognized property value for -msgintf. \n" + kClose, ""},
        HandlerCase{SetMessagingInterface, {"openipmiopenipmi"}, 1,
                    "<ERROR> Unrecognized property value for -msgintf. \n" + kClose, ""},
        HandlerCase{SetMessagingInterface, {}, 1, "", "<ERROR> Please specify the messaging interface! \n \n"},
        HandlerCase{SaveLanIF, {"rmcp"}, 1, "", "<ERROR> Unrecognized property value for -n. \n" + kClose},
        HandlerCase{SaveLanIF, {"lanpluslanpluslan"}, 1, "", "<ERROR> Unrecognized property value for -n. \n" + kClose},
        HandlerCase{SaveHostIP, {"10.0.0"}, 1, "", "<ERROR> Invalid IP address for -H. \n" + kClose},
        HandlerCase{SaveHostIP, {std::string(60, '1')}, 1, "", "<ERROR> Unrecognized property value for -H. \n" + kClose},
        HandlerCase{SaveHostIP, {}, 1, "", "<ERROR> Please specify the IP address! \n \n"},
        HandlerCase{SaveUserName, {std::string(39, 'u')}, 0, "", ""},
        HandlerCase{SaveUserName, {std::string(40, 'u')}, 1, "", "<ERROR> Unrecognized property value for -U. \n" + kClose},
        HandlerCase{SavePassWord, {"pass word,1"}, 0, "", ""},
        HandlerCase{SavePassWord, {}, 1, "", "<ERROR> Please specify the pasword! \n \n"},
        HandlerCase{SaveCipherValue, {"0x13"}, 0, "", ""},
        HandlerCase{SaveCipherValue, {"127"}, 1, "", "<ERROR> Invalid property value for -C. \n" + kClose},
        HandlerCase{SaveCipherValue, {}, 1, "", "<ERROR> Please specify the cipher suite ID! \n \n"}));

TEST(InterfaceHandlers, StoreTheirValues)
{
    memset(&sIolData, 0, sizeof(sIolData));
    std::string sPassword = "p w,d";
    std::string sCipher = "0xBF";
    char* apchPassword[2] = {&sPassword[0], nullptr};
    char* apchCipher[2] = {&sCipher[0], nullptr};
    EXPECT_EQ(0, SavePassWord(1, apchPassword));
    EXPECT_EQ(0, SaveCipherValue(1, apchCipher));
    EXPECT_STREQ("p w,d", sIolData.achPassWord);
    EXPECT_EQ(0xBF, sIolData.u16CipherSuiteID);
    EXPECT_EQ(1, SaveHostIP(1, nullptr));
}

}  // namespace
