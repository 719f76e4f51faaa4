#include "device/index_recovery.h"

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_set>
#include <utility>

#include "device/device_state.h"
#include "device/training_names.h"
#include "services/disk/directories.h"
#include "services/disk/durable_names.h"
#include "services/disk/file_moves.h"
#include "services/disk/held_directory.h"
#include "services/disk/memory.h"
#include "services/disk/whole_files.h"
#include "services/text/text.h"

namespace device {

namespace {

using services::Holding;
using services::Path;
using services::PathView;
using services::Text;
using services::WholeFile;

constexpr PathView indexName = "dictionary.2";

struct LyingCopy {
    bool isKnown = true;  // false when there may be one that can't be read
    std::optional<IndexCopy> copy = {};
};

LyingCopy copyIn(PathView directory) {
    const WholeFile file = services::readWholeFile(services::concatenate(directory, indexCopyName),
                                                   services::LinksAre::refused);
    if (file.state == WholeFile::State::unreadable) return {.isKnown = false};
    if (file.state != WholeFile::State::read) return {};
    return {.copy = decodeIndexCopy(file.bytes)};
}

void removeCopy(PathView directory) {
    const Path path = services::concatenate(directory, indexCopyName);
    services::deleteForGood(path);
    services::flushDirectoryOf(path);
}

// What is written under a name that it will not keep, by an action that was cut off.
void settleUnfinished(PathView directory, PathView unfinished, PathView finished) {
    const Path leftover = services::concatenate(directory, unfinished);
    if (services::isRegularFile(leftover))
        services::settleLeftover(leftover, services::concatenate(directory, finished));
}

// True when the file of this name holds what the training does.
bool holdsTraining(PathView directory, PathView name, const PendingRename& rename) {
    const services::FileDigest digest =
        services::digestOfFile(services::concatenate(directory, name), services::LinksAre::refused);
    return digest.state == WholeFile::State::read && digest.length == rename.length &&
           digest.hash == rename.hash;
}

// On FAT a name comes to the disk before what it stands for.
bool isNameWithoutBytes(const Path& path) {
    const services::FileDigest digest =
        services::digestOfFile(path, services::LinksAre::refused, 1);
    return digest.state == WholeFile::State::read && digest.length == 0;
}

// Goes on where the renaming stopped. What can't be renamed now keeps its name for good. `taken`
// are the names of other trainings.
void completeRenames(PathView directory, const IndexCopy& copy, std::unordered_set<Text> taken,
                     std::vector<RenameOutcome>& outcomes) {
    bool anyMoved = false;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        const PendingRename& rename = copy.renames[i];
        const Text newName = newNameOf(copy, rename);
        const Path path = services::concatenate(directory, newName);
        if (outcomes[i] == RenameOutcome::copied) {
            // Whoever gave it that name may have been cut off before the disk had it.
            if (!services::flushDirectoryOf(path) || !services::flushPath(path)) {
                outcomes[i] = RenameOutcome::stays;
                taken.insert(rename.oldName);
            } else if (holdsTraining(directory, rename.oldName, rename)) {
                services::deleteForGood(services::concatenate(directory, rename.oldName));
            }
            continue;
        }
        if (outcomes[i] == RenameOutcome::moved && !rename.isByCopying() &&
            !services::renamesInOneStep(directory)) {
            services::flushPath(path);
        }
        if (outcomes[i] != RenameOutcome::stays) continue;
        // A training may have no bytes as well.
        if (rename.isByCopying() && rename.length > 0 && !taken.contains(newName) &&
            isNameWithoutBytes(path)) {
            services::deleteForGood(path);
        }
        if (!moveTraining(directory, {.oldName = rename.oldName,
                                      .newName = newName,
                                      .isByCopying = rename.isByCopying()})) {
            taken.insert(rename.oldName);
            continue;
        }
        outcomes[i] = RenameOutcome::moved;
        anyMoved = true;
    }
    if (anyMoved) services::flushDirectoryOf(services::concatenate(directory, indexName));
}

// The names in the index of files that are under neither of theirs. Of two records of one file the
// second finds that under the first one's name.
std::vector<Text> cutOffNamesOf(const IndexCopy& copy, std::span<const RenameOutcome> outcomes,
                                std::string_view repaired) {
    std::vector<Text> names;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i] != RenameOutcome::gone) continue;
        const Text name = newNameOf(copy, copy.renames[i]);
        if (positionOf(repaired, name)) names.push_back(name);
    }
    return names;
}

// What a copy remembers of them goes on into the next one, which holds their records as well. In
// front: another training may get a name that one of them had.
void keepCutOffRenames(const IndexCopy& lying, std::string_view newIndex,
                       std::vector<PendingRename>& renames) {
    std::vector<PendingRename> kept;
    for (const PendingRename& rename : lying.renames) {
        const Text name = newNameOf(lying, rename);
        if (std::ranges::find(state.cutOffNames, name) == state.cutOffNames.end()) continue;
        const std::optional<std::uint64_t> position = positionOf(newIndex, name);
        if (!position) continue;
        kept.push_back(rename);
        kept.back().position = *position;
    }
    renames.insert(renames.begin(), kept.begin(), kept.end());
}

TakenUp takeUp(PathView directory) {
    // What was cut off before it was complete: nothing was changed for it.
    settleUnfinished(directory, unfinishedCopyName, indexCopyName);
    settleUnfinished(directory, unfinishedIndexName, indexName);
    const LyingCopy lying = copyIn(directory);
    if (!lying.isKnown) return {.state = TakenUp::State::unreadableCopy};
    if (!lying.copy) return {};
    const IndexCopy& copy = *lying.copy;
    const Path path = services::concatenate(directory, indexName);
    const WholeFile index = services::readWholeFile(path, services::LinksAre::followed);
    if (index.state == WholeFile::State::notRegular) return {};
    const bool isReadable = index.state != WholeFile::State::unreadable;
    std::optional<std::string_view> present;
    if (index.state == WholeFile::State::read) present = index.bytes;

    bool isKnown = true;
    const auto isThere = [&](const Text& name) {
        const services::Presence presence =
            services::presenceOf(services::concatenate(directory, name));
        isKnown = isKnown && presence != services::Presence::unknown;
        return presence == services::Presence::there;
    };
    // A file that came since is none of those to be renamed, whatever its name.
    const std::vector<Text> names = namesAddedSince(copy, present);
    const std::unordered_set<Text> added(names.begin(), names.end());
    std::vector<RenameOutcome> outcomes = outcomesOf(
        copy, [&](const Text& name) { return isThere(name) && !added.contains(name); },
        [&](const Text& name, const PendingRename& rename) {
            return holdsTraining(directory, name, rename);
        });
    if (isKnown && isReadable && belongsTo(copy, present)) {
        for (const PendingRename& rename : copy.renames) {
            const Text newName = newNameOf(copy, rename);
            if (rename.isByCopying()) settleUnfinished(directory, unfinishedName(newName), newName);
        }
        // The copy as well may have its name, but not yet on the disk.
        const Path copyPath = services::concatenate(directory, indexCopyName);
        if (std::ranges::find(outcomes, RenameOutcome::stays) == outcomes.end() ||
            (services::flushDirectoryOf(copyPath) && services::flushPath(copyPath))) {
            completeRenames(directory, copy, added, outcomes);
        }
    }
    std::string repaired = repairedIndex(copy, outcomes, present, isThere);
    if (!isKnown) return {.state = TakenUp::State::unknown};
    // A copy that is complete tells the trainings of an index that the disk no longer gives.
    std::vector<Text> cutOff = cutOffNamesOf(copy, outcomes, repaired);
    if (!isReadable) {
        return {.state = TakenUp::State::unreadableIndex,
                .index = std::move(repaired),
                .cutOff = std::move(cutOff)};
    }
    const bool isWritten =
        present && repaired == *present
            ? services::flushPath(path)
            : services::replaceWholeFile(
                  path, services::concatenate(directory, unfinishedIndexName), repaired);
    // A file that is under neither name may turn up again, after a check of the card: the copy goes
    // on telling where it belongs.
    if (isWritten && cutOff.empty()) removeCopy(directory);
    const bool isAsItShouldBe = isWritten || (present && repaired == *present);
    return {.state = isAsItShouldBe ? TakenUp::State::nothing : TakenUp::State::unwritten,
            .index = isAsItShouldBe ? std::string() : std::move(repaired),
            .cutOff = std::move(cutOff)};
}

}  // namespace

bool holdTree() {
    return state.heldTree.directory != services::noFile ||
           services::holdDirectory(state.heldTree, {}) != Holding::heldByAnother;
}

void leaveTree() {
    services::letGo(state.heldTree);
}

bool layCopyBeside(std::string_view newIndex, std::vector<PendingRename> renames) {
    if (!holdTree()) return false;
    const LyingCopy lying = copyIn({});
    if (!lying.isKnown) return false;
    if (lying.copy && lying.copy->index == newIndex) return true;
    // One that the last load could not settle tells what the index should be: the next load does
    // it.
    if (lying.copy && state.copyLength > 0) {
        if (state.cutOffNames.empty()) return false;
        keepCutOffRenames(*lying.copy, newIndex, renames);
    }
    const services::FileDigest old =
        services::digestOfFile(indexName, services::LinksAre::followed);
    if (old.state == WholeFile::State::unreadable) return false;
    const IndexCopy copy{.index = std::string(newIndex),
                         .renames = std::move(renames),
                         .oldLength = old.length,
                         .oldHash = old.length == 0 ? 0 : old.hash};
    return services::replaceWholeFile(indexCopyName, unfinishedCopyName, encodeIndexCopy(copy));
}

void removeSettledCopy() {
    const LyingCopy lying = copyIn({});
    if (lying.copy && lying.copy->renames.empty()) removeCopy({});
}

bool moveTraining(PathView directory, const TrainingMove& move) {
    const Path from = services::concatenate(directory, move.oldName);
    const Path to = services::concatenate(directory, move.newName);
    if (move.isByCopying) {
        return services::moveByCopying(
            from, to, services::concatenate(directory, unfinishedName(move.newName)));
    }
    // Where names and bytes go together the names of all are flushed at once, by the caller.
    return services::renamesInOneStep(directory) ? services::renameFile(from, to)
                                                 : services::renameForGood(from, to);
}

TakenUp takeUpCopy(PathView directory) {
    services::HeldDirectory held;
    TakenUp taken{.state = TakenUp::State::unknown};
    static_cast<void>(services::withinMemory([&] {
        // What another program does to the tree is its own to finish.
        if (services::holdDirectory(held, directory) == Holding::heldByAnother) {
            taken.state = TakenUp::State::heldByAnother;
            return;
        }
        taken = takeUp(directory);
        // Before anybody else can lay one.
        taken.left = services::digestOfFile(services::concatenate(directory, indexCopyName),
                                            services::LinksAre::refused);
    }));
    services::letGo(held);
    return taken;
}

bool hasIndex(PathView directory) {
    const Path path = services::concatenate(directory, indexName);
    if (services::canReadFile(path)) return true;
    const TakenUp::State taken = takeUpCopy(directory).state;
    return taken == TakenUp::State::unwritten || taken == TakenUp::State::unreadableIndex ||
           services::canReadFile(path);
}

}  // namespace device
