// Realistic SDR records for the example files and the tests.
#ifndef TAVRIN_TOOLS_SAMPLERECORDS_H
#define TAVRIN_TOOLS_SAMPLERECORDS_H

#include <cstdint>
#include <string>
#include <vector>

typedef std::vector<uint8_t> TRecord;

// A full sensor record (type 01h) for a threshold temperature sensor.
TRecord FullSensorRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, const std::string& sName);
// A compact sensor record (type 02h) for a discrete processor-presence sensor.
TRecord CompactSensorRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, const std::string& sName);
// A FRU device locator record (type 11h) for a logical FRU device.
TRecord FRUDeviceLocatorRecord(uint16_t u16RecordID, uint8_t u8FruID, const std::string& sName);
// A management controller device locator record (type 12h) for the BMC.
TRecord MCLocatorRecord(uint16_t u16RecordID, const std::string& sName);
// An OEM record (type C0h) with a manufacturer ID and a few bytes of data.
TRecord OEMRecord(uint16_t u16RecordID, const std::vector<uint8_t>& vData);

// An event-only record (type 03h) for a system event sensor; a code without both top
// bits set gives an ID string of that many raw bytes (here BCD plus digits).
TRecord EventOnlyRecord(uint16_t u16RecordID, uint8_t u8SensorNumber, uint8_t u8LengthCode,
                        const std::vector<uint8_t>& vIdBytes);
// An entity association record (type 08h): a chassis holding two power supplies.
TRecord EntityAssociationRecord(uint16_t u16RecordID);
// A device-relative entity association record (type 09h): a board holding two DIMMs.
TRecord DeviceRelativeAssociationRecord(uint16_t u16RecordID);
// A generic device locator record (type 10h) for an I2C temperature sensor chip.
TRecord GenericDeviceLocatorRecord(uint16_t u16RecordID, const std::string& sName);
// A management controller confirmation record (type 13h) for the BMC.
TRecord MCConfirmationRecord(uint16_t u16RecordID);
// A BMC message channel info record (type 14h).
TRecord BMCChannelInfoRecord(uint16_t u16RecordID);

// The record set of the binary example files: one of each kind and a few more sensors.
std::vector<TRecord> ExampleRecordSet();

// The record set of the text example files: a record of every type the type tables
// know, ID strings quoted (one with a Latin-1 letter, one with an apostrophe), in hex,
// and empty.
std::vector<TRecord> TextExampleRecordSet();

#endif
