// tavrin-dump2sdr DUMP SDRFILE: turns a raw record dump, as "ipmitool sdr dump" writes
// it, into a binary SDR file of format version 1, which tavrin reads (-t, -d, -v) and
// tavrin-bmcsim loads (sdr-load). So a rehearsal can start from a real BMC's records.
// The new file is created, never overwritten, and removed again if it can't be
// written whole.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "SDRDumpReader.h"
#include "sdr/SDRBinWriter.h"

namespace {

enum { EXIT_DONE = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

const char kUsage[] =
    "Usage: tavrin-dump2sdr DUMP SDRFILE\n"
    "Writes the SDR records of DUMP, a raw record dump as \"ipmitool sdr dump\" writes it\n"
    "(records back to back, no file header), to the new file SDRFILE as a binary SDR\n"
    "file of format version 1, which tavrin and tavrin-bmcsim read.\n";

int ReadDump(const char* pchPath, std::vector<SDREntry>* pvRecords)
{
    FILE* pFile = fopen(pchPath, "rb");
    if (pFile == nullptr) {
        fprintf(stderr, "tavrin-dump2sdr: can't open %s: %s.\n", pchPath, strerror(errno));
        return 0;
    }
    const int iResult = SDRReadRawDump(pFile, pvRecords);
    fclose(pFile);
    return iResult;
}

// Writes the records to the stream and the disk. 1, or 0 with errno telling why.
int WriteAndSync(FILE* pFile, const std::vector<SDREntry>& vRecords)
{
    errno = 0;
    const uint16_t u16Count = static_cast<uint16_t>(vRecords.size());
    return WriteSDRBinFile(pFile, vRecords.data(), u16Count) == 1 && fflush(pFile) == 0 && fsync(fileno(pFile)) == 0;
}

int WriteSdrFile(const char* pchPath, const std::vector<SDREntry>& vRecords)
{
    const int iFd = open(pchPath, O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (iFd < 0) {
        fprintf(stderr, "tavrin-dump2sdr: can't create %s: %s.%s\n", pchPath, strerror(errno),
                errno == EEXIST ? " Choose another name, or remove the file first." : "");
        return 0;
    }
    FILE* pFile = fdopen(iFd, "wb");
    int bWritten = pFile != nullptr && WriteAndSync(pFile, vRecords);
    const int iWriteErrno = errno;
    if (pFile != nullptr ? fclose(pFile) != 0 : close(iFd) != 0) {
        bWritten = 0;
    }
    if (!bWritten) {
        fprintf(stderr, "tavrin-dump2sdr: can't write %s: %s; the file is removed.\n", pchPath,
                iWriteErrno != 0 ? strerror(iWriteErrno) : "write error");
        unlink(pchPath);
        return 0;
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && (strcmp(argv[1], "-h") == 0 || strcmp(argv[1], "--help") == 0)) {
        fputs(kUsage, stdout);
        return EXIT_DONE;
    }
    if (argc != 3) {
        fputs(kUsage, stderr);
        return EXIT_USAGE;
    }
    std::vector<SDREntry> vRecords;
    if (!ReadDump(argv[1], &vRecords) || !WriteSdrFile(argv[2], vRecords)) {
        return EXIT_FAILED;
    }
    printf("tavrin-dump2sdr: %zu records written to %s (binary SDR file, format version 1).\n", vRecords.size(),
           argv[2]);
    return EXIT_DONE;
}
