#include "TestSupport.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

void SetEnvironment(const RunOptions& sOptions)
{
    for (const auto& kv : sOptions.vEnv) {
        setenv(kv.first.c_str(), kv.second.c_str(), 1);
    }
}

// Feeds standard input and drains both output pipes until the child closes them.
void PumpPipes(int iIn, int iOut, int iErr, const std::string& sInput, RunResult& sResult)
{
    size_t uWritten = 0;
    if (sInput.empty()) {
        close(iIn);
        iIn = -1;
    }
    while (iOut >= 0 || iErr >= 0) {
        struct pollfd asFds[3];
        int iCount = 0;
        int aiWhich[3];
        if (iOut >= 0) { asFds[iCount] = {iOut, POLLIN, 0}; aiWhich[iCount++] = 1; }
        if (iErr >= 0) { asFds[iCount] = {iErr, POLLIN, 0}; aiWhich[iCount++] = 2; }
        if (iIn >= 0) { asFds[iCount] = {iIn, POLLOUT, 0}; aiWhich[iCount++] = 0; }
        if (poll(asFds, iCount, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < iCount; i++) {
            if (asFds[i].revents == 0) continue;
            if (aiWhich[i] == 0) {
                ssize_t n = write(iIn, sInput.data() + uWritten, sInput.size() - uWritten);
                if (n > 0) uWritten += static_cast<size_t>(n);
                if (n <= 0 || uWritten == sInput.size()) { close(iIn); iIn = -1; }
                continue;
            }
            int& iFd = (aiWhich[i] == 1) ? iOut : iErr;
            char achBuffer[4096];
            ssize_t n = read(iFd, achBuffer, sizeof(achBuffer));
            if (n > 0) {
                (aiWhich[i] == 1 ? sResult.sOut : sResult.sErr).append(achBuffer, static_cast<size_t>(n));
            } else if (n == 0 || errno != EINTR) {
                close(iFd);
                iFd = -1;
            }
        }
    }
    if (iIn >= 0) close(iIn);
}

}  // namespace

RunResult RunProgram(const std::vector<std::string>& vArgs, const RunOptions& sOptions)
{
    RunResult sResult;
    int aiIn[2], aiOut[2], aiErr[2];
    if (vArgs.empty() || pipe(aiIn) != 0 || pipe(aiOut) != 0 || pipe(aiErr) != 0) {
        return sResult;
    }
    fflush(nullptr);
    pid_t iPid = fork();
    if (iPid == 0) {
        dup2(aiIn[0], 0);
        dup2(aiOut[1], 1);
        dup2(aiErr[1], 2);
        for (int iFd : {aiIn[0], aiIn[1], aiOut[0], aiOut[1], aiErr[0], aiErr[1]}) close(iFd);
        if (!sOptions.sWorkDir.empty() && chdir(sOptions.sWorkDir.c_str()) != 0) _exit(126);
        SetEnvironment(sOptions);
        std::vector<char*> vArgv;
        for (const auto& s : vArgs) vArgv.push_back(const_cast<char*>(s.c_str()));
        vArgv.push_back(nullptr);
        execvp(vArgv[0], vArgv.data());
        _exit(127);
    }
    close(aiIn[0]);
    close(aiOut[1]);
    close(aiErr[1]);
    signal(SIGPIPE, SIG_IGN);
    PumpPipes(aiIn[1], aiOut[0], aiErr[0], sOptions.sStdin, sResult);
    int iWaitStatus = 0;
    if (iPid > 0 && waitpid(iPid, &iWaitStatus, 0) == iPid && WIFEXITED(iWaitStatus)) {
        sResult.iStatus = WEXITSTATUS(iWaitStatus);
    }
    return sResult;
}

std::string BuildDir()
{
    return TAVRIN_TEST_BUILD_DIR;
}

std::string SourceDir()
{
    return TAVRIN_TEST_SOURCE_DIR;
}

TempDir::TempDir()
{
    const char* pchBase = getenv("TMPDIR");
    std::string sTemplate = std::string(pchBase != nullptr ? pchBase : "/tmp") + "/tavrin-test-XXXXXX";
    std::vector<char> vName(sTemplate.begin(), sTemplate.end());
    vName.push_back('\0');
    if (mkdtemp(vName.data()) != nullptr) {
        m_sPath = vName.data();
    }
}

TempDir::~TempDir()
{
    if (!m_sPath.empty()) {
        std::error_code ec;
        std::filesystem::remove_all(m_sPath, ec);
    }
}

void WriteFileBytes(const std::string& sPath, const std::vector<uint8_t>& vBytes)
{
    std::ofstream sFile(sPath, std::ios::binary | std::ios::trunc);
    sFile.write(reinterpret_cast<const char*>(vBytes.data()), static_cast<std::streamsize>(vBytes.size()));
}

std::vector<uint8_t> ReadFileBytes(const std::string& sPath)
{
    std::ifstream sFile(sPath, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(sFile), std::istreambuf_iterator<char>());
}

void WriteFileText(const std::string& sPath, const std::string& sText)
{
    WriteFileBytes(sPath, std::vector<uint8_t>(sText.begin(), sText.end()));
}

std::string ReadFileText(const std::string& sPath)
{
    std::vector<uint8_t> v = ReadFileBytes(sPath);
    return std::string(v.begin(), v.end());
}

std::string AfterBanner(const std::string& sOut)
{
    const size_t uRule = sOut.find(std::string(79, '-') + "\n", 1);
    return uRule == std::string::npos ? sOut : sOut.substr(uRule + 80);
}
