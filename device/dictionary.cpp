#include "device/dictionary.h"

#include <algorithm>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include "services/directories.h"
#include "services/numbered_files.h"
#include "services/requesters.h"

namespace device {

using services::operator""_l1;

namespace {

constexpr int indexFile = 0;
constexpr services::PathView indexName = "dictionary.2";

// Whole records, about 1 MiB: the index is read in blocks and only kept records stay in memory, so
// that a huge file of dropped ones costs time but no memory.
constexpr std::size_t recordsPerBlock = 6900;

// The text at the start of `bytes`, up to the first NUL, CR or LF. It may run on beyond the 64
// bytes that are its own: a text without an end is read as the device's other readers do.
services::Text descriptionAt(std::span<const std::byte> bytes) {
    services::TextView text(reinterpret_cast<const char*>(bytes.data()),
                            std::min(bytes.size(), longestDescription));
    for (const char end : {'\0', '\r', '\n'})
        text = text.substr(0, text.find(end));
    return services::Text(text);
}

// Nothing when the record is dropped: no riding time, or no training file to its name.
std::optional<DictionaryRecord> decodeKept(std::span<const std::byte> recordBytes) {
    // Most of a damaged index ends here, before anything is decoded or tested.
    if (decodeRideTime(recordBytes) == 0) return std::nullopt;
    DictionaryRecord record = decodeDictionaryRecord(recordBytes);
    if (!services::canReadFile(record.fileName)) return std::nullopt;
    return record;
}

}  // namespace

std::vector<DictionaryRecord> readDictionaryRecords(int file, std::int64_t length) {
    std::vector<DictionaryRecord> kept;
    const std::int64_t count = length / static_cast<std::int64_t>(dictionaryRecordSize);
    // Each block is followed by as much as the description of its last record can need.
    const auto blockRecords = static_cast<std::size_t>(
        std::clamp<std::int64_t>(count, 1, static_cast<std::int64_t>(recordsPerBlock)));
    std::vector<std::byte> block(blockRecords * dictionaryRecordSize + longestDescription);

    for (std::int64_t first = 0; first < count; first += static_cast<std::int64_t>(blockRecords)) {
        if (!services::seekFile(file, first * static_cast<std::int64_t>(dictionaryRecordSize)))
            break;
        const std::span<const std::byte> bytes =
            std::span(block).first(services::readBlock(file, block));
        const auto whole = static_cast<std::int64_t>(bytes.size() / dictionaryRecordSize);
        const auto wanted = std::min(count - first, static_cast<std::int64_t>(blockRecords));
        for (std::int64_t i = 0; i < std::min(whole, wanted); ++i) {
            const std::size_t start = static_cast<std::size_t>(i) * dictionaryRecordSize;
            auto record = decodeKept(bytes.subspan(start, dictionaryRecordSize));
            if (!record) continue;
            record->description = descriptionAt(bytes.subspan(start + descriptionOffset));
            kept.push_back(std::move(*record));
        }
        if (whole < wanted) break;  // the file has shrunk
    }

    std::stable_sort(kept.begin(), kept.end(),
                     [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
    return kept;
}

void loadDictionary() {
    // What is shown when nothing can be read: one training without a name.
    state.dictionary.assign(1, DictionaryRecord{});

    bool loaded = false;
    if (services::readFile(indexFile, indexName)) {
        const std::int64_t length = services::lengthOfFile(indexFile);
        if (length >= static_cast<std::int64_t>(dictionaryRecordSize)) {
            try {
                state.dictionary = readDictionaryRecords(indexFile, length);
                loaded = true;
            } catch (const std::bad_alloc&) {
                // More kept records than memory: no card of this device, so it is reported as one
                // that can't be read.
            }
        }
        services::closeFile(indexFile);
    }
    if (loaded) return;

    // Backslashes whatever the platform's separator: users know this text.
    services::showMessage(
        "Dateifehler"_l1,
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!"_l1);
}

bool writeDictionaryRecord(int file, std::size_t index) {
    if (index >= state.dictionary.size()) return false;
    DictionaryRecord& record = state.dictionary[index];
    if (record.pulse == 1.0F) record.pulse = 0.0F;
    if (record.rpm == 1.0F) record.rpm = 0.0F;
    return services::writeText(file, encodeDictionaryRecord(record));
}

void saveDictionary(SaveMode mode) {
    services::deleteFile(indexName);
    if (!services::createFile(indexFile, indexName)) return;
    for (std::size_t i = 0; i < state.dictionary.size(); ++i) {
        if (mode == SaveMode::unselected && state.dictionary[i].selected != 0) continue;
        writeDictionaryRecord(indexFile, i);
    }
    services::flushFile(indexFile);
    services::closeFile(indexFile);
}

}  // namespace device
