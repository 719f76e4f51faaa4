#include "services/disk/durable_names.h"

#include <algorithm>
#include <array>
#include <vector>

#include "services/disk/directories.h"
#include "services/disk/file_copies.h"
#include "services/disk/file_kinds.h"
#include "services/disk/file_moves.h"
#include "services/disk/system_files.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace services {

namespace {

// As many files as are held open at once.
constexpr std::size_t heldAtOnce = 64;

// One name is gone from the disk before what it stood for is given free: that happens when the file
// is closed.
void deleteHeld(std::span<const Path> paths) {
    std::array<OpenFile, heldAtOnce> held;
    std::size_t count = 0;
    for (const Path& path : paths) {
        if (!isRegularFile(path)) continue;
        held[count] = openRegularFile(path, Opening::readItself);
        const bool isHeld = held[count] != noFile;
        if (isHeld) ++count;
        deleteFile(path);
    }
    if (!paths.empty()) flushDirectoryOf(paths.front());
    for (std::size_t i = 0; i < count; ++i)
        closeOpenFile(held[i]);
}

// True when the finished file begins with all the bytes of the leftover, or nobody knows: then both
// names may stand for the same place on the disk.
bool mayShareBytes(PathView leftover, PathView finished) {
    const FileDigest rest = digestOfFile(leftover, LinksAre::refused);
    if (rest.state != WholeFile::State::read) return true;
    if (rest.length == 0) return false;
    switch (kindOf(finished, LinksAre::refused)) {
        case FileKind::regular:
            break;
        case FileKind::untold:
            return true;
        default:
            return false;
    }
    const FileDigest beginning = digestOfFile(finished, LinksAre::refused, rest.length);
    if (beginning.state != WholeFile::State::read) return true;
    return beginning.length == rest.length && beginning.hash == rest.hash;
}

void setAside(PathView leftover) {
    constexpr int tries = 1000;
    for (int i = 1; i <= tries; ++i) {
        if (renameFile(leftover, concatenate(leftover, ".rest", integerToText(i)))) break;
    }
    flushDirectoryOf(leftover);
}

}  // namespace

PathView directoryOf(PathView path) {
    // No slash: npos + 1 is 0.
    return path.substr(0, path.rfind('/') + 1);
}

void deleteAllForGood(std::span<const Path> paths) {
    if (paths.empty()) return;
    if (renamesInOneStep(directoryOf(paths.front()))) {
        for (const Path& path : paths)
            deleteRegularFile(path);
        return;
    }
    for (std::size_t i = 0; i < paths.size(); i += heldAtOnce)
        deleteHeld(paths.subspan(i, std::min(heldAtOnce, paths.size() - i)));
}

void deleteForGood(PathView path) {
    if (!isRegularFile(path)) return;
    const bool inOneStep = renamesInOneStep(directoryOf(path));
    const OpenFile held = inOneStep ? noFile : openRegularFile(path, Opening::readItself);
    deleteFile(path);
    if (!inOneStep) flushDirectoryOf(path);
    if (held != noFile) closeOpenFile(held);
}

void settleLeftover(PathView leftover, PathView finished) {
    const FileKind kind = kindOf(leftover, LinksAre::refused);
    if (kind == FileKind::link || kind == FileKind::other) {
        deleteFile(leftover);  // the link, not what it leads to
    } else if (kind == FileKind::regular) {
        if (!renamesInOneStep(directoryOf(leftover)) && mayShareBytes(leftover, finished))
            setAside(leftover);
        else
            deleteForGood(leftover);
    }
}

bool renameForGood(PathView from, PathView to) {
    // The name with its bytes first: the old one is still there when that is cut off.
    if (!renameFile(from, to)) return false;
    flushPath(to);
    flushDirectoryOf(to);
    return true;
}

bool moveByCopying(PathView from, PathView to, PathView temporary) {
    if (kindOf(to, LinksAre::refused) != FileKind::missing) return false;
    settleLeftover(temporary, to);
    CopyGroup group;
    addCopy(group, from, to, temporary);
    const std::vector<bool> complete = completeCopies(group);
    if (complete.empty() || !complete.front()) return false;
    deleteForGood(from);
    return true;
}

}  // namespace services
