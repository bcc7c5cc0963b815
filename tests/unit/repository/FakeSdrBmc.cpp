#include "FakeSdrBmc.h"

#include <unistd.h>

#include <cstring>
#include <filesystem>

namespace {

FakeSdrBmc* s_psBmc = nullptr;

uint16_t Word(const Bytes& vData, size_t uAt) { return static_cast<uint16_t>(vData[uAt] | vData[uAt + 1] << 8); }
Bytes WordBytes(uint16_t u16Word) { return {static_cast<uint8_t>(u16Word), static_cast<uint8_t>(u16Word >> 8)}; }

uint8_t GetSDR(FakeSdrBmc& sBmc, const Bytes& vRequest, Bytes* pvResponse)
{
    for (size_t i = 0; i < sBmc.vRecords.size(); i++) {
        const Bytes& vRecord = sBmc.vRecords[i];
        if (Word(vRequest, 2) != 0 && !sBmc.bRisingChain && Word(vRecord, 0) != Word(vRequest, 2)) continue;
        *pvResponse = WordBytes(i + 1 < sBmc.vRecords.size() ? Word(sBmc.vRecords[i + 1], 0) : sBmc.u16LastNextID);
        if (sBmc.bRisingChain) *pvResponse = WordBytes(static_cast<uint16_t>(Word(vRequest, 2) + 1));
        for (size_t u = vRequest[4]; u < size_t{vRequest[4]} + vRequest[5]; u++) {
            pvResponse->push_back(u < vRecord.size() ? vRecord[u] : 0);
        }
        if (sBmc.u16GetSDRReplyLength != 0) pvResponse->resize(sBmc.u16GetSDRReplyLength);
        return 0;
    }
    return 0xCB;  // requested record not present
}

uint8_t PartialAdd(FakeSdrBmc& sBmc, const Bytes& vRequest, Bytes* pvResponse)
{
    if (Word(vRequest, 2) == 0 && vRequest[4] == 0) {
        sBmc.vPending.clear(), sBmc.u16PendingID = sBmc.u16NextID++;
    } else if (Word(vRequest, 2) != sBmc.u16PendingID || vRequest[4] != sBmc.vPending.size()) {
        return 0xD5;  // cannot execute in this state
    }
    sBmc.vPending.insert(sBmc.vPending.end(), vRequest.begin() + 6, vRequest.end());
    if (vRequest[5] == 1) {
        sBmc.vPending[0] = static_cast<uint8_t>(sBmc.u16PendingID), sBmc.vPending[1] = sBmc.u16PendingID >> 8;
        sBmc.vRecords.push_back(sBmc.vPending);
    }
    *pvResponse = WordBytes(sBmc.u16PendingID);
    return 0;
}

uint8_t Answer(FakeSdrBmc& sBmc, uint8_t u8Command, const Bytes& vRequest, Bytes* pvResponse)
{
    const bool bReserved = vRequest.size() >= 2 && Word(vRequest, 0) == sBmc.u16Reservation;
    switch (u8Command) {
    case IPMI_CMD_GET_SDR_REPOSITORY_INFO:
        *pvResponse = {0x51, 0, 0, static_cast<uint8_t>(sBmc.u16FreeSpace), static_cast<uint8_t>(sBmc.u16FreeSpace >> 8),
                       0, 0, 0, 0, 0, 0, 0, 0, sBmc.u8Support};
        (*pvResponse)[1] = static_cast<uint8_t>(sBmc.vRecords.size() + sBmc.iCountBias);
        return 0;
    case IPMI_CMD_RESERVE_SDR_REPOSITORY:
        *pvResponse = WordBytes(++sBmc.u16Reservation);
        return 0;
    case IPMI_CMD_GET_SDR:
        return bReserved ? GetSDR(sBmc, vRequest, pvResponse) : 0xC5;
    case IPMI_CMD_PARTIAL_ADD_SDR:
        return bReserved ? PartialAdd(sBmc, vRequest, pvResponse) : 0xC5;
    case IPMI_CMD_CLEAR_SDR_REPOSITORY:
        if (!bReserved || std::memcmp(&vRequest[2], "CLR", 3) != 0) return 0xC5;
        if (vRequest[5] == 0xAA) sBmc.vRecords.clear();
        *pvResponse = {sBmc.dEraseProgress.empty() ? uint8_t{0x01} : sBmc.dEraseProgress.front()};
        if (!sBmc.dEraseProgress.empty()) sBmc.dEraseProgress.pop_front();
        return 0;
    case IPMI_CMD_RUN_INITIALIZATION_AGENT:
        *pvResponse = {sBmc.u32AgentBusy > 0 ? uint8_t{0} : sBmc.u8AgentFinal};
        if (sBmc.u32AgentBusy > 0) sBmc.u32AgentBusy--;
        return 0;
    }
    return 0xC1;  // invalid command
}

}  // namespace

// The local routes' rule: success is completion code 0 with at least two response bytes,
// or one for the commands whose normal response is a single byte.
int DoIPMICommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage)
{
    std::memset(psMessage->au8ResponseData, 0, sizeof(psMessage->au8ResponseData));
    return s_psBmc->Exchange(u8NetFnLun, u8Command, psMessage);
}

int FakeSdrBmc::Exchange(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage)
{
    const Bytes vRequest(psMessage->au8RequestData, psMessage->au8RequestData + psMessage->u8RequestLength);
    vLog.push_back({u8Command, vRequest});
    const int iNth = ++aiExchanges[u8Command];
    uint8_t u8CC = u8NetFnLun == IPMI_NETFN_STORAGE_LUN0 ? 0 : 0xC1;
    for (const FakeFailure& sFailure : vFailures) {
        if (sFailure.u8Command == u8Command && sFailure.iNth == iNth) u8CC = sFailure.u8CompletionCode;
    }
    Bytes vResponse;
    if (u8CC == 0) u8CC = Answer(*this, u8Command, vRequest, &vResponse);
    if (u8CC != 0) vResponse.clear();
    psMessage->u8CompletionCode = u8CC;
    psMessage->u16ResponseLength = static_cast<uint16_t>(vResponse.size());
    if (!vResponse.empty()) std::memcpy(psMessage->au8ResponseData, vResponse.data(), vResponse.size());
    const bool bOneByte = u8Command == IPMI_CMD_CLEAR_SDR_REPOSITORY || u8Command == IPMI_CMD_RUN_INITIALIZATION_AGENT;
    return u8CC == 0 && vResponse.size() >= (bOneByte ? 1u : 2u) ? 1 : 0;
}

std::vector<FakeExchange> FakeSdrBmc::Logged(uint8_t u8Command) const
{
    std::vector<FakeExchange> vFound;
    for (const FakeExchange& sExchange : vLog) {
        if (sExchange.u8Command == u8Command) vFound.push_back(sExchange);
    }
    return vFound;
}

Bytes MakeRecord(uint16_t u16ID, uint8_t u8Type, uint8_t u8BodyLength, uint8_t u8Seed)
{
    // Sized once and filled: GCC 12 misjudges the bounds of an insert that grows a
    // two-byte vector (-Warray-bounds in optimised builds).
    Bytes vRecord(5 + u8BodyLength);
    vRecord[0] = static_cast<uint8_t>(u16ID);
    vRecord[1] = static_cast<uint8_t>(u16ID >> 8);
    vRecord[2] = 0x51;
    vRecord[3] = u8Type;
    vRecord[4] = u8BodyLength;
    for (uint8_t i = 0; i < u8BodyLength; i++) vRecord[5 + i] = static_cast<uint8_t>(u8Seed + i);
    return vRecord;
}

std::vector<Bytes> WithoutIDs(std::vector<Bytes> vRecords)
{
    for (Bytes& vRecord : vRecords) vRecord[0] = vRecord[1] = 0;
    return vRecords;
}

void RepositoryTest::SetUp()
{
    char achDir[4096];
    m_sOldDir = getcwd(achDir, sizeof(achDir)) != nullptr ? achDir : ".";
    m_psWorkDir.reset(new TempDir);
    ASSERT_EQ(0, chdir(m_psWorkDir->Path().c_str()));
    SDREntry sEmpty = {};
    sEmpty.u16RecordID = SDR_EMPTY_RECORD_ID;
    m_vLocal.assign(SDR_RECORD_LIMIT, sEmpty);
    m_vRepository.assign(SDR_RECORD_LIMIT, sEmpty);
    G_psLocalSDREntryList = m_vLocal.data();
    G_psRepositorySDREntryList = m_vRepository.data();
    s_psBmc = &m_sBmc;
}

void RepositoryTest::TearDown()
{
    G_psLocalSDREntryList = G_psRepositorySDREntryList = nullptr;
    s_psBmc = nullptr;
    EXPECT_EQ(0, chdir(m_sOldDir.c_str()));
    m_psWorkDir.reset();
}

std::vector<std::string> RepositoryTest::BackupFiles() const
{
    std::vector<std::string> vNames;
    for (const auto& sEntry : std::filesystem::directory_iterator(m_psWorkDir->Path())) {
        std::string sName = sEntry.path().filename().string();
        if (sName.rfind("sdr-backup-", 0) == 0) vNames.push_back(sName);
    }
    return vNames;
}

void RepositoryTest::SetList(SDREntry* psList, const std::vector<Bytes>& vRecords)
{
    for (size_t i = 0; i < vRecords.size(); i++) {
        const uint8_t u8Length = static_cast<uint8_t>(vRecords[i].size());
        psList[i] = {Word(vRecords[i], 0), vRecords[i][3], u8Length, u8Length, {}};
        std::memcpy(psList[i].au8RecordData, vRecords[i].data(), u8Length);
    }
}

Bytes RepositoryTest::Holder(const SDREntry* psList, size_t uIndex)
{
    return Bytes(psList[uIndex].au8RecordData, psList[uIndex].au8RecordData + psList[uIndex].u8RecordLength);
}
