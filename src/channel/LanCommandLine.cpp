// The words of ipmitool's command line: the argument vector that runs it, and the head
// of the line that the trace shows.
#include <cstdio>
#include <cstring>

#include "LanChannel.h"

namespace {

const char kIpmitool[] = "ipmitool";
const uint16_t kCipherNone = 0xFF;  // low byte that selects the form without -C
const int kAddressGroups = 4;
const unsigned kGroupMax = 255;

bool HasCipherOption()
{
    return (sIolData.u16CipherSuiteID & 0xFF) != kCipherNone;
}

// Reads one group of decimal digits at *ppchText and moves behind it. false for no
// digits or a value above 255.
bool ReadAddressGroup(const char** ppchText, unsigned* puValue)
{
    const char* p = *ppchText;
    unsigned uValue = 0;
    if (*p < '0' || *p > '9') {
        return false;
    }
    for (; *p >= '0' && *p <= '9'; p++) {
        uValue = uValue * 10 + static_cast<unsigned>(*p - '0');
        if (uValue > kGroupMax) {
            return false;
        }
    }
    *ppchText = p;
    *puValue = uValue;
    return true;
}

// Writes "0x%02x" into the word; the words are sized for it.
void PutCodeWord(char (&achWord)[LAN_NUMBER_SIZE], uint8_t u8Value)
{
    snprintf(achWord, sizeof(achWord), "0x%02x", u8Value);
}

}  // namespace

int CanonicalIPv4Address(const char* pchTyped, char* pchCanonical, size_t uSize)
{
    if (pchTyped == nullptr || pchCanonical == nullptr) {
        return 0;
    }
    unsigned auGroups[kAddressGroups] = {0};
    const char* p = pchTyped;
    for (int i = 0; i < kAddressGroups; i++) {
        if (i > 0 && *p++ != '.') {
            return 0;
        }
        if (!ReadAddressGroup(&p, &auGroups[i])) {
            return 0;
        }
    }
    if (*p != '\0') {
        return 0;
    }
    int iLength = snprintf(pchCanonical, uSize, "%u.%u.%u.%u", auGroups[0], auGroups[1], auGroups[2], auGroups[3]);
    return (iLength > 0 && static_cast<size_t>(iLength) < uSize) ? 1 : 0;
}

int BuildLanArgv(uint8_t u8NetFn, uint8_t u8Command, const IPMIMessage* psMessage, sLanArgv* psArgv)
{
    if (!CanonicalIPv4Address(sIolData.achHostIP, psArgv->achHost, sizeof(psArgv->achHost))) {
        return 0;
    }
    snprintf(psArgv->achCipher, sizeof(psArgv->achCipher), "%d", sIolData.u16CipherSuiteID);
    char** ppchWord = psArgv->apchArgv;
    *ppchWord++ = const_cast<char*>(kIpmitool);
    if (HasCipherOption()) {
        *ppchWord++ = const_cast<char*>("-C");
        *ppchWord++ = psArgv->achCipher;
    }
    const struct {
        const char* pchOption;
        char* pchValue;
    } asOptions[] = {{"-I", sIolData.achLanIF},
                     {"-U", sIolData.achUserName},
                     {"-P", sIolData.achPassWord},
                     {"-H", psArgv->achHost}};
    for (const auto& sOption : asOptions) {
        *ppchWord++ = const_cast<char*>(sOption.pchOption);
        *ppchWord++ = sOption.pchValue;
    }
    *ppchWord++ = const_cast<char*>("raw");
    PutCodeWord(psArgv->aachCodes[0], u8NetFn);
    PutCodeWord(psArgv->aachCodes[1], u8Command);
    const uint8_t u8Count = psMessage->u8RequestLength <= IPMI_REQUEST_DATA_SIZE
                                ? psMessage->u8RequestLength
                                : static_cast<uint8_t>(IPMI_REQUEST_DATA_SIZE);
    for (uint8_t i = 0; i < u8Count; i++) {
        PutCodeWord(psArgv->aachCodes[2 + i], psMessage->au8RequestData[i]);
    }
    for (int i = 0; i < 2 + u8Count; i++) {
        *ppchWord++ = psArgv->aachCodes[i];
    }
    *ppchWord = nullptr;
    return 1;
}

int BuildLanTraceHead(uint8_t u8NetFn, uint8_t u8Command, char* pchHead, size_t uSize)
{
    int iLength;
    if (HasCipherOption()) {
        iLength = snprintf(pchHead, uSize, "%s -C %d -I %s -U %s -P %s -H %s raw 0x%02x 0x%02x ", kIpmitool,
                           sIolData.u16CipherSuiteID, sIolData.achLanIF, sIolData.achUserName,
                           sIolData.achPassWord, sIolData.achHostIP, u8NetFn, u8Command);
    } else {
        iLength = snprintf(pchHead, uSize, "%s -I %s -U %s -P %s -H %s raw 0x%02x 0x%02x ", kIpmitool,
                           sIolData.achLanIF, sIolData.achUserName, sIolData.achPassWord, sIolData.achHostIP,
                           u8NetFn, u8Command);
    }
    return (iLength > 0 && static_cast<size_t>(iLength) < uSize) ? 1 : 0;
}
