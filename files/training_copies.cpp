#include "files/training_copies.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/training_names.h"
#include "services/disk/endings.h"
#include "services/disk/file_copies.h"
#include "services/disk/file_moves.h"
#include "services/disk/numbered_files.h"
#include "services/text/text.h"
#include "services/windows.h"

namespace files {

namespace {

constexpr services::PathView indexName = "dictionary.2";

// The trainings that wait for the disk together.
struct Group {
    services::CopyGroup copies;
    std::vector<std::size_t> records;  // one for each copy
};

struct Backup {
    int indexFile = 0;
    services::Path directory;
    bool isCardGone = false;  // what lies in the slot by now is not what was loaded
};

const services::Text& nameOf(std::size_t record) {
    return device::state.dictionary[record].fileName;
}

bool isFull(const Group& group, const GroupLimits& limits) {
    return group.records.size() >= limits.trainings || group.copies.bytes >= limits.bytes;
}

// A name that stands twice is copied twice: the second time it is there already.
bool hasNameOf(const Group& group, std::size_t record) {
    return std::ranges::any_of(
        group.records, [record](std::size_t other) { return nameOf(other) == nameOf(record); });
}

// A name that is none gives a copy that fails.
void addTraining(Group& group, std::size_t record, const services::Path& directory) {
    const services::Text& name = nameOf(record);
    const bool isName = device::isTrainingName(name);
    services::addCopy(group.copies, name, isName ? services::concatenate(directory, name) : "",
                      services::concatenate(directory, unfinishedName(name)));
    group.records.push_back(record);
}

// All of the records or, with the index as it was, none.
bool appendRecords(const Backup& backup, std::span<const std::size_t> records) {
    // Behind everything, stray bytes of an odd last record included.
    const std::int64_t end = services::lengthOfFile(backup.indexFile);
    if (services::seekFile(backup.indexFile, end) &&
        device::writeDictionaryRecords(backup.indexFile, records) &&
        services::flushFile(backup.indexFile)) {
        return true;
    }
    // A piece of a record would shift all that are appended later.
    if (end >= 0) services::cutFile(services::concatenate(backup.directory, indexName), end);
    return false;
}

void appendRecords(const Backup& backup, std::span<const std::size_t> records,
                   std::vector<BackupMark>& marks) {
    if (records.empty()) return;
    if (appendRecords(backup, records)) {
        for (const std::size_t record : records)
            marks[record] = BackupMark::copied;
        return;
    }
    // Without room for all there may be some for the first.
    for (std::size_t i = 0; records.size() > 1 && i < records.size(); ++i)
        appendRecords(backup, records.subspan(i, 1), marks);
}

void completeGroup(Group& group, Backup& backup, std::vector<BackupMark>& marks) {
    const std::vector<std::size_t> records = std::exchange(group.records, {});
    if (records.empty()) return;
    // Another card may lie in the slot by now, with other trainings under the same names.
    backup.isCardGone = backup.isCardGone || !device::isIndexAsLoaded();
    if (backup.isCardGone) {
        services::dropCopies(group.copies);
        return;
    }
    const std::vector<bool> copied = services::completeCopies(group.copies);
    std::vector<std::size_t> there;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (copied[i]) there.push_back(records[i]);
    }
    appendRecords(backup, there, marks);
}

}  // namespace

void copyTrainings(const std::vector<bool>& missing, int backupIndexFile,
                   const services::Path& directory, const TellMark& tell,
                   const GroupLimits& limits) {
    Backup backup = {.indexFile = backupIndexFile, .directory = directory};
    Group group;
    std::vector<BackupMark> marks;  // of records that are told when their group is complete
    for (const bool isMissing : missing)
        marks.push_back(isMissing ? BackupMark::failed : BackupMark::present);
    std::size_t told = 0;
    const auto tellUntil = [&](std::size_t end) {
        completeGroup(group, backup, marks);
        for (; told < end; ++told)
            tell(told, marks[told]);
    };
    const auto copyAll = [&] {
        for (std::size_t i = 0; i < missing.size(); ++i) {
            if (services::isEndingAsked()) return tellUntil(i);
            if (missing[i] && !backup.isCardGone) {
                if (isFull(group, limits) || hasNameOf(group, i)) tellUntil(i);
                addTraining(group, i, directory);
                services::letWindowsRepaint();
            }
            if (group.records.empty()) tellUntil(i + 1);
        }
        tellUntil(missing.size());
    };
    try {
        copyAll();
    } catch (...) {  // memory ran short
        services::dropCopies(group.copies);
        throw;
    }
}

}  // namespace files
