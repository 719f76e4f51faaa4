// Files by number: binary, little-endian, at most one open file per number.
//
// Only regular files can be opened. A directory, FIFO, socket or device of the wanted name counts
// as a failure, and asking never blocks. Paths are the system's bytes; relative ones resolve
// against the working directory. Reading and writing are unbuffered; callers move whole blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace services {

// File numbers go from 0 to this limit (exclusive); others can't be opened and count as not open.
inline constexpr int fileNumberLimit = 16;

// Each opens `path` under `number`, closing first what the number held. True on success.
//   readFile        an existing file, for reading
//   openFile        for reading and writing, created when missing, never cut
//   openFileItself  the same, but a link is not followed
//   createFile      for reading and writing, created or emptied; a link is not followed
bool readFile(int number, PathView path);
bool openFile(int number, PathView path);
bool openFileItself(int number, PathView path);
bool createFile(int number, PathView path);

// A number that is not open is ignored.
void closeFile(int number);

// Bytes, or -1 if the number is not open.
std::int64_t lengthOfFile(int number);

// True when the read position is at or behind the end, and for a number that is not open.
bool endOfFile(int number);

// Position from the start, in bytes. False for a number that is not open or a negative position.
bool seekFile(int number, std::int64_t position);

// Little-endian values at the current position. Bytes missing at the end of the file, or all of
// them for a number that is not open, read as 0. Bytes and words are sign-extended.
std::int32_t readByte(int number);
std::int32_t readWord(int number);
std::int32_t readLong(int number);
std::int64_t readQuad(int number);
float readFloat(int number);

// Fills `block` as far as the file goes and returns the number of bytes read (0 for a number that
// is not open and on a read error).
std::size_t readBlock(int number, std::span<std::byte> block);

// True when everything was written.
bool writeLong(int number, std::int32_t value);
bool writeFloat(int number, float value);
bool writeText(int number, TextView text);  // the bytes, without terminator or line end
bool writeBlock(int number, std::span<const std::byte> block);

// Hands everything written to the disk and waits for it. True on success.
bool flushFile(int number);

}  // namespace services
