// Reading back what ipmitool prints: failure markers, response bytes, completion code.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "LanChannel.h"

namespace {

const char* const kFailureMarkers[] = {"Unable to", "failed", "no support for", "Error"};
const char* const kCipherMarkers[] = {"no support for IPMI_AUTH", "lanplus_encrypt_payload: Assertion"};
const size_t kCodeWidth = 4;  // "0xc5" in front of the ")"

template <size_t N>
int HasAny(const char* pchText, const char* const (&apchMarkers)[N])
{
    for (const char* pchMarker : apchMarkers) {
        if (strstr(pchText, pchMarker) != nullptr) {
            return 1;
        }
    }
    return 0;
}

}  // namespace

int HasLanFailureMarker(const char* pchText)
{
    return HasAny(pchText, kFailureMarkers);
}

int HasLanCipherMarker(const char* pchText)
{
    return HasAny(pchText, kCipherMarkers);
}

int ParseLanResponseText(const char* pchText, IPMIMessage* psMessage)
{
    psMessage->u16ResponseLength = 0;
    const char* p = pchText;
    while (*p != '\0') {
        while (*p == ' ') p++;
        if (*p == '\0') {
            break;
        }
        if (psMessage->u16ResponseLength >= IPMI_RESPONSE_DATA_SIZE) {
            return 0;
        }
        // The piece alone is converted, so that a conversion never runs into the next one.
        char achPiece[LAN_OUTPUT_LIMIT + 1];
        size_t uLength = strcspn(p, " ");
        if (uLength > LAN_OUTPUT_LIMIT) {
            uLength = LAN_OUTPUT_LIMIT;
        }
        memcpy(achPiece, p, uLength);
        achPiece[uLength] = '\0';
        unsigned long ulValue = strtoul(achPiece, nullptr, 16);
        psMessage->au8ResponseData[psMessage->u16ResponseLength++] = static_cast<uint8_t>(ulValue & 0xFF);
        p += strcspn(p, " ");
    }
    return 1;
}

void GetLanErrorLine(const char* pchText, char* pchLine, size_t uSize)
{
    const char* p = pchText;
    while (*p == '\n' || *p == '\r') p++;
    size_t uLength = strcspn(p, "\r\n");
    if (uLength >= uSize) {
        uLength = uSize - 1;
    }
    memcpy(pchLine, p, uLength);
    pchLine[uLength] = '\0';
}

void ReadLanCompletionCode(const char* pchErrorLine, IPMIMessage* psMessage)
{
    const char* pchClose = strchr(pchErrorLine, ')');
    if (pchClose == nullptr) {
        return;
    }
    if (static_cast<size_t>(pchClose - pchErrorLine) < kCodeWidth) {
        // Too near the start to hold a code: an unspecified error rather than a guess.
        psMessage->u8CompletionCode = 0xFF;
        return;
    }
    unsigned long ulCode = strtoul(pchClose - kCodeWidth, nullptr, 16);
    psMessage->u8CompletionCode = static_cast<uint8_t>(ulCode & 0xFF);
}
