#include "services/disk/file_copies.h"

#include <algorithm>
#include <span>
#include <utility>

#include "services/disk/durable_names.h"
#include "services/disk/file_kinds.h"
#include "services/disk/file_moves.h"
#include "services/disk/memory.h"
#include "services/disk/system_files.h"
#include "services/disk/whole_files.h"

namespace services {

namespace {

constexpr std::size_t copyBlockSize = std::size_t{1} << 20U;

bool haveSameContent(OpenFile first, OpenFile second) {
    const std::int64_t length = lengthOfOpenFile(first);
    if (length < 0 || length != lengthOfOpenFile(second)) return false;
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
std::int64_t copyContent(OpenFile source, OpenFile target, std::vector<std::byte>& block) {
    const std::int64_t length = lengthOfOpenFile(source);
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

void removeTemporary(const FileCopy& copy) {
    if (!copy.temporary.empty()) deleteForGood(copy.temporary);
}

bool writeCopy(CopyGroup& group, OpenFile source, FileCopy& copy) {
    const OpenFile target = openRegularFile(copy.temporary, Opening::createNew);
    if (target == noFile) return false;
    const std::int64_t length = copyContent(source, target, group.block);
    if (length < 0) {
        closeOpenFile(target);
        removeTemporary(copy);
        return false;
    }
    keepModificationTime(source, target);
    group.bytes += length;
    copy.file = target;
    // The disk works while the next file is read.
    copy.isLost = !beginFlush(target);
    return true;
}

// One that somebody else has copied may not be on the disk yet.
bool takeExisting(OpenFile source, FileCopy& copy) {
    copy.temporary.clear();
    const OpenFile existing = openRegularFile(copy.target, Opening::readItself);
    if (existing == noFile) return false;
    if (!haveSameContent(source, existing)) {
        closeOpenFile(existing);
        return false;
    }
    copy.file = existing;
    return true;
}

// False when any file may not be on the disk.
bool flushAtOnce(std::span<FileCopy> copies) {
    std::vector<FileToFlush> files;
    const bool fits = withinMemory([&] { files.reserve(copies.size()); });
    if (!fits) return false;
    for (const FileCopy& copy : copies)
        files.push_back({.file = copy.file, .isLost = copy.isLost});
    const bool areFlushed = flushTogether(files);
    for (std::size_t i = 0; i < files.size(); ++i)
        copies[i].isLost = files[i].isLost;
    return areFlushed;
}

// Reads the copy from the disk and not from the memory that it was written into.
bool isAsItsSource(const FileCopy& copy) {
    dropFromMemory(copy.file);
    const OpenFile source = openRegularFile(copy.source, Opening::readItself);
    if (source == noFile) return false;
    const bool isSame = seekInOpenFile(copy.file, 0) && haveSameContent(source, copy.file);
    closeOpenFile(source);
    return isSame;
}

// True when the copy is on the disk.
bool closeCopy(FileCopy& copy, bool isFlushed) {
    if (copy.file == noFile) return false;
    const bool flushed = !copy.isLost && (isFlushed || flushOpenFile(copy.file));
    const bool isSame = flushed && isAsItsSource(copy);
    const bool closed = closeOpenFile(copy.file);
    copy.file = noFile;
    if (isSame && closed) return true;
    removeTemporary(copy);
    return false;
}

bool nameCopy(const FileCopy& copy) {
    if (copy.temporary.empty() || renameFile(copy.temporary, copy.target)) return true;
    removeTemporary(copy);
    return false;
}

// The directory, and on FAT then each file under its new name: before that it may stand for no
// bytes. The other way round both names could stand for the same, and the old one could not be
// removed any more. False for a file that may not be on the disk; all of them are false when the
// directory could not be flushed.
void flushNames(std::span<FileCopy> copies, std::vector<bool>& complete) {
    const auto any = std::find(complete.begin(), complete.end(), true);
    if (any == complete.end()) return;
    const Path& target = copies[static_cast<std::size_t>(any - complete.begin())].target;
    if (!flushDirectoryOf(target)) {
        complete.assign(copies.size(), false);
        return;
    }
    if (renamesInOneStep(directoryOf(target))) return;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        if (complete[i]) copies[i].file = openRegularFile(copies[i].target, Opening::readItself);
    }
    const bool areFlushed = copies.size() > 1 && flushAtOnce(copies);
    for (std::size_t i = 0; i < copies.size(); ++i) {
        if (!complete[i]) continue;
        complete[i] = copies[i].file != noFile && !copies[i].isLost &&
                      (areFlushed || flushOpenFile(copies[i].file));
        if (copies[i].file != noFile) closeOpenFile(copies[i].file);
    }
}

// True when nothing has the name, or what a rename on FAT has left that was cut off before the name
// got its bytes: then it goes.
bool isFree(const Path& target, OpenFile source) {
    switch (kindOf(target, LinksAre::refused)) {
        case FileKind::missing:
            return true;
        case FileKind::regular:
            break;
        default:
            return false;
    }
    if (renamesInOneStep(directoryOf(target)) || lengthOfOpenFile(source) == 0) return false;
    const FileDigest digest = digestOfFile(target, LinksAre::refused);
    if (digest.state != WholeFile::State::read || digest.length > 0) return false;
    deleteForGood(target);
    return kindOf(target, LinksAre::refused) == FileKind::missing;
}

}  // namespace

bool addCopy(CopyGroup& group, PathView source, PathView target, PathView temporary) {
    FileCopy& copy = group.copies.emplace_back();
    if (!isUsablePath(target) || !isUsablePath(temporary) || !hasBlock(group)) return false;
    const OpenFile opened = openRegularFile(source, Opening::readItself);
    if (opened == noFile) return false;
    copy.source = source;
    copy.target = target;
    copy.temporary = temporary;
    const bool added =
        isFree(copy.target, opened) ? writeCopy(group, opened, copy) : takeExisting(opened, copy);
    closeOpenFile(opened);
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
    for (std::size_t i = 0; i < copies.size(); ++i)
        complete[i] = complete[i] && nameCopy(copies[i]);
    flushNames(copies, complete);
    return complete;
}

void dropCopies(CopyGroup& group) {
    for (const FileCopy& copy : group.copies) {
        if (copy.file == noFile) continue;
        closeOpenFile(copy.file);
        removeTemporary(copy);
    }
    group.copies.clear();
    group.bytes = 0;
}

}  // namespace services
