// Which trainings the charts, exports and file commands use: the `selected` flags of the records,
// set from the rows of the list and from the way its window was left.
//
// The list shows the table upside down: row r is record (last index - r).
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "device/dictionary_record.h"
#include "services/text/dates.h"

namespace files {

enum class ListMode {
    edit = 0,        // the file commands
    chooseMany = 1,  // for the overview and its export
    chooseOne = 2,   // for the training chart and its export
};

enum class ListResult {
    all = 0,     // left with nothing chosen, which means every training
    chosen = 1,  // the flags are what the rows or the Return key said
    cancelled = 2,
    year = 3,       // the trainings of the last year
    month = 4,      // the trainings of the last 31 days
    notOpened = 5,  // the window could not be opened, nothing has changed
};

// Nothing for a row outside the table.
std::optional<std::size_t> recordOfRow(int row, std::size_t records);

// Sets the flags of the records of these rows and clears all others.
void selectRows(std::span<device::DictionaryRecord> records, std::span<const int> rows);

// The flags after the window was left. `now` is the present moment on the wall clock.
void applyResult(std::vector<device::DictionaryRecord>& records, ListResult result, ListMode mode,
                 services::DateValue now);

// Midnight of the same day a year earlier; 28 February for 29 February.
services::DateValue yearAgo(services::DateValue now);

// 31 days of 24 hours earlier, to the second.
services::DateValue monthAgo(services::DateValue now);

}  // namespace files
