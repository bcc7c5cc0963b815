// The command handlers of the simulated BMC, one file per command family, and the
// small helpers they share for building a response.
#ifndef TAVRIN_BMCSIM_SIMCOMMANDS_H
#define TAVRIN_BMCSIM_SIMCOMMANDS_H

#include "SimExchange.h"

// Sets the completion code and drops any data.
void SimRefuse(sSimResponse* psResponse, uint8_t u8CompletionCode);

// Appends bytes behind the completion code; 0 (and nothing written) when they don't fit.
int SimPutByte(sSimResponse* psResponse, uint8_t u8Byte);
int SimPutWord(sSimResponse* psResponse, uint16_t u16Word);
int SimPutDword(sSimResponse* psResponse, uint32_t u32Value);
int SimPutBytes(sSimResponse* psResponse, const uint8_t* pu8Data, uint16_t u16Length);

// Little-endian word of the request at the index; the caller has checked the length.
uint16_t SimRequestWord(const sSimRequest& sRequest, uint16_t u16Index);

// SimAppCommands.cpp
void SimGetDeviceID(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

// SimSdrRepository.cpp
void SimGetSdrRepositoryInfo(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);
void SimReserveSdrRepository(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);
// 1 when the reservation ID is the one in force.
int SimReservationValid(const sBmcSimState* psState, uint16_t u16ReservationID);

// SimSdrGet.cpp
void SimGetSdr(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

// SimSdrPartialAdd.cpp
void SimPartialAddSdr(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

// SimSdrClear.cpp
void SimClearSdrRepository(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

// SimInitAgent.cpp
void SimRunInitializationAgent(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);

// SimFru.cpp
void SimGetFruInventoryAreaInfo(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);
void SimReadFruData(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);
void SimWriteFruData(sBmcSimState* psState, const sSimRequest& sRequest, sSimResponse* psResponse);
// Runs the request as a device that stops after u32Bytes data bytes: Read FRU Data
// returns at most that many, Write FRU Data writes only the first that many (and says
// so in its count). Other commands run whole.
void SimExecutePartial(sBmcSimState* psState, const sSimRequest& sRequest, uint32_t u32Bytes,
                       sSimResponse* psResponse);

#endif
