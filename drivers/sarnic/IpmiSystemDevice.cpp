// The device layer of libsarnic bound to the real system calls.
#include "IpmiDevice.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace {

int SystemOpen(void*, const char* pchPath)
{
    return open(pchPath, O_RDWR | O_CLOEXEC);
}

int SystemClose(void*, int iFd)
{
    return close(iFd);
}

int SystemIoctl(void*, int iFd, unsigned long ulRequest, void* pvArgument)
{
    return ioctl(iFd, ulRequest, pvArgument);
}

int SystemPoll(void*, int iFd, int iTimeOutMs)
{
    struct pollfd sFd = {iFd, POLLIN, 0};
    int iReady = poll(&sFd, 1, iTimeOutMs);
    if (iReady <= 0) {
        return iReady;
    }
    if ((sFd.revents & POLLIN) == 0) {
        errno = EIO;  // POLLERR, POLLHUP or POLLNVAL: the device is gone
        return -1;
    }
    return 1;
}

int64_t SystemNowMs(void*)
{
    struct timespec sNow;
    clock_gettime(CLOCK_MONOTONIC, &sNow);
    return static_cast<int64_t>(sNow.tv_sec) * 1000 + sNow.tv_nsec / 1000000;
}

}  // namespace

const sIpmiDeviceOps* SystemIpmiDeviceOps()
{
    static const sIpmiDeviceOps s_sOps = {SystemOpen, SystemClose, SystemIoctl, SystemPoll, SystemNowMs};
    return &s_sOps;
}
