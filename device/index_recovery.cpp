#include "device/index_recovery.h"

#include <utility>

#include "services/directories.h"
#include "services/file_moves.h"
#include "services/text.h"
#include "services/whole_files.h"

namespace device {

namespace {

using services::Path;
using services::PathView;
using services::Text;
using services::WholeFile;

constexpr PathView indexName = "dictionary.2";

std::optional<IndexCopy> copyIn(PathView directory) {
    const WholeFile file = services::readWholeFile(services::concatenate(directory, indexCopyName),
                                                   services::LinksAre::refused);
    if (file.state != WholeFile::State::read) return std::nullopt;
    return decodeIndexCopy(file.bytes);
}

void removeCopy(PathView directory) {
    const Path path = services::concatenate(directory, indexCopyName);
    if (services::deleteRegularFile(path)) services::flushDirectoryOf(path);
}

// Goes on where the renaming stopped. What can't be renamed now keeps its name for good.
void completeRenames(PathView directory, const IndexCopy& copy,
                     std::vector<RenameOutcome>& outcomes) {
    bool anyMoved = false;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i] != RenameOutcome::stays) continue;
        const PendingRename& rename = copy.renames[i];
        if (!services::renameFile(services::concatenate(directory, rename.oldName),
                                  services::concatenate(directory, newNameOf(copy, rename)))) {
            continue;
        }
        outcomes[i] = RenameOutcome::moved;
        anyMoved = true;
    }
    if (anyMoved) services::flushDirectoryOf(services::concatenate(directory, indexName));
}

}  // namespace

bool layCopyBeside(std::string_view newIndex, std::vector<PendingRename> renames) {
    if (const std::optional<IndexCopy> lying = copyIn({}); lying && lying->index == newIndex)
        return true;
    const WholeFile old = services::readWholeFile(indexName, services::LinksAre::followed);
    const IndexCopy copy{.index = std::string(newIndex),
                         .renames = std::move(renames),
                         .oldLength = old.bytes.size(),
                         .oldHash = old.bytes.empty() ? 0 : services::hashOf(old.bytes)};
    return services::replaceWholeFile(indexCopyName, unfinishedCopyName, encodeIndexCopy(copy));
}

void removeSettledCopy() {
    const std::optional<IndexCopy> copy = copyIn({});
    if (copy && copy->renames.empty()) removeCopy({});
}

std::optional<std::string> takeUpCopy(PathView directory) {
    const std::optional<IndexCopy> copy = copyIn(directory);
    if (!copy) return std::nullopt;
    const Path path = services::concatenate(directory, indexName);
    const WholeFile index = services::readWholeFile(path, services::LinksAre::followed);
    if (index.state == WholeFile::State::unreadable) return std::nullopt;
    std::optional<std::string_view> present;
    if (index.state == WholeFile::State::read) present = index.bytes;

    const auto isThere = [&](const Text& name) {
        return services::isRegularFile(services::concatenate(directory, name));
    };
    std::vector<RenameOutcome> outcomes = outcomesOf(*copy, isThere);
    completeRenames(directory, *copy, outcomes);
    std::string repaired = repairedIndex(*copy, outcomes, present, isThere);
    if (present && repaired == *present) {
        if (services::flushPath(path)) removeCopy(directory);
        return std::nullopt;
    }
    if (services::replaceWholeFile(path, services::concatenate(directory, unfinishedCopyName),
                                   repaired)) {
        removeCopy(directory);
        return std::nullopt;
    }
    return repaired;
}

bool hasIndex(PathView directory) {
    const Path path = services::concatenate(directory, indexName);
    return services::canReadFile(path) || takeUpCopy(directory) || services::canReadFile(path);
}

}  // namespace device
