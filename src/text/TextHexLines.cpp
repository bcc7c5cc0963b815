// Lines of one hex byte each, the way hex dumps are written, taken in runs straight
// from the block read ahead: a line at a time in the plain form, and sixteen at a time
// where the processor has SSE2.
#include "TextLineScan.h"

#include <cstring>

#include "TextReadAhead.h"
#include "TextUnits.h"

namespace {

const size_t kuLinesAtOnce = 16;

// The value of each byte as a hex digit, or 0xFF.
struct sHexTable {
    uint8_t au8Value[256];
    constexpr sHexTable() : au8Value()
    {
        for (int i = 0; i < 256; i++) {
            au8Value[i] = (i >= '0' && i <= '9')   ? static_cast<uint8_t>(i - '0')
                          : (i >= 'A' && i <= 'F') ? static_cast<uint8_t>(i - 'A' + 10)
                          : (i >= 'a' && i <= 'f') ? static_cast<uint8_t>(i - 'a' + 10)
                                                   : 0xFF;
        }
    }
};
constexpr sHexTable ksHex;

// Two hex digits and a line feed, in units of W bytes: 1 with the value, else 0.
template <size_t W>
int HexLineValue(const unsigned char* pu8, uint8_t* pu8Value)
{
    const uint8_t u8High = ksHex.au8Value[pu8[0]];
    const uint8_t u8Low = ksHex.au8Value[pu8[W]];
    if ((u8High | u8Low) > 0x0F || TextUnitAt<W>(pu8 + 2 * W) != TEXT_UNIT_LINE_FEED ||
        (W == 2 && (pu8[1] | pu8[W + 1]) != 0)) {
        return 0;
    }
    *pu8Value = static_cast<uint8_t>((u8High << 4) | u8Low);
    return 1;
}

#if defined(TEXT_SCAN_SSE2)
// The feed and digit places of sixteen lines of three units: bit i for unit i of 48.
constexpr uint64_t FeedPlaces()
{
    uint64_t u64Places = 0;
    for (size_t i = 2; i < 3 * kuLinesAtOnce; i += 3) {
        u64Places |= uint64_t{1} << i;
    }
    return u64Places;
}
constexpr uint64_t ku64FeedPlaces = FeedPlaces();
constexpr uint64_t ku64DigitPlaces = ((uint64_t{1} << (3 * kuLinesAtOnce)) - 1) & ~ku64FeedPlaces;

// Sixteen units as sixteen bytes: the bytes themselves, or the low bytes of characters;
// 0 if a character's high byte is not 0.
template <size_t W>
int LoadLowBytes(const unsigned char* pu8, __m128i* pvBytes)
{
    const __m128i* pvData = reinterpret_cast<const __m128i*>(pu8);
    if (W == 1) {
        *pvBytes = _mm_loadu_si128(pvData);
        return 1;
    }
    const __m128i vFirst = _mm_loadu_si128(pvData);
    const __m128i vSecond = _mm_loadu_si128(pvData + 1);
    const __m128i vHigh = _mm_and_si128(_mm_or_si128(vFirst, vSecond), _mm_set1_epi16(static_cast<short>(0xFF00)));
    *pvBytes = _mm_packus_epi16(vFirst, vSecond);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(vHigh, _mm_setzero_si128())) == 0xFFFF;
}

// The values of sixteen bytes as hex digits (0 for other bytes), and in *pu32Digits a
// bit for each byte that is one.
__m128i DigitValues(__m128i vBytes, uint32_t* pu32Digits)
{
    const __m128i vDecimal = _mm_sub_epi8(vBytes, _mm_set1_epi8('0'));
    const __m128i vIsDecimal = _mm_cmpeq_epi8(_mm_min_epu8(vDecimal, _mm_set1_epi8(9)), vDecimal);
    const __m128i vLetter = _mm_sub_epi8(_mm_or_si128(vBytes, _mm_set1_epi8(0x20)), _mm_set1_epi8('a'));
    const __m128i vIsLetter = _mm_cmpeq_epi8(_mm_min_epu8(vLetter, _mm_set1_epi8(5)), vLetter);
    *pu32Digits = static_cast<uint32_t>(_mm_movemask_epi8(_mm_or_si128(vIsDecimal, vIsLetter)));
    return _mm_or_si128(_mm_and_si128(vIsDecimal, vDecimal),
                        _mm_and_si128(vIsLetter, _mm_add_epi8(vLetter, _mm_set1_epi8(10))));
}

// Sixteen lines of two hex digits and a line feed at pu8: 1 with their values stored at
// pu8Values, else 0 with nothing stored.
template <size_t W>
int HexLines16(const unsigned char* pu8, uint8_t* pu8Values)
{
    __m128i avValues[3];
    uint64_t u64Feeds = 0;
    uint64_t u64Digits = 0;
    for (size_t k = 0; k < 3; k++) {
        __m128i vBytes;
        if (!LoadLowBytes<W>(pu8 + k * 16 * W, &vBytes)) {
            return 0;
        }
        uint32_t u32Digits = 0;
        avValues[k] = DigitValues(vBytes, &u32Digits);
        const uint32_t u32Feeds = static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(vBytes, _mm_set1_epi8('\n'))));
        u64Feeds |= static_cast<uint64_t>(u32Feeds) << (16 * k);
        u64Digits |= static_cast<uint64_t>(u32Digits) << (16 * k);
    }
    if (u64Feeds != ku64FeedPlaces || (u64Digits & ku64DigitPlaces) != ku64DigitPlaces) {
        return 0;
    }
    // Each byte's value in the high half and the next byte's in the low half: the byte of
    // a line's first digit is then the line's value.
    alignas(16) uint8_t au8Pairs[3 * 16];
    for (size_t k = 0; k < 3; k++) {
        const __m128i vNext = (k < 2) ? _mm_or_si128(_mm_srli_si128(avValues[k], 1), _mm_slli_si128(avValues[k + 1], 15))
                                      : _mm_srli_si128(avValues[k], 1);
        _mm_store_si128(reinterpret_cast<__m128i*>(au8Pairs + 16 * k),
                        _mm_or_si128(_mm_slli_epi16(avValues[k], 4), vNext));
    }
    // Gathered eight at a time into a word (a byte-wise copy would be vectorised into a
    // store and reload that stalls).
    for (size_t uHalf = 0; uHalf < 2; uHalf++) {
        uint64_t u64Values = 0;
        for (size_t i = 0; i < 8; i++) {
            u64Values |= static_cast<uint64_t>(au8Pairs[3 * (8 * uHalf + i)]) << (8 * i);
        }
        memcpy(pu8Values + 8 * uHalf, &u64Values, sizeof(u64Values));
    }
    return 1;
}
#endif

template <size_t W>
size_t TakeHexLines(sTextFileContext* psContext, uint8_t* pu8Values, size_t uMaxCount)
{
    const size_t uLineBytes = 3 * W;
    sTextReadAhead& sAhead = psContext->sAhead;
    uint8_t* pu8To = pu8Values;
    uint8_t* const pu8ToEnd = pu8Values + uMaxCount;
    while (pu8To != pu8ToEnd && TextReadAhead(psContext, kuLinesAtOnce * uLineBytes) >= uLineBytes) {
        const size_t uLinesHeld = (sAhead.uEnd - sAhead.uNext) / uLineBytes;
        const size_t uRun = (uLinesHeld < static_cast<size_t>(pu8ToEnd - pu8To)) ? uLinesHeld : pu8ToEnd - pu8To;
        const unsigned char* const pu8From = reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext);
        const unsigned char* const pu8Stop = pu8From + uRun * uLineBytes;
        const unsigned char* pu8 = pu8From;
#if defined(TEXT_SCAN_SSE2)
        while (static_cast<size_t>(pu8Stop - pu8) >= kuLinesAtOnce * uLineBytes && HexLines16<W>(pu8, pu8To)) {
            pu8 += kuLinesAtOnce * uLineBytes;
            pu8To += kuLinesAtOnce;
        }
#endif
        while (pu8 != pu8Stop && HexLineValue<W>(pu8, pu8To)) {
            pu8 += uLineBytes;
            pu8To++;
        }
        sAhead.uNext += static_cast<size_t>(pu8 - pu8From);
        if (pu8 != pu8Stop) {
            break;
        }
    }
    const size_t uTaken = static_cast<size_t>(pu8To - pu8Values);
    psContext->u16LineNumber = static_cast<uint16_t>(psContext->u16LineNumber + uTaken);
    return uTaken;
}

}  // namespace

size_t TakeHexByteLines(sTextFileContext* psContext, uint8_t* pu8Values, size_t uMaxCount, size_t uMaxBytes)
{
    if (psContext == nullptr || psContext->pFile == nullptr || pu8Values == nullptr || uMaxBytes < 6) {
        return 0;
    }
    if (psContext->eEncoding == eEncodingUTF16) {
        return TakeHexLines<2>(psContext, pu8Values, uMaxCount);
    }
    return TakeHexLines<1>(psContext, pu8Values, uMaxCount);
}
