// Open files and names as a system has them: what the sources of this folder are made of, with one
// implementation for each system in a folder of its own. Whoever reads or writes a file uses the
// headers beside this one.
//
// Interrupted and short calls are carried on here. Nothing waits for anything but the disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "services/text/paths.h"

namespace services {

// What a system calls an open file; to be closed by whoever opened it.
enum class OpenFile : std::intptr_t {};
inline constexpr OpenFile noFile{-1};

enum class Opening {
    read,          // an existing file, for reading
    readItself,    // the same, but a link is not followed
    write,         // an existing file, for writing
    writeItself,   // the same, but a link is not followed
    update,        // for reading and writing, created when missing
    updateItself,  // the same, but a link is not followed
    createNew,     // for reading and writing; only where nothing has the name
};

// noFile for everything but a regular file that could be opened. Anything else is not even opened
// (opening some devices has effects), and what took its place meanwhile is closed again unread. Not
// passed on to programs that this one starts.
enum class OpenError {
    none,
    refused,  // this user may not, or nobody may: the rights of a file or directory, a read-only
              // disk
    other,
};
OpenFile openRegularFile(PathView path, Opening opening, OpenError* error = nullptr);

// False where the system tells only now that not everything could be written.
bool closeOpenFile(OpenFile file);

// In bytes; -1 when it can't be told.
std::int64_t lengthOfOpenFile(OpenFile file);

// From the start, in bytes; -1 when it can't be told.
std::int64_t positionInOpenFile(OpenFile file);
bool seekInOpenFile(OpenFile file, std::int64_t position);

// The number of bytes read, less than the block's size at the end of the file only; -1 on an error.
std::int64_t readFully(OpenFile file, std::span<std::byte> block);
bool writeFully(OpenFile file, std::span<const std::byte> block);

// Makes the file `length` bytes long.
bool resizeOpenFile(OpenFile file, std::int64_t length);

// The times are worth keeping but no reason to fail: some mounted cards refuse them.
void keepModificationTime(OpenFile source, OpenFile target);

// Waits until everything written is on the disk.
bool flushOpenFile(OpenFile file);

// Lets the system begin to write. False when it tells that a part is lost, which it tells only
// once: flushing the file later says nothing of it.
bool beginFlush(OpenFile file);

// Waits until all of these are on the disk, by as few flushes as the system has: a disk takes
// milliseconds for each, whatever there is to flush. False when it is not sure that all are, and
// each is to be flushed by itself. Marks those of which a part is lost, as above.
struct FileToFlush {
    OpenFile file = noFile;
    bool isLost = false;
};
bool flushTogether(std::span<FileToFlush> files);

// Lets go of what memory holds of a file that is on the disk, so that reading it reads the disk.
void dropFromMemory(OpenFile file);

// Waits until the names in a directory are on the disk. Many file systems can't do that for
// directories and say so: only a failing disk counts as a failure.
bool flushDirectory(PathView directory);

// Gives a file another name, which replaces what has that name.
bool replaceFile(PathView from, PathView to);

// True where a file that gets another name is there whole under one of both whenever the power
// goes. False for FAT and its like: there a name holds the length of its file and where it lies,
// the names of a rename come to the disk one by one, the new one without those two, and with both
// names there removing one frees what the other stands for. Also where the system does not tell.
// Empty: the working directory.
bool renamesInOneStep(PathView directory);

// How much more can be written in a directory, in bytes; -1 when it can't be told.
std::int64_t freeBytes(PathView directory);

// The number of this process, and whether one is known to be there no longer.
std::int64_t processNumber();
bool isProcessGone(std::int64_t number);

}  // namespace services
