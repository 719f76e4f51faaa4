#include "services/disk/file_copies.h"

#include <algorithm>
#include <span>
#include <utility>

#include "services/disk/directories.h"
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

bool writeCopy(CopyGroup& group, OpenFile source, FileCopy& copy) {
    const OpenFile target = openRegularFile(copy.temporary, Opening::createNew);
    if (target == noFile) return false;
    const std::int64_t length = copyContent(source, target, group.block);
    if (length < 0) {
        closeOpenFile(target);
        deleteFile(copy.temporary);
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

// True when the copy is on the disk.
bool closeCopy(FileCopy& copy, bool isFlushed) {
    if (copy.file == noFile) return false;
    const bool flushed = !copy.isLost && (isFlushed || flushOpenFile(copy.file));
    const bool closed = closeOpenFile(copy.file);
    copy.file = noFile;
    if (flushed && closed) return true;
    if (!copy.temporary.empty()) deleteFile(copy.temporary);
    return false;
}

bool nameCopy(const FileCopy& copy) {
    if (copy.temporary.empty() || renameFile(copy.temporary, copy.target)) return true;
    deleteFile(copy.temporary);
    return false;
}

}  // namespace

bool addCopy(CopyGroup& group, PathView source, PathView target, PathView temporary) {
    FileCopy& copy = group.copies.emplace_back();
    if (!isUsablePath(target) || !isUsablePath(temporary) || !hasBlock(group)) return false;
    const OpenFile opened = openRegularFile(source, Opening::readItself);
    if (opened == noFile) return false;
    copy.target = target;
    copy.temporary = temporary;
    const bool added = kindOf(copy.target, LinksAre::refused) == FileKind::missing
                           ? writeCopy(group, opened, copy)
                           : takeExisting(opened, copy);
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
        if (copy.file == noFile) continue;
        closeOpenFile(copy.file);
        if (!copy.temporary.empty()) deleteFile(copy.temporary);
    }
    group.copies.clear();
    group.bytes = 0;
}

}  // namespace services
