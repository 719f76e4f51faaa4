#include "services/disk/preferences.h"

#include <algorithm>
#include <csignal>
#include <limits>
#include <utility>

#include "services/disk/directories.h"
#include "services/disk/file_moves.h"
#include "services/disk/memory.h"
#include "services/disk/regular_files.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace services {

namespace {

// Upper and lower case become the same for every letter that has both in Latin-1.
Text foldCase(TextView text) {
    Text folded = lowerCase(text);
    for (char& character : folded) {
        const auto byte = static_cast<unsigned char>(character);
        // 0xD7 is the multiplication sign amid the capital letters.
        if (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7)
            character = static_cast<char>(byte + 0x20U);
    }
    return folded;
}

TextView withoutLeadingSpace(TextView text) {
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

TextView withoutTrailingSpace(TextView text) {
    const std::size_t last = text.find_last_not_of(" \t");
    return last == TextView::npos ? TextView() : text.substr(0, last + 1);
}

// Takes the next line off the front of `bytes`: to LF, CR or the end. CR LF counts as an empty line
// more, which says nothing.
TextView takeLine(TextView& bytes) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
    const TextView line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return line;
}

PreferenceEntry parseEntry(TextView line) {
    const std::size_t equals = line.find('=');
    PreferenceEntry entry;
    entry.key = withoutTrailingSpace(line.substr(0, equals));
    if (equals != TextView::npos) entry.value = withoutLeadingSpace(line.substr(equals + 1));
    return entry;
}

PreferenceEntry parseComment(TextView line) {
    line.remove_prefix(1);
    if (left(line, 1) == " ") line.remove_prefix(1);
    return {.key = {}, .value = Text(line), .isComment = true};
}

void formatEntries(const PreferenceGroup& group, std::string& bytes) {
    for (const PreferenceEntry& entry : group.entries) {
        if (entry.isComment)
            bytes += "; ";
        else
            bytes += entry.key, bytes += " = ";
        bytes += entry.value;
        bytes += '\n';
    }
}

// Empty for what is missing, no regular file, unreadable or too large.
std::string bytesOfFile(PathView path) {
    const int descriptor = openRegularFile(path, O_RDONLY);
    if (descriptor == noDescriptor) return {};
    std::string bytes;
    std::int64_t count = 0;
    const bool fits = withinMemory([&] {
        struct stat status = {};
        if (fstat(descriptor, &status) == 0 && status.st_size <= preferenceFileLimit)
            bytes.resize(static_cast<std::size_t>(status.st_size));
        count = readFully(descriptor, std::as_writable_bytes(std::span(bytes)));
    });
    close(descriptor);
    bytes.resize(!fits || count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

// The same file whatever the working directory becomes. A link is not followed: what it leads to,
// somewhere outside a card perhaps, is not this program's to replace.
Path absolutePath(PathView path) {
    if (!isUsablePath(path)) return {};
    return path.substr(0, 1) == "/" ? Path(path) : currentDirectory() + Path(path);
}

// The process number keeps two running programs from writing into one file.
constexpr PathView temporaryEnding = ".neu-";

Path temporaryPath(PathView path) {
    return concatenate(path, temporaryEnding, integerToText(getpid()));
}

// Removes what saves have left that were cut off, but nothing of a program that still runs.
void removeLeftovers(PathView path) {
    const std::size_t nameStart = path.rfind('/') + 1;
    const PathView directory = path.substr(0, nameStart);
    const Path beginning = concatenate(path.substr(nameStart), temporaryEnding);
    for (const Path& name : namesInDirectory(directory)) {
        if (!name.starts_with(beginning)) continue;
        const PathView digits = PathView(name).substr(beginning.size());
        if (digits.empty() || digits.find_first_not_of("0123456789") != PathView::npos) continue;
        const std::int64_t process = textToInteger(digits);
        if (process < 1 || process > std::numeric_limits<pid_t>::max()) continue;
        if (kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH)
            deleteRegularFile(concatenate(directory, name));
    }
}

// A new empty file, opened for writing. A leftover of that name from a run that was cut off is
// removed.
int createTemporaryFile(PathView temporary) {
    deleteFile(temporary);
    return openRegularFile(temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
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

std::vector<PreferenceGroup> parsePreferences(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    Text converted;
    if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
        converted = utf8ToLatin1(bytes.substr(byteOrderMark.size()));
        bytes = converted;
    }

    std::vector<PreferenceGroup> groups;
    std::unordered_map<Text, std::size_t> positions;
    const auto positionOf = [&](TextView name) {
        const auto [place, isNew] = positions.try_emplace(foldCase(name), groups.size());
        if (isNew) groups.push_back({Text(name), {}});
        return place->second;
    };
    std::size_t current = noPreferenceGroup;
    while (!bytes.empty()) {
        const TextView line = withoutLeadingSpace(takeLine(bytes));
        if (line.empty()) continue;
        if (line.front() == '[') {
            current = positionOf(line.substr(1, line.find(']') - 1));
            continue;
        }
        if (current == noPreferenceGroup) current = positionOf({});
        groups[current].entries.push_back(line.front() == ';' ? parseComment(line)
                                                              : parseEntry(line));
    }
    return groups;
}

std::string formatPreferences(const std::vector<PreferenceGroup>& groups) {
    // What belongs to no group would, behind a header, belong to the header's group.
    std::string bytes;
    for (const PreferenceGroup& group : groups) {
        if (group.name.empty()) formatEntries(group, bytes);
    }
    for (const PreferenceGroup& group : groups) {
        if (group.name.empty() || group.entries.empty()) continue;
        bytes += '[';
        bytes += group.name;
        bytes += "]\n";
        formatEntries(group, bytes);
    }
    return bytes;
}

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
    const Path& target = created.path;
    struct stat status = {};
    if (lstat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
        return false;
    removeLeftovers(target);
    const int descriptor = createTemporaryFile(created.unfinished);
    if (descriptor == noDescriptor) return false;
    close(descriptor);
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
    // Without another text, for which there may be no memory.
    if (!preferences.unfinished.empty()) unlink(preferences.unfinished.c_str());
    preferences = {};
}

bool closePreferences(Preferences& preferences) {
    Preferences closing = std::exchange(preferences, {});
    if (!closing.changed) return true;
    bool written = false;
    static_cast<void>(withinMemory([&closing, &written] {
        if (closing.unfinished.empty()) closing.unfinished = temporaryPath(closing.path);
        written =
            replaceWholeFile(closing.path, closing.unfinished, formatPreferences(closing.groups));
    }));
    if (!written) discardPreferences(closing);
    return written;
}

}  // namespace services
