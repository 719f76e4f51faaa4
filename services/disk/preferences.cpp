#include "services/disk/preferences.h"

#include <span>
#include <utility>

#include "services/disk/directories.h"
#include "services/disk/durable_names.h"
#include "services/disk/file_kinds.h"
#include "services/disk/file_moves.h"
#include "services/disk/memory.h"
#include "services/disk/system_files.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace services {

namespace {

// Empty for what is missing, no regular file, unreadable or too large.
std::string bytesOfFile(PathView path) {
    const OpenFile file = openRegularFile(path, Opening::read);
    if (file == noFile) return {};
    std::string bytes;
    std::int64_t count = 0;
    const bool fits = withinMemory([&] {
        const std::int64_t length = lengthOfOpenFile(file);
        if (length > 0 && length <= preferenceFileLimit)
            bytes.resize(static_cast<std::size_t>(length));
        count = readFully(file, std::as_writable_bytes(std::span(bytes)));
    });
    closeOpenFile(file);
    bytes.resize(!fits || count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

// The process number keeps two running programs from writing into one file.
constexpr PathView temporaryEnding = ".neu-";

Path temporaryPath(PathView path) {
    return concatenate(path, temporaryEnding, integerToText(processNumber()));
}

// Settles what saves have left that were cut off, but nothing of a program that still runs.
void removeLeftovers(PathView path) {
    const std::size_t nameStart = path.rfind('/') + 1;
    const PathView directory = path.substr(0, nameStart);
    const Path beginning = concatenate(path.substr(nameStart), temporaryEnding);
    for (const Path& name : namesInDirectory(directory)) {
        if (!name.starts_with(beginning)) continue;
        const PathView digits = PathView(name).substr(beginning.size());
        if (digits.empty() || digits.find_first_not_of("0123456789") != PathView::npos) continue;
        const Path leftover = concatenate(directory, name);
        if (isProcessGone(textToInteger(digits)) && isRegularFile(leftover))
            settleLeftover(leftover, path);
    }
}

// A new empty file, opened for writing. A leftover of that name from a run that was cut off is
// removed.
OpenFile createTemporaryFile(PathView temporary, PathView path, OpenError& error) {
    settleLeftover(temporary, path);
    return openRegularFile(temporary, Opening::createNew, &error);
}

// Writes the bytes over those that the file holds: the way for a file in a directory that takes no
// other beside it, as one that lies in somebody else's. When that fails, on a full disk say, the
// file gets back what it held, for which it has the room; only a crash in between finds a part of
// both. True when all is on the disk.
bool writeInPlace(PathView path, std::string_view bytes) {
    const WholeFile before = readWholeFile(path, LinksAre::refused);
    const OpenFile file = openRegularFile(path, Opening::writeItself);
    if (file == noFile) return false;
    const auto write = [file](std::string_view content) {
        return seekInOpenFile(file, 0) && writeFully(file, std::as_bytes(std::span(content))) &&
               resizeOpenFile(file, static_cast<std::int64_t>(content.size())) &&
               flushOpenFile(file);
    };
    const bool written = write(bytes);
    if (!written && before.state == WholeFile::State::read) write(before.bytes);
    return closeOpenFile(file) && written;
}

// The group to write into, made when it is not there yet.
PreferenceGroup& groupForWriting(Preferences& preferences) {
    if (preferences.currentPosition == noPreferenceGroup) {
        preferences.currentPosition = preferences.groups.size();
        preferences.groups.push_back({preferences.currentGroup, {}});
    }
    preferences.changed = true;
    return preferences.groups[preferences.currentPosition];
}

const PreferenceEntry* findEntry(const Preferences& preferences, TextView key) {
    const auto found = preferences.keyPositions.find(foldCase(key));
    if (found == preferences.keyPositions.end()) return nullptr;
    return &preferences.groups[preferences.currentPosition].entries[found->second];
}

}  // namespace

Preferences openPreferences(PathView path) {
    Preferences preferences;
    preferences.path = absolutePath(path);
    preferences.groups = parsePreferences(bytesOfFile(path));
    preferenceGroup(preferences, {});
    return preferences;
}

bool createPreferences(Preferences& preferences, PathView path) {
    preferences = {};
    if (!isUsablePath(path)) return false;
    Preferences created;
    created.path = absolutePath(path);
    created.unfinished = temporaryPath(created.path);
    // A link is not followed: what it leads to, somewhere outside a card perhaps, is not this
    // program's to replace.
    const FileKind kind = kindOf(created.path, LinksAre::refused);
    if (kind == FileKind::directory || kind == FileKind::other) return false;
    removeLeftovers(created.path);
    OpenError error = OpenError::none;
    OpenFile file = createTemporaryFile(created.unfinished, created.path, error);
    if (error == OpenError::refused) {
        created.inPlace = true;
        created.unfinished.clear();
        file = openRegularFile(created.path, Opening::writeItself);
    }
    if (file == noFile) return false;
    closeOpenFile(file);
    created.changed = true;
    preferences = std::move(created);
    return true;
}

void preferenceGroup(Preferences& preferences, TextView name) {
    const Text folded = foldCase(name);
    preferences.currentGroup = name;
    preferences.currentPosition = noPreferenceGroup;
    preferences.keyPositions.clear();
    for (std::size_t i = 0; i < preferences.groups.size(); ++i) {
        if (foldCase(preferences.groups[i].name) != folded) continue;
        preferences.currentPosition = i;
        const std::vector<PreferenceEntry>& entries = preferences.groups[i].entries;
        for (std::size_t k = 0; k < entries.size(); ++k) {
            // Does nothing for a key that is known: the first counts.
            if (!entries[k].isComment)
                preferences.keyPositions.try_emplace(foldCase(entries[k].key), k);
        }
        return;
    }
}

std::int64_t readInteger(const Preferences& preferences, TextView key, std::int64_t fallback) {
    const PreferenceEntry* const entry = findEntry(preferences, key);
    if (entry == nullptr) return fallback;
    // The conversion would take a prefix of "$" or "%" for another base.
    return textToInteger(TextView(entry->value).substr(0, entry->value.find_first_of("$%")));
}

Text readText(const Preferences& preferences, TextView key, TextView fallback) {
    const PreferenceEntry* const entry = findEntry(preferences, key);
    return entry == nullptr ? Text(fallback) : entry->value;
}

void writeInteger(Preferences& preferences, TextView key, std::int64_t value) {
    writeText(preferences, key, integerToText(value));
}

void writeText(Preferences& preferences, TextView key, TextView value) {
    std::vector<PreferenceEntry>& entries = groupForWriting(preferences).entries;
    const auto [place, isNew] = preferences.keyPositions.try_emplace(foldCase(key), entries.size());
    if (isNew)
        entries.push_back({.key = Text(key), .value = Text(value)});
    else
        entries[place->second].value = value;
}

void preferenceComment(Preferences& preferences, TextView comment) {
    groupForWriting(preferences)
        .entries.push_back({.key = {}, .value = Text(comment), .isComment = true});
}

void discardPreferences(Preferences& preferences) {
    if (!preferences.unfinished.empty()) deleteFile(preferences.unfinished);
    preferences = {};
}

bool closePreferences(Preferences& preferences) {
    Preferences closing = std::exchange(preferences, {});
    if (!closing.changed) return true;
    bool written = false;
    static_cast<void>(withinMemory([&closing, &written] {
        const std::string bytes = formatPreferences(closing.groups);
        if (closing.inPlace) {
            written = writeInPlace(closing.path, bytes);
            return;
        }
        if (closing.unfinished.empty()) closing.unfinished = temporaryPath(closing.path);
        written = replaceWholeFile(closing.path, closing.unfinished, bytes);
    }));
    if (!written) discardPreferences(closing);
    return written;
}

}  // namespace services
