// Everything the simulated BMC remembers between two exchanges: the SDR repository,
// the FRU devices, the Initialization Agent, the LAN login, the faults to inject and
// the exchange log. One state lives in one file (SimStateFile.h).
#ifndef TAVRIN_BMCSIM_BMCSIMSTATE_H
#define TAVRIN_BMCSIM_BMCSIMSTATE_H

#include <cstddef>
#include <cstdint>
#include <vector>

enum {
    BMCSIM_STATE_VERSION = 1,
    BMCSIM_REQUEST_DATA_MAX = 64,    // longer requests get C8h
    BMCSIM_RESPONSE_DATA_MAX = 100,  // data bytes behind the completion code
    BMCSIM_SDR_HEADER_SIZE = 5,
    BMCSIM_SDR_RECORD_MAX = 260,     // five header bytes and a body of up to 255
    BMCSIM_FRU_SIZE_MAX = 0xFFFF,
    BMCSIM_TEXT_MAX = 64,            // user name and password, with the terminating zero
    BMCSIM_LOG_LIMIT = 20000,        // the oldest exchanges are dropped beyond this
    BMCSIM_ANY = 0x100,              // a fault's NetFn or command that matches every value
};

// Operation-support byte of Get SDR Repository Info (bit 7, overflow, is kept apart).
enum : uint8_t {
    BMCSIM_SUPPORT_NONMODAL_UPDATE = 0x20,  // bits 6:5 = 01b
    BMCSIM_SUPPORT_DELETE = 0x08,
    BMCSIM_SUPPORT_PARTIAL_ADD = 0x04,
    BMCSIM_SUPPORT_RESERVE = 0x02,
    BMCSIM_SUPPORT_ALLOCATION_INFO = 0x01,
    BMCSIM_SUPPORT_OVERFLOW = 0x80,
    BMCSIM_SUPPORT_DEFAULT = BMCSIM_SUPPORT_NONMODAL_UPDATE | BMCSIM_SUPPORT_PARTIAL_ADD | BMCSIM_SUPPORT_RESERVE,
};

struct sSimSdrRecord {
    uint16_t u16RecordID;
    uint16_t u16Length;  // header included
    uint8_t au8Data[BMCSIM_SDR_RECORD_MAX];
};

// A record that Partial Add SDR is still receiving.
struct sSimPartialAdd {
    bool bActive;
    uint16_t u16RecordID;
    uint16_t u16Expected;  // from the header: body length + 5
    uint16_t u16Received;
    uint8_t au8Data[BMCSIM_SDR_RECORD_MAX];
};

struct sSimRepository {
    std::vector<sSimSdrRecord> vsRecords;  // in the order of the Get SDR chain
    uint32_t u32Capacity;                  // bytes of records it can hold
    uint8_t u8SupportBits;                 // reported operation support, bits 6:0
    bool bOverflow;                        // an add was refused for lack of space
    int32_t i32CountOffset;                // added to the reported record count
    uint32_t u32AdditionTime;
    uint32_t u32EraseTime;
    uint16_t u16ReservationID;             // 0: no reservation
    uint16_t u16NextRecordID;              // first candidate for the next assigned ID
    uint16_t u16ErasePolls;                // status polls that say "in progress" after an erase starts
    uint16_t u16EraseRemaining;            // of those, still to come
    sSimPartialAdd sPartial;
};

struct sSimFruDevice {
    uint8_t u8FruID;
    std::vector<uint8_t> vu8Data;  // the whole inventory area
};

// Run Initialization Agent answers the statuses of the sequence one after the other,
// from the start on each run request; the last one repeats.
struct sSimInitAgent {
    std::vector<uint8_t> vu8Sequence;
    uint32_t u32Position;
};

struct sSimLanLoginData {
    char achUser[BMCSIM_TEXT_MAX];
    char achPassword[BMCSIM_TEXT_MAX];
    uint32_t u32CipherMask;  // bit n set: cipher suite n is accepted (0..31)
};

// What the local route libraries were last opened with and set to.
struct sSimRouteInfo {
    bool bOpenRefused;     // RawOpen and InitKCSIO return no handle
    uint32_t u32KcsPort;
    int32_t i32KcsSpacing;  // -1 until InitKCSIO was called
    uint8_t au8KcsTimeouts[3];  // register, message transfer, wait before response
};

enum eSimFaultKind {
    eSimFaultNone = 0,
    eSimFaultCompletionCode,  // refused with the code, not executed
    eSimFaultNoData,          // executed, answered with completion code 0 and no data
    eSimFaultPartial,         // Read/Write FRU Data executed on at most the value's data bytes
    eSimFaultErrno,           // the route library fails with the errno value, not executed
    eSimFaultLanTimeout,      // ipmitool reports no answer, not executed
    eSimFaultLanLostReply,    // executed, but ipmitool reports no answer
    eSimFaultLanSilent,       // ipmitool prints nothing, not executed
    eSimFaultLanFlood,        // executed, ipmitool prints more than 256 bytes
    eSimFaultLanNoStart,      // the shell can't start ipmitool
    eSimFaultSignal,          // executed; then the signal is sent to the process that asked
    eSimFaultAuth,            // log only: wrong user or password
    eSimFaultCipher,          // log only: cipher suite not accepted
};

struct sSimFault {
    eSimFaultKind eKind;
    uint16_t u16NetFn;    // BMCSIM_ANY for every NetFn
    uint16_t u16Command;  // BMCSIM_ANY for every command
    uint32_t u32Nth;      // fires on the n-th matching exchange (1-based) ...
    bool bAlways;         // ... and with this on every one after it as well
    uint32_t u32Value;    // completion code, errno value or signal number
    uint32_t u32Seen;     // matching exchanges since the fault was set
};

enum eSimRoute {
    eSimRouteDriver = 0,  // libsarnic.so RawRequest
    eSimRouteIpmb,        // libsarnic.so RawIPMBRequest
    eSimRouteKcs,         // libbrevok.so KCSIORequest
    eSimRouteLan,         // the ipmitool front end
    eSimRouteDirect,      // called straight, by tests
};

struct sSimLogEntry {
    uint32_t u32Sequence;
    eSimRoute eRoute;
    uint8_t u8NetFn;
    uint8_t u8Command;
    eSimFaultKind eFault;
    bool bAnswered;  // a completion code and response exist
    uint8_t u8CompletionCode;
    std::vector<uint8_t> vu8Request;
    std::vector<uint8_t> vu8Response;
};

struct sBmcSimState {
    sSimRepository sRepository;
    std::vector<sSimFruDevice> vsFru;  // ordered by FRU ID
    sSimInitAgent sInitAgent;
    sSimLanLoginData sLan;
    sSimRouteInfo sRoute;
    bool bFixedClock;
    uint32_t u32Clock;  // seconds since 1970 when bFixedClock
    uint16_t u16LastReservationID;
    std::vector<sSimFault> vsFaults;
    std::vector<sSimLogEntry> vsLog;
    uint32_t u32NextLogSequence;
};

// A fresh BMC: empty repository of 32 KiB, default support, one erase poll in progress,
// agent sequence 0 then 1, LAN user admin/admin with every cipher suite, no FRU device.
void SimInitState(sBmcSimState* psState);

// Time stamp for the repository: the fixed clock, or the system clock.
uint32_t SimNow(const sBmcSimState* psState);

// Bytes the records take, and what is left of the capacity (0 when over it).
uint32_t SimRepositoryUsed(const sSimRepository* psRepository);
uint32_t SimRepositoryFree(const sSimRepository* psRepository);

// Index of the record with the ID, or -1.
int SimFindRecord(const sSimRepository* psRepository, uint16_t u16RecordID);

// The lowest ID from u16NextRecordID on that is neither 0, FFFFh nor in use
// (wrapping round); 0 if every ID is taken.
uint16_t SimNextFreeRecordID(const sSimRepository* psRepository);

// Appends a whole record under the ID, writing the ID into the record's first two
// bytes as a BMC does. 0 for a bad length, a taken ID or no room; 1 otherwise.
int SimAppendRecord(sSimRepository* psRepository, uint16_t u16RecordID, const uint8_t* pu8Data,
                    uint16_t u16Length);

// Erases all records and the partial add; the overflow flag goes too.
void SimEraseRepository(sSimRepository* psRepository, uint32_t u32Now);

// The FRU device with the ID, or null.
sSimFruDevice* SimFindFru(sBmcSimState* psState, uint8_t u8FruID);

// Adds or replaces a FRU device.
void SimPutFru(sBmcSimState* psState, uint8_t u8FruID, const std::vector<uint8_t>& vu8Data);

#endif
