#include "services/file_moves.h"

#include <dirent.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <span>

#include "services/memory.h"
#include "services/regular_files.h"
#include "services/whole_files.h"

namespace services {

namespace {

constexpr std::size_t copyBlockSize = std::size_t{1} << 20U;

// What a system call says about a service the file system lacks, whichever word it chooses.
bool isUnsupported(int error) {
    // Two names of one number on some systems, so no comparison of constants.
    constexpr std::array numbers = {EINVAL, ENOSYS, EPERM, EOPNOTSUPP, ENOTSUP, EMLINK};
    return std::find(numbers.begin(), numbers.end(), error) != numbers.end();
}

// True for anything of that name, a dangling link too. What can't be looked at counts as existing.
bool mayExist(const Path& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
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

std::int64_t lengthOf(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? std::int64_t{status.st_size} : -1;
}

bool haveSameContent(int first, int second) {
    const std::int64_t length = lengthOf(first);
    if (length < 0 || length != lengthOf(second)) return false;
    std::vector<std::byte> firstBlock;
    std::vector<std::byte> secondBlock;
    if (!withinMemory([&] {
            firstBlock.resize(copyBlockSize);
            secondBlock.resize(copyBlockSize);
        })) {
        return false;
    }
    for (;;) {
        const std::int64_t count = readFully(first, firstBlock);
        if (count < 0 || count != readFully(second, secondBlock)) return false;
        if (count == 0) return true;
        if (!std::equal(firstBlock.begin(), firstBlock.begin() + count, secondBlock.begin()))
            return false;
    }
}

// True when as many bytes arrived as the source had at first: a file that shrinks or grows
// meanwhile is being changed by somebody, and half of it is no copy.
bool copyContent(int source, int target) {
    const std::int64_t length = lengthOf(source);
    std::vector<std::byte> block;
    if (!withinMemory([&block] { block.resize(copyBlockSize); })) return false;
    std::int64_t copied = 0;
    for (;;) {
        const std::int64_t count = readFully(source, block);
        if (count < 0) return false;
        if (count == 0) return copied == length;
        if (!writeFully(target, std::span(block).first(static_cast<std::size_t>(count))))
            return false;
        copied += count;
    }
}

// The times are worth keeping but no reason to fail: some mounted cards refuse them.
void keepModificationTime(int source, int target) {
    struct stat status = {};
    if (fstat(source, &status) != 0) return;
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim};
    static_cast<void>(futimens(target, times));
}

bool writeCopy(int source, const Path& temporary) {
    const int target =
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (target < 0) return false;
    bool complete = copyContent(source, target);
    keepModificationTime(source, target);
    complete = complete && flushDescriptor(target);
    // Some file systems tell only here that the disk was full.
    complete = close(target) == 0 && complete;
    if (!complete) unlink(temporary.c_str());
    return complete;
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
    if (mayExist(Path(to))) return Renaming::failed;
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

bool copyFile(PathView source, PathView target, PathView temporary) {
    if (!isUsablePath(target) || !isUsablePath(temporary)) return false;
    const int sourceDescriptor = openRegularFile(source, O_RDONLY | O_NOFOLLOW);
    if (sourceDescriptor == noDescriptor) return false;

    bool copied = false;
    if (mayExist(Path(target))) {
        const int existing = openRegularFile(target, O_RDONLY | O_NOFOLLOW);
        copied = existing != noDescriptor && haveSameContent(sourceDescriptor, existing);
        if (existing != noDescriptor) close(existing);
    } else if (const Path unfinished(temporary); writeCopy(sourceDescriptor, unfinished)) {
        copied = renameFile(unfinished, target);
        if (!copied) unlink(unfinished.c_str());
        copied = copied && flushDirectoryOf(target);
    }
    close(sourceDescriptor);
    return copied;
}

bool cutFile(PathView path, std::int64_t length) {
    const int descriptor = openRegularFile(path, O_WRONLY);
    if (descriptor == noDescriptor) return false;
    bool cut = lengthOf(descriptor) <= length;
    if (!cut && length >= 0) {
        int result = 0;
        do {
            result = ftruncate(descriptor, length);
        } while (result != 0 && errno == EINTR);
        cut = result == 0 && flushDescriptor(descriptor);
    }
    close(descriptor);
    return cut;
}

bool isRegularFile(PathView path) {
    struct stat status = {};
    return isUsablePath(path) && lstat(Path(path).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool deleteRegularFile(PathView path) {
    return isRegularFile(path) && unlink(Path(path).c_str()) == 0;
}

std::vector<Path> namesInDirectory(PathView directory) {
    // Not by the standard library: its iterators end the program when memory runs out.
    std::vector<Path> names;
    if (!isUsablePath(directory)) return names;
    DIR* const listed = opendir(Path(directory).c_str());
    if (listed == nullptr) return names;
    static_cast<void>(withinMemory([&] {
        while (const dirent* const entry = readdir(listed)) {
            const PathView name = entry->d_name;
            if (name != "." && name != "..") names.emplace_back(name);
        }
    }));
    closedir(listed);
    return names;
}

}  // namespace services
