// The two orders of the training list.
#pragma once

#include <vector>

#include "device/dictionary_record.h"
#include "services/text/latin1.h"

namespace files {

enum class SortMode {
    byDate = 0,         // ascending
    byDescription = 1,  // descending without regard to letter case, each description by date
};

// Of descriptions that differ in letter case alone the first in the table stays the first, with all
// trainings that bear it. Trainings of one description and date keep their order.
void sortTrainings(std::vector<device::DictionaryRecord>& records, SortMode mode);

// A to Z and the capital letters of Latin-1 as small letters, every other byte as it is.
services::Text foldLetterCase(services::TextView text);

}  // namespace files
