// What the two simulated route libraries share: a handle that remembers the state
// file and the route, and one request served from the model.
#ifndef TAVRIN_DRIVERS_SIM_SIMROUTEGLUE_H
#define TAVRIN_DRIVERS_SIM_SIMROUTEGLUE_H

#include <cstdint>

#include "BmcSimState.h"
#include "channel/RouteLibraryApi.h"

enum eSimTimeout {
    eSimTimeoutRegister = 0,
    eSimTimeoutMessageTransfer = 1,
    eSimTimeoutWaitBeforeResponse = 2,
};

// A handle for the route, or null when the state can't be read or refuses opening.
// The KCS route records its port and spacing in the state.
TRouteHandle SimRouteOpen(eSimRoute eRoute, uint32_t u32Port, int32_t i32Spacing);
void SimRouteClose(TRouteHandle hHandle);

// One request on the handle's route (eSimRouteIpmb for an IPMB request on the driver
// route). 0 with the completion code and response filled, or an errno value.
int SimRouteRequest(TRouteHandle hHandle, eSimRoute eRoute, uint8_t u8NetFnLun, uint8_t u8Command,
                    const uint8_t* pu8Request, uint8_t u8RequestLength, uint8_t* pu8CompletionCode,
                    uint8_t* pu8Response, uint16_t* pu16ResponseLength);

// Stores a KCS time limit in the state; 0 or an errno value.
int SimRouteSetTimeout(TRouteHandle hHandle, eSimTimeout eWhich, uint8_t u8Value);

#endif
