// Stand-ins for libsarnic.so and libbrevok.so (FakeRouteLibrary.cpp): their exports
// record what they were called with and answer as the test sets in FakeRouteControl().
#ifndef TAVRIN_TESTS_BMCACCESS_FAKEROUTECONTROL_H
#define TAVRIN_TESTS_BMCACCESS_FAKEROUTECONTROL_H

#include <cstdint>

struct sFakeRouteControl {
    // Behaviour.
    bool bRefuseOpen;
    int iResult;  // of requests and setters
    uint8_t u8CompletionCode;
    uint8_t au8Response[4];
    uint16_t u16ResponseLength;
    // Calls seen.
    int iOpenCalls;
    void* hClosed;
    unsigned int uPortAddress;
    int iSpacing;
    uint8_t u8TargetAddress;
    uint8_t u8NetFnLun;
    uint8_t u8Command;
    uint8_t u8RequestLength;
    const char* pchSetter;
    uint8_t u8SetterValue;
};

typedef sFakeRouteControl* (*TFakeRouteControl)(void);

#endif
