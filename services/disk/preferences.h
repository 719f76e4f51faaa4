// One preference file, opened, read by key, written and closed: a record that the caller owns. What
// stands in it is described by preference_text.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "services/disk/preference_text.h"
#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace services {

inline constexpr std::size_t noPreferenceGroup = std::numeric_limits<std::size_t>::max();

struct Preferences {
    Path path;
    Path unfinished;       // what is written before it gets the name
    bool inPlace = false;  // written over the old file instead, as nothing can be made beside it
    std::vector<PreferenceGroup> groups;
    bool changed = false;  // something to write when closed

    // Kept by preferenceGroup and the writing functions; after filling `groups` by hand select a
    // group before reading.
    Text currentGroup;                                   // the name as it was asked for
    std::size_t currentPosition = noPreferenceGroup;     // in `groups`; none while it is not there
    std::unordered_map<Text, std::size_t> keyPositions;  // of the current group, letter case folded
};

// A larger file is no preference file and counts as unreadable.
inline constexpr std::int64_t preferenceFileLimit = std::int64_t{16} << 20;

// A missing or unreadable file gives empty preferences. The part before the first group is
// selected.
Preferences openPreferences(PathView path);

// Starts a new, empty file: created at once, under a temporary name beside `path`, so that the file
// of that name stays whole until the new one is. In a directory that this user may make nothing in,
// a file that may be written will be written in place. Later changes of the working directory don't
// matter. False when it can't be created or `path` is there and no regular file; nothing is kept
// then. Preferences that were created must be closed, or the temporary file stays behind.
bool createPreferences(Preferences& preferences, PathView path);

// Selects a group; one that does not exist is made by the first entry or comment written after it.
void preferenceGroup(Preferences& preferences, TextView name);

// The value's leading decimal digits, behind optional blanks and an optional sign; digits beyond 64
// bits wrap and no digits give 0. "$" and "%" are no digits here.
std::int64_t readInteger(const Preferences& preferences, TextView key, std::int64_t fallback);
Text readText(const Preferences& preferences, TextView key, TextView fallback);

void writeInteger(Preferences& preferences, TextView key, std::int64_t value);
void writeText(Preferences& preferences, TextView key, TextView value);
void preferenceComment(Preferences& preferences, TextView comment);

// Releases everything and writes nothing. What createPreferences has made goes.
void discardPreferences(Preferences& preferences);

// Writes the file if anything was changed or it was created, and releases everything. True when
// nothing had to be written or everything reached the disk. The new file takes its name only when
// it is complete and on the disk; when that fails the old file, if any, stays as it was. One that
// is written in place gets its old bytes back.
bool closePreferences(Preferences& preferences);

}  // namespace services
