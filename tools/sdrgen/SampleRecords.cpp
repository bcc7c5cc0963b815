#include "SampleRecords.h"

#include <algorithm>

namespace {

const uint8_t kSdrVersion = 0x51;
const uint8_t kBmcSlaveAddress = 0x20;

// Header with the body length filled in from what follows it.
TRecord Finish(uint16_t u16RecordID, uint8_t u8Type, const std::vector<uint8_t>& vBody)
{
    TRecord vRecord(5 + vBody.size());
    vRecord[0] = static_cast<uint8_t>(u16RecordID & 0xFF);
    vRecord[1] = static_cast<uint8_t>(u16RecordID >> 8);
    vRecord[2] = kSdrVersion;
    vRecord[3] = u8Type;
    vRecord[4] = static_cast<uint8_t>(vBody.size());
    std::copy(vBody.begin(), vBody.end(), vRecord.begin() + 5);
    return vRecord;
}

// 8-bit ASCII ID string (type 11b) with its type/length byte in front.
void AppendIdString(std::vector<uint8_t>& vBody, const std::string& sName)
{
    std::string sCut = sName.substr(0, 16);
    vBody.push_back(static_cast<uint8_t>(0xC0 | sCut.size()));
    vBody.insert(vBody.end(), sCut.begin(), sCut.end());
}

}  // namespace

TRecord FullSensorRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, const std::string& sName)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, 0x00, u8SensorNumber,  // owner, LUN, sensor number
        0x03, 0x01,                              // entity: processor 1
        0x7F, 0x68,                              // initialization, capabilities
        0x01, 0x01,                              // temperature, threshold reading
        0x95, 0x0A, 0x95, 0x0A, 0x3F, 0x3F,      // assertion, deassertion, reading masks
        0x00, 0x01, 0x00,                        // units: unsigned, degrees C
        0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00,  // linear, M = 1, B = 0, exponents 0
        0x07, 0x28, 0x50, 0x0A, 0xFF, 0x00,      // flags, nominal, normal max/min, sensor max/min
        0x64, 0x5A, 0x55, 0x00, 0x05, 0x0A,      // UNR, UCR, UNC, LNR, LCR, LNC
        0x02, 0x02, 0x00, 0x00, 0x00,            // hysteresis, reserved, OEM
    };
    AppendIdString(vBody, sName);
    return Finish(u16RecordID, 0x01, vBody);
}

TRecord CompactSensorRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, const std::string& sName)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, 0x00, u8SensorNumber,  // owner, LUN, sensor number
        0x03, 0x02,                              // entity: processor 2
        0x67, 0x40,                              // initialization, capabilities
        0x07, 0x6F,                              // processor, sensor-specific
        0x80, 0x00, 0x80, 0x00, 0x80, 0x00,      // assertion, deassertion, reading masks
        0xC0, 0x00, 0x00,                        // units: none
        0x01, 0x00,                              // record sharing: one sensor
        0x00, 0x00,                              // hysteresis
        0x00, 0x00, 0x00,                        // reserved
        0x00,                                    // OEM
    };
    AppendIdString(vBody, sName);
    return Finish(u16RecordID, 0x02, vBody);
}

TRecord FRUDeviceLocatorRecord(uint16_t u16RecordID, uint8_t u8FruID, const std::string& sName)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, u8FruID, 0x80,  // controller, FRU ID, logical device
        0x00, 0x00,                       // channel 0, reserved
        0x10, 0x00,                       // IPMI FRU inventory device
        0x07, 0x01,                       // entity: system board 1
        0x00,                             // OEM
    };
    AppendIdString(vBody, sName);
    return Finish(u16RecordID, 0x11, vBody);
}

TRecord MCLocatorRecord(uint16_t u16RecordID, const std::string& sName)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, 0x00,  // slave address, channel 0
        0x00, 0xBF,              // power state, device capabilities
        0x00, 0x00, 0x00,        // reserved
        0x2E, 0x01,              // entity: management controller 1
        0x00,                    // OEM
    };
    AppendIdString(vBody, sName);
    return Finish(u16RecordID, 0x12, vBody);
}

TRecord OEMRecord(uint16_t u16RecordID, const std::vector<uint8_t>& vData)
{
    std::vector<uint8_t> vBody = {0x57, 0x01, 0x00};  // manufacturer ID 000157h
    vBody.insert(vBody.end(), vData.begin(), vData.end());
    return Finish(u16RecordID, 0xC0, vBody);
}

std::vector<TRecord> ExampleRecordSet()
{
    return {
        MCLocatorRecord(0x0001, "BMC"),
        FullSensorRecord(0x0002, 0x01, "CPU1 Temp"),
        FullSensorRecord(0x0003, 0x02, "Inlet Temp"),
        CompactSensorRecord(0x0004, 0x10, "CPU2 Status"),
        FRUDeviceLocatorRecord(0x0005, 0x00, "Baseboard FRU"),
        OEMRecord(0x0006, {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08}),
    };
}
