// Cards for tests: a device tree on disk, built record by record.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "device/dictionary_record.h"

namespace builders {

// A record with a riding time and figures of its own for each number; starts a day after the one
// before it.
device::DictionaryRecord makeRecord(std::uint64_t number);

// Writes root/data/result/ergo_bike/ with an index of these records, in their order, and one
// training file of `samples` zero samples for each.
void writeCard(const std::filesystem::path& root, std::span<const device::DictionaryRecord> records,
               int samples = 2);

// A card of that many trainings with the numbers 1, 2, 3 …
void writeCard(const std::filesystem::path& root, int trainings);

}  // namespace builders
