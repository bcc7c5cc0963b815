// Both scans work on the block read ahead, a character (unit) at a time in the plain
// form and sixteen at a time where the processor has SSE2: a unit is a byte in ASCII and
// UTF-8 files and a little-endian 16-bit character in UTF-16 files.
#include "TextLineScan.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "TextReadAhead.h"

namespace {

const uint16_t ku16LineFeed = 0x0A;
const size_t kuBlockUnits = 64;  // the units of one step of the skip: one bit each in a mask
const size_t kuMaxStops = 4;

// The stop characters of a skip.
struct sStopSet {
    size_t uCount;
    uint16_t au16Unit[kuMaxStops];
};

// Which units of a block are line feeds, and which are stop characters.
struct sBlockMasks {
    uint64_t u64Feeds;
    uint64_t u64Stops;
};

// The number of bits set in a mask (a processor without its own instruction for it
// would otherwise call a library function on every block).
inline size_t CountBits(uint64_t u64Mask)
{
    u64Mask = u64Mask - ((u64Mask >> 1) & 0x5555555555555555u);
    u64Mask = (u64Mask & 0x3333333333333333u) + ((u64Mask >> 2) & 0x3333333333333333u);
    u64Mask = (u64Mask + (u64Mask >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    return static_cast<size_t>((u64Mask * 0x0101010101010101u) >> 56);
}

template <size_t W>
uint16_t UnitAt(const unsigned char* pu8)
{
    return (W == 1) ? pu8[0] : static_cast<uint16_t>(pu8[0] | (pu8[1] << 8));
}

template <size_t W>
sBlockMasks PlainMasks(const unsigned char* pu8, size_t uUnits, const sStopSet& sStops)
{
    sBlockMasks sMasks = {0, 0};
    for (size_t i = 0; i < uUnits; i++) {
        const uint16_t u16Unit = UnitAt<W>(pu8 + i * W);
        sMasks.u64Feeds |= static_cast<uint64_t>(u16Unit == ku16LineFeed) << i;
        for (size_t k = 0; k < sStops.uCount; k++) {
            sMasks.u64Stops |= static_cast<uint64_t>(u16Unit == sStops.au16Unit[k]) << i;
        }
    }
    return sMasks;
}

#if defined(__SSE2__)
// Sixteen units compared with u16Unit: all ones in the byte of each unit that equals it.
template <size_t W>
__m128i Equal16(const unsigned char* pu8, uint16_t u16Unit)
{
    const __m128i* pvData = reinterpret_cast<const __m128i*>(pu8);
    if (W == 1) {
        return _mm_cmpeq_epi8(_mm_loadu_si128(pvData), _mm_set1_epi8(static_cast<char>(u16Unit)));
    }
    const __m128i vUnit = _mm_set1_epi16(static_cast<short>(u16Unit));
    return _mm_packs_epi16(_mm_cmpeq_epi16(_mm_loadu_si128(pvData), vUnit),
                           _mm_cmpeq_epi16(_mm_loadu_si128(pvData + 1), vUnit));
}

template <size_t W>
sBlockMasks BlockMasks(const unsigned char* pu8, const sStopSet& sStops)
{
    sBlockMasks sMasks = {0, 0};
    for (size_t uPart = 0; uPart < kuBlockUnits / 16; uPart++) {
        const unsigned char* pu8Part = pu8 + uPart * 16 * W;
        __m128i vStops = _mm_setzero_si128();
        for (size_t k = 0; k < sStops.uCount; k++) {
            vStops = _mm_or_si128(vStops, Equal16<W>(pu8Part, sStops.au16Unit[k]));
        }
        const uint64_t u64Feeds = static_cast<uint16_t>(_mm_movemask_epi8(Equal16<W>(pu8Part, ku16LineFeed)));
        sMasks.u64Feeds |= u64Feeds << (uPart * 16);
        sMasks.u64Stops |= static_cast<uint64_t>(static_cast<uint16_t>(_mm_movemask_epi8(vStops))) << (uPart * 16);
    }
    return sMasks;
}
#else
template <size_t W>
sBlockMasks BlockMasks(const unsigned char* pu8, const sStopSet& sStops)
{
    return PlainMasks<W>(pu8, kuBlockUnits, sStops);
}
#endif

// Lines of at most uMaxUnits units (line feed included, at least a block's) without a
// stop character.
template <size_t W>
size_t SkipLines(sTextFileContext* psContext, const sStopSet& sStops, size_t uMaxUnits)
{
    sTextReadAhead& sAhead = psContext->sAhead;
    size_t uLines = 0;
    size_t uScanned = 0;  // units of the current line looked at so far
    for (;;) {
        size_t uHeld = (sAhead.uEnd - sAhead.uNext) / W;
        if (uHeld < uScanned + kuBlockUnits) {
            uHeld = TextReadAhead(psContext, (uScanned + kuBlockUnits) * W) / W;
        }
        const size_t uUnits = (uHeld - uScanned < kuBlockUnits) ? uHeld - uScanned : kuBlockUnits;
        if (uUnits == 0) {
            break;  // a last line without a line feed is left to the reader
        }
        const unsigned char* pu8 = reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext) + uScanned * W;
        const sBlockMasks sMasks =
            (uUnits == kuBlockUnits) ? BlockMasks<W>(pu8, sStops) : PlainMasks<W>(pu8, uUnits, sStops);
        // The lines that end in this block before its first stop character are taken.
        const uint64_t u64Feeds =
            (sMasks.u64Stops != 0) ? sMasks.u64Feeds & ((sMasks.u64Stops & (0u - sMasks.u64Stops)) - 1) : sMasks.u64Feeds;
        if (u64Feeds == 0) {
            uScanned += uUnits;
        } else {
            if (uScanned + static_cast<size_t>(__builtin_ctzll(u64Feeds)) + 1 > uMaxUnits) {
                break;  // the current line arrives in pieces
            }
            // Lines that begin inside the block are shorter than the block, so within the limit.
            const size_t uLast = 63 - static_cast<size_t>(__builtin_clzll(u64Feeds));
            uLines += CountBits(u64Feeds);
            sAhead.uNext += (uScanned + uLast + 1) * W;
            uScanned = uUnits - (uLast + 1);
        }
        if (sMasks.u64Stops != 0 || uScanned >= uMaxUnits) {
            break;
        }
    }
    psContext->u16LineNumber = static_cast<uint16_t>(psContext->u16LineNumber + uLines);
    return uLines;
}

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
    if ((u8High | u8Low) > 0x0F || UnitAt<W>(pu8 + 2 * W) != ku16LineFeed ||
        (W == 2 && (pu8[1] | pu8[W + 1]) != 0)) {
        return 0;
    }
    *pu8Value = static_cast<uint8_t>((u8High << 4) | u8Low);
    return 1;
}

template <size_t W>
size_t TakeHexLines(sTextFileContext* psContext, uint8_t* pu8Values, size_t uMaxCount)
{
    const size_t uLineBytes = 3 * W;
    sTextReadAhead& sAhead = psContext->sAhead;
    size_t uTaken = 0;
    while (uTaken < uMaxCount) {
        size_t uHeld = sAhead.uEnd - sAhead.uNext;
        if (uHeld < uLineBytes) {
            uHeld = TextReadAhead(psContext, uLineBytes);
        }
        const size_t uRun = (uHeld / uLineBytes < uMaxCount - uTaken) ? uHeld / uLineBytes : uMaxCount - uTaken;
        const unsigned char* pu8 = reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext);
        size_t i = 0;
        while (i < uRun && HexLineValue<W>(pu8 + i * uLineBytes, &pu8Values[uTaken + i])) {
            i++;
        }
        uTaken += i;
        sAhead.uNext += i * uLineBytes;
        if (i < uRun || uRun == 0) {
            break;
        }
    }
    psContext->u16LineNumber = static_cast<uint16_t>(psContext->u16LineNumber + uTaken);
    return uTaken;
}

}  // namespace

size_t SkipTextLinesWithout(sTextFileContext* psContext, const char* pchStops, size_t uMaxBytes)
{
    if (psContext == nullptr || psContext->pFile == nullptr || pchStops == nullptr ||
        uMaxBytes < 2 * kuBlockUnits || strlen(pchStops) > kuMaxStops) {
        return 0;
    }
    sStopSet sStops = {0, {}};
    for (const char* pch = pchStops; *pch != '\0'; pch++) {
        sStops.au16Unit[sStops.uCount++] = static_cast<unsigned char>(*pch);
    }
    if (psContext->eEncoding == eEncodingUTF16) {
        return SkipLines<2>(psContext, sStops, (uMaxBytes + 1) / 2);
    }
    return SkipLines<1>(psContext, sStops, uMaxBytes);
}

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
