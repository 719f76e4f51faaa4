// Records what a command writes to the disk.
#pragma once

#include "tests/powercut/commands.h"
#include "tests/powercut/disk.h"

namespace powercut {

// On that empty disk. Leaves in the directory: `base.img`, the disk before; `log`, the kernel's log
// of what was written to it, in which "finished" marks the end of the command; `before` and
// `after`, the settings or the export; `names`, the number of each training afterwards. With pauses
// the system has the time to write back whatever it likes between two calls.
void record(const FileSystem& system, const Command& command, bool pauses,
            const fs::path& emptyDisk, const fs::path& directory);

}  // namespace powercut
