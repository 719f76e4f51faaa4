// What the fuzzers share. Each is a function of bytes, LLVMFuzzerTestOneInput, built twice: with
// libFuzzer, which looks for bytes that break it (scripts/fuzz), and with a main that feeds it the
// seeds, among them everything that was ever found (part of the tests).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "device/dictionary_record.h"
#include "device/training_sample.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzzing {

// Ends the process when something does not hold that must.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Makes a directory of this process's own the working directory, once, and returns it with a "/" at
// its end.
const std::string& ownDirectory();

void writeFile(const std::string& path, std::string_view bytes);

// Everything the program shows and exports of trainings: rows, series, geometry, texts, CSV.
void useRecords(std::span<const device::DictionaryRecord> records);
void useSamples(std::span<const device::TrainingSample> samples);

}  // namespace fuzzing
