// Small files as a whole: read at once, and replaced so that a name always stands for all of the
// old bytes or all of the new ones.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "services/disk/file_kinds.h"
#include "services/text/paths.h"

namespace services {

enum class Presence { missing, there, unknown };

// Whether something has this name, a link included. Unknown when the system can't tell.
Presence presenceOf(PathView path);

// No card's file comes near this length (8 GiB): their file systems end at 4 GiB or hold years of
// trainings in a few megabytes. What is longer is not read, which would take minutes or hours.
inline constexpr std::uint64_t longestFile = std::uint64_t{1} << 33U;

struct WholeFile {
    enum class State { missing, notRegular, unreadable, read } state = State::missing;
    std::string bytes;  // empty unless read
};

// Missing is what has no such name, and a link that leads nowhere when links are followed; a
// refused link is not regular. Unreadable is what can't be opened or even looked at, is longer than
// longestFile, shrinks while it is read, gives a read error or does not fit into memory.
WholeFile readWholeFile(PathView path, LinksAre links);

// What lies in a file, without its bytes in memory. State, links and errors as above.
struct FileDigest {
    WholeFile::State state = WholeFile::State::missing;
    std::uint64_t length = 0;  // 0 unless read
    std::uint64_t hash = 0;    // hashOf all bytes; 0 unless read
};
// Of a file that is longer only the first `atMost` bytes count.
FileDigest digestOfFile(PathView path, LinksAre links,
                        std::uint64_t atMost = std::numeric_limits<std::uint64_t>::max());

// Writes the bytes as `temporary` in the same directory, waits until they are on the disk, and only
// then gives them the name `path`; what had it, a link included, is replaced. True when the new
// file and its name are on the disk. On false the old file is there as it was, or the new one is
// (when only its name could not be flushed), and nothing is left under the temporary name. What
// lies there of an earlier run goes (settleLeftover). Whenever the power goes, an old file is there
// whole until the new one is; where there was none the name may stand for no bytes.
bool replaceWholeFile(PathView path, PathView temporary, std::string_view bytes);

// Waits until the file is on the disk. True on success.
bool flushPath(PathView path);

// Waits until the names in the directory that holds `path` are on the disk. Many file systems can't
// do that for directories and say so: only a failing disk counts as a failure.
bool flushDirectoryOf(PathView path);

// FNV-1a in 64 bits: tells files apart that differ by accident. Goes on from the value of what came
// before.
inline constexpr std::uint64_t emptyHash = 0xCBF29CE484222325U;
std::uint64_t hashOf(std::string_view bytes, std::uint64_t before = emptyHash);

}  // namespace services
