#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

#include "services/disk/posix/descriptors.h"
#include "services/disk/posix/terminated_path.h"
#include "services/disk/system_files.h"

namespace services {

namespace {

// A file that could not be written back is told of once, and counts as clean from then on: flushing
// it again says nothing.
bool tellsOfALoss(int error) {
    return error == EIO || error == ENOSPC || error == EDQUOT;
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

#endif

}  // namespace

bool flushOpenFile(OpenFile file) {
    int result = 0;
    do {
        result = fsync(descriptorOf(file));
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool beginFlush(OpenFile file) {
#ifdef SYNC_FILE_RANGE_WRITE
    return sync_file_range(descriptorOf(file), 0, 0, SYNC_FILE_RANGE_WRITE) == 0 ||
           !tellsOfALoss(errno);
#else
    static_cast<void>(file);
    return true;
#endif
}

// Waits for the content of all, then once for what tells where it is.
bool flushTogether(std::span<FileToFlush> files) {
#ifdef __linux__
    OpenFile any = noFile;
    bool areWritten = true;
    for (FileToFlush& one : files) {
        if (one.file == noFile) continue;
        constexpr unsigned all =
            SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
        if (any == noFile && !canFlushAtOnce(descriptorOf(one.file))) return false;
        if (sync_file_range(descriptorOf(one.file), 0, 0, all) != 0) {
            one.isLost = one.isLost || tellsOfALoss(errno);
            areWritten = false;
        }
        any = one.file;
    }
    // The last file by itself as well: some file systems have only that bring the disk to write
    // down what it keeps in a cache of its own.
    return areWritten && (any == noFile || (syncfs(descriptorOf(any)) == 0 && flushOpenFile(any)));
#else
    static_cast<void>(files);
    return false;
#endif
}

void dropFromMemory(OpenFile file) {
#ifdef POSIX_FADV_DONTNEED
    static_cast<void>(posix_fadvise(descriptorOf(file), 0, 0, POSIX_FADV_DONTNEED));
#else
    static_cast<void>(file);
#endif
}

bool flushDirectory(PathView directory) {
    const TerminatedPath path(directory.empty() ? PathView(".") : directory);
    const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return true;
    const bool flushed = flushOpenFile(openFileOf(descriptor)) || !tellsOfALoss(errno);
    close(descriptor);
    return flushed;
}

}  // namespace services
