// Copying trainings into a backup, group by group.
//
// A record is appended to the backup's index when its training file is there, complete and on the
// disk. The disk is waited for once a group: files, names and records each. The index is replaced
// in one step by one with more records: on FAT one that grows in place may come to the disk with
// its new length and without what was written.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "files/backup_plan.h"
#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace files {

// What is copied before the disk is waited for.
struct GroupLimits {
    std::size_t trainings = 64;
    std::int64_t bytes = std::int64_t{8} << 20U;
};

// Is told what became of a record of the table, each once and in their order. Of those that are
// left when the program is asked to end nothing is told.
using TellMark = std::function<void(std::size_t record, BackupMark mark)>;

// Copies the trainings that are missing, one bool for each record of the table, into `directory`
// and appends their records to the backup's index there, which is `index` so far. It only grows by
// whole records;
// the copy of a training whose record could not be appended may stay, which a later backup finds.
//
// The trainings of a group are taken only if the index of the working directory is then still the
// one that was loaded: from another card comes nothing, and all that are left count as failed.
// Throws when memory runs short, with the group at work dropped.
void copyTrainings(const std::vector<bool>& missing, services::Text index,
                   const services::Path& directory, const TellMark& tell,
                   const GroupLimits& limits = {});

}  // namespace files
