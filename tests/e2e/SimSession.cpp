#include "SimSession.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace {

std::vector<uint8_t> HexBytes(const std::string& sHex)
{
    std::vector<uint8_t> v;
    for (size_t i = 0; sHex != "-" && i + 1 < sHex.size(); i += 2) {
        v.push_back(static_cast<uint8_t>(std::stoul(sHex.substr(i, 2), nullptr, 16)));
    }
    return v;
}

std::string Field(const std::string& sLine, const std::string& sName)
{
    size_t uStart = sLine.find(" " + sName + "=");
    if (uStart == std::string::npos) return "";
    uStart += sName.size() + 2;
    return sLine.substr(uStart, sLine.find(' ', uStart) - uStart);
}

}  // namespace

const char* RouteName(Route eRoute)
{
    return eRoute == Route::Driver ? "Driver" : eRoute == Route::KcsIO ? "KcsIO" : "Lan";
}

SimSession::SimSession() : m_sState(m_sDir.File("bmc.state"))
{
    EXPECT_EQ(0, Sim({"init", "admin", "secret"}).iStatus);
    for (const char* pchName : {"sample-v0.sdr", "sample-v1.sdr", "sample-v2.sdr", "sample-server.fru",
                                "sample-card.fru", "sample-server-utf16.fru", "sample-card-utf8.fru"}) {
        WriteFileBytes(File(pchName), ReadFileBytes(SourceDir() + "/examples/" + pchName));
    }
}

RunResult SimSession::Sim(const std::vector<std::string>& vArgs) const
{
    std::vector<std::string> vArgv = {BuildDir() + "/sim/bin/tavrin-bmcsim", "--state", m_sState};
    vArgv.insert(vArgv.end(), vArgs.begin(), vArgs.end());
    return RunProgram(vArgv);
}

RunResult SimSession::Tavrin(Route eRoute, const std::vector<std::string>& vArgs, const std::string& sStdin) const
{
    std::vector<std::string> vArgv = {m_sProgram};
    vArgv.insert(vArgv.end(), vArgs.begin(), vArgs.end());
    if (eRoute == Route::KcsIO) {
        vArgv.insert(vArgv.end(), {"-msgintf", "kcsio"});
    } else if (eRoute == Route::Lan) {
        vArgv.insert(vArgv.end(), {"-n", "lanplus", "-H", "127.0.0.1", "-U", "admin", "-P", "secret", "-C", "3"});
    }
    RunOptions sOptions;
    sOptions.sWorkDir = m_sDir.Path();
    sOptions.sStdin = sStdin;
    const char* pchPath = getenv("PATH");
    sOptions.vEnv = {{"TAVRIN_BMCSIM_STATE", m_sState},
                     {"LD_LIBRARY_PATH", BuildDir() + "/sim/lib"},
                     {"PATH", m_sPathFirst + BuildDir() + "/sim/bin:" + (pchPath != nullptr ? pchPath : "/usr/bin:/bin")}};
    return RunProgram(vArgv, sOptions);
}

std::string SimSession::Records() const
{
    return Sim({"sdr-list"}).sOut;
}

std::string SimSession::RecordsWithoutIDs() const
{
    std::istringstream sLines(Records());
    std::string sResult;
    for (std::string sLine; std::getline(sLines, sLine);) {
        size_t uData = sLine.find("data=");
        sResult += sLine.substr(sLine.find("type="), uData - sLine.find("type=")) + sLine.substr(uData + 5 + 4) + "\n";
    }
    return sResult;
}

std::vector<SimExchange> SimSession::Log() const
{
    std::vector<SimExchange> vLog;
    std::istringstream sLines(Sim({"log"}).sOut);
    for (std::string sLine; std::getline(sLines, sLine);) {
        SimExchange s;
        s.iCommand = static_cast<int>(std::stoul(Field(sLine, "cmd"), nullptr, 16));
        s.vRequest = HexBytes(Field(sLine, "req"));
        std::string sCode = Field(sLine, "cc");
        s.iCompletionCode = (sCode == "--") ? -1 : static_cast<int>(std::stoul(sCode, nullptr, 16));
        s.vResponse = HexBytes(Field(sLine, "rsp"));
        vLog.push_back(s);
    }
    return vLog;
}

void SimSession::ClearLog() const
{
    EXPECT_EQ(0, Sim({"log-clear"}).iStatus);
}
