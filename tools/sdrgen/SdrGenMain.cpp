// tavrin-sdrgen: writes binary and text SDR files from the built-in sample records.
//   tavrin-sdrgen VERSION FILE                  the example record set, binary
//   tavrin-sdrgen VERSION FILE COUNT            COUNT full sensor records (for benchmarks)
//   tavrin-sdrgen VERSION FILE COUNT min        COUNT records of a header only, the smallest
//   tavrin-sdrgen text ENCODING FILE            the text example (ascii, utf8 or utf16)
//   tavrin-sdrgen text ENCODING FILE COUNT      COUNT records of the largest length, as text
#include <cstdio>
#include <cstdlib>
#include <string>

#include "BinarySDRWriter.h"
#include "TextSDRWriter.h"

namespace {

std::vector<TRecord> ManyRecords(unsigned long ulCount, bool bSmallest)
{
    std::vector<TRecord> vRecords;
    vRecords.reserve(ulCount);
    for (unsigned long i = 0; i < ulCount; i++) {
        uint16_t u16ID = static_cast<uint16_t>(i + 1);
        if (bSmallest) {
            vRecords.push_back({static_cast<uint8_t>(u16ID & 0xFF), static_cast<uint8_t>(u16ID >> 8), 0x51, 0xC0, 0});
        } else {
            vRecords.push_back(FullSensorRecord(u16ID, static_cast<uint8_t>(i), "Sensor " + std::to_string(i)));
        }
    }
    return vRecords;
}

bool WriteFile(const char* pchPath, const void* pData, size_t uSize)
{
    FILE* pFile = fopen(pchPath, "wb");
    bool bWritten = pFile != nullptr && fwrite(pData, 1, uSize, pFile) == uSize;
    if (pFile != nullptr && fclose(pFile) != 0) {
        bWritten = false;
    }
    if (!bWritten) {
        fprintf(stderr, "tavrin-sdrgen: cannot write %s\n", pchPath);
    }
    return bWritten;
}

int WriteTextFile(int argc, char** argv)
{
    const std::string sEncoding = (argc >= 3) ? argv[2] : "";
    const eFileEncoding eEncoding = (sEncoding == "utf8") ? eEncodingUTF8
                                    : (sEncoding == "utf16") ? eEncodingUTF16 : eEncodingASCII;
    if (argc < 4 || argc > 5 || (sEncoding != "ascii" && sEncoding != "utf8" && sEncoding != "utf16")) {
        fputs("usage: tavrin-sdrgen text ascii|utf8|utf16 FILE [COUNT]\n", stderr);
        return 2;
    }
    const std::string sText =
        (argc == 5) ? LargestSDRText(static_cast<uint32_t>(strtoul(argv[4], nullptr, 10))) : ExampleSDRText();
    const std::string sBytes = EncodeSDRText(sText, eEncoding);
    return WriteFile(argv[3], sBytes.data(), sBytes.size()) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc >= 2 && std::string(argv[1]) == "text") {
        return WriteTextFile(argc, argv);
    }
    if (argc < 3 || argc > 5) {
        fputs("usage: tavrin-sdrgen VERSION(0|1|2) FILE [COUNT [min]]\n"
              "       tavrin-sdrgen text ascii|utf8|utf16 FILE [COUNT]\n", stderr);
        return 2;
    }
    int iVersion = atoi(argv[1]);
    if (iVersion < 0 || iVersion > 2) {
        fputs("tavrin-sdrgen: VERSION must be 0, 1 or 2\n", stderr);
        return 2;
    }
    bool bSmallest = (argc == 5 && std::string(argv[4]) == "min");
    std::vector<TRecord> vRecords =
        (argc >= 4) ? ManyRecords(strtoul(argv[3], nullptr, 10), bSmallest) : ExampleRecordSet();
    std::vector<uint8_t> vFile = BuildBinarySDRFile(iVersion, vRecords);
    return WriteFile(argv[2], vFile.data(), vFile.size()) ? 0 : 1;
}
