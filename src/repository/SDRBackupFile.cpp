#include "SDRBackupFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "sdr/SDRBinWriter.h"

namespace {

const mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

bool NameForNow(char* pchName, size_t uNameSize)
{
    const time_t iNow = time(nullptr);
    struct tm sLocal;
    if (localtime_r(&iNow, &sLocal) == nullptr) {
        return false;
    }
    return strftime(pchName, uNameSize, "sdr-backup-%Y%m%d-%H%M%S.sdr", &sLocal) != 0;
}

// Writes the records to the new file and syncs it; the stream is closed in any case.
bool WriteAndSync(FILE* pFile, const SDREntry* psList, uint16_t u16RecordCount)
{
    bool bWritten = WriteSDRBinFile(pFile, psList, u16RecordCount) == 1 && fflush(pFile) == 0 &&
                    fsync(fileno(pFile)) == 0;
    return fclose(pFile) == 0 && bWritten;
}

// The directory entry is synced too, so that the file is still found after a crash.
void SyncWorkingDirectory()
{
    int iDirectory = open(".", O_RDONLY | O_CLOEXEC);
    if (iDirectory >= 0) {
        fsync(iDirectory);
        close(iDirectory);
    }
}

}  // namespace

int SaveSDRBackupFile(const SDREntry* psList, uint16_t u16RecordCount, char* pchName, size_t uNameSize)
{
    if (pchName == nullptr || uNameSize == 0) {
        return 0;
    }
    if (psList == nullptr || !NameForNow(pchName, uNameSize)) {
        pchName[0] = '\0';
        return 0;
    }
    // Created new or not at all: an existing file of that name is never overwritten.
    int iFile = open(pchName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly);
    FILE* pFile = (iFile >= 0) ? fdopen(iFile, "wb") : nullptr;
    if (pFile == nullptr) {
        if (iFile >= 0) {
            close(iFile);
            unlink(pchName);
        }
        pchName[0] = '\0';
        return 0;
    }
    if (!WriteAndSync(pFile, psList, u16RecordCount)) {
        unlink(pchName);
        pchName[0] = '\0';
        return 0;
    }
    SyncWorkingDirectory();
    return 1;
}

void RemoveSDRBackupFile(const char* pchName)
{
    if (pchName != nullptr && pchName[0] != '\0') {
        unlink(pchName);
    }
}
