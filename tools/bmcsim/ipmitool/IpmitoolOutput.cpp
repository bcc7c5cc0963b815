// The texts of the ipmitool look-alike. Response bytes go to standard output as
// " %02x", sixteen to a line, each line ended by a line feed (an empty response is
// one line feed); refusals and failures go to standard error.
#include "IpmitoolOutput.h"

#include <cstdio>

namespace {

const int kBytesPerLine = 16;
const int kFloodLines = 8;  // with the answer, well past the 256 bytes a reader takes

struct sCodeText {
    uint8_t u8Code;
    const char* pchText;
};

const sCodeText kCodeTexts[] = {
    {0xC0, "Node busy"},
    {0xC1, "Invalid command"},
    {0xC2, "Invalid command on LUN"},
    {0xC3, "Timeout"},
    {0xC4, "Out of space"},
    {0xC5, "Reservation cancelled or invalid"},
    {0xC6, "Request data truncated"},
    {0xC7, "Request data length invalid"},
    {0xC8, "Request data field length limit exceeded"},
    {0xC9, "Parameter out of range"},
    {0xCA, "Cannot return number of requested data bytes"},
    {0xCB, "Requested sensor, data, or record not found"},
    {0xCC, "Invalid data field in request"},
    {0xCD, "Command illegal for specified sensor or record type"},
    {0xCE, "Command response could not be provided"},
    {0xCF, "Cannot execute duplicated request"},
    {0xD0, "SDR Repository in update mode"},
    {0xD1, "Device firmeware in update mode"},
    {0xD2, "BMC initialization in progress"},
    {0xD3, "Destination unavailable"},
    {0xD4, "Insufficient privilege level"},
    {0xD5, "Command not supported in present state"},
    {0xD6, "Cannot execute command, command disabled"},
    {0xFF, "Unspecified error"},
};

void PrintCodeText(uint8_t u8Code)
{
    for (const sCodeText& sEntry : kCodeTexts) {
        if (sEntry.u8Code == u8Code) {
            fputs(sEntry.pchText, stderr);
            return;
        }
    }
    fprintf(stderr, "Unknown (0x%02X)", u8Code);
}

void PrintBytes(const uint8_t* pu8Data, int iLength)
{
    for (int i = 0; i < iLength; i++) {
        if (i != 0 && i % kBytesPerLine == 0) {
            fputc('\n', stdout);
        }
        printf(" %02x", pu8Data[i]);
    }
    fputc('\n', stdout);
}

int PrintAnswer(const sIpmitoolCall& sCall, const sSimResponse& sResponse)
{
    if (sResponse.u8CompletionCode != 0) {
        fprintf(stderr, "Unable to send RAW command (channel=0x0 netfn=0x%x lun=0x0 cmd=0x%x rsp=0x%x): ",
                sCall.u8NetFn, sCall.u8Command, sResponse.u8CompletionCode);
        PrintCodeText(sResponse.u8CompletionCode);
        fputc('\n', stderr);
        return 1;
    }
    PrintBytes(sResponse.au8Data, sResponse.u16Length);
    return 0;
}

void PrintFlood()
{
    const uint8_t au8Filler[kBytesPerLine] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                              0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    for (int i = 0; i < kFloodLines; i++) {
        PrintBytes(au8Filler, kBytesPerLine);
    }
}

}  // namespace

int PrintNoAnswer(const sIpmitoolCall& sCall)
{
    fprintf(stderr, "Unable to send RAW command (channel=0x0 netfn=0x%x lun=0x0 cmd=0x%x)\n", sCall.u8NetFn,
            sCall.u8Command);
    return 1;
}

int PrintSessionFailure(const sIpmitoolCall& sCall)
{
    fputs("Error: Unable to establish IPMI v2 / RMCP+ session\n", stderr);
    return PrintNoAnswer(sCall);
}

int PrintIpmitoolOutcome(const sIpmitoolCall& sCall, const sSimExchangeResult& sResult)
{
    int iStatus = 1;
    fflush(stdout);
    switch (sResult.eFault) {
    case eSimFaultLanNoStart:
        fputs("sh: 1: ipmitool: not found\n", stderr);
        return 127;
    case eSimFaultLanSilent:
        return 1;
    case eSimFaultErrno:
    case eSimFaultLanTimeout:
    case eSimFaultLanLostReply:
        return PrintNoAnswer(sCall);
    case eSimFaultCipher:
        fputs("Error in open session response message : no matching cipher suite\n\n", stderr);
        return PrintSessionFailure(sCall);
    case eSimFaultAuth:
        return PrintSessionFailure(sCall);
    case eSimFaultLanFlood:
        iStatus = PrintAnswer(sCall, sResult.sResponse);
        PrintFlood();
        return iStatus;
    default:
        return PrintAnswer(sCall, sResult.sResponse);
    }
}
