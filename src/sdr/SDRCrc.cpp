#include "SDRCrc.h"

namespace {

constexpr uint16_t kCrcPolynomial = 0x1021;

constexpr std::array<uint16_t, 256> MakeCrcTable()
{
    std::array<uint16_t, 256> au16Table{};
    for (unsigned i = 0; i < 256; i++) {
        unsigned uCrc = i << 8;
        for (int iBit = 0; iBit < 8; iBit++) {
            uCrc = (uCrc & 0x8000) ? ((uCrc << 1) ^ kCrcPolynomial) : (uCrc << 1);
        }
        au16Table[i] = static_cast<uint16_t>(uCrc & 0xFFFF);
    }
    return au16Table;
}

}  // namespace

const std::array<uint16_t, 256> u16CRCTable = MakeCrcTable();
