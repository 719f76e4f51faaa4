// Tries what a cut may have left on the disk.
#pragma once

#include "tests/powercut/commands.h"
#include "tests/powercut/disk.h"

namespace powercut {

// The states FROM to TO (exclusive) of the recording in that directory; prints a line for each,
// with `name` for the recording.
void tryStates(const FileSystem& system, const Command& command, const fs::path& directory,
               const std::string& name, std::size_t from, std::size_t to, bool isChecked);

}  // namespace powercut
