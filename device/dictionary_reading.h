// Reading the records of an index, from an open file or from bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "device/dictionary_record.h"

namespace device {

// What an index tells, by the training files that are there.
struct IndexReading {
    std::vector<DictionaryRecord> kept;  // by start date
    std::string untold;                  // records of untold files, byte for byte
    std::size_t missing = 0;             // records with a riding time that have no file
    std::uint64_t hash = 0;              // hashOf all that was read
};

// Names of trainings that count as untold where they have no file.
using CutOffNames = std::span<const services::Text>;

// Nothing when the index can't be read to its end or kept in memory (dictionary.h).
std::optional<IndexReading> readIndexFile(int file, std::int64_t length, CutOffNames cutOff = {});
std::optional<IndexReading> readIndexBytes(std::string_view bytes, CutOffNames cutOff = {});

}  // namespace device
