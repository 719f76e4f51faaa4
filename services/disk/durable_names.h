// Names that come to the disk in an order that loses nothing when the power goes, on FAT as well
// (renamesInOneStep): what a removed or replaced name stood for is given free only when the disk
// has the change, and what two names might share is given free by neither.
#pragma once

#include <span>

#include "services/text/paths.h"

namespace services {

// The directory of a path, with its "/"; empty for a bare name.
PathView directoryOf(PathView path);

// Removes a regular file, without asking for memory, or all of some in one directory that can be
// removed; a link, a directory or anything else stays. Waits for the disk where a name that is
// still there could stand for freed room.
void deleteForGood(PathView path);
void deleteAllForGood(std::span<const Path> paths);

// Makes a temporary name free again that an interrupted run may have left, of a file that was going
// to be `finished`. What has it, but for a directory, is removed, but where the two may share their
// bytes it is set aside under a name that nobody uses, to be left alone for good.
void settleLeftover(PathView leftover, PathView finished);

// Gives the only copy of a file another name that nothing has, and waits until it is there with its
// bytes. True when it has that name, also where the disk fails to take it. Cut off on FAT, both
// names may stand for the same bytes.
bool renameForGood(PathView from, PathView to);

// The same by a copy, which is complete and on the disk under its new name before the old one goes:
// cut off, the file is there whole under one of them at least. `temporary` is used meanwhile.
bool moveByCopying(PathView from, PathView to, PathView temporary);

}  // namespace services
