#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

#include "services/disk/posix/descriptors.h"
#include "services/disk/posix/terminated_path.h"
#include "services/disk/system_files.h"

namespace services {

// Sizes and positions are 64 bits wide everywhere.
static_assert(sizeof(off_t) == 8);

namespace {

// One system call moves at most this much: some systems refuse more than 2 GiB.
constexpr std::size_t callLimit = std::size_t{1} << 30U;

int flagsOf(Opening opening) {
    switch (opening) {
        case Opening::read:
            return O_RDONLY;
        case Opening::readItself:
            return O_RDONLY | O_NOFOLLOW;
        case Opening::write:
            return O_WRONLY;
        case Opening::writeItself:
            return O_WRONLY | O_NOFOLLOW;
        case Opening::update:
            return O_RDWR | O_CREAT;
        case Opening::updateItself:
            return O_RDWR | O_CREAT | O_NOFOLLOW;
        case Opening::createNew:
            return O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW;
    }
    return O_RDONLY;
}

OpenError errorOf(int error) {
    return error == EACCES || error == EPERM || error == EROFS ? OpenError::refused
                                                               : OpenError::other;
}

int openInterrupted(const TerminatedPath& path, int flags) {
    int descriptor = noDescriptor;
    do {
        descriptor = open(path.c_str(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0666);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

}  // namespace

OpenFile openRegularFile(PathView path, Opening opening, OpenError* error) {
    const auto fail = [error](OpenError reason) {
        if (error != nullptr) *error = reason;
        return noFile;
    };
    if (error != nullptr) *error = OpenError::none;
    if (!isUsablePath(path)) return fail(OpenError::other);
    const TerminatedPath terminated(path);
    const int flags = flagsOf(opening);
    struct stat status = {};
    if (opening != Opening::createNew) {
        if (stat(terminated.c_str(), &status) == 0) {
            if (!S_ISREG(status.st_mode)) return fail(OpenError::other);
        } else if (errno == ENOENT && (flags & O_CREAT) == 0) {
            return fail(OpenError::other);  // a whole index of missing files costs one call each
        }
    }
    const int descriptor = openInterrupted(terminated, flags);
    if (descriptor < 0) return fail(errorOf(errno));
    if (opening != Opening::createNew &&
        (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return fail(OpenError::other);
    }
    return openFileOf(descriptor);
}

bool closeOpenFile(OpenFile file) {
    return close(descriptorOf(file)) == 0;
}

std::int64_t lengthOfOpenFile(OpenFile file) {
    struct stat status = {};
    return fstat(descriptorOf(file), &status) == 0 ? std::int64_t{status.st_size} : -1;
}

std::int64_t positionInOpenFile(OpenFile file) {
    return lseek(descriptorOf(file), 0, SEEK_CUR);
}

bool seekInOpenFile(OpenFile file, std::int64_t position) {
    return lseek(descriptorOf(file), position, SEEK_SET) == position;
}

std::int64_t readFully(OpenFile file, std::span<std::byte> block) {
    std::size_t done = 0;
    while (done < block.size()) {
        const ssize_t count =
            read(descriptorOf(file), block.data() + done, std::min(block.size() - done, callLimit));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<std::int64_t>(done);
}

bool writeFully(OpenFile file, std::span<const std::byte> block) {
    std::size_t done = 0;
    while (done < block.size()) {
        const ssize_t count = write(descriptorOf(file), block.data() + done,
                                    std::min(block.size() - done, callLimit));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool resizeOpenFile(OpenFile file, std::int64_t length) {
    int result = 0;
    do {
        result = ftruncate(descriptorOf(file), length);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

void keepModificationTime(OpenFile source, OpenFile target) {
    struct stat status = {};
    if (fstat(descriptorOf(source), &status) != 0) return;
    const std::array<timespec, 2> times = {{{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim}};
    static_cast<void>(futimens(descriptorOf(target), times.data()));
}

}  // namespace services
