// Building a response behind the completion code, never past its 100 bytes.
#include "SimCommands.h"

#include <cstring>

void SimRefuse(sSimResponse* psResponse, uint8_t u8CompletionCode)
{
    psResponse->u8CompletionCode = u8CompletionCode;
    psResponse->u16Length = 0;
}

int SimPutBytes(sSimResponse* psResponse, const uint8_t* pu8Data, uint16_t u16Length)
{
    if (u16Length > BMCSIM_RESPONSE_DATA_MAX - psResponse->u16Length) {
        return 0;
    }
    if (u16Length > 0) {
        memcpy(psResponse->au8Data + psResponse->u16Length, pu8Data, u16Length);
    }
    psResponse->u16Length = static_cast<uint16_t>(psResponse->u16Length + u16Length);
    return 1;
}

int SimPutByte(sSimResponse* psResponse, uint8_t u8Byte)
{
    return SimPutBytes(psResponse, &u8Byte, 1);
}

int SimPutWord(sSimResponse* psResponse, uint16_t u16Word)
{
    const uint8_t au8Bytes[2] = {static_cast<uint8_t>(u16Word & 0xFF), static_cast<uint8_t>(u16Word >> 8)};
    return SimPutBytes(psResponse, au8Bytes, sizeof(au8Bytes));
}

int SimPutDword(sSimResponse* psResponse, uint32_t u32Value)
{
    const uint8_t au8Bytes[4] = {static_cast<uint8_t>(u32Value & 0xFF), static_cast<uint8_t>((u32Value >> 8) & 0xFF),
                                 static_cast<uint8_t>((u32Value >> 16) & 0xFF),
                                 static_cast<uint8_t>(u32Value >> 24)};
    return SimPutBytes(psResponse, au8Bytes, sizeof(au8Bytes));
}

uint16_t SimRequestWord(const sSimRequest& sRequest, uint16_t u16Index)
{
    return static_cast<uint16_t>(sRequest.pu8Data[u16Index] | (sRequest.pu8Data[u16Index + 1] << 8));
}
