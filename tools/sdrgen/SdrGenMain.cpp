// tavrin-sdrgen: writes binary SDR files from the built-in sample records.
//   tavrin-sdrgen VERSION FILE            the example record set
//   tavrin-sdrgen VERSION FILE COUNT      COUNT full sensor records (for benchmarks)
//   tavrin-sdrgen VERSION FILE COUNT min  COUNT records of a header only, the smallest
#include <cstdio>
#include <cstdlib>
#include <string>

#include "BinarySDRWriter.h"

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

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 5) {
        fputs("usage: tavrin-sdrgen VERSION(0|1|2) FILE [COUNT [min]]\n", stderr);
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
    FILE* pFile = fopen(argv[2], "wb");
    if (pFile == nullptr || fwrite(vFile.data(), 1, vFile.size(), pFile) != vFile.size() || fclose(pFile) != 0) {
        fprintf(stderr, "tavrin-sdrgen: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
