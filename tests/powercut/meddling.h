// The system calls of the commands, seen on their way: counted, slowed down, cut off, or made as a
// program with a mistake would make them. Linked into the guest, its definitions take the place of
// the C library's.
#pragma once

#include <optional>
#include <string_view>

namespace meddling {

// Ways in which the program could be wrong; a rig that sees must catch each of them.
enum class Mistake {
    none,
    noFlush,             // nothing is ever flushed
    noFlushAfterRename,  // a renamed file is not flushed under its new name
    noDirectoryFlush,    // directories are never flushed
    indexInPlace,        // an index is written over the old one instead of replacing it
    leftoverDeleted,     // temporary names go, whatever shares their clusters
};

struct Meddling {
    Mistake mistake = Mistake::none;
    int pauseMilliseconds = 0;  // before each call that changes something
    int endAtCall = -1;         // the process ends instead of this one of them, counted from 0
    int* calls = nullptr;       // counts them, perhaps for another process
    int flushMarker = -1;       // a device whose last block tells of each flush that has returned
    long flushMark = 0;         // where: the first sector of that block
};

extern Meddling state;

// Writes the sector at that place of the marker, past every cache.
bool tell(int marker, long place);

std::optional<Mistake> mistakeOfName(std::string_view name);

}  // namespace meddling
