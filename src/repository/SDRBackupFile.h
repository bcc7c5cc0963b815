// The back-up of the SDR repository on disk: while a download replaces the repository,
// a copy of the old records waits in the working directory as a binary SDR file, so
// that nothing is lost if the restore fails or the process is killed.
#ifndef TAVRIN_REPOSITORY_SDRBACKUPFILE_H
#define TAVRIN_REPOSITORY_SDRBACKUPFILE_H

#include <cstddef>
#include <cstdint>

#include "sdr/SDREntry.h"

enum {
    SDR_BACKUP_NAME_SIZE = 32,  // "sdr-backup-YYYYMMDD-HHMMSS.sdr" and the terminator
};

// Writes the first u16RecordCount records of psList to a new file
// sdr-backup-YYYYMMDD-HHMMSS.sdr (local time) in the working directory, of binary format
// version 1, readable by its owner only, and synced to the disk. 1 with its name in
// pchName; 0 with pchName empty if it can't be written (nothing is left of it then).
// Prints nothing.
int SaveSDRBackupFile(const SDREntry* psList, uint16_t u16RecordCount, char* pchName, size_t uNameSize);

// Removes the file whose name SaveSDRBackupFile gave; nothing for an empty name.
void RemoveSDRBackupFile(const char* pchName);

#endif
