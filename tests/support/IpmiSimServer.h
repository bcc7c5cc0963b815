// OpenIPMI's BMC simulator, ipmi_sim, as a real LAN peer for tests: one BMC on
// 127.0.0.1, UDP port 623, with one administrator, reached with
// "ipmitool -I lanplus -C 3". Port 623 is fixed, so binding it needs root, and only one
// simulator may run at a time (the tests that use it share a CTest resource lock).
#ifndef TAVRIN_TESTS_IPMISIMSERVER_H
#define TAVRIN_TESTS_IPMISIMSERVER_H

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestSupport.h"

// A FRU device of the BMC: u16Size bytes, the first ones vData, the rest zero.
struct IpmiSimFruDevice {
    uint8_t u8DeviceID;
    uint16_t u16Size;
    std::vector<uint8_t> vData;
};

class IpmiSimServer {
public:
    static constexpr const char* kHost = "127.0.0.1";
    static constexpr const char* kUserName = "tavrin";
    static constexpr const char* kPassword = "Sim-Pass1";
    static constexpr int kCipherSuite = 3;
    static constexpr int kPort = 623;

    IpmiSimServer() = default;
    ~IpmiSimServer();  // stops the simulator
    IpmiSimServer(const IpmiSimServer&) = delete;
    IpmiSimServer& operator=(const IpmiSimServer&) = delete;

    // Writes the configuration, starts the simulator with these records in the BMC's main
    // SDR repository (each one whole, header included; the simulator numbers them from 1
    // in this order) and these FRU devices, and waits until Get Device ID is answered over
    // RMCP+. False, with Failure() telling why, if it doesn't come up; nothing is left
    // running then.
    bool Start(const std::vector<std::vector<uint8_t>>& vMainSDRRecords,
               const std::vector<IpmiSimFruDevice>& vFruDevices = {});
    // SIGTERM to the simulator's process group, SIGKILL if it doesn't end; waits for it.
    void Stop();

    const std::string& Failure() const { return m_sFailure; }
    std::string LogText() const { return ReadFileText(m_sDir.File("ipmi_sim.log")); }

private:
    void WriteConfiguration(const std::vector<std::vector<uint8_t>>& vMainSDRRecords,
                            const std::vector<IpmiSimFruDevice>& vFruDevices) const;
    bool Launch();
    bool WaitUntilAnswering();
    bool HasExited();
    bool TakePortLock();
    void ReleasePortLock();

    TempDir m_sDir;
    pid_t m_iPid = -1;
    int m_iLockFd = -1;
    std::string m_sFailure;
};

// Empty when the simulator can run here; otherwise what is missing (a tool, root rights).
std::string IpmiSimUnavailableReason();

// True when the environment variable CI is "true": there the simulator must be usable.
bool IsContinuousIntegrationRun();

// Skips the current test when the simulator can't run here, and fails it instead in CI.
// For SetUp() or a test body.
#define TAVRIN_REQUIRE_IPMI_SIM()                                              \
    do {                                                                       \
        const std::string sWhyNot_ = IpmiSimUnavailableReason();               \
        if (!sWhyNot_.empty()) {                                               \
            if (IsContinuousIntegrationRun()) FAIL() << sWhyNot_ << " (CI)";   \
            GTEST_SKIP() << sWhyNot_;                                          \
        }                                                                      \
    } while (0)

#endif
