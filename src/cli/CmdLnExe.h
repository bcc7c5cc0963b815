// The table-driven command-line engine: options are registered with their argument
// bounds and handlers, the whole line is parsed at once, and the handlers run in three
// passes so that an option's position never decides when it takes effect.
#ifndef TAVRIN_CLI_CMDLNEXE_H
#define TAVRIN_CLI_CMDLNEXE_H

#include <cstdint>
#include <cstdio>

enum eReturnCodeTag : int32_t {
    eRcSuccess = 0,
    eRcNoCommandOption = 1,
    eRcIncompatibleOptions = 2,
    eRcDuplicateOption = 3,
    eRcRegisterFailed = 4,
    eRcIncorrectFormat = 5,
    eRcUnrecognizedOption = 6,
    eRcInvalidLanOptions = 7,
    eRcNoOperationalCommand = 8,
    eRcHandlerFailed = 1,  // what an option handler returns for failure
};

enum {
    MAX_PARSED_OPTIONS = 15,
    MAX_OPTION_ARGS = 15,
    MAX_OPTION_NAME = 18,  // with the terminator
};

// An option handler: the number of its arguments and its argument slots. 0 for
// success, 1 for failure.
typedef eReturnCodeTag (*TOptionHandler)(uint16_t u16ArgCount, char** ppchArgs);

struct sRegisteredOption {
    int32_t bSeen;
    uint8_t u8MaxArgs;
    uint8_t u8MinArgs;
    char achName[MAX_OPTION_NAME];
    TOptionHandler pfnHandler;
};

struct sParsedOption {
    uint8_t u8MaxArgs;
    uint8_t u8MinArgs;
    uint8_t u8ArgCount;
    // Point into the process's argument vector. One slot more than can be filled, so
    // the slot behind the last argument is always null.
    char* apchArgs[MAX_OPTION_ARGS + 1];
    uint16_t u16OptionIndex;
};

struct sExecutedOption {
    uint16_t u16OptionIndex;
    eReturnCodeTag eResult;
};

class TCommandLineExecution {
public:
    explicit TCommandLineExecution(uint8_t u8Capacity);
    ~TCommandLineExecution();
    TCommandLineExecution(const TCommandLineExecution&) = delete;
    TCommandLineExecution& operator=(const TCommandLineExecution&) = delete;

    eReturnCodeTag FunctionRegistry(const char* pchName, uint8_t u8MaxArgs, uint8_t u8MinArgs,
                                    TOptionHandler pfnHandler);
    int ParseCommandOptions(int16_t i16ArgCount, char** ppchArgs);
    // Refuses the line before any parse with the code given; returns 0.
    int RefuseCommandLine(eReturnCodeTag eCode);
    eReturnCodeTag Trigger();
    eReturnCodeTag Trigger(uint16_t u16OptionNumber);
    void ShowOptionReturnCodeString(FILE* pStream) const;

    eReturnCodeTag ReturnCode() const { return eReturnCode; }
    uint16_t ExecutedCount() const { return u16ExecutedCount; }
    const sExecutedOption& Executed(uint16_t u16Index) const { return asExecuted[u16Index]; }

private:
    int FindRegisteredOption(const char* pchName) const;
    eReturnCodeTag RunParsedOption(const sParsedOption& sParsed);
    eReturnCodeTag CheckCompatibility() const;

    eReturnCodeTag eReturnCode;
    sRegisteredOption* psRegistered;
    sParsedOption asParsed[MAX_PARSED_OPTIONS];
    sExecutedOption asExecuted[MAX_PARSED_OPTIONS];
    uint16_t u16RegisteredCount;
    uint16_t u16ParsedCount;
    uint16_t u16ExecutedCount;
    uint8_t u8Capacity;
};

#endif
