// Which training files get which names when the gaps in their numbers are closed.
#pragma once

#include <span>
#include <vector>

#include "device/dictionary_record.h"
#include "services/text/latin1.h"

namespace files {

struct RenumberStep {
    services::Text oldName;
    services::Text newName;  // the next number in lower case, also for a file that keeps its name
    bool renames = false;
};

// One step for each record, in their order, which is that of their dates. The numbers go up from
// that of the first record. Files only move down: one whose number is at or below its turn keeps
// its name, and its turn is used up all the same. Numbers are compared as signed ones.
std::vector<RenumberStep> planRenumbering(std::span<const device::DictionaryRecord> records);

// The step's line of the report, without its end.
services::Text renumberLine(const RenumberStep& step);

}  // namespace files
