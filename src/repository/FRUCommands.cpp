// The IPMI Storage commands of FRU inventory devices (IPMI v2.0, section 34).
#include "repository/FRUCommands.h"

#include <cstdio>
#include <cstring>

#include "channel/ByteHelpers.h"
#include "channel/CommandChannel.h"
#include "common/DebugOutput.h"
#include "fru/FRUImage.h"
#include "repository/RepositoryOutput.h"

namespace {

enum {
    FRU_INFO_REQUEST_SIZE = 1,   // FRU ID
    FRU_INFO_RESPONSE_SIZE = 2,  // area size; the access mode byte is not read
    FRU_READ_REQUEST_SIZE = 4,   // FRU ID, offset, count
    FRU_WRITE_HEAD_SIZE = 3,     // FRU ID, offset; the data follow
    FRU_COUNT_SIZE = 1,          // the count in front of the data read, and of a write's answer
    FRU_WRITE_DATA_LIMIT = IPMI_REQUEST_DATA_SIZE - FRU_WRITE_HEAD_SIZE,
    FRU_READ_DATA_LIMIT = IPMI_RESPONSE_DATA_SIZE - FRU_COUNT_SIZE,
};

void PrepareFRUMessage(IPMIMessage* psMessage, uint8_t u8FruID, uint16_t u16Offset, uint8_t u8RequestLength)
{
    std::memset(psMessage, 0, sizeof(*psMessage));
    psMessage->u8RequestLength = u8RequestLength;
    psMessage->u16ResponseLength = IPMI_RESPONSE_DATA_SIZE;
    psMessage->au8RequestData[0] = u8FruID;
    psMessage->au8RequestData[1] = GetLowByteOfWord(u16Offset);
    psMessage->au8RequestData[2] = GetHighByteOfWord(u16Offset);
}

// The data bytes that came back behind the count, never more than the response holds.
uint16_t DataBytesReceived(const IPMIMessage* psMessage)
{
    uint16_t u16Received = psMessage->u16ResponseLength;
    if (u16Received > IPMI_RESPONSE_DATA_SIZE) {
        u16Received = IPMI_RESPONSE_DATA_SIZE;
    }
    return u16Received > FRU_COUNT_SIZE ? static_cast<uint16_t>(u16Received - FRU_COUNT_SIZE) : 0;
}

void ReportReadFailure(uint8_t u8CompletionCode)
{
    RepositoryWriteLine(stderr, "<ERROR> Error in executing IPMI command because of: Failure to read data from FRU.");
    RepositoryWriteCompletionCode(u8CompletionCode);
}

// One Read FRU Data exchange. It succeeds only when the response holds at least
// u16Needed data bytes: a device that answers fewer bytes than it has is refused, so
// that no byte that didn't come is taken for image data.
bool ReadFRUBlock(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Count, uint16_t u16Needed, IPMIMessage* psMessage)
{
    PrepareFRUMessage(psMessage, u8FruID, u16Offset, FRU_READ_REQUEST_SIZE);
    psMessage->au8RequestData[3] = u8Count;
    DebugMessage("\n=> CMD_READ_FRU_DATA\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_READ_FRU_DATA, psMessage) == 0) {
        ReportReadFailure(psMessage->u8CompletionCode);
        return false;
    }
    const uint16_t u16Received = DataBytesReceived(psMessage);
    if (u16Received < u16Needed) {
        ReportReadFailure(psMessage->u8CompletionCode);
        std::fprintf(stderr, "Only %u of %u bytes came back from offset 0x%X. \n", u16Received, u16Needed, u16Offset);
        return false;
    }
    return true;
}

// One Write FRU Data exchange of u8Size bytes from pu8Data. *pu8Written (when given)
// receives the count the device reports, or u8Size when its answer carries none.
eState WriteFRUBlock(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Size, const uint8_t* pu8Data,
                     uint8_t* pu8Written = nullptr)
{
    IPMIMessage sMessage;
    PrepareFRUMessage(&sMessage, u8FruID, u16Offset, static_cast<uint8_t>(FRU_WRITE_HEAD_SIZE + u8Size));
    std::memcpy(sMessage.au8RequestData + FRU_WRITE_HEAD_SIZE, pu8Data, u8Size);
    DebugMessage("\n=> CMD_WRITE_FRU_DATA\n");
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_WRITE_FRU_DATA, &sMessage) == 0) {
        RepositoryWriteLine(stderr,
                            "<ERROR> Error in executing IPMI command because of: Failure to write data to FRU.");
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateFailed;
    }
    const uint8_t u8Written = sMessage.au8ResponseData[0];
    DebugMessage("   CMD_WRITE_FRU_DATA --- count = %d \n", u8Written);
    if (pu8Written != nullptr) {
        *pu8Written = (sMessage.u16ResponseLength >= FRU_COUNT_SIZE) ? u8Written : u8Size;
    }
    // A short count is no failure and the block is not sent again, but the user learns
    // that the device holds less than was sent.
    if (sMessage.u16ResponseLength >= FRU_COUNT_SIZE && u8Written < u8Size) {
        std::fprintf(stderr, "Warning: FRU device wrote %u of %u bytes at offset 0x%X. \n", u8Written, u8Size,
                     u16Offset);
        std::fflush(stderr);
    }
    return eStateFRUWriteOK;
}

}  // namespace

eState GetFRUInventoryAreaInfoCommand(uint8_t u8FruID)
{
    IPMIMessage sMessage;
    PrepareFRUMessage(&sMessage, u8FruID, 0, FRU_INFO_REQUEST_SIZE);
    DebugMessage("\n=> CMD_GET_FRU_INVENTORY_AREA_INFO\n");
    // A response without the size (possible on the LAN route) fails like a refusal.
    if (DoIPMICommand(IPMI_NETFN_STORAGE_LUN0, IPMI_CMD_GET_FRU_INVENTORY_AREA_INFO, &sMessage) == 0 ||
        sMessage.u16ResponseLength < FRU_INFO_RESPONSE_SIZE) {
        RepositoryWriteLine(stderr, "<ERROR> Error in executing IPMI command because of: ");
        std::fprintf(stderr, "FRU Device 0x%X error or not exist.\n", u8FruID);
        RepositoryWriteCompletionCode(sMessage.u8CompletionCode);
        return eStateFailed;
    }
    G_u16FRUInventoryAreaSize = ParseByIndex(sMessage.au8ResponseData, 0, 2);
    DebugMessage("FRU Inventory area size = 0x%X Bytes \n", G_u16FRUInventoryAreaSize);
    return G_u16FRUInventoryAreaSize != 0 ? eStateFRUInfoOK : eStateFailed;
}

eState ReadFRUDataCommand(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Count)
{
    if (G_pu8InventoryFRUDataBuffer == nullptr ||
        u16Offset + FRU_BLOCK_SIZE > G_u16FRUInventoryAreaSize + FRU_BLOCK_SIZE) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    // Only the part of the block inside the area must come back.
    const uint16_t u16Inside = static_cast<uint16_t>(G_u16FRUInventoryAreaSize - u16Offset);
    const uint16_t u16Needed = u16Inside < u8Count ? u16Inside : u8Count;
    IPMIMessage sMessage;
    if (!ReadFRUBlock(u8FruID, u16Offset, u8Count, u16Needed, &sMessage)) {
        return eStateFailed;
    }
    std::memcpy(G_pu8InventoryFRUDataBuffer + u16Offset, sMessage.au8ResponseData + FRU_COUNT_SIZE, FRU_BLOCK_SIZE);
    return eStateFRUReadOK;
}

eState ReadFRUDataCommandToLocalBuffer(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Count, uint8_t* pu8Buffer,
                                       uint8_t u8Position)
{
    if (pu8Buffer == nullptr) {
        std::fputs("<ERROR> Internal Error.", stderr);
        std::fflush(stderr);
        return eStateFailed;
    }
    if (u8Count > FRU_READ_DATA_LIMIT) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    IPMIMessage sMessage;
    if (!ReadFRUBlock(u8FruID, u16Offset, u8Count, u8Count, &sMessage)) {
        return eStateFailed;
    }
    std::memcpy(pu8Buffer + u8Position, sMessage.au8ResponseData + FRU_COUNT_SIZE, u8Count);
    return eStateFRUReadOK;
}

eState WriteFRUDataCommand(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Size, const uint8_t* pu8Buffer)
{
    if (pu8Buffer == nullptr || u8Size > FRU_WRITE_DATA_LIMIT) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    return WriteFRUBlock(u8FruID, u16Offset, u8Size, pu8Buffer + u16Offset);
}

eState WriteFRUDataCommandFromLocalBuffer(uint8_t u8FruID, uint16_t u16Offset, uint8_t u8Size, const uint8_t* pu8Buffer,
                                          uint8_t u8Position, uint8_t* pu8Written)
{
    if (pu8Buffer == nullptr || u8Size > FRU_WRITE_DATA_LIMIT) {
        RepositoryReportInternalError();
        return eStateFailed;
    }
    return WriteFRUBlock(u8FruID, u16Offset, u8Size, pu8Buffer + u8Position, pu8Written);
}
