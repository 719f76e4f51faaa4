#include "services/disk/posix/renaming.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

#include "services/disk/file_kinds.h"
#include "services/disk/file_moves.h"
#include "services/disk/system_files.h"

namespace services {

namespace {

// What a system call says about a service the file system lacks, whichever word it chooses.
bool isUnsupported(int error) {
    // Two names of one number on some systems, so no comparison of constants.
    constexpr std::array numbers = {EINVAL, ENOSYS, EPERM, EOPNOTSUPP, ENOTSUP, EMLINK};
    return std::find(numbers.begin(), numbers.end(), error) != numbers.end();
}

// Two directory entries of one file, and not two spellings of one entry. Leaves errno alone.
bool areTwoNamesOfOneFile(const Path& first, const Path& second) {
    const int error = errno;
    struct stat firstStatus = {};
    struct stat secondStatus = {};
    const bool are = first != second && lstat(first.c_str(), &firstStatus) == 0 &&
                     firstStatus.st_nlink >= 2 && lstat(second.c_str(), &secondStatus) == 0 &&
                     firstStatus.st_dev == secondStatus.st_dev &&
                     firstStatus.st_ino == secondStatus.st_ino;
    errno = error;
    return are;
}

}  // namespace

Renaming renameExclusively(PathView from, PathView to) {
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, Path(from).c_str(), AT_FDCWD, Path(to).c_str(), RENAME_NOREPLACE) == 0)
        return Renaming::done;
    return isUnsupported(errno) ? Renaming::unsupported : Renaming::failed;
#else
    static_cast<void>(from);
    static_cast<void>(to);
    return Renaming::unsupported;
#endif
}

Renaming renameByLinking(PathView from, PathView to) {
    const Path oldName(from);
    const Path newName(to);
    // Both names for one file are what an earlier try has left that was cut off in between.
    if (link(oldName.c_str(), newName.c_str()) != 0 && !areTwoNamesOfOneFile(oldName, newName))
        return isUnsupported(errno) ? Renaming::unsupported : Renaming::failed;
    if (unlink(oldName.c_str()) == 0) return Renaming::done;
    // The new name is our own link of a moment ago.
    unlink(newName.c_str());
    return Renaming::failed;
}

Renaming renameAfterLooking(PathView from, PathView to) {
    if (kindOf(to, LinksAre::refused) != FileKind::missing) return Renaming::failed;
    return rename(Path(from).c_str(), Path(to).c_str()) == 0 ? Renaming::done : Renaming::failed;
}

bool renameFile(PathView from, PathView to) {
    if (!isUsablePath(from) || !isUsablePath(to)) return false;
    for (const auto way : {renameExclusively, renameByLinking, renameAfterLooking}) {
        const Renaming result = way(from, to);
        if (result != Renaming::unsupported) return result == Renaming::done;
    }
    return false;
}

bool replaceFile(PathView from, PathView to) {
    return isUsablePath(from) && isUsablePath(to) &&
           std::rename(Path(from).c_str(), Path(to).c_str()) == 0;
}

}  // namespace services
