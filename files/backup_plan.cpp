#include "files/backup_plan.h"

#include <string_view>
#include <unordered_set>

#include "services/text/text.h"

namespace files {
std::int64_t namesInIndex(std::int64_t length) {
    if (length == 0) return 1;
    return length / static_cast<std::int64_t>(device::dictionaryRecordSize);
}

std::vector<bool> missingInBackup(std::span<const device::DictionaryRecord> records,
                                  const std::vector<services::Text>& backupNames) {
    const std::unordered_set<std::string_view> present(backupNames.begin(), backupNames.end());
    std::vector<bool> missing;
    missing.reserve(records.size());
    for (const device::DictionaryRecord& record : records)
        missing.push_back(!present.contains(record.fileName));
    return missing;
}

std::size_t tornRecordLength(services::TextView index,
                             std::span<const device::DictionaryRecord> records,
                             const std::vector<bool>& missing) {
    const services::TextView rest =
        index.substr(index.size() - index.size() % device::dictionaryRecordSize);
    if (rest.empty()) return 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (missing[i] && device::encodeDictionaryRecord(records[i]).starts_with(rest))
            return rest.size();
    }
    return 0;
}

services::Text backupLine(BackupMark mark, const device::DictionaryRecord& record) {
    return services::concatenate(static_cast<char>(mark), ' ', record.fileName, ' ',
                                 record.description);
}

}  // namespace files
