#include "KcsPortIO.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#if defined(__linux__) && (defined(__x86_64__) || defined(__i386__))
#include <sys/io.h>
#define KCS_LINUX_PORT_IO 1
#elif defined(__FreeBSD__) && (defined(__amd64__) || defined(__i386__))
#include <sys/types.h>
#include <machine/cpufunc.h>
#define KCS_FREEBSD_PORT_IO 1
#endif

namespace {

#if defined(KCS_LINUX_PORT_IO)
unsigned int PortSpan(const sKcsPort* psPort)
{
    return static_cast<unsigned int>(psPort->u16StatusPort - psPort->u16DataPort) + 1;
}
#endif

uint8_t PortIn(uint16_t u16Port)
{
#if defined(KCS_LINUX_PORT_IO) || defined(KCS_FREEBSD_PORT_IO)
    return inb(u16Port);
#else
    (void)u16Port;
    return 0xFF;
#endif
}

void PortOut(uint16_t u16Port, uint8_t u8Value)
{
#if defined(KCS_LINUX_PORT_IO)
    outb(u8Value, u16Port);
#elif defined(KCS_FREEBSD_PORT_IO)
    outb(u16Port, u8Value);
#else
    (void)u16Port;
    (void)u8Value;
#endif
}

uint8_t ReadDataPort(void* pvContext)
{
    return PortIn(static_cast<sKcsPort*>(pvContext)->u16DataPort);
}

uint8_t ReadStatusPort(void* pvContext)
{
    return PortIn(static_cast<sKcsPort*>(pvContext)->u16StatusPort);
}

void WriteDataPort(void* pvContext, uint8_t u8Value)
{
    PortOut(static_cast<sKcsPort*>(pvContext)->u16DataPort, u8Value);
}

void WriteCommandPort(void* pvContext, uint8_t u8Value)
{
    PortOut(static_cast<sKcsPort*>(pvContext)->u16StatusPort, u8Value);
}

uint64_t MonotonicNowUs(void*)
{
    struct timespec sNow;
    clock_gettime(CLOCK_MONOTONIC, &sNow);
    return static_cast<uint64_t>(sNow.tv_sec) * 1000000u + static_cast<uint64_t>(sNow.tv_nsec) / 1000u;
}

void SleepUs(void*, uint32_t u32Microseconds)
{
    struct timespec sDelay;
    sDelay.tv_sec = static_cast<time_t>(u32Microseconds / 1000000u);
    sDelay.tv_nsec = static_cast<long>(u32Microseconds % 1000000u) * 1000;
    while (nanosleep(&sDelay, &sDelay) != 0 && errno == EINTR) {
    }
}

}  // namespace

int KcsPortOpen(sKcsPort* psPort, unsigned int uDataPort, unsigned int uStatusOffset)
{
    if (psPort == nullptr || uStatusOffset == 0 || uDataPort == 0 || uDataPort + uStatusOffset > 0xFFFF) {
        return EINVAL;
    }
    psPort->u16DataPort = static_cast<uint16_t>(uDataPort);
    psPort->u16StatusPort = static_cast<uint16_t>(uDataPort + uStatusOffset);
    psPort->iIoFd = -1;
#if defined(KCS_LINUX_PORT_IO)
    if (ioperm(psPort->u16DataPort, PortSpan(psPort), 1) != 0) {
        return errno;
    }
    return 0;
#elif defined(KCS_FREEBSD_PORT_IO)
    psPort->iIoFd = open("/dev/io", O_RDWR | O_CLOEXEC);
    return (psPort->iIoFd < 0) ? errno : 0;
#else
    return ENOSYS;
#endif
}

void KcsPortClose(sKcsPort* psPort)
{
    if (psPort == nullptr) {
        return;
    }
#if defined(KCS_LINUX_PORT_IO)
    ioperm(psPort->u16DataPort, PortSpan(psPort), 0);
#endif
    if (psPort->iIoFd >= 0) {
        close(psPort->iIoFd);
        psPort->iIoFd = -1;
    }
}

void KcsPortBindRegisters(sKcsPort* psPort, sKcsRegisterAccess* psRegisters)
{
    psRegisters->pvContext = psPort;
    psRegisters->pfnReadData = ReadDataPort;
    psRegisters->pfnReadStatus = ReadStatusPort;
    psRegisters->pfnWriteData = WriteDataPort;
    psRegisters->pfnWriteCommand = WriteCommandPort;
    psRegisters->pfnNowUs = MonotonicNowUs;
    psRegisters->pfnSleepUs = SleepUs;
}
