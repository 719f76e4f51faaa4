#include "services/disk/file_copies.h"

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

#include <algorithm>
#include <cerrno>
#include <span>
#include <utility>

#include "services/disk/file_moves.h"
#include "services/disk/memory.h"
#include "services/disk/regular_files.h"
#include "services/disk/whole_files.h"

namespace services {

namespace {

constexpr std::size_t copyBlockSize = std::size_t{1} << 20U;

bool haveSameContent(int first, int second) {
    const std::int64_t length = lengthOfDescriptor(first);
    if (length < 0 || length != lengthOfDescriptor(second)) return false;
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

// The bytes that were copied: as many as the source had at first, or -1. A file that shrinks or
// grows meanwhile is being changed by somebody, and half of it is no copy.
std::int64_t copyContent(int source, int target, std::vector<std::byte>& block) {
    const std::int64_t length = lengthOfDescriptor(source);
    std::int64_t copied = 0;
    for (;;) {
        const std::int64_t count = readFully(source, block);
        if (count < 0) return -1;
        if (count == 0) return copied == length ? copied : -1;
        if (!writeFully(target, std::span(block).first(static_cast<std::size_t>(count)))) return -1;
        copied += count;
    }
}

bool hasBlock(CopyGroup& group) {
    return withinMemory([&group] { group.block.resize(copyBlockSize); });
}

// The times are worth keeping but no reason to fail: some mounted cards refuse them.
void keepModificationTime(int source, int target) {
    struct stat status = {};
    if (fstat(source, &status) != 0) return;
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim};
    static_cast<void>(futimens(target, times));
}

// A file that could not be written back is told of once, and counts as clean from then on: flushing
// it again says nothing.
bool tellsOfALoss(int error) {
    return error == EIO || error == ENOSPC || error == EDQUOT;
}

// The disk works while the next file is read. No reason to fail either: it is waited for later.
void beginFlush(FileCopy& copy) {
#ifdef SYNC_FILE_RANGE_WRITE
    copy.isLost =
        sync_file_range(copy.descriptor, 0, 0, SYNC_FILE_RANGE_WRITE) != 0 && tellsOfALoss(errno);
#else
    static_cast<void>(copy);
#endif
}

bool writeCopy(CopyGroup& group, int source, FileCopy& copy) {
    const int target =
        open(copy.temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (target < 0) return false;
    const std::int64_t length = copyContent(source, target, group.block);
    if (length < 0) {
        close(target);
        unlink(copy.temporary.c_str());
        return false;
    }
    keepModificationTime(source, target);
    group.bytes += length;
    copy.descriptor = target;
    beginFlush(copy);
    return true;
}

// One that somebody else has copied may not be on the disk yet.
bool takeExisting(int source, FileCopy& copy) {
    copy.temporary.clear();
    const int existing = openRegularFile(copy.target, O_RDONLY | O_NOFOLLOW);
    if (existing == noDescriptor) return false;
    if (!haveSameContent(source, existing)) {
        close(existing);
        return false;
    }
    copy.descriptor = existing;
    return true;
}

#ifdef __linux__

// File systems that bring all they hold to the disk when asked to, and tell when they could not.
// Of others nobody knows: some pass a file's flush on to where it is, but not that of the whole.
bool canFlushAtOnce(int descriptor) {
    struct statfs status = {};
    if (fstatfs(descriptor, &status) != 0) return false;
    switch (status.f_type) {
        case BTRFS_SUPER_MAGIC:
        case EXFAT_SUPER_MAGIC:
        case EXT4_SUPER_MAGIC:  // and its predecessors
        case F2FS_SUPER_MAGIC:
        case MSDOS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case XFS_SUPER_MAGIC:
            return true;
        default:
            return false;
    }
}

// Waits for the content of all, then once for what tells where it is: a disk takes milliseconds
// for each of its flushes, whatever there is to flush. False when any file may not be on the disk.
bool flushAtOnce(std::span<FileCopy> copies) {
    int any = noDescriptor;
    bool areWritten = true;
    for (FileCopy& copy : copies) {
        if (copy.descriptor == noDescriptor) continue;
        constexpr unsigned all =
            SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
        if (any == noDescriptor && !canFlushAtOnce(copy.descriptor)) return false;
        if (sync_file_range(copy.descriptor, 0, 0, all) != 0) {
            copy.isLost = tellsOfALoss(errno);
            areWritten = false;
        }
        any = copy.descriptor;
    }
    // The last file by itself as well: some file systems have only that bring the disk to write
    // down what it keeps in a cache of its own.
    return areWritten && (any == noDescriptor || (syncfs(any) == 0 && flushDescriptor(any)));
}

#else

bool flushAtOnce(std::span<FileCopy>) {
    return false;
}

#endif

// True when the copy is on the disk.
bool closeCopy(FileCopy& copy, bool isFlushed) {
    if (copy.descriptor == noDescriptor) return false;
    const bool flushed = !copy.isLost && (isFlushed || flushDescriptor(copy.descriptor));
    // Some file systems tell only here that the disk was full.
    const bool closed = close(copy.descriptor) == 0;
    copy.descriptor = noDescriptor;
    if (flushed && closed) return true;
    if (!copy.temporary.empty()) unlink(copy.temporary.c_str());
    return false;
}

bool nameCopy(const FileCopy& copy) {
    if (copy.temporary.empty() || renameFile(copy.temporary, copy.target)) return true;
    unlink(copy.temporary.c_str());
    return false;
}

}  // namespace

bool addCopy(CopyGroup& group, PathView source, PathView target, PathView temporary) {
    FileCopy& copy = group.copies.emplace_back();
    if (!isUsablePath(target) || !isUsablePath(temporary) || !hasBlock(group)) return false;
    const int descriptor = openRegularFile(source, O_RDONLY | O_NOFOLLOW);
    if (descriptor == noDescriptor) return false;
    copy.target = target;
    copy.temporary = temporary;
    const bool added =
        mayExist(copy.target) ? takeExisting(descriptor, copy) : writeCopy(group, descriptor, copy);
    close(descriptor);
    return added;
}

std::vector<bool> completeCopies(CopyGroup& group) {
    // Memory had better run short before anything is taken from the group.
    std::vector<bool> complete;
    complete.reserve(group.copies.size());
    std::vector<FileCopy> copies = std::exchange(group.copies, {});
    group.bytes = 0;
    // One after the other where that does not work, or to learn of which others nobody knows.
    const bool areFlushed = copies.size() > 1 && flushAtOnce(copies);
    for (FileCopy& copy : copies)
        complete.push_back(closeCopy(copy, areFlushed));
    const FileCopy* named = nullptr;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        complete[i] = complete[i] && nameCopy(copies[i]);
        if (complete[i]) named = &copies[i];
    }
    if (named != nullptr && !flushDirectoryOf(named->target)) complete.assign(copies.size(), false);
    return complete;
}

void dropCopies(CopyGroup& group) {
    for (const FileCopy& copy : group.copies) {
        if (copy.descriptor == noDescriptor) continue;
        close(copy.descriptor);
        if (!copy.temporary.empty()) unlink(copy.temporary.c_str());
    }
    group.copies.clear();
    group.bytes = 0;
}

}  // namespace services
