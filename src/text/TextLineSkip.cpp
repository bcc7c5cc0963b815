// The skips over lines without interest, on the block read ahead: whole blocks of short
// lines sixteen units at a time where the processor has SSE2, and the rest unit by unit.
#include "TextLineScan.h"

#include <cstring>

#include "TextReadAhead.h"
#include "TextUnits.h"

namespace {

const uint16_t ku16LineFeed = TEXT_UNIT_LINE_FEED;
const size_t kuBlockUnits = 64;  // the units of one step of the skip: one bit each in a mask
const size_t kuMaxStops = 2;

// The stop characters of a skip, padded to kuMaxStops by repeating the first, so that
// every block is compared with the same number of them.
struct sStopSet {
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
sBlockMasks PlainMasks(const unsigned char* pu8, size_t uUnits, const sStopSet& sStops)
{
    sBlockMasks sMasks = {0, 0};
    for (size_t i = 0; i < uUnits; i++) {
        const uint16_t u16Unit = TextUnitAt<W>(pu8 + i * W);
        sMasks.u64Feeds |= static_cast<uint64_t>(u16Unit == ku16LineFeed) << i;
        for (uint16_t u16Stop : sStops.au16Unit) {
            sMasks.u64Stops |= static_cast<uint64_t>(u16Unit == u16Stop) << i;
        }
    }
    return sMasks;
}

#if defined(TEXT_SCAN_SSE2)
template <size_t W>
__m128i UnitVector(uint16_t u16Unit)
{
    return (W == 1) ? _mm_set1_epi8(static_cast<char>(u16Unit)) : _mm_set1_epi16(static_cast<short>(u16Unit));
}

// All ones in the byte of each of the sixteen units at pu8 that equals the unit of vUnit.
template <size_t W>
__m128i Equal16(const unsigned char* pu8, __m128i vUnit)
{
    const __m128i* pvData = reinterpret_cast<const __m128i*>(pu8);
    if (W == 1) {
        return _mm_cmpeq_epi8(_mm_loadu_si128(pvData), vUnit);
    }
    return _mm_packs_epi16(_mm_cmpeq_epi16(_mm_loadu_si128(pvData), vUnit),
                           _mm_cmpeq_epi16(_mm_loadu_si128(pvData + 1), vUnit));
}

// The sum of the sixteen byte lanes.
uint64_t SumOfLanes(__m128i vCounts)
{
    const __m128i vSums = _mm_sad_epu8(vCounts, _mm_setzero_si128());
    return static_cast<uint64_t>(_mm_cvtsi128_si64(vSums)) +
           static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(vSums, vSums)));
}

// From the start of a line: the whole blocks that each hold a line feed and no stop
// character, as far as uUnits reach. Every line that ends in them is then shorter than
// two blocks, and only counted here, with no look at where it ends. Returns the units up
// to and including the last line feed of the blocks taken, and their lines in *puLines.
template <size_t W>
size_t SkipPlainBlocks(const unsigned char* pu8, size_t uUnits, const sStopSet& sStops, size_t* puLines)
{
    const __m128i vLineFeed = UnitVector<W>(ku16LineFeed);
    __m128i avStop[kuMaxStops];
    for (size_t k = 0; k < kuMaxStops; k++) {
        avStop[k] = UnitVector<W>(sStops.au16Unit[k]);
    }
    const size_t uLaneLimit = 255 / (kuBlockUnits / 16);  // blocks a lane can count before it overflows
    size_t uBlocks = 0;
    uint64_t u64Lines = 0;
    __m128i vCounts = _mm_setzero_si128();
    for (; (uBlocks + 1) * kuBlockUnits <= uUnits; uBlocks++) {
        const unsigned char* pu8Block = pu8 + uBlocks * kuBlockUnits * W;
        __m128i vAnyFeed = _mm_setzero_si128();
        __m128i vAnyStop = _mm_setzero_si128();
        __m128i vFeeds = _mm_setzero_si128();
        for (size_t uPart = 0; uPart < kuBlockUnits / 16; uPart++) {
            const unsigned char* pu8Part = pu8Block + uPart * 16 * W;
            const __m128i vFeed = Equal16<W>(pu8Part, vLineFeed);
            for (const __m128i& vStop : avStop) {
                vAnyStop = _mm_or_si128(vAnyStop, Equal16<W>(pu8Part, vStop));
            }
            vAnyFeed = _mm_or_si128(vAnyFeed, vFeed);
            vFeeds = _mm_sub_epi8(vFeeds, vFeed);  // all ones is -1: one more line feed
        }
        if (_mm_movemask_epi8(vAnyStop) != 0 || _mm_movemask_epi8(vAnyFeed) == 0) {
            break;
        }
        vCounts = _mm_add_epi8(vCounts, vFeeds);
        if ((uBlocks + 1) % uLaneLimit == 0) {
            u64Lines += SumOfLanes(vCounts);
            vCounts = _mm_setzero_si128();
        }
    }
    *puLines = static_cast<size_t>(u64Lines + SumOfLanes(vCounts));
    size_t uEnd = uBlocks * kuBlockUnits;
    while (uEnd > 0 && TextUnitAt<W>(pu8 + (uEnd - 1) * W) != ku16LineFeed) {
        uEnd--;
    }
    return uEnd;
}
#else
template <size_t W>
size_t SkipPlainBlocks(const unsigned char*, size_t, const sStopSet&, size_t* puLines)
{
    *puLines = 0;
    return 0;
}
#endif

// Lines of at most uMaxUnits units (line feed included, at least a block's) without a
// stop character.
template <size_t W>
size_t SkipLines(sTextFileContext* psContext, const sStopSet& sStops, size_t uMaxUnits)
{
    const bool bPlainBlocks = uMaxUnits >= 2 * kuBlockUnits - 1;  // a line ending in the next block fits
    sTextReadAhead& sAhead = psContext->sAhead;
    size_t uLines = 0;
    size_t uScanned = 0;  // units of the current line looked at so far
    for (;;) {
        const size_t uHeld = TextReadAhead(psContext, (uScanned + kuBlockUnits) * W) / W;
        const size_t uUnits = (uHeld - uScanned < kuBlockUnits) ? uHeld - uScanned : kuBlockUnits;
        if (uUnits == 0) {
            break;  // a last line without a line feed is left to the reader
        }
        const unsigned char* pu8Line = reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext);
        size_t uPlainLines = 0;
        const size_t uPlain = bPlainBlocks ? SkipPlainBlocks<W>(pu8Line, uHeld, sStops, &uPlainLines) : 0;
        if (uPlain != 0) {
            sAhead.uNext += uPlain * W;
            uLines += uPlainLines;
            uScanned = 0;
            continue;
        }
        // One block unit by unit: a long line, a stop character, or the end of what is held.
        const sBlockMasks sMasks = PlainMasks<W>(pu8Line + uScanned * W, uUnits, sStops);
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

// A line of white space alone: the bytes it takes from the file, or 0 for another line.
template <size_t W>
size_t SpaceLineLength(const unsigned char* pu8, size_t uHeld, size_t uMaxUnits)
{
    for (size_t uUnit = 0; uUnit < uMaxUnits && (uUnit + 1) * W <= uHeld; uUnit++) {
        const uint16_t u16Unit = TextUnitAt<W>(pu8 + uUnit * W);
        if (u16Unit == ku16LineFeed) {
            return (uUnit + 1) * W;
        }
        if (u16Unit != ' ' && (u16Unit < '\t' || u16Unit > '\r')) {
            break;
        }
    }
    return 0;
}

template <size_t W>
size_t SkipSpaces(sTextFileContext* psContext, size_t uMaxUnits)
{
    sTextReadAhead& sAhead = psContext->sAhead;
    size_t uLines = 0;
    for (;;) {
        const size_t uHeld = TextReadAhead(psContext, uMaxUnits * W);
        const size_t uLength =
            SpaceLineLength<W>(reinterpret_cast<const unsigned char*>(sAhead.achData + sAhead.uNext), uHeld, uMaxUnits);
        if (uLength == 0) {
            break;
        }
        sAhead.uNext += uLength;
        uLines++;
    }
    psContext->u16LineNumber = static_cast<uint16_t>(psContext->u16LineNumber + uLines);
    return uLines;
}

}  // namespace

size_t SkipTextLinesWithout(sTextFileContext* psContext, const char* pchStops, size_t uMaxBytes)
{
    const size_t uStops = (pchStops != nullptr) ? strlen(pchStops) : 0;
    if (psContext == nullptr || psContext->pFile == nullptr || uStops == 0 || uStops > kuMaxStops ||
        uMaxBytes < 2 * kuBlockUnits) {
        return 0;
    }
    sStopSet sStops;
    for (size_t k = 0; k < kuMaxStops; k++) {
        sStops.au16Unit[k] = static_cast<unsigned char>(pchStops[(k < uStops) ? k : 0]);
    }
    if (psContext->eEncoding == eEncodingUTF16) {
        return SkipLines<2>(psContext, sStops, (uMaxBytes + 1) / 2);
    }
    return SkipLines<1>(psContext, sStops, uMaxBytes);
}

size_t SkipSpaceLines(sTextFileContext* psContext, size_t uMaxBytes)
{
    if (psContext == nullptr || psContext->pFile == nullptr || uMaxBytes == 0 || uMaxBytes > TEXT_MAX_LINE_READ) {
        return 0;
    }
    if (psContext->eEncoding == eEncodingUTF16) {
        return SkipSpaces<2>(psContext, (uMaxBytes + 1) / 2);
    }
    return SkipSpaces<1>(psContext, uMaxBytes);
}
