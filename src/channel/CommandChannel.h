// The one door through which every IPMI request reaches the BMC.
#ifndef TAVRIN_CHANNEL_COMMANDCHANNEL_H
#define TAVRIN_CHANNEL_COMMANDCHANNEL_H

#include <cstdint>

class TTalkToBMC;

enum eInterface : int32_t {
    eIntfOpenIPMI = 0,  // OS IPMI driver through libsarnic.so (default)
    eIntfKCSIO = 1,     // direct KCS port I/O through libbrevok.so
    eIntfLANPlus = 2,   // the LAN through the external ipmitool
};

// LAN connection data; every text field is zero-filled before a value goes in.
struct sIolDataTag {
    char achHostIP[60];
    char achUserName[40];
    char achPassWord[40];
    char achLanIF[16];
    uint16_t u16CipherSuiteID;
};

enum {
    IPMI_REQUEST_DATA_SIZE = 32,
    IPMI_RESPONSE_DATA_SIZE = 100,
};

// Request and response of one exchange. au8ResponseData starts behind the
// completion code.
struct IPMIMessage {
    uint8_t u8CompletionCode;
    uint8_t u8RequestLength;
    uint16_t u16ResponseLength;  // in: room in au8ResponseData (100); out: bytes received
    uint8_t au8RequestData[IPMI_REQUEST_DATA_SIZE];
    uint8_t au8ResponseData[IPMI_RESPONSE_DATA_SIZE];
};

// NetFn/LUN bytes (NetFn in the upper six bits, LUN 0).
enum {
    IPMI_NETFN_APP_LUN0 = 0x18,      // NetFn 0x06
    IPMI_NETFN_STORAGE_LUN0 = 0x28,  // NetFn 0x0A
};

// Command codes.
enum {
    IPMI_CMD_GET_DEVICE_ID = 0x01,
    IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO = 0x10,
    IPMI_CMD_READ_FRU_DATA = 0x11,
    IPMI_CMD_WRITE_FRU_DATA = 0x12,
    IPMI_CMD_GET_SDR_REPOSITORY_INFO = 0x20,
    IPMI_CMD_RESERVE_SDR_REPOSITORY = 0x22,
    IPMI_CMD_GET_SDR = 0x23,
    IPMI_CMD_PARTIAL_ADD_SDR = 0x25,
    IPMI_CMD_CLEAR_SDR_REPOSITORY = 0x27,
    IPMI_CMD_RUN_INITIALIZATION_AGENT = 0x2C,
};

extern eInterface eInterfaceInUse;
extern sIolDataTag sIolData;
extern TTalkToBMC* G_pTalkBMC;

// One exchange on the selected route. 1 for success, 0 for failure; the caller reads
// the completion code and the response in both cases.
int DoIPMICommand(uint8_t u8NetFnLun, uint8_t u8Command, IPMIMessage* psMessage);

int InitializeInterface();
int InitializeKCS();
int InitializeRMCPPlus();
int GetDeviceID();
void TerminateConnSession();
void TerminateKCS();

#endif
