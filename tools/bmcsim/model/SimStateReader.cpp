// Reading the state back from its text form (the format is described in SimStateFile.h).
// Every field is checked for its range; anything unexpected refuses the whole file.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SimFaults.h"
#include "SimStateFile.h"

namespace {

typedef std::vector<std::string> TTokens;

// Reads numbers and hex fields one after another, remembering the first failure.
struct sFieldReader {
    const TTokens& vsTokens;
    size_t uNext;
    bool bGood;

    int64_t Number(int64_t i64Min, int64_t i64Max)
    {
        if (!bGood || uNext >= vsTokens.size()) {
            bGood = false;
            return 0;
        }
        const char* pchText = vsTokens[uNext++].c_str();
        char* pchEnd = nullptr;
        errno = 0;
        long long llValue = strtoll(pchText, &pchEnd, 10);
        if (errno != 0 || pchEnd == pchText || *pchEnd != '\0' || llValue < i64Min || llValue > i64Max) {
            bGood = false;
            return 0;
        }
        return llValue;
    }

    std::vector<uint8_t> Bytes(size_t uMax)
    {
        std::vector<uint8_t> vu8Bytes;
        if (!bGood || uNext >= vsTokens.size() || !SimParseHexString(vsTokens[uNext++], &vu8Bytes) ||
            vu8Bytes.size() > uMax) {
            bGood = false;
            vu8Bytes.clear();
        }
        return vu8Bytes;
    }

    std::string Word()
    {
        if (!bGood || uNext >= vsTokens.size()) {
            bGood = false;
            return "";
        }
        return vsTokens[uNext++];
    }

    bool Done() const { return bGood && uNext == vsTokens.size(); }
};

TTokens SplitLine(const std::string& sLine)
{
    TTokens vsTokens;
    size_t uStart = 0;
    while (uStart <= sLine.size()) {
        size_t uBlank = sLine.find(' ', uStart);
        if (uBlank == std::string::npos) {
            uBlank = sLine.size();
        }
        vsTokens.push_back(sLine.substr(uStart, uBlank - uStart));
        uStart = uBlank + 1;
    }
    return vsTokens;
}

bool ReadText(sFieldReader* psFields, char* pchTarget)
{
    std::vector<uint8_t> vu8Bytes = psFields->Bytes(BMCSIM_TEXT_MAX - 1);
    memset(pchTarget, 0, BMCSIM_TEXT_MAX);
    if (!vu8Bytes.empty()) {
        memcpy(pchTarget, vu8Bytes.data(), vu8Bytes.size());
    }
    return memchr(pchTarget, '\0', vu8Bytes.size()) == nullptr;
}

bool ReadSettings(const std::string& sKey, sFieldReader* psFields, sBmcSimState* psState)
{
    sSimRepository* psRepo = &psState->sRepository;
    if (sKey == "clock") {
        psState->bFixedClock = psFields->Number(0, 1) != 0;
        psState->u32Clock = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
    } else if (sKey == "lan") {
        bool bClean = ReadText(psFields, psState->sLan.achUser) && ReadText(psFields, psState->sLan.achPassword);
        psState->sLan.u32CipherMask = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psFields->bGood = psFields->bGood && bClean;
    } else if (sKey == "route") {
        psState->sRoute.bOpenRefused = psFields->Number(0, 1) != 0;
        psState->sRoute.u32KcsPort = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psState->sRoute.i32KcsSpacing = static_cast<int32_t>(psFields->Number(-1, 0x7FFFFFFF));
        for (uint8_t& u8Timeout : psState->sRoute.au8KcsTimeouts) {
            u8Timeout = static_cast<uint8_t>(psFields->Number(0, 0xFF));
        }
    } else if (sKey == "repository") {
        psRepo->u32Capacity = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psRepo->u8SupportBits = static_cast<uint8_t>(psFields->Number(0, 0x7F));
        psRepo->bOverflow = psFields->Number(0, 1) != 0;
        psRepo->i32CountOffset = static_cast<int32_t>(psFields->Number(-0x10000, 0x10000));
        psRepo->u32AdditionTime = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psRepo->u32EraseTime = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psRepo->u16ReservationID = static_cast<uint16_t>(psFields->Number(0, 0xFFFF));
        psState->u16LastReservationID = static_cast<uint16_t>(psFields->Number(0, 0xFFFF));
        psRepo->u16NextRecordID = static_cast<uint16_t>(psFields->Number(0, 0xFFFF));
        psRepo->u16ErasePolls = static_cast<uint16_t>(psFields->Number(0, 0xFFFF));
        psRepo->u16EraseRemaining = static_cast<uint16_t>(psFields->Number(0, 0xFFFF));
    } else if (sKey == "init-agent") {
        psState->sInitAgent.u32Position = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        psState->sInitAgent.vu8Sequence = psFields->Bytes(0x10000);
    } else {
        return false;
    }
    return true;
}

bool ReadPartial(sFieldReader* psFields, sSimPartialAdd* psPartial)
{
    psPartial->bActive = true;
    psPartial->u16RecordID = static_cast<uint16_t>(psFields->Number(1, 0xFFFE));
    psPartial->u16Expected = static_cast<uint16_t>(psFields->Number(BMCSIM_SDR_HEADER_SIZE, BMCSIM_SDR_RECORD_MAX));
    std::vector<uint8_t> vu8Bytes = psFields->Bytes(psPartial->u16Expected);
    if (vu8Bytes.size() < BMCSIM_SDR_HEADER_SIZE) {
        return false;
    }
    memcpy(psPartial->au8Data, vu8Bytes.data(), vu8Bytes.size());
    psPartial->u16Received = static_cast<uint16_t>(vu8Bytes.size());
    return true;
}

// Records are taken as they were saved: the capacity may have been lowered under them.
bool ReadRecord(sFieldReader* psFields, sSimRepository* psRepo)
{
    uint16_t u16RecordID = static_cast<uint16_t>(psFields->Number(1, 0xFFFE));
    std::vector<uint8_t> vu8Bytes = psFields->Bytes(BMCSIM_SDR_RECORD_MAX);
    if (!psFields->bGood || vu8Bytes.size() < BMCSIM_SDR_HEADER_SIZE ||
        vu8Bytes.size() != vu8Bytes[4] + static_cast<size_t>(BMCSIM_SDR_HEADER_SIZE) ||
        SimFindRecord(psRepo, u16RecordID) >= 0) {
        return false;
    }
    sSimSdrRecord sRecord;
    memset(&sRecord, 0, sizeof(sRecord));
    sRecord.u16RecordID = u16RecordID;
    sRecord.u16Length = static_cast<uint16_t>(vu8Bytes.size());
    memcpy(sRecord.au8Data, vu8Bytes.data(), vu8Bytes.size());
    psRepo->vsRecords.push_back(sRecord);
    return true;
}

bool ReadFru(sFieldReader* psFields, sBmcSimState* psState)
{
    uint8_t u8FruID = static_cast<uint8_t>(psFields->Number(0, 0xFF));
    std::vector<uint8_t> vu8Bytes = psFields->Bytes(BMCSIM_FRU_SIZE_MAX);
    if (!psFields->bGood || SimFindFru(psState, u8FruID) != nullptr) {
        return false;
    }
    SimPutFru(psState, u8FruID, vu8Bytes);
    return true;
}

bool ReadFault(sFieldReader* psFields, sBmcSimState* psState)
{
    sSimFault sFault;
    std::string sKind = psFields->Word();
    if (!SimFaultFromName(sKind.c_str(), &sFault.eKind)) {
        return false;
    }
    sFault.u16NetFn = static_cast<uint16_t>(psFields->Number(0, BMCSIM_ANY));
    sFault.u16Command = static_cast<uint16_t>(psFields->Number(0, BMCSIM_ANY));
    sFault.u32Nth = static_cast<uint32_t>(psFields->Number(1, 0xFFFFFFFFLL));
    sFault.bAlways = psFields->Number(0, 1) != 0;
    sFault.u32Value = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
    sFault.u32Seen = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
    psState->vsFaults.push_back(sFault);
    return true;
}

bool ReadLogEntry(sFieldReader* psFields, sBmcSimState* psState)
{
    sSimLogEntry sEntry;
    sEntry.u32Sequence = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
    std::string sRoute = psFields->Word();
    sEntry.u8NetFn = static_cast<uint8_t>(psFields->Number(0, 0xFF));
    sEntry.u8Command = static_cast<uint8_t>(psFields->Number(0, 0xFF));
    std::string sFault = psFields->Word();
    sEntry.bAnswered = psFields->Number(0, 1) != 0;
    sEntry.u8CompletionCode = static_cast<uint8_t>(psFields->Number(0, 0xFF));
    sEntry.vu8Request = psFields->Bytes(0xFFFF);
    sEntry.vu8Response = psFields->Bytes(BMCSIM_RESPONSE_DATA_MAX);
    if (!SimLoggedFaultFromName(sFault.c_str(), &sEntry.eFault) || !SimRouteFromName(sRoute.c_str(), &sEntry.eRoute)) {
        return false;
    }
    psState->vsLog.push_back(sEntry);
    return true;
}

bool ReadItem(const std::string& sKey, sFieldReader* psFields, sBmcSimState* psState)
{
    if (sKey == "partial") return ReadPartial(psFields, &psState->sRepository.sPartial);
    if (sKey == "sdr") return ReadRecord(psFields, &psState->sRepository);
    if (sKey == "fru") return ReadFru(psFields, psState);
    if (sKey == "fault") return ReadFault(psFields, psState);
    if (sKey == "log") return ReadLogEntry(psFields, psState);
    if (sKey == "log-next") {
        psState->u32NextLogSequence = static_cast<uint32_t>(psFields->Number(0, 0xFFFFFFFFLL));
        return true;
    }
    return ReadSettings(sKey, psFields, psState);
}

int Refuse(sSimError* psError, int iLine, const char* pchWhat)
{
    snprintf(psError->achText, sizeof(psError->achText), "line %d: %s", iLine, pchWhat);
    return 0;
}

}  // namespace

int SimParseHexString(const std::string& sText, std::vector<uint8_t>* pvu8Bytes)
{
    pvu8Bytes->clear();
    if (sText == "-") {
        return 1;
    }
    if (sText.empty() || sText.size() % 2 != 0) {
        return 0;
    }
    for (size_t i = 0; i < sText.size(); i += 2) {
        char achPair[3] = {sText[i], sText[i + 1], '\0'};
        char* pchEnd = nullptr;
        unsigned long ulValue = strtoul(achPair, &pchEnd, 16);
        if (pchEnd != achPair + 2 || achPair[0] == '+' || achPair[0] == '-' || achPair[0] == ' ') {
            return 0;
        }
        pvu8Bytes->push_back(static_cast<uint8_t>(ulValue));
    }
    return 1;
}

int SimStateFromText(const std::string& sText, sBmcSimState* psState, sSimError* psError)
{
    SimInitState(psState);
    psState->sInitAgent.vu8Sequence.clear();
    size_t uStart = 0;
    int iLine = 0;
    bool bEnd = false;
    while (uStart < sText.size() && !bEnd) {
        size_t uEnd = sText.find('\n', uStart);
        if (uEnd == std::string::npos) {
            return Refuse(psError, iLine + 1, "the last line has no line end");
        }
        TTokens vsTokens = SplitLine(sText.substr(uStart, uEnd - uStart));
        uStart = uEnd + 1;
        iLine++;
        if (iLine == 1) {
            char achVersion[16];
            snprintf(achVersion, sizeof(achVersion), "%d", BMCSIM_STATE_VERSION);
            if (vsTokens.size() != 2 || vsTokens[0] != "tavrin-bmcsim-state" || vsTokens[1] != achVersion) {
                return Refuse(psError, iLine, "not a simulator state of version 1");
            }
            continue;
        }
        bEnd = vsTokens.size() == 1 && vsTokens[0] == "end";
        sFieldReader sFields = {vsTokens, 1, true};
        if (!bEnd && (!ReadItem(vsTokens[0], &sFields, psState) || !sFields.Done())) {
            return Refuse(psError, iLine, "unknown or malformed item");
        }
    }
    if (!bEnd || uStart != sText.size()) {
        return Refuse(psError, iLine, "the state does not end with the line \"end\"");
    }
    return 1;
}
