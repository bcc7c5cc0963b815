// The IPMI device interface of the kernel: struct ipmi_req, struct ipmi_recv, the
// address types and the IPMICTL_* requests. Linux and FreeBSD share its shape.
#ifndef TAVRIN_DRIVERS_SARNIC_IPMIKERNELINTERFACE_H
#define TAVRIN_DRIVERS_SARNIC_IPMIKERNELINTERFACE_H

#if defined(__linux__)
#include <sys/ioctl.h>
#include <linux/ipmi.h>
#elif defined(__FreeBSD__)
#include <sys/types.h>
#include <sys/ioccom.h>
#include <sys/ipmi.h>
#else
#error "libsarnic needs the IPMI device interface of Linux or FreeBSD"
#endif

#endif
