// The KCS registers as I/O ports of the machine: ioperm/inb/outb on Linux, /dev/io
// with inb/outb on FreeBSD (x86 only), plus the real clock for the time limits.
#ifndef TAVRIN_DRIVERS_BREVOK_KCSPORTIO_H
#define TAVRIN_DRIVERS_BREVOK_KCSPORTIO_H

#include <cstdint>

#include "KcsRegisters.h"

struct sKcsPort {
    uint16_t u16DataPort;
    uint16_t u16StatusPort;
    int iIoFd;  // FreeBSD: the open /dev/io that grants port access; else -1
};

// Gains access to the ports from uDataPort to uDataPort + uStatusOffset.
// 0, or an errno value (EPERM without the privilege, ENOSYS without port I/O).
int KcsPortOpen(sKcsPort* psPort, unsigned int uDataPort, unsigned int uStatusOffset);
void KcsPortClose(sKcsPort* psPort);

// Binds the register access to the ports, with the system's monotonic clock.
void KcsPortBindRegisters(sKcsPort* psPort, sKcsRegisterAccess* psRegisters);

#endif
