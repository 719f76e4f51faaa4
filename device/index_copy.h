// The copy of a new index that lies beside the old one while that is being replaced, and what it
// tells after an interruption (docs/formats.md).
//
// The copy also carries the names that training files have until they are renamed, so that every
// record finds its file wherever a renumbering stopped. All of this is computed from bytes and from
// what is asked of the disk by functions that are handed in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "services/text/latin1.h"

namespace device {

// A training file whose name changes together with the index.
struct PendingRename {
    std::uint64_t position = 0;   // of its record in the new index, in bytes
    services::Text oldName = {};  // 16 digits; the record carries the new one

    // What the file holds, when it gets its new name by a copy; both 0 when it is renamed.
    std::uint64_t length = 0;
    std::uint64_t hash = 0;

    bool isByCopying() const { return hash != 0; }

    bool operator==(const PendingRename&) const = default;
};

struct IndexCopy {
    std::string index = {};                   // the new index, byte for byte
    std::vector<PendingRename> renames = {};  // in the order in which they are done

    // What the index was when the copy was made; both 0 when there was none.
    std::uint64_t oldLength = 0;
    std::uint64_t oldHash = 0;

    bool operator==(const IndexCopy&) const = default;
};

// The copy as it goes to disk, with a trailer that proves it complete.
std::string encodeIndexCopy(const IndexCopy& copy);

// Nothing for bytes that are no complete copy.
std::optional<IndexCopy> decodeIndexCopy(std::string_view bytes);

// True when the index that lies there is the one that the copy was made for: missing, the beginning
// of the copy's index, or that or the old one with whatever was added behind it. Of any other index
// nobody knows what its names mean; then no file may be renamed for the copy's sake.
bool belongsTo(const IndexCopy& copy, const std::optional<std::string_view>& present);

// The names of the trainings that were added behind the old or the new index since. Their files may
// bear names that a rename has set free.
std::vector<services::Text> namesAddedSince(const IndexCopy& copy,
                                            const std::optional<std::string_view>& present);

// What became of one rename.
enum class RenameOutcome {
    moved,   // the file has its new name
    copied,  // it has its new name, and its old one still
    stays,   // it has its old name alone
    gone,    // it has neither
};

// True for an outcome that leaves a whole file under the new name.
constexpr bool hasNewName(RenameOutcome outcome) {
    return outcome == RenameOutcome::moved || outcome == RenameOutcome::copied;
}

// One for each rename, decided by the names that are there. The renames were tried in their order,
// each took a name that was free, and any of them may have failed; so the last one that was done
// tells what its names were before it, and so on to the first. `isThere` is asked for each name
// once; `isWhole`, where a file that is copied has both names, whether what it holds stands under
// the new one. Of files that hold the same, one whose name another takes is looked at first.
using IsThere = std::function<bool(const services::Text& name)>;
using IsWhole = std::function<bool(const services::Text& name, const PendingRename& rename)>;
std::vector<RenameOutcome> outcomesOf(const IndexCopy& copy, const IsThere& isThere,
                                      const IsWhole& isWhole);

// The name in the copy's index of the training file of a rename.
services::Text newNameOf(const IndexCopy& copy, const PendingRename& rename);

// Where the record of a training begins in an index of whole records, in bytes; nothing when it has
// none.
std::optional<std::uint64_t> positionOf(std::string_view index, const services::Text& name);

// What the index must be. `present` is the index as it lies there; nothing when it is missing.
//   missing: what the copy holds
//   cut short: that, and of what the copy holds behind it the trainings that have a file
//   the new or the old one, whatever was added behind it: that, under the names the files have,
//     without the records that had no file before and would find another's now
//   any other: that, and behind it every training of the copy that has a file but no record
std::string repairedIndex(const IndexCopy& copy, std::span<const RenameOutcome> outcomes,
                          const std::optional<std::string_view>& present, const IsThere& isThere);

}  // namespace device
