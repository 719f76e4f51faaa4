#include "services/disk/whole_files.h"

#include <sys/file.h>

#include <array>
#include <cstdio>

#include "services/disk/memory.h"
#include "services/disk/regular_files.h"

namespace services {

namespace {

constexpr std::size_t digestBlockSize = std::size_t{1} << 16U;

bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

bool readAll(int descriptor, std::string& bytes) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || status.st_size < 0) return false;
    const auto length = static_cast<std::uint64_t>(status.st_size);
    if (length > longestFile || !fitsIntoMemory(length)) return false;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    return readFully(descriptor, std::as_writable_bytes(std::span(bytes))) == status.st_size;
}

bool digestAll(int descriptor, FileDigest& digest) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || status.st_size < 0) return false;
    if (static_cast<std::uint64_t>(status.st_size) > longestFile) return false;
    digest = {.state = WholeFile::State::read,
              .length = static_cast<std::uint64_t>(status.st_size),
              .hash = emptyHash};
    std::array<std::byte, digestBlockSize> block;
    for (std::uint64_t left = digest.length; left > 0;) {
        const auto asked = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        if (readFully(descriptor, std::span(block).first(asked)) !=
            static_cast<std::int64_t>(asked)) {
            return false;
        }
        digest.hash = hashOf({reinterpret_cast<const char*>(block.data()), asked}, digest.hash);
        left -= asked;
    }
    return true;
}

// `state` is unreadable when there is a descriptor to read from, or should be one.
struct OpenedFile {
    WholeFile::State state = WholeFile::State::missing;
    int descriptor = noDescriptor;
};

OpenedFile openToRead(PathView path, LinksAre links) {
    if (!isUsablePath(path)) return {};
    struct stat status = {};
    const Path terminated(path);
    const int result = links == LinksAre::followed ? stat(terminated.c_str(), &status)
                                                   : lstat(terminated.c_str(), &status);
    if (result != 0 && isMissing(errno)) return {};
    if (result == 0 && !S_ISREG(status.st_mode)) return {.state = WholeFile::State::notRegular};
    return {.state = WholeFile::State::unreadable,
            .descriptor = openRegularFile(
                path, links == LinksAre::followed ? O_RDONLY : O_RDONLY | O_NOFOLLOW)};
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
    const OpenedFile opened = openToRead(path, links);
    file.state = opened.state;
    if (opened.descriptor == noDescriptor) return file;
    file.state = WholeFile::State::unreadable;
    static_cast<void>(withinMemory([&] {
        if (readAll(opened.descriptor, file.bytes)) file.state = WholeFile::State::read;
    }));
    if (file.state != WholeFile::State::read) file.bytes = {};
    close(opened.descriptor);
    return file;
}

FileDigest digestOfFile(PathView path, LinksAre links) {
    FileDigest digest;
    const OpenedFile opened = openToRead(path, links);
    digest.state = opened.state;
    if (opened.descriptor == noDescriptor) return digest;
    const bool read = digestAll(opened.descriptor, digest);
    if (!read) digest = {.state = WholeFile::State::unreadable};
    close(opened.descriptor);
    return digest;
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

Holding holdDirectory(HeldDirectory& held, PathView directory) {
    letGo(held);
    const Path path(directory.empty() ? PathView(".") : directory);
    const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return Holding::impossible;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        held.descriptor = descriptor;
        return Holding::done;
    }
    const Holding result = errno == EWOULDBLOCK ? Holding::heldByAnother : Holding::impossible;
    close(descriptor);
    return result;
}

void letGo(HeldDirectory& held) {
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
