// Helpers shared by the tests: running a program with its streams captured, and
// scratch directories that clean up after themselves.
#ifndef TAVRIN_TESTS_TESTSUPPORT_H
#define TAVRIN_TESTS_TESTSUPPORT_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct RunResult {
    int iStatus = -1;  // exit status, or -1 if the program didn't exit normally
    std::string sOut;
    std::string sErr;
};

struct RunOptions {
    std::string sWorkDir;                                   // empty: the current one
    std::vector<std::pair<std::string, std::string>> vEnv;  // added or replaced variables
    std::string sStdin;                                     // fed to standard input, then closed
};

// Runs argv[0] (looked up on PATH when it has no slash) with the given arguments.
RunResult RunProgram(const std::vector<std::string>& vArgs, const RunOptions& sOptions = RunOptions());

// The build directory and the source directory of this build.
std::string BuildDir();
std::string SourceDir();

// A fresh directory under TMPDIR (or /tmp), removed with everything in it at the end.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return m_sPath; }
    std::string File(const std::string& sName) const { return m_sPath + "/" + sName; }

private:
    std::string m_sPath;
};

void WriteFileBytes(const std::string& sPath, const std::vector<uint8_t>& vBytes);
std::vector<uint8_t> ReadFileBytes(const std::string& sPath);
void WriteFileText(const std::string& sPath, const std::string& sText);
std::string ReadFileText(const std::string& sPath);

// Standard output of tavrin without the banner in front of it.
std::string AfterBanner(const std::string& sOut);

#endif
