#include "files/selection.h"

#include <utility>

namespace files {
namespace {

using device::DictionaryRecord;

void setAllFlags(std::span<DictionaryRecord> records, bool selected) {
    for (DictionaryRecord& record : records)
        record.selected = selected ? 1 : 0;
}

void selectLaterThan(std::span<DictionaryRecord> records, services::DateValue moment) {
    for (DictionaryRecord& record : records)
        record.selected = record.startDate > moment ? 1 : 0;
}

}  // namespace

std::optional<std::size_t> recordOfRow(int row, std::size_t records) {
    if (row < 0 || std::cmp_greater_equal(row, records)) return std::nullopt;
    return records - 1 - static_cast<std::size_t>(row);
}

void selectRows(std::span<DictionaryRecord> records, std::span<const int> rows) {
    setAllFlags(records, false);
    for (const int row : rows) {
        if (const auto index = recordOfRow(row, records.size())) records[*index].selected = 1;
    }
}

void applyResult(std::vector<DictionaryRecord>& records, ListResult result, ListMode mode,
                 services::DateValue now) {
    switch (result) {
        case ListResult::all:
            setAllFlags(records, true);
            break;
        case ListResult::chosen:
        case ListResult::notOpened:
            break;
        case ListResult::cancelled:
            setAllFlags(records, false);
            // Of a cancelled choice for the overview one training stays until the index is read
            // again, an empty one where there was none. That is intended: the overview is then as
            // good as empty.
            if (mode == ListMode::chooseMany) {
                records.resize(1);
                records.front().selected = 0;
            }
            break;
        case ListResult::year:
            selectLaterThan(records, yearAgo(now));
            break;
        case ListResult::month:
            selectLaterThan(records, monthAgo(now));
            break;
    }
}

// The year goes by the calendar and begins at midnight, the month by a count of seconds: the two
// buttons have always differed so.
services::DateValue yearAgo(services::DateValue now) {
    const services::CalendarDate today = services::calendarDate(now);
    // The year before a leap year has no 29 February.
    const bool isLeapDay = today.month == 2 && today.day == 29;
    return services::makeDate(today.year - 1, today.month, isLeapDay ? 28 : today.day, 0, 0, 0);
}

services::DateValue monthAgo(services::DateValue now) {
    return now - 31 * 24 * 3600;
}

}  // namespace files
