// tavrin-bmcsim: the command line of the simulated BMC. Each run loads the state file,
// runs one sub-command and, if that changed the state, saves it.
#include <cstdio>
#include <cstring>

#include "CliCommands.h"
#include "SimStateFile.h"

namespace {

const char kHelp[] =
    "Usage: tavrin-bmcsim [--state <file>] <command> [<arguments>]\n"
    "\n"
    "A simulated IPMI BMC for tests and demos. Its state lives in the file that --state,\n"
    "else the environment variable TAVRIN_BMCSIM_STATE, names; without either it is\n"
    "bmcsim.state in the working directory. The BMC is reached through build/sim/lib\n"
    "(libsarnic.so, libbrevok.so; LD_LIBRARY_PATH) and build/sim/bin/ipmitool (PATH).\n"
    "The ipmitool look-alike serves \"-I lanplus\" (spelt so) and checks -U and -P\n"
    "against the LAN login, and -C against the accepted cipher suites.\n"
    "Numbers are decimal or 0x hex.\n"
    "\n"
    "State:\n"
    "  init [<user> <password>]   new BMC: empty repository, no FRU device, no fault,\n"
    "                             LAN login admin/admin unless given\n"
    "  user <user> <password>     LAN login that the ipmitool front end accepts\n"
    "  show                       parameters and counts, one \"name value\" a line\n"
    "  set <name> <value>         capacity <bytes>       repository size\n"
    "                             free-space <bytes>     capacity = bytes held + this\n"
    "                             support <0..0x7f>      operation-support bits reported\n"
    "                                                    (0x04 partial add, 0x02 reserve)\n"
    "                             overflow 0|1           overflow flag reported\n"
    "                             count-offset <n>       added to the reported record count\n"
    "                             erase-polls <n>        status polls that say \"erase in\n"
    "                                                    progress\" (so does the initiating\n"
    "                                                    answer unless n is 0)\n"
    "                             init-agent <list>      Run Initialization Agent statuses,\n"
    "                                                    e.g. 0,0,1 or 0*3000,1\n"
    "                             clock real|<seconds>   time stamps of the repository\n"
    "                             ciphers all|<list>     cipher suites the LAN accepts\n"
    "                             open-refused 0|1       RawOpen/InitKCSIO give no handle\n"
    "\n"
    "SDR repository:\n"
    "  sdr-load <file>            add the records of a binary SDR file\n"
    "  sdr-add <hex>...           add one record (bytes in hex, blanks allowed)\n"
    "  sdr-list                   \"id=0001 type=01 len=64 data=<hex>\" a record a line\n"
    "  sdr-clear                  erase all records\n"
    "  Added records keep their own record ID when it is free, else get the next one.\n"
    "\n"
    "FRU devices:\n"
    "  fru-load <id> <file> [<size>]  image from a file; the area is <size> bytes,\n"
    "                                 the file's size by default, padded with 0xff\n"
    "  fru-create <id> <size> [<fill>]  area of <size> bytes of <fill> (0xff)\n"
    "  fru-dump <id>                  \"0000: xx xx ...\", 16 bytes a line\n"
    "  fru-save <id> <file>           the area into a file\n"
    "  fru-remove <id>\n"
    "\n"
    "Faults (each counts the exchanges that match it from the moment it is set):\n"
    "  fault <netfn|any> <cmd|any> <n> <kind> [<value>] [once|always]\n"
    "      hits the n-th matching exchange (once, the default) or every one from\n"
    "      the n-th on (always). Kinds:\n"
    "        cc <code>        refused with the completion code, not executed\n"
    "        nodata           executed, answered with completion code 0 and no data\n"
    "        partial <bytes>  Read FRU Data returns, Write FRU Data writes, at most\n"
    "                         <bytes> data bytes (a short read; a write that stops\n"
    "                         half-way, with its count saying so); others run whole\n"
    "        errno <value>    the route library returns the errno value, not executed\n"
    "        lan-timeout      ipmitool: \"Unable to send RAW command (...)\", not executed\n"
    "        lan-lost-reply   the same text, but the command was executed\n"
    "        lan-silent       ipmitool prints nothing, not executed\n"
    "        lan-flood        executed; the answer and 8 more lines of ff bytes\n"
    "        lan-nostart      \"sh: 1: ipmitool: not found\", exit 127, not executed\n"
    "        signal <number>  executed; then the signal goes to the process that asked:\n"
    "                         tavrin, which runs the route library or ipmitool (a\n"
    "                         deterministic interrupt at exactly this exchange)\n"
    "      lan-* kinds count LAN exchanges only; errno shows there as lan-timeout.\n"
    "  fault-list                 one fault a line, with the exchanges it has seen\n"
    "  fault-clear\n"
    "\n"
    "Exchange log:\n"
    "  log                        one exchange a line:\n"
    "      seq=1 route=lan netfn=0a cmd=23 reqlen=6 req=010000000005 cc=00 rsplen=7\n"
    "      rsp=... fault=none\n"
    "      (one line each; route driver|ipmb|kcs|lan|direct; hex without blanks,\n"
    "      \"-\" for none; cc=-- when no answer came back)\n"
    "  log-clear                  empty the log and start again at seq=1\n"
    "\n"
    "Rehearsal:\n"
    "  run -- <command> [<arg>...]  runs the command with this simulator in place of the\n"
    "      real BMC: LD_LIBRARY_PATH starts at its libsarnic.so and libbrevok.so (../lib\n"
    "      beside this program) and PATH at its ipmitool look-alike (this program's\n"
    "      folder); TAVRIN_BMCSIM_STATE names the state, which must exist. Exits with the\n"
    "      command's status (128 + the signal that ended it), except: 125 when a part of\n"
    "      the simulator is missing, or when a command line with an operation that needs\n"
    "      a BMC (all but -t, -h and -version) made no exchange with the simulator; then\n"
    "      it says so loudly on standard error.\n"
    "      Example: tavrin-bmcsim run -- tavrin -d new.sdr\n"
    "\n"
    "  help                       this text\n";

enum eCliAccess {
    eCliCreates,  // no state is loaded; one is written
    eCliReads,    // the state is loaded and left as it is
    eCliChanges,  // the state is loaded and saved
};

struct sCliCommand {
    const char* pchName;
    TCliHandler pfnHandler;
    eCliAccess eAccess;
};

const sCliCommand kCommands[] = {
    {"init", CliInit, eCliCreates},          {"user", CliUser, eCliChanges},
    {"show", CliShow, eCliReads},            {"set", CliSet, eCliChanges},
    {"sdr-load", CliSdrLoad, eCliChanges},   {"sdr-add", CliSdrAdd, eCliChanges},
    {"sdr-list", CliSdrList, eCliReads},     {"sdr-clear", CliSdrClear, eCliChanges},
    {"fru-load", CliFruLoad, eCliChanges},   {"fru-create", CliFruCreate, eCliChanges},
    {"fru-dump", CliFruDump, eCliReads},     {"fru-save", CliFruSave, eCliReads},
    {"fru-remove", CliFruRemove, eCliChanges}, {"fault", CliFault, eCliChanges},
    {"fault-list", CliFaultList, eCliReads}, {"fault-clear", CliFaultClear, eCliChanges},
    {"log", CliLog, eCliReads},              {"log-clear", CliLogClear, eCliChanges},
};

const sCliCommand* FindCommand(const char* pchName)
{
    for (const sCliCommand& sCommand : kCommands) {
        if (strcmp(sCommand.pchName, pchName) == 0) {
            return &sCommand;
        }
    }
    return nullptr;
}

int RunCommand(const sCliCommand& sCommand, const char* pchPath, int iArgc, char** ppchArgv)
{
    sBmcSimState sState;
    sSimError sError;
    SimInitState(&sState);
    if (sCommand.eAccess != eCliCreates && !SimLoadState(pchPath, &sState, &sError)) {
        return CliFail("%s", sError.achText);
    }
    if (sCommand.pfnHandler(&sState, iArgc, ppchArgv) != 0) {
        return 1;
    }
    if (sCommand.eAccess != eCliReads && !SimSaveState(pchPath, sState, &sError)) {
        return CliFail("%s", sError.achText);
    }
    return 0;
}

}  // namespace

int main(int iArgc, char** ppchArgv)
{
    const char* pchPath = SimStatePath();
    int iNext = 1;
    if (iNext + 1 < iArgc && strcmp(ppchArgv[iNext], "--state") == 0) {
        pchPath = ppchArgv[iNext + 1];
        iNext += 2;
    }
    if (iNext >= iArgc || strcmp(ppchArgv[iNext], "help") == 0) {
        fputs(kHelp, iNext >= iArgc ? stderr : stdout);
        return iNext >= iArgc ? 2 : 0;
    }
    if (strcmp(ppchArgv[iNext], "run") == 0) {
        return CliRun(pchPath, iArgc - iNext - 1, ppchArgv + iNext + 1);
    }
    const sCliCommand* psCommand = FindCommand(ppchArgv[iNext]);
    if (psCommand == nullptr) {
        CliFail("unknown command \"%s\"; \"tavrin-bmcsim help\" lists them", ppchArgv[iNext]);
        return 2;
    }
    return RunCommand(*psCommand, pchPath, iArgc - iNext - 1, ppchArgv + iNext + 1);
}
