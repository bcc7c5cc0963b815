#include "IpmiSimServer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#ifdef __FreeBSD__
#include <sys/procctl.h>
#endif

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

const int kStartTries = 50;               // readiness probes, ...
const useconds_t kStartPauseUs = 100000;  // ... 100 ms apart
const int kStopTries = 50;                // looks for the end after SIGTERM, ...
const useconds_t kStopPauseUs = 20000;    // ... 20 ms apart, then SIGKILL
const unsigned kBytesPerLine = 16;        // record bytes per line of the command file

bool IsOnPath(const std::string& sName)
{
    const char* pchPath = getenv("PATH");
    std::istringstream sDirs(pchPath != nullptr ? pchPath : "");
    std::string sDir;
    while (std::getline(sDirs, sDir, ':')) {
        if (!sDir.empty() && access((sDir + "/" + sName).c_str(), X_OK) == 0) return true;
    }
    return false;
}

// 1 if some UDP socket of this machine is bound to the port, 0 if none is, -1 if this
// platform gives no cheap way to tell.
int UdpPortState(int iPort)
{
#ifdef __linux__
    for (const char* pchTable : {"/proc/net/udp", "/proc/net/udp6"}) {
        std::ifstream sTable(pchTable);
        std::string sLine;
        std::getline(sTable, sLine);  // column titles
        while (std::getline(sTable, sLine)) {
            // "  sl  local_address ...": the local address is hex "ADDRESS:PORT".
            std::istringstream sFields(sLine);
            std::string sSlot, sLocal;
            sFields >> sSlot >> sLocal;
            size_t uColon = sLocal.rfind(':');
            if (uColon != std::string::npos && strtol(sLocal.c_str() + uColon + 1, nullptr, 16) == iPort) return 1;
        }
    }
    return 0;
#else
    (void)iPort;
    return -1;
#endif
}

std::string LanConfText()
{
    // RMCP+ needs the channel's GUID: without the guid line ipmitool -I lanplus gets no
    // session. Cipher suites 0 to 3 are then all offered.
    return std::string("name \"tavrin\"\n"
                       "startlan 1\n"
                       "  addr ") + IpmiSimServer::kHost + " " + std::to_string(IpmiSimServer::kPort) + "\n"
           "  priv_limit admin\n"
           "  guid a5a5d1c0e1f20304a5a5d1c0e1f20304\n"
           "endlan\n"
           "user 2 true \"" + IpmiSimServer::kUserName + "\" \"" + IpmiSimServer::kPassword + "\" admin 10\n";
}

// A command line with the bytes behind it, continued with a backslash every 16 bytes.
std::string LineWithBytes(std::string sLine, const std::vector<uint8_t>& vBytes)
{
    for (size_t i = 0; i < vBytes.size(); i++) {
        if (i > 0 && i % kBytesPerLine == 0) sLine += " \\\n   ";
        char achByte[8];
        snprintf(achByte, sizeof(achByte), " 0x%02x", vBytes[i]);
        sLine += achByte;
    }
    return sLine + "\n";
}

std::string CommandFileText(const std::vector<std::vector<uint8_t>>& vMainSDRRecords,
                            const std::vector<IpmiSimFruDevice>& vFruDevices)
{
    // The BMC at IPMB address 0x20; additional device support 0x9f makes it, among
    // others, an SDR repository device. It is enabled last: a disabled MC opens no
    // session, so an answer to Get Device ID means that every line before ran.
    std::string sText = "mc_setbmc 0x20\n"
                        "mc_add 0x20 0x00 no-device-sdrs 0x01 0x01 0x00 0x9f 0x001291 0x0f02\n";
    for (const auto& vRecord : vMainSDRRecords) sText += LineWithBytes("main_sdr_add 0x20", vRecord);
    for (const IpmiSimFruDevice& s : vFruDevices) {
        sText += LineWithBytes("mc_add_fru_data 0x20 " + std::to_string(s.u8DeviceID) + " " + std::to_string(s.u16Size) +
                                   " data",
                               s.vData);
    }
    return sText + "mc_enable 0x20\n";
}

std::string DescribeWaitStatus(int iWaitStatus)
{
    if (WIFEXITED(iWaitStatus)) return "exited with status " + std::to_string(WEXITSTATUS(iWaitStatus));
    if (WIFSIGNALED(iWaitStatus)) return "was killed by signal " + std::to_string(WTERMSIG(iWaitStatus));
    return "ended";
}

// In the child: its own process group, killed with the test process if that dies
// first, standard input from /dev/null and both outputs into the log.
void PrepareChild(pid_t iParent, const std::string& sLog)
{
    setpgid(0, 0);
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
#ifdef __FreeBSD__
    int iSignal = SIGKILL;
    procctl(P_PID, 0, PROC_PDEATHSIG_CTL, &iSignal);
#endif
    if (getppid() != iParent) _exit(125);
    int iNull = open("/dev/null", O_RDONLY);
    int iLog = open(sLog.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (iNull < 0 || iLog < 0) _exit(126);
    dup2(iNull, 0);
    dup2(iLog, 1);
    dup2(iLog, 2);
    close(iNull);
    close(iLog);
}

}  // namespace

IpmiSimServer::~IpmiSimServer()
{
    Stop();
}

bool IpmiSimServer::Start(const std::vector<std::vector<uint8_t>>& vMainSDRRecords,
                          const std::vector<IpmiSimFruDevice>& vFruDevices)
{
    m_sFailure.clear();
    if (m_iPid > 0) {
        m_sFailure = "ipmi_sim is already running";
        return false;
    }
    if (m_sDir.Path().empty()) {
        m_sFailure = "no temporary directory for the ipmi_sim configuration";
        return false;
    }
    if (!TakePortLock()) return false;
    if (UdpPortState(kPort) == 1) {
        m_sFailure = "UDP port " + std::to_string(kPort) +
                     " is already bound by another process (an ipmi_sim left over?)";
        return false;
    }
    WriteConfiguration(vMainSDRRecords, vFruDevices);
    if (!Launch()) return false;
    if (WaitUntilAnswering()) return true;
    Stop();
    return false;
}

void IpmiSimServer::WriteConfiguration(const std::vector<std::vector<uint8_t>>& vMainSDRRecords,
                                       const std::vector<IpmiSimFruDevice>& vFruDevices) const
{
    WriteFileText(m_sDir.File("lan.conf"), LanConfText());
    WriteFileText(m_sDir.File("commands"), CommandFileText(vMainSDRRecords, vFruDevices));
    mkdir(m_sDir.File("state").c_str(), 0755);
}

bool IpmiSimServer::Launch()
{
    const std::string sLog = m_sDir.File("ipmi_sim.log");
    std::vector<std::string> vArgs = {"ipmi_sim", "-c", m_sDir.File("lan.conf"), "-f", m_sDir.File("commands"),
                                      "-s", m_sDir.File("state"), "-n"};
    std::vector<char*> vArgv;
    for (auto& s : vArgs) vArgv.push_back(&s[0]);
    vArgv.push_back(nullptr);

    const pid_t iParent = getpid();
    fflush(nullptr);
    pid_t iPid = fork();
    if (iPid == 0) {
        PrepareChild(iParent, sLog);
        execvp(vArgv[0], vArgv.data());
        _exit(127);
    }
    if (iPid < 0) {
        m_sFailure = "fork failed";
        return false;
    }
    setpgid(iPid, iPid);  // also here, so that the group exists before any kill(-pid)
    m_iPid = iPid;
    return true;
}

// Probes with Get Device ID over RMCP+ until it is answered, at most kStartTries times.
// On Linux a probe waits until the simulator has bound its port: a request to a port
// that nobody listens on would cost ipmitool its whole time-out.
bool IpmiSimServer::WaitUntilAnswering()
{
    const std::vector<std::string> vProbe = {"ipmitool", "-I", "lanplus", "-H", kHost, "-U", kUserName, "-P", kPassword,
                                             "-C", std::to_string(kCipherSuite), "-N", "1", "-R", "1",
                                             "raw", "0x06", "0x01"};
    RunResult sLast;
    for (int iTry = 0; iTry < kStartTries; iTry++) {
        if (iTry > 0) usleep(kStartPauseUs);
        if (HasExited()) return false;
        if (UdpPortState(kPort) == 0) continue;
        sLast = RunProgram(vProbe);
        if (sLast.iStatus == 0) return true;
    }
    m_sFailure = "ipmi_sim didn't answer Get Device ID after " + std::to_string(kStartTries) +
                 " tries; last ipmitool output: " + sLast.sOut + sLast.sErr + "; ipmi_sim log: " + LogText();
    return false;
}

// Reaps the simulator if it has ended, and says so in Failure().
bool IpmiSimServer::HasExited()
{
    int iWaitStatus = 0;
    pid_t iResult = waitpid(m_iPid, &iWaitStatus, WNOHANG);
    if (iResult == 0 || (iResult < 0 && errno == EINTR)) return false;
    m_sFailure = "ipmi_sim " + (iResult == m_iPid ? DescribeWaitStatus(iWaitStatus) : std::string("is gone")) +
                 "; its log: " + LogText();
    m_iPid = -1;
    return true;
}

// Port 623 is one per machine: builds of other checkouts may run the simulator at the
// same time, so every start waits for a machine-wide lock that Stop() gives back.
bool IpmiSimServer::TakePortLock()
{
    m_iLockFd = open("/tmp/tavrin-ipmi-sim-port.lock", O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_iLockFd < 0 || flock(m_iLockFd, LOCK_EX) != 0) {
        m_sFailure = "can't take the lock of UDP port " + std::to_string(kPort);
        ReleasePortLock();
        return false;
    }
    return true;
}

void IpmiSimServer::ReleasePortLock()
{
    if (m_iLockFd >= 0) close(m_iLockFd);
    m_iLockFd = -1;
}

void IpmiSimServer::Stop()
{
    if (m_iPid <= 0) {
        ReleasePortLock();
        return;
    }
    const std::string sFailure = m_sFailure;
    // The group is signalled only while its leader is not yet reaped, so its ID is still ours.
    kill(-m_iPid, SIGTERM);
    for (int iTry = 0; iTry < kStopTries; iTry++) {
        if (HasExited()) break;
        usleep(kStopPauseUs);
    }
    if (m_iPid > 0) {
        kill(-m_iPid, SIGKILL);
        waitpid(m_iPid, nullptr, 0);
        m_iPid = -1;
    }
    ReleasePortLock();
    m_sFailure = sFailure;
}

std::string IpmiSimUnavailableReason()
{
    if (!IsOnPath("ipmi_sim")) return "ipmi_sim (Debian package openipmi) is not installed";
    if (!IsOnPath("ipmitool")) return "ipmitool is not installed";
    if (geteuid() != 0) return "ipmi_sim must bind UDP port 623, which needs root";
    return "";
}

bool IsContinuousIntegrationRun()
{
    const char* pchCI = getenv("CI");
    return pchCI != nullptr && std::string(pchCI) == "true";
}
