// A serial number string for -updateFRU: its type's length rules, the padding with blanks
// up to the field's length in bytes, and the encoding into the new field bytes.
#include <cstdio>
#include <cstring>

#include "FRUUpdateData.h"
#include "text/DatTrans.h"

namespace {

const size_t SIX_BIT_MAX_CHARACTERS = 84;  // 63 bytes of packed 6-bit codes

// Bytes that uCharacters characters take in the string type. BCD Plus rounds up here,
// and down while padding (bRoundDown), so that a padded BCD Plus string fills its last byte.
size_t StringBytes(uint32_t u32Type, size_t uCharacters, bool bRoundDown)
{
    if (u32Type == FRU_STRING_BCD_PLUS) {
        return bRoundDown ? uCharacters / 2 : (uCharacters + 1) / 2;
    }
    if (u32Type == FRU_STRING_SIX_BIT) {
        return (3 * uCharacters + 3) / 4;
    }
    return uCharacters;
}

int CheckStringLengthRules(const sFRUUpdateData* psData, size_t uCharacters)
{
    if (psData->u32StringType == FRU_STRING_EIGHT_BIT) {
        if (uCharacters == 1) {
            fputs("<ERROR> The string cannot be 1 character long! \n", stderr);
            return 0;
        }
        if (uCharacters > FRU_STRING_MAX_LENGTH) {
            fputs("<ERROR> The string exceeds the maximum number of 63 characters allowed! \n", stderr);
            return 0;
        }
    }
    if (psData->u32StringType == FRU_STRING_SIX_BIT && uCharacters > SIX_BIT_MAX_CHARACTERS) {
        fputs("<ERROR> The string exceeds the maximum number of 84 characters allowed! \n", stderr);
        return 0;
    }
    if (StringBytes(psData->u32StringType, uCharacters, false) > psData->u8StringLength) {
        fputs("The number of string data bytes exceeds the string length specified! \n", stderr);
        return 0;
    }
    return 1;
}

// Blanks are appended until the string takes u8StringLength bytes; a string that takes
// them already is left as it is. At most 2 * 63 characters result.
void PadString(sFRUUpdateData* psData, size_t uCharacters)
{
    if (StringBytes(psData->u32StringType, uCharacters, false) == psData->u8StringLength) {
        return;
    }
    while (StringBytes(psData->u32StringType, uCharacters, true) < psData->u8StringLength &&
           uCharacters + 1 < sizeof(psData->achStringValue)) {
        psData->achStringValue[uCharacters++] = ' ';
        psData->achStringValue[uCharacters] = '\0';
    }
}

void ReportBCDPlusFailure()
{
    fputs("Cannot convert to BCD plus! \n", stderr);
    fputs("Valid characters for BCD plus are: \n", stderr);
    fputs("  Digits: 0 1 2 3 4 5 6 7 8 9 \n", stderr);
    fputs("  Punctuations: space - . : , _ \n", stderr);
    fputs("Failure to update FRU data! \n", stderr);
}

void ReportSixBitFailure()
{
    fputs("Cannot convert to 6-bit ASCII, packed! \n", stderr);
    fputs("Valid characters for 6-bit ASCII are: \n", stderr);
    fputs("  Alphabets: A B C D E F G H I J K L M N O P Q R S T U V W X Y Z \n", stderr);
    fputs("  Digits: 0 1 2 3 4 5 6 7 8 9 \n", stderr);
    fputs("  Punctuations: ! \" # $ % & ' ( ) * + , - . / : ; < = > ? @ [ \\ ] ^ _ space \n", stderr);
    fputs("Failure to update FRU data! \n", stderr);
}

// The encoders get the field's length as their room, so the type/length byte behind the
// field bytes is never touched.
int EncodeString(sFRUUpdateData* psData)
{
    if (psData->u32StringType == FRU_STRING_BCD_PLUS) {
        if (!ConvertASCIIStrToBCDPlus(psData->achStringValue, psData->au8NewData, psData->u8StringLength)) {
            ReportBCDPlusFailure();
            return 0;
        }
    } else if (psData->u32StringType == FRU_STRING_SIX_BIT) {
        if (!ConvertASCIIStrToSixBitASCII(psData->achStringValue, psData->au8NewData, psData->u8StringLength)) {
            ReportSixBitFailure();
            return 0;
        }
    } else {
        memcpy(psData->au8NewData, psData->achStringValue, psData->u8StringLength);
    }
    return 1;
}

}  // namespace

int PrepareFRUUpdateString(sFRUUpdateData* psData)
{
    const size_t uCharacters = strlen(psData->achStringValue);
    if (!CheckStringLengthRules(psData, uCharacters)) {
        return 0;
    }
    PadString(psData, uCharacters);
    return EncodeString(psData);
}
