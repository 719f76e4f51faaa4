// Descriptors of regular files, for the sources of this folder that read and write them.
// Interrupted and short calls are carried on here.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>

#include "services/text/paths.h"

namespace services {

// Sizes and positions are 64 bits wide everywhere.
static_assert(sizeof(off_t) == 8);

inline constexpr int noDescriptor = -1;

// One system call moves at most this much: some systems refuse more than 2 GiB.
inline constexpr std::size_t callLimit = std::size_t{1} << 30U;

// False for the empty path and for one with a NUL byte, which would name another file.
inline bool isUsablePath(PathView path) {
    return !path.empty() && path.find('\0') == PathView::npos;
}

// True for anything of that name, a dangling link too. What can't be looked at counts as existing.
inline bool mayExist(const Path& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

// -1 when it can't be told.
inline std::int64_t lengthOfDescriptor(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? std::int64_t{status.st_size} : -1;
}

// A descriptor, or noDescriptor. Asking never waits; anything but a regular file is not even opened
// (opening some devices has effects), and what took its place meanwhile is closed again unread.
inline int openRegularFile(PathView path, int flags) {
    if (!isUsablePath(path)) return noDescriptor;
    const Path terminated(path);
    struct stat status = {};
    if (stat(terminated.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) return noDescriptor;
    } else if (errno == ENOENT && (flags & O_CREAT) == 0) {
        return noDescriptor;  // a whole index of missing files costs one call each
    }
    int descriptor = noDescriptor;
    do {
        descriptor = open(terminated.c_str(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0666);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) return noDescriptor;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return noDescriptor;
    }
    return descriptor;
}

// The number of bytes read, less than the block's size at the end of the file only; -1 on an error.
inline std::int64_t readFully(int descriptor, std::span<std::byte> block) {
    std::size_t done = 0;
    while (done < block.size()) {
        const ssize_t count =
            read(descriptor, block.data() + done, std::min(block.size() - done, callLimit));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<std::int64_t>(done);
}

inline bool writeFully(int descriptor, std::span<const std::byte> block) {
    std::size_t done = 0;
    while (done < block.size()) {
        const ssize_t count =
            write(descriptor, block.data() + done, std::min(block.size() - done, callLimit));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

// Waits until everything written is on the disk.
inline bool flushDescriptor(int descriptor) {
    int result = 0;
    do {
        result = fsync(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

}  // namespace services
