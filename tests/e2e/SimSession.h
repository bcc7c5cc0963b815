// One simulated BMC in a scratch directory, and tavrin run against it on a chosen route.
#ifndef TAVRIN_TESTS_E2E_SIMSESSION_H
#define TAVRIN_TESTS_E2E_SIMSESSION_H

#include <string>
#include <vector>

#include "TestSupport.h"

enum class Route { Driver, KcsIO, Lan };

const char* RouteName(Route eRoute);

// One line of the simulator's exchange log, decoded.
struct SimExchange {
    int iCommand = -1;
    std::vector<uint8_t> vRequest;
    int iCompletionCode = -1;
    std::vector<uint8_t> vResponse;
};

class SimSession {
public:
    SimSession();  // a fresh BMC with LAN login admin/secret and the example files at hand

    RunResult Sim(const std::vector<std::string>& vArgs) const;
    RunResult Tavrin(Route eRoute, const std::vector<std::string>& vArgs, const std::string& sStdin = "") const;

    std::string Records() const;             // the repository, one record a line
    std::string RecordsWithoutIDs() const;   // the same without the IDs, which the BMC assigns
    std::vector<SimExchange> Log() const;    // every exchange since the last ClearLog
    void ClearLog() const;
    std::string File(const std::string& sName) const { return m_sDir.File(sName); }
    const std::string& Dir() const { return m_sDir.Path(); }
    // A directory searched before the simulator's programs, for a stand-in in front of them.
    void PutFirstOnPath(const std::string& sDir) { m_sPathFirst = sDir + ":"; }
    // Tavrin() runs this build of tavrin from now on (tavrin-fixedclock, say).
    void UseProgram(const std::string& sPath) { m_sProgram = sPath; }

private:
    TempDir m_sDir;
    std::string m_sState;
    std::string m_sPathFirst;
    std::string m_sProgram = BuildDir() + "/tavrin";
};

#endif
