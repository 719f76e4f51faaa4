#include "services/disk/whole_files.h"

#include <algorithm>
#include <array>

#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/disk/system_files.h"

namespace services {

namespace {

constexpr std::size_t digestBlockSize = std::size_t{1} << 16U;

bool readAll(OpenFile file, std::string& bytes) {
    const std::int64_t length = lengthOfOpenFile(file);
    if (length < 0) return false;
    const auto wanted = static_cast<std::uint64_t>(length);
    if (wanted > longestFile || !fitsIntoMemory(wanted)) return false;
    bytes.resize(static_cast<std::size_t>(wanted));
    return readFully(file, std::as_writable_bytes(std::span(bytes))) == length;
}

bool digestAll(OpenFile file, FileDigest& digest) {
    const std::int64_t length = lengthOfOpenFile(file);
    if (length < 0 || static_cast<std::uint64_t>(length) > longestFile) return false;
    digest = {.state = WholeFile::State::read,
              .length = static_cast<std::uint64_t>(length),
              .hash = emptyHash};
    std::array<std::byte, digestBlockSize> block;
    for (std::uint64_t left = digest.length; left > 0;) {
        const auto asked = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        if (readFully(file, std::span(block).first(asked)) != static_cast<std::int64_t>(asked))
            return false;
        digest.hash = hashOf({reinterpret_cast<const char*>(block.data()), asked}, digest.hash);
        left -= asked;
    }
    return true;
}

// `state` is unreadable when there is a file to read from, or should be one.
struct OpenedFile {
    WholeFile::State state = WholeFile::State::missing;
    OpenFile file = noFile;
};

OpenedFile openToRead(PathView path, LinksAre links) {
    switch (kindOf(path, links)) {
        case FileKind::missing:
            return {};
        case FileKind::regular:
        case FileKind::untold:
            break;
        case FileKind::directory:
        case FileKind::link:
        case FileKind::other:
            return {.state = WholeFile::State::notRegular};
    }
    return {.state = WholeFile::State::unreadable,
            .file = openRegularFile(
                path, links == LinksAre::followed ? Opening::read : Opening::readItself)};
}

bool writeNewFile(PathView path, std::string_view bytes) {
    // Whatever bears the name is of a run that was cut off; a link goes, not what it leads to.
    deleteFile(path);
    const OpenFile file = openRegularFile(path, Opening::createNew);
    if (file == noFile) return false;
    const bool written = writeFully(file, std::as_bytes(std::span(bytes))) && flushOpenFile(file);
    return closeOpenFile(file) && written;
}

}  // namespace

Presence presenceOf(PathView path) {
    switch (kindOf(path, LinksAre::refused)) {
        case FileKind::missing:
            return Presence::missing;
        case FileKind::untold:
            return Presence::unknown;
        default:
            return Presence::there;
    }
}

WholeFile readWholeFile(PathView path, LinksAre links) {
    WholeFile file;
    const OpenedFile opened = openToRead(path, links);
    file.state = opened.state;
    if (opened.file == noFile) return file;
    file.state = WholeFile::State::unreadable;
    static_cast<void>(withinMemory([&] {
        if (readAll(opened.file, file.bytes)) file.state = WholeFile::State::read;
    }));
    if (file.state != WholeFile::State::read) file.bytes = {};
    closeOpenFile(opened.file);
    return file;
}

FileDigest digestOfFile(PathView path, LinksAre links) {
    FileDigest digest;
    const OpenedFile opened = openToRead(path, links);
    digest.state = opened.state;
    if (opened.file == noFile) return digest;
    const bool read = digestAll(opened.file, digest);
    if (!read) digest = {.state = WholeFile::State::unreadable};
    closeOpenFile(opened.file);
    return digest;
}

bool replaceWholeFile(PathView path, PathView temporary, std::string_view bytes) {
    if (!isUsablePath(path) || !isUsablePath(temporary)) return false;
    if (writeNewFile(temporary, bytes) && replaceFile(temporary, path))
        return flushDirectoryOf(path);
    deleteFile(temporary);
    return false;
}

bool flushPath(PathView path) {
    const OpenFile file = openRegularFile(path, Opening::read);
    if (file == noFile) return false;
    const bool flushed = flushOpenFile(file);
    closeOpenFile(file);
    return flushed;
}

bool flushDirectoryOf(PathView path) {
    // No slash: npos + 1 is 0, and the empty directory is the working directory.
    return flushDirectory(path.substr(0, path.rfind('/') + 1));
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
