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

TRecord EventOnlyRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, uint8_t u8LengthCode,
                        const std::vector<uint8_t>& vIdBytes)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, 0x00, u8SensorNumber,  // owner, LUN, sensor number
        0x17, 0x01,                              // entity: system chassis 1
        0x12, 0x6F,                              // system event, sensor-specific
        0x01, 0x00,                              // record sharing: one sensor
        0x00,                                    // reserved
        0x00,                                    // OEM
        u8LengthCode,
    };
    vBody.insert(vBody.end(), vIdBytes.begin(), vIdBytes.end());
    return Finish(u16RecordID, 0x03, vBody);
}

TRecord EntityAssociationRecord(uint16_t u16RecordID)
{
    return Finish(u16RecordID, 0x08, {
        0x17, 0x01,              // container: system chassis 1
        0x00,                    // a list of entities, no links
        0x0A, 0x01, 0x0A, 0x02,  // power supplies 1 and 2
        0x00, 0x00, 0x00, 0x00,  // unused
    });
}

TRecord DeviceRelativeAssociationRecord(uint16_t u16RecordID)
{
    return Finish(u16RecordID, 0x09, {
        0x07, 0x61,              // container: system board, device-relative instance 1
        kBmcSlaveAddress, 0x00,  // its controller, channel 0
        0x00,                    // a list of entities, no links
        kBmcSlaveAddress, 0x00, 0x20, 0x61,  // memory device 1
        kBmcSlaveAddress, 0x00, 0x20, 0x62,  // memory device 2
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // unused
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // reserved
    });
}

TRecord GenericDeviceLocatorRecord(uint16_t u16RecordID, const std::string& sName)
{
    std::vector<uint8_t> vBody = {
        0x00, 0x98,  // access address, slave address of the chip
        0x02,        // LUN 0, private bus 2
        0x00, 0x00,  // address span, reserved
        0x08, 0x00,  // temperature sensor chip
        0x07, 0x01,  // entity: system board 1
        0x00,        // OEM
    };
    AppendIdString(vBody, sName);
    return Finish(u16RecordID, 0x10, vBody);
}

TRecord MCConfirmationRecord(uint16_t u16RecordID)
{
    std::vector<uint8_t> vBody = {
        kBmcSlaveAddress, 0x20,  // slave address, device ID
        0x01, 0x05, 0x12,        // channel 0 and device revision 1, firmware 5.12
        0x02,                    // IPMI 2.0
        0x57, 0x01, 0x00,        // manufacturer ID 000157h
        0x34, 0x12,              // product ID
    };
    for (uint8_t i = 0; i < 16; i++) {
        vBody.push_back(static_cast<uint8_t>(0xA0 + i));  // device GUID
    }
    return Finish(u16RecordID, 0x13, vBody);
}

TRecord BMCChannelInfoRecord(uint16_t u16RecordID)
{
    return Finish(u16RecordID, 0x14, {
        0x81, 0x02, 0x04, 0x05, 0x06, 0x07, 0x0C, 0x0F,  // channels 0-7: protocol each
        0x60,                                           // messaging interrupt: none
        0x61,                                           // event buffer interrupt: none
        0x00,                                           // reserved
    });
}

std::vector<TRecord> TextExampleRecordSet()
{
    return {
        MCLocatorRecord(0x0001, "BMC"),
        MCConfirmationRecord(0x0002),
        BMCChannelInfoRecord(0x0003),
        FullSensorRecord(0x0004, 0x01, "CPU1 Temp"),
        CompactSensorRecord(0x0005, 0x10, "CPU2 Status"),
        FullSensorRecord(0x0006, 0x30, "L\xFC" "fter 1"),
        EventOnlyRecord(0x0007, 0x40, 0x43, {0x01, 0x02, 0x03}),
        EntityAssociationRecord(0x0008),
        DeviceRelativeAssociationRecord(0x0009),
        GenericDeviceLocatorRecord(0x000A, "Board's temp"),
        GenericDeviceLocatorRecord(0x000B, ""),
        FRUDeviceLocatorRecord(0x000C, 0x00, "Baseboard FRU"),
        OEMRecord(0x000D, {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08}),
    };
}
