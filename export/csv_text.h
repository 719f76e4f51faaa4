// The CSV files: Latin-1 text, fields joined by ";", every line (the header too) ended by CR LF.
#pragma once

#include <functional>
#include <span>

#include "device/dictionary_record.h"
#include "device/training_sample.h"
#include "services/text/latin1.h"

namespace exporting {

// The header and one line of 21 fields for each selected record, in their order.
services::Text indexCsv(std::span<const device::DictionaryRecord> records);

// The header and one line of 20 fields for each sample.
services::Text trainingCsv(std::span<const device::TrainingSample> samples);

// The same texts in pieces, one after the other, most of them of half a megabyte: the texts of a
// huge training need no more memory than those of a short one. Ends when `take` returns false.
using TakePiece = std::function<bool(services::TextView piece)>;
void writeIndexCsv(std::span<const device::DictionaryRecord> records, const TakePiece& take);
void writeTrainingCsv(std::span<const device::TrainingSample> samples, const TakePiece& take);

}  // namespace exporting
