// The frame of a FRU text file: nothing but blank lines and comments before the start
// line and behind ")", one start line only, and the blocks of the areas in the order of
// the common header.
#include <cstdio>
#include <cstring>

#include "FRUImage.h"
#include "FRUTextReader.h"
#include "common/DebugOutput.h"
#include "text/LineTokens.h"

namespace {

// The rest of the file, from behind the start line, holds no second start line. The
// stream and the line count are then put back behind the start line.
int FRUCheckSingleStartTag(sFRUTextReader* psReader)
{
    sTextFileContext* psContext = &psReader->sContext;
    const uint16_t u16LineNumber = psContext->u16LineNumber;
    const long lPosition = TextFileTell(psContext);
    if (lPosition < 0) {
        std::fputs("<ERROR> Get current file-position indicator failed. \n", stderr);
        return 0;
    }
    uint32_t u32Ignored = 1;
    if (FRUReadBlockStartTag(psContext, &u32Ignored)) {
        FRUReportFormatError("Multiple '%s' tag is NOT allowed. \n", FRU_START_TAG);
        return 0;
    }
    if (!TextFileSeek(psContext, lPosition)) {
        std::fputs("<ERROR> Set current file-position indicator failed. \n", stderr);
        return 0;
    }
    psContext->u16LineNumber = u16LineNumber;
    psReader->achPendingLine[0] = '\0';
    return 1;
}

// The blocks of the areas that the header gives, in its order.
int FRUReadAreas(sFRUTextReader* psReader)
{
    sFRUAreaInfo asTable[FRU_AREA_TABLE_SIZE];
    FRUInitAreaTable(asTable);
    if (!FRUReadCommonArea(psReader) || !FRUGetAreaInfo(G_pu8LocalFRUDataBuffer, 0, asTable)) {
        return 0;
    }
    if (asTable[eFRUAreaInternal].u16Offset != 0) {
        DebugMessage("[debug] read internal\n");
        if (!FRUReadInternalArea(psReader, &asTable[eFRUAreaInternal])) {
            return 0;
        }
    }
    for (int i = eFRUAreaChassis; i <= eFRUAreaProduct; i++) {
        if (asTable[i].u16Offset == 0) {
            continue;
        }
        DebugMessage("[debug] Current token = `%s'\n", psReader->achPendingLine);
        if (!FRUReadChassisBoardProductArea(psReader, &asTable[i])) {
            return 0;
        }
    }
    return asTable[eFRUAreaMultiRecord].u16Offset == 0 || FRUReadMultiRecordArea(psReader);
}

}  // namespace

int FRUReadTextFile(sFRUTextReader* psReader, uint32_t u32OutsideFlag)
{
    if (u32OutsideFlag != 0) {
        FRUReportFormatError("Find FRU tag/data outside the '_FRU( )' block.\n");
        return 0;
    }
    if (!FRUCheckSingleStartTag(psReader) || !FRUReadAreas(psReader) || !SearchAreaTag(psReader, FRU_END_TAG)) {
        return 0;
    }
    if (FRUSearchInvalidArea(psReader)) {
        FRUReportFormatError("Find FRU tag/data outside the '_FRU( )' block. \n");
        return 0;
    }
    return 1;
}

int SearchAreaTag(sFRUTextReader* psReader, const char* pchTag)
{
    if (psReader == nullptr || pchTag == nullptr) {
        std::fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    char* pchPendingLine = psReader->achPendingLine;
    char achToken[FRU_LINE_BUFFER_SIZE];
    for (;;) {
        if (pchPendingLine[0] == '\0' &&
            !ReadTextLine(&psReader->sContext, pchPendingLine, FRU_LINE_BUFFER_SIZE, FRU_LINE_READ_LIMIT)) {
            FRUReportFormatError("Lack '%s' tag in FRU file. \n", pchTag);
            return 0;
        }
        if (!ParseNonQuotedData(pchPendingLine, achToken, sizeof(achToken), 0)) {
            return 0;
        }
        if (achToken[0] == '\0') {
            pchPendingLine[0] = '\0';
            continue;
        }
        if (std::strcmp(achToken, pchTag) == 0) {
            return 1;
        }
        FRUReportFormatError("Error data '%s', it should be '%s' in FRU file. (line %d) \n", achToken, pchTag,
                             psReader->sContext.u16LineNumber);
        return 0;
    }
}

int FRUSearchInvalidArea(sFRUTextReader* psReader)
{
    char* pchPendingLine = psReader->achPendingLine;
    for (;;) {
        if (pchPendingLine[0] == '\0' &&
            !ReadTextLine(&psReader->sContext, pchPendingLine, FRU_LINE_BUFFER_SIZE, FRU_LINE_READ_LIMIT)) {
            return 0;
        }
        TrimComment(pchPendingLine);
        TrimSideSpace(pchPendingLine);
        if (pchPendingLine[0] != '\0') {
            return 1;
        }
    }
}
