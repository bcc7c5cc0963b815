// fru-load, fru-create, fru-dump, fru-save and fru-remove.
#include <cstdio>

#include "CliCommands.h"

namespace {

const uint8_t kBlankByte = 0xFF;  // what an unwritten EEPROM reads

int ReadFruID(const char* pchText, uint8_t* pu8FruID)
{
    uint32_t u32Value = 0;
    if (!CliUnsigned(pchText, 0xFF, &u32Value, "a FRU ID")) {
        return 0;
    }
    *pu8FruID = static_cast<uint8_t>(u32Value);
    return 1;
}

// The whole file, at most BMCSIM_FRU_SIZE_MAX bytes; 0 after a message.
int ReadImageFile(const char* pchPath, std::vector<uint8_t>* pvu8Image)
{
    FILE* pFile = fopen(pchPath, "rb");
    if (pFile == nullptr) {
        CliFail("cannot open %s", pchPath);
        return 0;
    }
    uint8_t au8Buffer[4096];
    size_t uRead = 0;
    while ((uRead = fread(au8Buffer, 1, sizeof(au8Buffer), pFile)) > 0 &&
           pvu8Image->size() + uRead <= BMCSIM_FRU_SIZE_MAX) {
        pvu8Image->insert(pvu8Image->end(), au8Buffer, au8Buffer + uRead);
    }
    bool bGood = !ferror(pFile) && uRead == 0;
    fclose(pFile);
    if (!bGood) {
        CliFail("cannot read %s, or it has more than %d bytes", pchPath, BMCSIM_FRU_SIZE_MAX);
    }
    return bGood ? 1 : 0;
}

const sSimFruDevice* ExistingDevice(sBmcSimState* psState, const char* pchFruID)
{
    uint8_t u8FruID = 0;
    if (!ReadFruID(pchFruID, &u8FruID)) {
        return nullptr;
    }
    const sSimFruDevice* psDevice = SimFindFru(psState, u8FruID);
    if (psDevice == nullptr) {
        CliFail("there is no FRU device %u", u8FruID);
    }
    return psDevice;
}

}  // namespace

int CliFruLoad(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    uint8_t u8FruID = 0;
    std::vector<uint8_t> vu8Image;
    if (!CliExpect(iArgc, 2, 3, "fru-load <id> <file> [<size>]") || !ReadFruID(ppchArgv[0], &u8FruID) ||
        !ReadImageFile(ppchArgv[1], &vu8Image)) {
        return 1;
    }
    uint32_t u32Size = static_cast<uint32_t>(vu8Image.size());
    if (iArgc == 3 && !CliUnsigned(ppchArgv[2], BMCSIM_FRU_SIZE_MAX, &u32Size, "the area size")) {
        return 1;
    }
    if (u32Size < vu8Image.size()) {
        return CliFail("the image has %u bytes, more than the area of %u", static_cast<unsigned>(vu8Image.size()),
                       u32Size);
    }
    vu8Image.resize(u32Size, kBlankByte);
    SimPutFru(psState, u8FruID, vu8Image);
    return 0;
}

int CliFruCreate(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    uint8_t u8FruID = 0;
    uint32_t u32Size = 0, u32Fill = kBlankByte;
    if (!CliExpect(iArgc, 2, 3, "fru-create <id> <size> [<fill>]") || !ReadFruID(ppchArgv[0], &u8FruID) ||
        !CliUnsigned(ppchArgv[1], BMCSIM_FRU_SIZE_MAX, &u32Size, "the area size") ||
        (iArgc == 3 && !CliUnsigned(ppchArgv[2], 0xFF, &u32Fill, "the fill byte"))) {
        return 1;
    }
    SimPutFru(psState, u8FruID, std::vector<uint8_t>(u32Size, static_cast<uint8_t>(u32Fill)));
    return 0;
}

int CliFruDump(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 1, 1, "fru-dump <id>")) {
        return 1;
    }
    const sSimFruDevice* psDevice = ExistingDevice(psState, ppchArgv[0]);
    if (psDevice == nullptr) {
        return 1;
    }
    const std::vector<uint8_t>& vu8Data = psDevice->vu8Data;
    for (size_t i = 0; i < vu8Data.size(); i++) {
        if (i % 16 == 0) {
            printf("%04x:", static_cast<unsigned>(i));
        }
        printf(" %02x", vu8Data[i]);
        if (i % 16 == 15 || i + 1 == vu8Data.size()) {
            putchar('\n');
        }
    }
    return 0;
}

int CliFruSave(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 2, 2, "fru-save <id> <file>")) {
        return 1;
    }
    const sSimFruDevice* psDevice = ExistingDevice(psState, ppchArgv[0]);
    if (psDevice == nullptr) {
        return 1;
    }
    FILE* pFile = fopen(ppchArgv[1], "wb");
    if (pFile == nullptr) {
        return CliFail("cannot create %s", ppchArgv[1]);
    }
    size_t uSize = psDevice->vu8Data.size();
    bool bGood = fwrite(psDevice->vu8Data.data(), 1, uSize, pFile) == uSize;
    bGood = (fclose(pFile) == 0) && bGood;
    return bGood ? 0 : CliFail("cannot write %s", ppchArgv[1]);
}

int CliFruRemove(sBmcSimState* psState, int iArgc, char** ppchArgv)
{
    if (!CliExpect(iArgc, 1, 1, "fru-remove <id>")) {
        return 1;
    }
    const sSimFruDevice* psDevice = ExistingDevice(psState, ppchArgv[0]);
    if (psDevice == nullptr) {
        return 1;
    }
    psState->vsFru.erase(psState->vsFru.begin() + (psDevice - psState->vsFru.data()));
    return 0;
}
