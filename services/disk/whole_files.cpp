#include "services/disk/whole_files.h"

#include <algorithm>
#include <array>

#include "services/disk/durable_names.h"
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

bool digestAll(OpenFile file, std::uint64_t atMost, FileDigest& digest) {
    const std::int64_t length = lengthOfOpenFile(file);
    if (length < 0) return false;
    const std::uint64_t counted = std::min(static_cast<std::uint64_t>(length), atMost);
    if (counted > longestFile) return false;
    digest = {.state = WholeFile::State::read, .length = counted, .hash = emptyHash};
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

// Of a file that can't be written nothing is left; one that has the name already stays.
bool writeNewFile(PathView path, std::string_view bytes) {
    const OpenFile file = openRegularFile(path, Opening::createNew);
    if (file == noFile) return false;
    const bool written = writeFully(file, std::as_bytes(std::span(bytes))) && flushOpenFile(file);
    if (closeOpenFile(file) && written) return true;
    deleteForGood(path);
    return false;
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

FileDigest digestOfFile(PathView path, LinksAre links, std::uint64_t atMost) {
    FileDigest digest;
    const OpenedFile opened = openToRead(path, links);
    digest.state = opened.state;
    if (opened.file == noFile) return digest;
    const bool read = digestAll(opened.file, atMost, digest);
    if (!read) digest = {.state = WholeFile::State::unreadable};
    closeOpenFile(opened.file);
    return digest;
}

bool replaceWholeFile(PathView path, PathView temporary, std::string_view bytes) {
    if (!isUsablePath(path) || !isUsablePath(temporary)) return false;
    settleLeftover(temporary, path);
    const bool inOneStep = renamesInOneStep(directoryOf(path));
    if (!writeNewFile(temporary, bytes)) return false;
    // On FAT the name is as long as several entries, which may lie in two sectors.
    if (!inOneStep && !flushDirectoryOf(path)) {
        deleteForGood(temporary);
        return false;
    }
    // Held, the old file keeps its place until the disk has the name that leads to the new one.
    const OpenFile old = inOneStep ? noFile : openRegularFile(path, Opening::readItself);
    const bool replaced = replaceFile(temporary, path);
    // On FAT the old name goes first: both at once would stand for the same bytes. Until the file
    // is flushed under its new name that stands for the old file, or for none.
    const bool flushed = replaced && flushDirectoryOf(path) && (inOneStep || flushPath(path));
    if (old != noFile) closeOpenFile(old);
    if (!replaced) deleteForGood(temporary);
    return flushed;
}

bool flushPath(PathView path) {
    const OpenFile file = openRegularFile(path, Opening::read);
    if (file == noFile) return false;
    const bool flushed = flushOpenFile(file);
    closeOpenFile(file);
    return flushed;
}

bool flushDirectoryOf(PathView path) {
    return flushDirectory(directoryOf(path));
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
