// Loading the state file whole, and saving it atomically: temporary file, fsync,
// rename, and an fsync of the directory so that the rename itself is durable.
#include "SimStateFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int Refuse(sSimError* psError, const char* pchWhat, const char* pchPath, int iErrno)
{
    snprintf(psError->achText, sizeof(psError->achText), "%.60s %.300s: %.100s", pchWhat, pchPath, strerror(iErrno));
    return 0;
}

int ReadWholeFile(const char* pchPath, std::string* psText, sSimError* psError)
{
    int iFd = open(pchPath, O_RDONLY);
    if (iFd < 0) {
        return Refuse(psError, "cannot open simulator state", pchPath, errno);
    }
    char achBuffer[65536];
    for (;;) {
        ssize_t iRead = read(iFd, achBuffer, sizeof(achBuffer));
        if (iRead < 0 && errno == EINTR) {
            continue;
        }
        if (iRead < 0) {
            int iErrno = errno;
            close(iFd);
            return Refuse(psError, "cannot read simulator state", pchPath, iErrno);
        }
        if (iRead == 0) {
            break;
        }
        psText->append(achBuffer, static_cast<size_t>(iRead));
    }
    close(iFd);
    return 1;
}

int WriteAll(int iFd, const std::string& sText)
{
    size_t uDone = 0;
    while (uDone < sText.size()) {
        ssize_t iWritten = write(iFd, sText.data() + uDone, sText.size() - uDone);
        if (iWritten < 0 && errno == EINTR) {
            continue;
        }
        if (iWritten <= 0) {
            return 0;
        }
        uDone += static_cast<size_t>(iWritten);
    }
    return 1;
}

// The directory part of the path, "." for a bare file name.
std::string DirectoryOf(const char* pchPath)
{
    const char* pchSlash = strrchr(pchPath, '/');
    if (pchSlash == nullptr) {
        return ".";
    }
    if (pchSlash == pchPath) {
        return "/";
    }
    return std::string(pchPath, static_cast<size_t>(pchSlash - pchPath));
}

void SyncDirectory(const char* pchPath)
{
    int iFd = open(DirectoryOf(pchPath).c_str(), O_RDONLY);
    if (iFd >= 0) {
        fsync(iFd);
        close(iFd);
    }
}

}  // namespace

const char* SimStatePath()
{
    const char* pchPath = getenv(BMCSIM_STATE_ENV);
    return (pchPath != nullptr && pchPath[0] != '\0') ? pchPath : BMCSIM_STATE_DEFAULT;
}

int SimLoadState(const char* pchPath, sBmcSimState* psState, sSimError* psError)
{
    std::string sText;
    if (!ReadWholeFile(pchPath, &sText, psError)) {
        return 0;
    }
    sSimError sInner;
    if (!SimStateFromText(sText, psState, &sInner)) {
        snprintf(psError->achText, sizeof(psError->achText), "simulator state %.300s is damaged, %.150s", pchPath,
                 sInner.achText);
        return 0;
    }
    return 1;
}

int SimSaveState(const char* pchPath, const sBmcSimState& sState, sSimError* psError)
{
    std::string sTemporary = std::string(pchPath) + ".tmp." + std::to_string(static_cast<long>(getpid()));
    int iFd = open(sTemporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (iFd < 0) {
        return Refuse(psError, "cannot create", sTemporary.c_str(), errno);
    }
    bool bWritten = WriteAll(iFd, SimStateToText(sState)) && fsync(iFd) == 0;
    int iErrno = errno;
    if (close(iFd) != 0 && bWritten) {
        bWritten = false;
        iErrno = errno;
    }
    if (!bWritten || rename(sTemporary.c_str(), pchPath) != 0) {
        iErrno = bWritten ? errno : iErrno;
        unlink(sTemporary.c_str());
        return Refuse(psError, "cannot write simulator state", pchPath, iErrno);
    }
    SyncDirectory(pchPath);
    return 1;
}
