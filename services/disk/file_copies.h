// Copying files in groups: the disk is waited for once a group and not three times a file.
//
// Every copy is written under a temporary name beside its target and gets the target's name when it
// is complete and on the disk, so that no half copy ever stands under that name, whatever happens.
// Before that it is read back from the disk and compared with its source: a disk that keeps other
// bytes than it was given has no copy. An existing target is never written: one of the same content
// counts as copied, any other as a failure, but for one of no bytes on FAT (renamesInOneStep),
// which is what a rename leaves there that was cut off. Only regular files are copied and no link
// is followed to the source. The modification time is kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/disk/system_files.h"
#include "services/text/paths.h"

namespace services {

struct FileCopy {
    Path source;
    Path target;
    Path temporary;          // empty when the target was there already
    OpenFile file = noFile;  // what is to come to the disk; noFile when there is no such file
    bool isLost = false;     // the disk has refused a part of it, which it tells only once
};

// The copies that wait for the disk together, all in one directory and each under a name of its
// own. Their files are open: a group is completed or dropped in any case.
struct CopyGroup {
    std::vector<FileCopy> copies;
    std::int64_t bytes = 0;        // of the copies that were written
    std::vector<std::byte> block;  // what is read at once, kept from file to file
};

// Writes one more copy under its temporary name and lets the system begin to bring it to the disk.
// False when it failed; then nothing is left of it, and it counts as failed when the group is
// completed.
bool addCopy(CopyGroup& group, PathView source, PathView target, PathView temporary);

// Waits until the copies are on the disk, gives them their names, and waits until those are on the
// disk. One bool for each addCopy in its order, true for a copy that is there for good. Of others
// nothing is left, or the whole of it when only the names could not be flushed. Empties the group.
std::vector<bool> completeCopies(CopyGroup& group);

// Removes what was written. Empties the group.
void dropCopies(CopyGroup& group);

}  // namespace services
