// The banner, -h, -version and -debugmsg.
#include <cstdio>

#include "OptionHandlers.h"
#include "common/DebugOutput.h"

namespace {

const char* const kHelpLines[] = {
    "Usage: " TAVRIN " Options [Filename] [fruID=FruID] \n",
    "Options: ",
    "    -h         Show this usage ",
    "    -d         Download a local SDR / FRU file to BMC repository ",
    "    -u         Upload SDR / FRU data from BMC repository to a local file ",
    "               The following parameter is required: ",
    "               - encoding  : Specify the type of file encoding. ",
    "                             Its value can be ascii, utf8 or utf16. ",
    "                             This parameter must follow the file name. ",
    "    -v         Verify the SDR / FRU download process ",
    "    -t         Test the correctness of a local SDR / FRU file ",
    "    -updateFRU Update the following FRU data one at a time. ",
    "               - Manufacturing Date/Time ",
    "               - Chassis Serial Number String ",
    "               - Board Serial Number String ",
    "               - Product Serial Number String ",
    "               Additional parameters required are: ",
    "               - fieldName : Specify the field name to be updated. ",
    "                             Its value can be datetime, snChassis, ",
    "                             snBoard or snProduct. ",
    "               - offset    : Offset to the field to be updated. ",
    "                             This must be a hexadecimal value. ",
    "               - strType   : String type for a serial number string. ",
    "                             Its value can be one of the following: ",
    "                             1 - BCD Plus ",
    "                             2 - 6-bit ASCII, packed ",
    "                             3 - 8-bit ASCII + Latin 1 ",
    "               - strLength : Length (in bytes) of the serial number string ",
    "                             field in the FRU Inventory. ",
    "                             This must be a hexadecimal value. ",
    "               - strValue  : The serial number string to be updated. ",
    "    -version   Show version information ",
    "    -debugmsg  Turn on verbose mode for debug messages output ",
    "    -msgintf   Set the messaging interface to be used. Values can be: ",
    "               kcsio - Use the direct KCS I/O access interface ",
    "               openipmi - Use the Open IPMI KCS driver interface ",
    "               If this option is not specified, default is openipmi \n",
    "    -n lanplus Remote download / upload SDR / FRU over LAN with RMCP+ ",
    "               interface \n",
    "Options for LAN+ interface ('-n lanplus' should be specified) ",
    "    -H IP       BMC IP which Tavrin requests are sent to. ",
    "    -U username BMC user name to login with. ",
    "    -P password BMC user password to login with. ",
    "    -C value    Cipher Suite ID.\n",
    "Filename: ",
    "    The filename of SDR or FRU.",
    "    For uploading, data will be saved in SDR or FRU text file format.",
    "    For downloading, it can be a SDR/FRU text file or binary file.\n",
    "fruID=FruID: ",
    "    The FRU ID in hexadecimal, mandatory argument for FRU options (Max: 0xFF) \n",
    "Example:",
    "    " TAVRIN " -d ToBMC.sdr",
    "    " TAVRIN " -debugmsg -u ToLocal.sdr encoding=ascii",
    "    " TAVRIN " -v ToLocal.fru fruID=0x00",
    "    " TAVRIN " -updateFRU fieldName=datetime offset=0x1B fruID=0x00",
    "    " TAVRIN " -updateFRU fieldName=snProduct offset=0x60 strType=3",
    "                      strLength=0x05 strValue=\"12345\" fruID=0x00",
    "    " TAVRIN " -d ToLocal.sdr -msgintf kcsio\n",
};

const char* const kBannerRule =
    "-------------------------------------------------------------------------------\n";

}  // namespace

void ShowProductHeader()
{
    fputs(kBannerRule, stdout);
    fputs("                          Tavrin Utility\n", stdout);
    fputs("        SDR and FRU data transfer for IPMI baseboard management controllers\n", stdout);
    fputs(kBannerRule, stdout);
}

eReturnCodeTag ShowHelp(uint16_t /*u16ArgCount*/, char** /*ppchArgs*/)
{
    for (const char* pchLine : kHelpLines) {
        fputs(pchLine, stdout);
        fputc('\n', stdout);
    }
    return eRcSuccess;
}

eReturnCodeTag ShowVersion(uint16_t /*u16ArgCount*/, char** /*ppchArgs*/)
{
    fprintf(stdout, "\n\n %s (%s) \n\n", "Version 1.24.3.112", "FreeBSD");
    return eRcSuccess;
}

eReturnCodeTag VerboseMode(uint16_t /*u16ArgCount*/, char** /*ppchArgs*/)
{
    G_bVerboseMode = 1;
    return eRcSuccess;
}
