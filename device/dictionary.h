// The index file "dictionary.2" of the working directory and the table it fills.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "device/device_state.h"

namespace device {

// Nothing of a description beyond this many bytes is read. The text of a damaged record may run on
// to the end of the file, and the file may hold millions of such records: without a limit memory
// and time would grow with the square of the file's length.
inline constexpr std::size_t longestDescription = 4096;

// The kept records of an open index file that was `length` bytes long when it was opened, in the
// order of loadDictionary. Never reads more records than that; fewer when the file has shrunk
// since.
std::vector<DictionaryRecord> readDictionaryRecords(int file, std::int64_t length);

// Replaces the dictionary table with the file's records: those with a riding time whose training
// file can be opened, by start date, those of one start date in file order. Shows a message and
// leaves one all-zero record when the file can't be opened or holds no whole record.
void loadDictionary();

enum class SaveMode {
    unselected = 0,  // only records whose selected flag is 0
    all = 1,
};

// Deletes and rewrites the file from the table, in table order. Silent on every failure. Callers
// call loadDictionary() right after it: until then a written pulse or rpm of 1.0 reads 0.0 in the
// table.
void saveDictionary(SaveMode mode);

// Writes record `index` of the table at the current position of an open file. True when everything
// was written. Sets a pulse or rpm of 1.0 to 0.0 in the table.
bool writeDictionaryRecord(int file, std::size_t index);

}  // namespace device
