#include "TextSDRWriter.h"

#include <cstdio>

#include "sdr/SDRRecordTypes.h"

namespace {

std::string Hex(uint8_t u8Value)
{
    char achText[4];
    snprintf(achText, sizeof(achText), "%02X", u8Value);
    return achText;
}

std::string TagLine(const char* pchTag, uint8_t u8Value)
{
    return std::string(pchTag) + "   " + Hex(u8Value) + "\n";
}

// Bytes [uFirst, uEnd) in hex, uPerLine to a line.
std::string HexLines(const TRecord& v, size_t uFirst, size_t uEnd, size_t uPerLine)
{
    std::string sText;
    for (size_t i = uFirst; i < uEnd; i++) {
        sText += Hex(v[i]);
        sText += ((i + 1 - uFirst) % uPerLine == 0 || i + 1 == uEnd) ? "\n" : " ";
    }
    return sText;
}

const char* TypeName(uint8_t u8Type)
{
    switch (u8Type) {
    case 0x01: return "Full Sensor";
    case 0x02: return "Compact Sensor";
    case 0x03: return "Event-Only Sensor";
    case 0x08: return "Entity Association";
    case 0x09: return "Device-relative Entity Association";
    case 0x10: return "Generic Device Locator";
    case 0x11: return "FRU Device Locator";
    case 0x12: return "Management Controller Device Locator";
    case 0x13: return "Management Controller Confirmation";
    case 0x14: return "BMC Message Channel Info";
    case 0xC0: return "OEM";
    default: return "Record";
    }
}

}  // namespace

std::string SDRRecordText(const TRecord& v, size_t uBytesPerLine, bool bHeaderLine)
{
    const uint8_t u8Type = v[3];
    const uint8_t u8Length = static_cast<uint8_t>(v.size());
    const size_t uStart = SDRStringStart(u8Type, u8Length);
    std::string sText = TagLine("_SDR_TYPE", u8Type) + TagLine("_REC_LEN", u8Length);
    if (bHeaderLine) {
        sText += HexLines(v, 0, 5, 5) + HexLines(v, 5, uStart, uBytesPerLine);
    } else {
        sText += HexLines(v, 0, uStart, uBytesPerLine);
    }
    if (SDRHasIDString(u8Type)) {
        if ((v[uStart - 1] & SDR_ID_STRING_8BIT) == SDR_ID_STRING_8BIT) {
            sText += "'" + std::string(v.begin() + uStart, v.end()) + "'\n";
        } else {
            sText += HexLines(v, uStart, v.size(), uBytesPerLine);
        }
    }
    return sText;
}

std::string ExampleSDRText()
{
    std::string sText =
        "// SDR text file for Tavrin: sample records of every record type it knows.\n"
        "// A record is its type and its whole length (five header bytes included), then its\n"
        "// bytes in hex from the record ID on; an ID string of 8-bit text stands in quotes.\n"
        "\n"
        "_DISABLED_SDR (\n"
        "// Never read: a place for records kept aside.\n" +
        SDRRecordText(OEMRecord(0x0100, {0xAA, 0xBB, 0xCC}), 16, true) +
        ")\n"
        "\n"
        "_SDR (\n";
    for (const TRecord& v : TextExampleRecordSet()) {
        sText += "\n// " + std::string(TypeName(v[3])) + "\n" + SDRRecordText(v, 16, true);
    }
    return sText + ")  // end of the records\n";
}

std::string LargestSDRText(uint32_t u32Count)
{
    std::string sText = "_SDR (\n";
    sText.reserve(static_cast<size_t>(u32Count) * 200 + 16);
    char achName[24];
    for (uint32_t i = 0; i < u32Count; i++) {
        snprintf(achName, sizeof(achName), "Sensor %09u", i);
        const uint16_t u16ID = static_cast<uint16_t>(i + 1);
        sText += SDRRecordText(FullSensorRecord(u16ID, static_cast<uint8_t>(i), achName), 1, false) + "\n\n";
    }
    return sText + ")\n";
}

std::string EncodeSDRText(const std::string& sText, eFileEncoding eEncoding)
{
    std::string sBytes;
    if (eEncoding == eEncodingUTF8) {
        sBytes = "\xEF\xBB\xBF";
    } else if (eEncoding == eEncodingUTF16) {
        sBytes = "\xFF\xFE";
    }
    sBytes.reserve(sText.size() * (eEncoding == eEncodingASCII ? 1 : 2) + 3);
    for (unsigned char u8Char : sText) {
        if (eEncoding == eEncodingUTF16) {
            sBytes += static_cast<char>(u8Char);
            sBytes += '\0';
        } else if (eEncoding == eEncodingUTF8 && u8Char >= 0x80) {
            sBytes += static_cast<char>(0xC0 | (u8Char >> 6));
            sBytes += static_cast<char>(0x80 | (u8Char & 0x3F));
        } else {
            sBytes += static_cast<char>(u8Char);
        }
    }
    return sBytes;
}
