// Which command lines the dispatcher accepts, the code of each rejected one, and the
// order in which handlers run.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/CmdLnExe.h"

namespace {

std::vector<std::string> g_vRun;  // names of the handlers run, in order
std::string g_sFailOn;            // the handler that fails

eReturnCodeTag Record(const char* pchName)
{
    g_vRun.push_back(pchName);
    return g_sFailOn == pchName ? eRcHandlerFailed : eRcSuccess;
}

#define HANDLER(name) \
    eReturnCodeTag Handle_##name(uint16_t, char**) { return Record(#name); }
HANDLER(h) HANDLER(d) HANDLER(u) HANDLER(v) HANDLER(t) HANDLER(version) HANDLER(kcs) HANDLER(msgintf)
HANDLER(n) HANDLER(H) HANDLER(U) HANDLER(P) HANDLER(C) HANDLER(updateFRU) HANDLER(debugmsg)

struct sOption {
    const char* pchName;
    uint8_t u8Max;
    uint8_t u8Min;
    TOptionHandler pfnHandler;
};

// The program's option table: names, bounds and order.
const sOption kOptions[] = {
    {"h", 0, 0, Handle_h}, {"d", 2, 1, Handle_d}, {"u", 3, 2, Handle_u}, {"v", 2, 1, Handle_v},
    {"t", 2, 1, Handle_t}, {"version", 0, 0, Handle_version}, {"kcs", 0, 0, Handle_kcs},
    {"msgintf", 1, 1, Handle_msgintf}, {"n", 1, 1, Handle_n}, {"H", 1, 1, Handle_H}, {"U", 1, 1, Handle_U},
    {"P", 1, 1, Handle_P}, {"C", 1, 1, Handle_C}, {"updateFRU", 6, 3, Handle_updateFRU},
    {"debugmsg", 0, 0, Handle_debugmsg},
};

struct Parsed {
    int iResult;
    eReturnCodeTag eCode;
};

class DispatcherTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        g_vRun.clear();
        g_sFailOn.clear();
        for (const sOption& s : kOptions) {
            ASSERT_EQ(eRcSuccess, m_sDispatcher.FunctionRegistry(s.pchName, s.u8Max, s.u8Min, s.pfnHandler));
        }
    }

    // Parses a line given as words (the program name is added).
    Parsed Parse(const std::vector<std::string>& vWords)
    {
        m_vStorage = vWords;
        m_vStorage.insert(m_vStorage.begin(), "tavrin");
        m_vArgv.clear();
        for (auto& s : m_vStorage) m_vArgv.push_back(&s[0]);
        m_vArgv.push_back(nullptr);
        int iResult = m_sDispatcher.ParseCommandOptions(static_cast<int16_t>(m_vStorage.size()), m_vArgv.data());
        return {iResult, m_sDispatcher.ReturnCode()};
    }

    TCommandLineExecution m_sDispatcher{15};
    std::vector<std::string> m_vStorage;
    std::vector<char*> m_vArgv;
};

const std::vector<std::string> kLan = {"-n", "lanplus", "-H", "10.0.0.1", "-U", "u", "-P", "p", "-C", "3"};

std::vector<std::string> Join(std::vector<std::string> a, const std::vector<std::string>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct LineCase {
    std::vector<std::string> vWords;
    eReturnCodeTag eExpected;
};

class DispatcherLineTest : public DispatcherTest, public ::testing::WithParamInterface<LineCase> {};

TEST_P(DispatcherLineTest, GivesItsReturnCode)
{
    Parsed s = Parse(GetParam().vWords);
    EXPECT_EQ(GetParam().eExpected, s.eCode);
    EXPECT_EQ(GetParam().eExpected == eRcSuccess ? 1 : 0, s.iResult);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, DispatcherLineTest,
    ::testing::Values(
        LineCase{{}, eRcNoCommandOption}, LineCase{{"file.sdr", "-d"}, eRcIncorrectFormat},
        LineCase{{"-"}, eRcIncorrectFormat}, LineCase{{"-d", "a", "-"}, eRcUnrecognizedOption},
        LineCase{{"/d", "file"}, eRcSuccess}, LineCase{{"-D", "file"}, eRcUnrecognizedOption},
        LineCase{{"--d", "file"}, eRcUnrecognizedOption}, LineCase{{"-d", "/tmp/a.sdr"}, eRcUnrecognizedOption},
        LineCase{{"-d", "a", "-d", "b"}, eRcDuplicateOption},
        LineCase{{"-d", "a", "-u", "b", "encoding=ascii"}, eRcIncompatibleOptions},
        LineCase{{"-d"}, eRcIncorrectFormat}, LineCase{{"-d", "a", "b", "c"}, eRcIncorrectFormat},
        LineCase{{"-h", "extra"}, eRcIncorrectFormat}, LineCase{{"-debugmsg"}, eRcNoOperationalCommand},
        LineCase{{"-msgintf", "kcsio"}, eRcNoOperationalCommand}, LineCase{kLan, eRcNoOperationalCommand},
        LineCase{{"-debugmsg", "-d", "file"}, eRcSuccess}, LineCase{{"-d", "file", "-msgintf", "kcsio"}, eRcSuccess},
        LineCase{{"-debugmsg", "-version"}, eRcIncompatibleOptions},
        LineCase{{"-debugmsg", "-h"}, eRcIncompatibleOptions},
        LineCase{{"-version", "-msgintf", "kcsio"}, eRcIncompatibleOptions},
        LineCase{Join({"-d", "a", "-msgintf", "kcsio"}, kLan), eRcIncompatibleOptions},
        LineCase{{"-d", "a", "-H", "10.0.0.1"}, eRcInvalidLanOptions},
        LineCase{{"-d", "a", "-n", "lanplus", "-H", "h", "-U", "u", "-P"}, eRcInvalidLanOptions},
        LineCase{{"-d", "a", "-n", "lanplus", "-H", "h", "-U", "u", "-P", "-C", "3"}, eRcIncorrectFormat},
        LineCase{Join({"-t", "a"}, kLan), eRcSuccess}, LineCase{{"-kcs"}, eRcNoOperationalCommand},
        LineCase{{"-kcs", "-debugmsg"}, eRcNoOperationalCommand}, LineCase{{"-kcs", "-d", "a"}, eRcIncompatibleOptions},
        LineCase{{"-updateFRU", "a", "b"}, eRcIncorrectFormat},
        LineCase{{"-updateFRU", "a", "b", "c", "d", "e", "f", "g"}, eRcIncorrectFormat}));

TEST_F(DispatcherTest, SixteenthArgumentIsRejectedWithoutOverrun)
{
    std::vector<std::string> vWords = {"-d"};
    for (int i = 0; i < 300; i++) vWords.push_back("x");  // also past the 8-bit argument count
    EXPECT_EQ(eRcIncorrectFormat, Parse(vWords).eCode);
}

TEST_F(DispatcherTest, RunsNoArgumentThenRouteOptionsThenTheOperation)
{
    ASSERT_EQ(1, Parse(Join({"-d", "a", "-debugmsg"}, kLan)).iResult);
    EXPECT_EQ(eRcSuccess, m_sDispatcher.Trigger());
    EXPECT_EQ((std::vector<std::string>{"debugmsg", "n", "H", "U", "P", "C", "d"}), g_vRun);
    EXPECT_EQ(7, m_sDispatcher.ExecutedCount());
}

TEST_F(DispatcherTest, AFailingHandlerStopsTheRun)
{
    g_sFailOn = "H";
    ASSERT_EQ(1, Parse(Join({"-d", "a"}, kLan)).iResult);
    EXPECT_EQ(eRcHandlerFailed, m_sDispatcher.Trigger());
    EXPECT_EQ((std::vector<std::string>{"n", "H"}), g_vRun);
}

TEST_F(DispatcherTest, TriggersOneOptionByItsTablePosition)
{
    ASSERT_EQ(1, Parse({"-d", "a.sdr", "fruID=1"}).iResult);
    // Entry 2 is -d; an option not on the line, or past the table, gives 2.
    EXPECT_EQ(eRcSuccess, m_sDispatcher.Trigger(2));
    EXPECT_EQ(eRcIncompatibleOptions, m_sDispatcher.Trigger(1));
    EXPECT_EQ(eRcIncompatibleOptions, m_sDispatcher.Trigger(16));
}

TEST(DispatcherRegistry, RefusesNullNamesHandlersAndAFullTable)
{
    TCommandLineExecution sDispatcher(1);
    EXPECT_EQ(eRcRegisterFailed, sDispatcher.FunctionRegistry(nullptr, 0, 0, Handle_h));
    EXPECT_EQ(eRcRegisterFailed, sDispatcher.FunctionRegistry("h", 0, 0, nullptr));
    EXPECT_EQ(eRcRegisterFailed, sDispatcher.FunctionRegistry("an-overlong-option", 0, 0, Handle_h));
    EXPECT_EQ(eRcSuccess, sDispatcher.FunctionRegistry("h", 0, 0, Handle_h));
    EXPECT_EQ(eRcRegisterFailed, sDispatcher.FunctionRegistry("d", 0, 0, Handle_d));
}

}  // namespace
