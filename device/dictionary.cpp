#include "device/dictionary.h"

#include <algorithm>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
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
constexpr std::int64_t recordsPerBlock = 6900;

// What is carried from record to record while one index is read.
struct Reading {
    std::vector<DictionaryRecord> kept;
    std::uint64_t runOnLeft = 0;  // bytes that descriptions may still run on

    // The training file looked for last: a damaged index names the same one again and again.
    services::Text lastName;
    bool lastFound = false;
};

// The text at the start of `bytes`, up to the first NUL, CR or LF. One without an end in the 64
// bytes that are its own runs on into what follows: nothing tells where else it was meant to end.
services::Text descriptionAt(std::span<const std::byte> bytes, Reading& reading) {
    const auto longest = std::min<std::uint64_t>(
        {bytes.size(), longestDescription, descriptionSize + reading.runOnLeft});
    services::TextView text(reinterpret_cast<const char*>(bytes.data()),
                            static_cast<std::size_t>(longest));
    for (const char end : {'\0', '\r', '\n'})
        text = text.substr(0, text.find(end));
    if (text.size() > descriptionSize) reading.runOnLeft -= text.size() - descriptionSize;
    return services::Text(text);
}

bool hasTrainingFile(const DictionaryRecord& record, Reading& reading) {
    if (record.fileName != reading.lastName) {
        reading.lastName = record.fileName;
        reading.lastFound = services::canReadFile(record.fileName);
    }
    return reading.lastFound;
}

// `bytes` begin with the record and go on as far as its description may. Dropped: no riding time,
// or no training file to its name.
void readRecord(std::span<const std::byte> bytes, Reading& reading) {
    // Most of a damaged index ends here, before anything is decoded or tested.
    if (decodeRideTime(bytes) == 0) return;
    DictionaryRecord record = decodeDictionaryRecord(bytes.first(dictionaryRecordSize));
    if (!hasTrainingFile(record, reading)) return;
    record.description = descriptionAt(bytes.subspan(descriptionOffset), reading);
    reading.kept.push_back(std::move(record));
}

// False when fewer whole records arrive than the length promised, for whatever reason.
bool readAllRecords(int file, std::int64_t length, Reading& reading) {
    constexpr auto recordSize = static_cast<std::int64_t>(dictionaryRecordSize);
    const std::int64_t count = length / recordSize;
    // A block's records are followed by as much as the description of the last one can need.
    const auto blockRecords = static_cast<std::size_t>(std::min(count, recordsPerBlock));
    std::vector<std::byte> block(blockRecords * dictionaryRecordSize + longestDescription);
    std::size_t filled = 0;
    std::int64_t unread = length;
    if (!services::seekFile(file, 0)) return false;

    for (std::int64_t first = 0; first < count;) {
        const auto room = static_cast<std::int64_t>(block.size() - filled);
        const auto asked = static_cast<std::size_t>(std::min(room, unread));
        unread -= static_cast<std::int64_t>(asked);
        filled += services::readBlock(file, std::span(block).subspan(filled, asked));

        const std::span<const std::byte> bytes = std::span(block).first(filled);
        const auto wanted = static_cast<std::size_t>(std::min(count - first, recordsPerBlock));
        if (filled / dictionaryRecordSize < wanted) return false;
        for (std::size_t i = 0; i < wanted; ++i)
            readRecord(bytes.subspan(i * dictionaryRecordSize), reading);
        first += static_cast<std::int64_t>(wanted);

        // What follows begins the next block: the file is read once, from front to end.
        const auto rest = bytes.subspan(wanted * dictionaryRecordSize);
        std::copy(rest.begin(), rest.end(), block.begin());
        filled = rest.size();
    }
    return true;
}

}  // namespace

std::optional<std::vector<DictionaryRecord>> readDictionaryRecords(int file, std::int64_t length) {
    if (length < static_cast<std::int64_t>(dictionaryRecordSize)) return std::nullopt;
    try {
        Reading reading;
        reading.runOnLeft = static_cast<std::uint64_t>(length);
        if (!readAllRecords(file, length, reading)) return std::nullopt;
        std::stable_sort(reading.kept.begin(), reading.kept.end(),
                         [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
        return std::move(reading.kept);
    } catch (const std::bad_alloc&) {
        // More kept records than memory: no card of this device.
        return std::nullopt;
    } catch (const std::length_error&) {
        return std::nullopt;
    }
}

void loadDictionary() {
    std::optional<std::vector<DictionaryRecord>> records;
    if (services::readFile(indexFile, indexName)) {
        records = readDictionaryRecords(indexFile, services::lengthOfFile(indexFile));
        services::closeFile(indexFile);
    }
    state.dictionaryUnreadable = !records.has_value();
    if (records) {
        state.dictionary = std::move(*records);
        return;
    }
    // What is shown when nothing can be read: one training without a name.
    state.dictionary.assign(1, DictionaryRecord{});
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
    // An index that could not be read is not replaced by one that says nothing: what is on the card
    // may be whole, and only the reader, the slot or the moment was bad.
    if (state.dictionaryUnreadable) return;
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
