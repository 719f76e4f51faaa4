// The backup copy: brings the backup's directory and index up to date with the current ones.
// Nothing in the backup is ever replaced, and its index only grows.
#pragma once

#include <cstddef>
#include <functional>

#include "files/backup_plan.h"
#include "services/paths.h"

namespace files {

// Asks for a backup directory when none is chosen, copies what the backup lacks and loads the index
// again. Returns when the report is closed; `tableChanged` is called before the report is left to
// the reader. `mainHeight` is that of the main window.
void copyToBackup(int mainHeight, const std::function<void()>& tableChanged);

// Copies the training of one record into `backupDirectory` and appends the record to the open
// backup index there. When either fails the index is as long as before; a complete copy of the file
// may stay, which a later backup finds.
BackupMark copyTraining(std::size_t record, int backupIndexFile,
                        const services::Path& backupDirectory);

}  // namespace files
