// What a backup copy does with each training.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "device/dictionary_record.h"
#include "services/text/latin1.h"

namespace files {

// How many names are read from a backup index of `length` bytes. An empty one yields one name all
// the same, which is then read past its end as number 0.
std::int64_t namesInIndex(std::int64_t length);

// How many of the last bytes of a backup index are the beginning of one of the missing records:
// what a backup that was cut off has left of it. 0 for any other bytes behind the last whole
// record.
std::size_t tornRecordLength(services::TextView index,
                             std::span<const device::DictionaryRecord> records,
                             const std::vector<bool>& missing);

// For each record whether the backup lacks it, by exact comparison with the names of its index. A
// name that stands twice among the records is missing twice.
std::vector<bool> missingInBackup(std::span<const device::DictionaryRecord> records,
                                  const std::vector<services::Text>& backupNames);

// What became of a training, as the report marks it.
enum class BackupMark : char { present = '*', copied = '+', failed = '-' };

// The training's line of the report, without its end.
services::Text backupLine(BackupMark mark, const device::DictionaryRecord& record);

}  // namespace files
