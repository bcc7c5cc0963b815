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

// The record set of the example files: one of each kind and a few more sensors.
std::vector<TRecord> ExampleRecordSet();

#endif
