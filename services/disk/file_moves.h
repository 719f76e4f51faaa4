// Renaming, cutting and removing single files without ever losing another one: nothing
// here replaces an existing file, and removing looks before it touches.
#pragma once

#include <cstdint>

#include "services/text/paths.h"

namespace services {

// True when the file has its new name. False, with both files as they were, when `to` exists
// already or the system refuses.
bool renameFile(PathView from, PathView to);

// Cuts a regular file to its first `length` bytes and waits for the disk. A shorter file stays as
// it is. True on success.
bool cutFile(PathView path, std::int64_t length);

// True for a regular file itself, not for a link to one.
bool isRegularFile(PathView path);

// Removes a regular file; a link, a directory or anything else stays. True on success.
bool deleteRegularFile(PathView path);

}  // namespace services
