// The first pass of the SDR text reader: the section structure of the whole file.
#include <cstring>

#include "SDRTextFile.h"
#include "SDRTextFormat.h"
#include "text/LineTokens.h"
#include "text/TextLineScan.h"

namespace {

struct sSectionState {
    bool bSectionSeen;
    bool bSectionClosed;
    bool bDisabledSeen;
    bool bDisabledClosed;
    uint8_t u8OpenCount;
    uint8_t u8CloseCount;
    long lRecordsPosition;      // behind the "_SDR (" line
    uint16_t u16RecordsLine;    // the number of that line
};

bool SectionOpen(const sSectionState& s)
{
    return s.bSectionSeen && !s.bSectionClosed;
}

bool DisabledOpen(const sSectionState& s)
{
    return s.bDisabledSeen && !s.bDisabledClosed;
}

void ReportReadError(const sTextFileContext* psContext)
{
    fprintf(stderr, "<ERROR> Error occurs while reading SDR file %s. \n", psContext->achFileName);
}

int OpenSection(sTextFileContext* psContext, sSectionState* psState)
{
    if (DisabledOpen(*psState)) {
        SDRReportFormatError("Nested '%s' '%s' tag is NOT allowed (line %d) \n", SDR_TAG_DISABLED_SECTION,
                             SDR_TAG_SECTION, psContext->u16LineNumber);
        return 0;
    }
    if (psState->bSectionSeen) {
        SDRReportFormatError("Multiple '%s' tag is NOT allowed. (line %d) \n", SDR_TAG_SECTION,
                             psContext->u16LineNumber);
        return 0;
    }
    psState->lRecordsPosition = TextFileTell(psContext);
    if (psState->lRecordsPosition < 0) {
        ReportReadError(psContext);
        return 0;
    }
    psState->u16RecordsLine = psContext->u16LineNumber;
    psState->bSectionSeen = true;
    psState->u8OpenCount++;
    return 1;
}

int OpenDisabledSection(const sTextFileContext* psContext, sSectionState* psState)
{
    if (SectionOpen(*psState)) {
        SDRReportFormatError("Nested '%s' '%s' tag is NOT allowed (line %d) \n", SDR_TAG_SECTION,
                             SDR_TAG_DISABLED_SECTION, psContext->u16LineNumber);
        return 0;
    }
    if (psState->bDisabledSeen) {
        SDRReportFormatError("Multiple '%s' tag is NOT allowed. (line %d) \n", SDR_TAG_DISABLED_SECTION,
                             psContext->u16LineNumber);
        return 0;
    }
    psState->bDisabledSeen = true;
    psState->u8OpenCount++;
    return 1;
}

int CloseSection(const sTextFileContext* psContext, sSectionState* psState)
{
    if (psState->u8OpenCount == 0) {
        SDRReportFormatError("Find data before the '%s' or '%s' tag. (line %d) \n", SDR_TAG_SECTION,
                             SDR_TAG_DISABLED_SECTION, psContext->u16LineNumber);
        return 0;
    }
    if (psState->u8OpenCount != psState->u8CloseCount + 1) {
        SDRReportFormatError("Multiple '%s' tag is NOT allowed (line %d) \n", SDR_TAG_END, psContext->u16LineNumber);
        return 0;
    }
    if (SectionOpen(*psState)) {
        psState->bSectionClosed = true;
    } else {
        psState->bDisabledClosed = true;
    }
    psState->u8CloseCount++;
    return 1;
}

// One line, comment and side blanks gone, not empty.
// Most lines are record data: only a line that starts like a tag is compared with one.
int CheckLine(sTextFileContext* psContext, const char* pchLine, sSectionState* psState)
{
    if (pchLine[0] == '_' && strcmp(pchLine, SDR_TAG_SECTION) == 0) {
        return OpenSection(psContext, psState);
    }
    if (pchLine[0] == '_' && strcmp(pchLine, SDR_TAG_DISABLED_SECTION) == 0) {
        return OpenDisabledSection(psContext, psState);
    }
    if (pchLine[0] == ')' && pchLine[1] == '\0') {
        return CloseSection(psContext, psState);
    }
    if (!SectionOpen(*psState) && !DisabledOpen(*psState)) {
        SDRReportFormatError("Find data outside the scope of the '%s %s'. (line %d) \n", SDR_TAG_SECTION,
                             SDR_TAG_END, psContext->u16LineNumber);
        return 0;
    }
    return 1;
}

// At the end of the file: both sections closed, and back to the records.
int FinishStructure(sTextFileContext* psContext, const sSectionState& sState)
{
    if (!sState.bSectionSeen) {
        SDRReportFormatError("Lack '%s' tag (line %d) \n", SDR_TAG_SECTION, psContext->u16LineNumber);
        return 0;
    }
    if (SectionOpen(sState) || DisabledOpen(sState)) {
        SDRReportFormatError("Lack '%s' tag (line %d) \n", SDR_TAG_END, psContext->u16LineNumber);
        return 0;
    }
    if (!TextFileSeek(psContext, sState.lRecordsPosition)) {
        ReportReadError(psContext);
        return 0;
    }
    psContext->u16LineNumber = sState.u16RecordsLine;
    return 1;
}

}  // namespace

int SDRValidateStartEndTag(sTextFileContext* psContext)
{
    if (psContext == nullptr || psContext->pFile == nullptr) {
        fputs("<ERROR> Internal Error!\n", stderr);
        return 0;
    }
    sSectionState sState = {false, false, false, false, 0, 0, 0, 0};
    char achLine[SDR_LINE_BUFFER_SIZE];
    for (;;) {
        // Inside a section only the lines that may be tags count: those with a parenthesis.
        if (SectionOpen(sState) || DisabledOpen(sState)) {
            SkipTextLinesWithout(psContext, "()", SDR_LINE_MAX_READ);
        }
        if (!SDRReadTextLine(psContext, achLine)) {
            break;
        }
        TrimComment(achLine);
        TrimSideSpace(achLine);
        if (achLine[0] != '\0' && !CheckLine(psContext, achLine, &sState)) {
            return 0;
        }
    }
    return FinishStructure(psContext, sState);
}
