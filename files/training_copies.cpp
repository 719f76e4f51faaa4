#include "files/training_copies.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "device/training_names.h"
#include "services/disk/endings.h"
#include "services/disk/file_copies.h"
#include "services/disk/whole_files.h"
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
    services::Text index;
    services::Path directory;
    services::FileDigest lying = {};         // what was seen of the index on the disk last
    std::vector<std::size_t> unlisted = {};  // records whose files are there, but not in the index
    bool isCardGone = false;                 // what lies in the slot by now is not what was loaded
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
                      services::concatenate(directory, device::unfinishedName(name)));
    group.records.push_back(record);
}

services::FileDigest digestOfIndex(const Backup& backup) {
    return services::digestOfFile(services::concatenate(backup.directory, indexName),
                                  services::LinksAre::refused);
}

bool isIndexNow(const Backup& backup, const services::FileDigest& expected) {
    const services::FileDigest now = digestOfIndex(backup);
    return now.state == expected.state && now.length == expected.length &&
           now.hash == expected.hash;
}

// All of the records or, with the index as it was, none.
bool appendRecords(Backup& backup, std::span<const std::size_t> records) {
    // Behind everything, stray bytes of an odd last record included.
    services::Text longer = backup.index;
    // Another disk may lie there by now, or somebody else have changed the index.
    if (!device::appendDictionaryRecords(longer, records) || !isIndexNow(backup, backup.lying))
        return false;
    const bool isReplaced = services::replaceWholeFile(
        services::concatenate(backup.directory, indexName),
        services::concatenate(backup.directory, device::unfinishedIndexName), longer);
    const services::FileDigest written = {.state = services::WholeFile::State::read,
                                          .length = longer.size(),
                                          .hash = services::hashOf(longer)};
    // It may lie there even when the disk has failed to take its name.
    if (isReplaced || isIndexNow(backup, written)) backup.lying = written;
    if (isReplaced) backup.index = std::move(longer);
    return isReplaced;
}

// True when all are in the index. Without room for all there may be some for the first, but none
// for those behind one that found none; each try writes the whole index.
bool appendRecords(Backup& backup, std::span<const std::size_t> records,
                   std::vector<BackupMark>& marks) {
    if (records.empty()) return true;
    if (appendRecords(backup, records)) {
        for (const std::size_t record : records)
            marks[record] = BackupMark::copied;
        return true;
    }
    const std::size_t half = records.size() / 2;
    if (half > 0 && appendRecords(backup, records.first(half), marks))
        appendRecords(backup, records.subspan(half), marks);
    return false;
}

// A long index is not written anew for each group: together that would take time with the square of
// its length.
bool isWorthListing(const Backup& backup) {
    constexpr std::size_t share = 32;
    return backup.unlisted.size() * share * device::dictionaryRecordSize >= backup.index.size();
}

void completeGroup(Group& group, Backup& backup) {
    const std::vector<std::size_t> records = std::exchange(group.records, {});
    if (records.empty()) return;
    // Another card may lie in the slot by now, with other trainings under the same names.
    backup.isCardGone = backup.isCardGone || !device::isIndexAsLoaded();
    if (backup.isCardGone) {
        services::dropCopies(group.copies);
        return;
    }
    const std::vector<bool> copied = services::completeCopies(group.copies);
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (copied[i]) backup.unlisted.push_back(records[i]);
    }
}

}  // namespace

void copyTrainings(const std::vector<bool>& missing, services::Text index,
                   const services::Path& directory, const TellMark& tell,
                   const GroupLimits& limits) {
    Backup backup = {.index = std::move(index), .directory = directory};
    backup.lying = digestOfIndex(backup);
    Group group;
    std::vector<BackupMark> marks;  // of records that are told when their group is complete
    for (const bool isMissing : missing)
        marks.push_back(isMissing ? BackupMark::failed : BackupMark::present);
    std::size_t told = 0;
    const auto tellUntil = [&](std::size_t end) {
        appendRecords(backup, std::exchange(backup.unlisted, {}), marks);
        for (; told < end; ++told)
            tell(told, marks[told]);
    };
    const auto completeUntil = [&](std::size_t end) {
        completeGroup(group, backup);
        if (backup.unlisted.empty() || isWorthListing(backup)) tellUntil(end);
    };
    const auto finishAt = [&](std::size_t end) {
        completeGroup(group, backup);
        tellUntil(end);
    };
    const auto copyAll = [&] {
        for (std::size_t i = 0; i < missing.size(); ++i) {
            if (services::isEndingAsked()) return finishAt(i);
            if (missing[i] && !backup.isCardGone) {
                if (isFull(group, limits) || hasNameOf(group, i)) completeUntil(i);
                addTraining(group, i, directory);
                services::letWindowsRepaint();
            }
            if (group.records.empty() && backup.unlisted.empty()) tellUntil(i + 1);
        }
        finishAt(missing.size());
    };
    try {
        copyAll();
    } catch (...) {  // memory ran short
        services::dropCopies(group.copies);
        throw;
    }
}

}  // namespace files
