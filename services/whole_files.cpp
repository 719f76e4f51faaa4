#include "services/whole_files.h"

#include <sys/file.h>

#include <cstdio>
#include <new>
#include <stdexcept>

#include "services/regular_files.h"

namespace services {

namespace {

bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

bool readAll(int descriptor, std::string& bytes) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || status.st_size < 0) return false;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    return readFully(descriptor, std::as_writable_bytes(std::span(bytes))) == status.st_size;
}

bool writeNewFile(const Path& path, std::string_view bytes) {
    // Whatever bears the name is of a run that was cut off; a link goes, not what it leads to.
    unlink(path.c_str());
    const int descriptor = openRegularFile(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    if (descriptor == noDescriptor) return false;
    const bool written =
        writeFully(descriptor, std::as_bytes(std::span(bytes))) && flushDescriptor(descriptor);
    // Some file systems tell only here that the disk was full.
    return close(descriptor) == 0 && written;
}

}  // namespace

Presence presenceOf(PathView path) {
    struct stat status = {};
    if (!isUsablePath(path)) return Presence::missing;
    if (lstat(Path(path).c_str(), &status) == 0) return Presence::there;
    return isMissing(errno) ? Presence::missing : Presence::unknown;
}

WholeFile readWholeFile(PathView path, LinksAre links) {
    WholeFile file;
    if (!isUsablePath(path)) return file;
    struct stat status = {};
    const Path terminated(path);
    const int result = links == LinksAre::followed ? stat(terminated.c_str(), &status)
                                                   : lstat(terminated.c_str(), &status);
    if (result != 0 && isMissing(errno)) return file;
    if (result == 0 && !S_ISREG(status.st_mode)) {
        file.state = WholeFile::State::notRegular;
        return file;
    }
    file.state = WholeFile::State::unreadable;
    const int descriptor =
        openRegularFile(path, links == LinksAre::followed ? O_RDONLY : O_RDONLY | O_NOFOLLOW);
    if (descriptor == noDescriptor) return file;
    try {
        if (readAll(descriptor, file.bytes)) file.state = WholeFile::State::read;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    if (file.state != WholeFile::State::read) file.bytes = {};
    close(descriptor);
    return file;
}

bool replaceWholeFile(PathView path, PathView temporary, std::string_view bytes) {
    if (!isUsablePath(path) || !isUsablePath(temporary)) return false;
    const Path unfinished(temporary);
    if (writeNewFile(unfinished, bytes) &&
        std::rename(unfinished.c_str(), Path(path).c_str()) == 0) {
        return flushDirectoryOf(path);
    }
    unlink(unfinished.c_str());
    return false;
}

bool flushPath(PathView path) {
    const int descriptor = openRegularFile(path, O_RDONLY);
    if (descriptor == noDescriptor) return false;
    const bool flushed = flushDescriptor(descriptor);
    close(descriptor);
    return flushed;
}

bool flushDirectoryOf(PathView path) {
    const std::size_t slash = path.rfind('/');
    const Path directory(slash == PathView::npos ? PathView(".") : path.substr(0, slash + 1));
    const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return true;
    const bool flushed =
        flushDescriptor(descriptor) || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
    close(descriptor);
    return flushed;
}

Holding holdFile(HeldFile& held, PathView path) {
    letGo(held);
    const int descriptor = openRegularFile(path, O_RDONLY | O_NOFOLLOW);
    if (descriptor == noDescriptor) return Holding::impossible;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        held.descriptor = descriptor;
        return Holding::done;
    }
    const Holding result = errno == EWOULDBLOCK ? Holding::heldByAnother : Holding::impossible;
    close(descriptor);
    return result;
}

void letGo(HeldFile& held) {
    if (held.descriptor >= 0) close(held.descriptor);
    held = {};
}

std::uint64_t hashOf(std::string_view bytes, std::uint64_t before) {
    std::uint64_t hash = before;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 0x100000001B3U;
    }
    return hash;
}

}  // namespace services
