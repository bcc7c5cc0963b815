// A scripted BMC behind DoIPMICommand: an SDR repository with reservations, partial add,
// erase and Initialization Agent statuses, injectable failures and a log of exchanges.
#ifndef TAVRIN_TESTS_FAKESDRBMC_H
#define TAVRIN_TESTS_FAKESDRBMC_H

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "channel/CommandChannel.h"
#include "sdr/SDREntry.h"

using Bytes = std::vector<uint8_t>;
struct FakeExchange { uint8_t u8Command; Bytes vRequest; };
struct FakeFailure { uint8_t u8Command; int iNth; uint8_t u8CompletionCode; };  // n-th exchange of a command

struct FakeSdrBmc {
    std::vector<Bytes> vRecords;         // stored records, BMC-assigned ID in bytes 0-1
    int iCountBias = 0;                  // reported record count minus the real one
    uint16_t u16FreeSpace = 0x2000;
    uint8_t u8Support = 0x06;            // Partial Add and Reserve supported
    std::deque<uint8_t> dEraseProgress;  // answers to Clear SDR Repository, then 0x01
    uint32_t u32AgentBusy = 0;           // Run Initialization Agent answers 0 this often,
    uint8_t u8AgentFinal = 1;            // then this
    uint16_t u16GetSDRReplyLength = 0;   // non-zero: Get SDR responses cut or padded to this
    bool bRisingChain = false;           // Get SDR always reads the first record, next ID = asked + 1
    uint16_t u16LastNextID = 0xFFFF;     // the next record ID given with the last record
    std::vector<FakeFailure> vFailures;
    std::vector<FakeExchange> vLog;
    int aiExchanges[256] = {};
    uint16_t u16Reservation = 0, u16NextID = 0x0101, u16PendingID = 0;
    Bytes vPending;

    int Exchange(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage);
    std::vector<FakeExchange> Logged(uint8_t u8Command) const;
};

// ID, version 0x51, type, a body of u8BodyLength bytes counting up from u8Seed.
Bytes MakeRecord(uint16_t u16ID, uint8_t u8Type, uint8_t u8BodyLength, uint8_t u8Seed = 0);
std::vector<Bytes> WithoutIDs(std::vector<Bytes> vRecords);

// Owns the two lists and the fake BMC behind DoIPMICommand; captures both streams.
class RepositoryTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    static void SetList(SDREntry* psList, const std::vector<Bytes>& vRecords);
    static Bytes Holder(const SDREntry* psList, size_t uIndex);
    std::vector<std::string> BackupFiles() const;  // sdr-backup-* in the working directory
    static void Capture() { testing::internal::CaptureStdout(), testing::internal::CaptureStderr(); }
    void EndCapture() { m_sOut = testing::internal::GetCapturedStdout(), m_sErr = testing::internal::GetCapturedStderr(); }

    FakeSdrBmc m_sBmc;
    std::vector<SDREntry> m_vLocal, m_vRepository;
    std::string m_sOut, m_sErr;
    std::string m_sOldDir;
    std::unique_ptr<TempDir> m_psWorkDir;  // the working directory, for the back-up files
};

#endif
