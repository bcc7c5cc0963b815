// run -- <command> [<arguments>]: a rehearsal. The command runs with this simulator in
// place of the real BMC: the loader's search path starts at the simulator's route
// libraries and PATH at its ipmitool look-alike, both found from where this executable
// lies (sim/bin and sim/lib, in the build tree and installed alike). Afterwards the
// exchange log tells whether the simulator was really reached.
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__FreeBSD__)
#include <sys/sysctl.h>
#include <sys/types.h>
#endif

#include "CliCommands.h"
#include "SimStateFile.h"

namespace {

// Where the simulator's front ends lie, and the state they serve.
struct sRunPlaces {
    std::string sBinDir;    // tavrin-bmcsim and the ipmitool look-alike
    std::string sLibDir;    // libsarnic.so and libbrevok.so of the simulator
    std::string sStatePath;  // absolute, so the command may change its folder
};

// The path of this executable with symbolic links resolved; empty when unknown.
std::string OwnExecutable()
{
    char achPath[PATH_MAX] = {0};
#if defined(__FreeBSD__)
    int aiMib[4] = {CTL_KERN, KERN_PROC, KERN_PROC_PATHNAME, -1};
    size_t uSize = sizeof(achPath) - 1;
    if (sysctl(aiMib, 4, achPath, &uSize, nullptr, 0) != 0) {
        return "";
    }
#else
    ssize_t iLength = readlink("/proc/self/exe", achPath, sizeof(achPath) - 1);
    if (iLength <= 0) {
        return "";
    }
    achPath[iLength] = '\0';
#endif
    char achReal[PATH_MAX];
    return realpath(achPath, achReal) != nullptr ? std::string(achReal) : std::string();
}

std::string AbsolutePath(const char* pchPath)
{
    if (pchPath[0] == '/') {
        return pchPath;
    }
    char achCwd[PATH_MAX];
    return getcwd(achCwd, sizeof(achCwd)) != nullptr ? std::string(achCwd) + "/" + pchPath : std::string();
}

// 1 with the places filled when every front end is there; 0 after saying what is missing.
int FindPlaces(const char* pchStatePath, sRunPlaces* psPlaces)
{
    std::string sExe = OwnExecutable();
    if (sExe.empty()) {
        CliFail("run: cannot find where tavrin-bmcsim itself lies");
        return 0;
    }
    psPlaces->sBinDir = sExe.substr(0, sExe.rfind('/'));
    psPlaces->sLibDir = psPlaces->sBinDir.substr(0, psPlaces->sBinDir.rfind('/')) + "/lib";
    psPlaces->sStatePath = AbsolutePath(pchStatePath);
    const std::string asNeeded[] = {psPlaces->sLibDir + "/libsarnic.so", psPlaces->sLibDir + "/libbrevok.so",
                                    psPlaces->sBinDir + "/ipmitool"};
    for (const std::string& sFile : asNeeded) {
        if (access(sFile.c_str(), R_OK) != 0) {
            CliFail("run: %s is missing, so the command could reach a real BMC; nothing run", sFile.c_str());
            return 0;
        }
    }
    if (psPlaces->sStatePath.empty()) {
        CliFail("run: cannot resolve the state file's path");
        return 0;
    }
    return 1;
}

// The exchange counter of the state: it grows with every exchange any front end serves.
int ReadExchangeCounter(const char* pchStatePath, uint32_t* pu32Counter)
{
    sBmcSimState sState;
    sSimError sError;
    SimInitState(&sState);
    if (!SimLoadState(pchStatePath, &sState, &sError)) {
        CliFail("run: %s", sError.achText);
        return 0;
    }
    *pu32Counter = sState.u32NextLogSequence;
    return 1;
}

// Puts the simulator first on the loader's search path and on PATH, and names its state.
int PrepareEnvironment(const sRunPlaces& sPlaces)
{
    const char* pchLibraries = getenv("LD_LIBRARY_PATH");
    const char* pchPath = getenv("PATH");
    std::string sLibraries = sPlaces.sLibDir + (pchLibraries != nullptr && *pchLibraries != '\0'
                                                    ? std::string(":") + pchLibraries : std::string());
    std::string sPath = sPlaces.sBinDir + ":" + (pchPath != nullptr ? pchPath : "/usr/local/bin:/usr/bin:/bin");
    if (setenv("LD_LIBRARY_PATH", sLibraries.c_str(), 1) != 0 || setenv("PATH", sPath.c_str(), 1) != 0 ||
        setenv(BMCSIM_STATE_ENV, sPlaces.sStatePath.c_str(), 1) != 0) {
        CliFail("run: cannot set the environment: %s", strerror(errno));
        return 0;
    }
    return 1;
}

// Runs the command and waits for it, as a shell would: interrupts reach the command,
// not this process. Returns its exit status, 128 + the signal that ended it, 126 or
// 127 when it could not be started.
int RunAndWait(char** ppchCommand)
{
    fflush(stdout);
    fflush(stderr);
    pid_t iChild = fork();
    if (iChild < 0) {
        CliFail("run: cannot start %s: %s", ppchCommand[0], strerror(errno));
        return 126;
    }
    if (iChild == 0) {
        execvp(ppchCommand[0], ppchCommand);
        int iError = errno;
        fprintf(stderr, "tavrin-bmcsim: run: cannot run %s: %s\n", ppchCommand[0], strerror(iError));
        _exit(iError == ENOENT ? 127 : 126);
    }
    void (*pfnOldInt)(int) = signal(SIGINT, SIG_IGN);
    void (*pfnOldQuit)(int) = signal(SIGQUIT, SIG_IGN);
    int iWait = 0;
    while (waitpid(iChild, &iWait, 0) < 0 && errno == EINTR) {
    }
    signal(SIGINT, pfnOldInt);
    signal(SIGQUIT, pfnOldQuit);
    if (WIFSIGNALED(iWait)) {
        return 128 + WTERMSIG(iWait);
    }
    return WIFEXITED(iWait) ? WEXITSTATUS(iWait) : 126;
}

// Whether the command line names an operation that needs a BMC: all but -t, -h and
// -version (options may start with '-' or '/').
int NeedsBmc(int iArgc, char** ppchArgv)
{
    for (int i = 1; i < iArgc; i++) {
        const char* pchWord = ppchArgv[i];
        if ((pchWord[0] == '-' || pchWord[0] == '/') &&
            (strcmp(pchWord + 1, "t") == 0 || strcmp(pchWord + 1, "h") == 0 || strcmp(pchWord + 1, "version") == 0)) {
            return 0;
        }
    }
    return 1;
}

void WarnNotReached(const sRunPlaces& sPlaces)
{
    fprintf(stderr,
            "tavrin-bmcsim: ******************************************************************\n"
            "tavrin-bmcsim: NOT A REHEARSAL: the command made no exchange with the simulated BMC.\n"
            "tavrin-bmcsim: If it needed a BMC, it may have reached a REAL one. Check that it\n"
            "tavrin-bmcsim: loads libsarnic.so/libbrevok.so by bare name and runs ipmitool by PATH.\n"
            "tavrin-bmcsim: (state %s, libraries %s, ipmitool %s)\n"
            "tavrin-bmcsim: ******************************************************************\n",
            sPlaces.sStatePath.c_str(), sPlaces.sLibDir.c_str(), sPlaces.sBinDir.c_str());
}

}  // namespace

int CliRun(const char* pchStatePath, int iArgc, char** ppchArgv)
{
    if (iArgc > 0 && strcmp(ppchArgv[0], "--") == 0) {
        iArgc--;
        ppchArgv++;
    }
    if (iArgc == 0) {
        CliFail("usage: tavrin-bmcsim run -- <command> [<arguments>]");
        return RUN_USAGE;
    }
    sRunPlaces sPlaces;
    uint32_t u32Before = 0;
    if (!FindPlaces(pchStatePath, &sPlaces) || !ReadExchangeCounter(sPlaces.sStatePath.c_str(), &u32Before) ||
        !PrepareEnvironment(sPlaces)) {
        return RUN_NOT_REHEARSED;
    }
    int iStatus = RunAndWait(ppchArgv);
    if (!NeedsBmc(iArgc, ppchArgv)) {
        return iStatus;
    }
    uint32_t u32After = u32Before;
    if (!ReadExchangeCounter(sPlaces.sStatePath.c_str(), &u32After) || u32After == u32Before) {
        WarnNotReached(sPlaces);
        return RUN_NOT_REHEARSED;
    }
    return iStatus;
}
