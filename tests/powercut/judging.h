// What must be true of a card whose power was cut, as the program itself finds it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/powercut/commands.h"

namespace powercut {

// How the undisturbed command leaves what it writes.
struct Outcome {
    std::string before;                        // settings: the old file
    std::string after;                         // settings, exports: the new file
    std::map<std::string, std::string> names;  // of the files, by description
};

Outcome outcomeOf(const Command& command, const Places& places);

enum class Moment {
    interrupted,  // the command had not come to its end
    finished,     // it had told its user so
    repeated,     // it was interrupted and done again
};

struct Judgement {
    std::vector<std::string> losses;
    // Places of trainings that have no name any more because the file system has lost it: their
    // records are there, and their bytes must be on the disk.
    std::set<std::size_t> nameless;
};

// Trainings whose content has some name on the file system, before the program sees it.
std::set<std::size_t> placesWithAName(const Command& command, const Places& places);

// Starts the program on it twice. `named` are those that must be listed; at odd states the program
// is also started on the backup.
Judgement judge(const Command& command, const Places& places, const Outcome& outcome, Moment moment,
                const std::set<std::size_t>& named, bool startsOnBackup);

}  // namespace powercut
