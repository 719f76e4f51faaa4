// The working directory and single file-system commands.
#pragma once

#include <vector>

#include "services/text/paths.h"

namespace services {

// The working directory with a "/" at its end; empty when it is gone.
Path currentDirectory();

// The path seen from the working directory of this moment, links in it left as they are. Empty for
// an unusable one.
Path absolutePath(PathView path);

// True on success; on failure the working directory stays.
bool setCurrentDirectory(PathView path);

// True when this is the current one, however it is written.
bool isCurrentDirectory(PathView path);

// Owner-only access rights. False when it exists already or can't be created.
bool createDirectory(PathView path);

// Removes a file (never a directory), without asking for memory. True on success.
bool deleteFile(PathView path);

enum class FileLookup {
    readable,  // a regular file that may be opened for reading
    missing,   // nothing of that name, or no regular file
    untold,    // the system could not tell, or the file is there and may not be opened
};

// It is not opened: asking never blocks, and works even when the process can't open another file.
FileLookup lookUpFile(PathView path);

// True for what lookUpFile calls readable.
bool canReadFile(PathView path);

bool isDirectory(PathView path);

// The names in a directory (which ends with "/") but for "." and "..", in any order; none when it
// can't be read.
std::vector<Path> namesInDirectory(PathView directory);

// The directory that holds the running program, with a "/" at its end; empty when unknown.
Path executableDirectory();

}  // namespace services
