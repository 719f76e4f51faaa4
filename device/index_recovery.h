// Keeping an index safe on the disk while it is replaced, and taking up what an interruption has
// left. "directory" is where the index lies: empty for the working directory, else with a "/" at
// its end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "device/index_copy.h"
#include "services/disk/whole_files.h"
#include "services/text/paths.h"

namespace device {

inline constexpr services::PathView indexCopyName = "dictionary.2.kurbelbuch-neu";
inline constexpr services::PathView unfinishedCopyName = "dictionary.2.kurbelbuch-teil";

// A new index until it is on the disk and gets the name of the old one.
inline constexpr services::PathView unfinishedIndexName = "dictionary.2.kurbelbuch-index";

// Keeps other programs from changing the tree of the working directory, until leaveTree. False when
// another one is at it. Where directories can't be held, one program has to do.
bool holdTree();
void leaveTree();

// Lays a complete copy of the index that is going to replace that of the working directory beside
// it, on the disk when this returns true. A copy of the same index that lies there already stays,
// with the names it remembers. Holds the tree; whoever has called this leaves it in the end.
bool layCopyBeside(std::string_view newIndex, std::vector<PendingRename> renames = {});

// Removes the copy once the new index is safely on the disk, unless it still remembers names: those
// are settled by takeUpCopy.
void removeSettledCopy();

// How a training file gets its new name: by a copy where a rename might lose it, or both names
// might stand for the same bytes (services::renamesInOneStep).
struct TrainingMove {
    services::PathView oldName;
    services::PathView newName;
    bool isByCopying = false;
};

// Never replaces a file. False when the file has its old name as before.
bool moveTraining(services::PathView directory, const TrainingMove& move);

struct TakenUp {
    enum class State {
        nothing,          // the index is what it should be, or there is no complete copy
        unwritten,        // it should be `index`, but can't be written; the copy stays
        unreadableIndex,  // it can't be read; by the copy it would be `index`
        unreadableCopy,   // there may be a copy, and it can't be read
        heldByAnother,    // another program is changing the tree: nothing was looked at
        unknown,  // the card does not tell what else there is to take up, or memory is short
    } state = State::nothing;
    std::string index = {};
    std::vector<services::Text> cutOff = {};  // names in the index: DeviceState::cutOffNames
    services::FileDigest left = {};           // of the copy that lies there afterwards
};

// Takes up what a command that was cut off has left: completes its renames as far as they can be,
// makes the index what it was going to be, under the names that the files have, and removes the
// copy. Beside an index that the copy was not made for nothing is renamed (belongsTo). Leaves alone
// a tree that another program is at work on.
TakenUp takeUpCopy(services::PathView directory);

// True when an index can be read in the directory, or a copy can stand in for it. A missing one is
// restored.
bool hasIndex(services::PathView directory);

}  // namespace device
