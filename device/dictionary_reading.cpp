#include "device/dictionary_reading.h"

#include <algorithm>
#include <functional>
#include <span>
#include <utility>

#include "device/dictionary.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"

namespace device {

namespace {

// Whole records, about 1 MiB: the index is read in blocks and only kept records stay in memory, so
// that a huge file of dropped ones costs time but no memory.
constexpr std::int64_t recordsPerBlock = 6900;

// Fills the block as far as the index goes and returns the number of bytes.
using ReadIndex = std::function<std::size_t(std::span<std::byte> block)>;

// What is carried from record to record while one index is read.
struct Reading {
    IndexReading index = {.kept = {}, .untold = {}, .hash = services::emptyHash};
    std::uint64_t runOnLeft = 0;  // bytes that descriptions may still run on

    // The training file looked for last: a damaged index names the same one again and again.
    services::Text lastName;
    services::FileLookup lastFound = services::FileLookup::missing;

    CutOffNames cutOff = {};
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

services::FileLookup lookUpTrainingFile(const DictionaryRecord& record, Reading& reading) {
    if (record.fileName != reading.lastName) {
        reading.lastName = record.fileName;
        reading.lastFound = services::lookUpFile(record.fileName);
        if (reading.lastFound == services::FileLookup::missing &&
            std::ranges::find(reading.cutOff, record.fileName) != reading.cutOff.end()) {
            reading.lastFound = services::FileLookup::untold;
        }
    }
    return reading.lastFound;
}

// `bytes` begin with the record and go on as far as its description may. Dropped: no riding time,
// or no training file to its name.
void readRecord(std::span<const std::byte> bytes, Reading& reading) {
    // Most of a damaged index ends here, before anything is decoded or tested.
    if (decodeRideTime(bytes) == 0) return;
    DictionaryRecord record = decodeDictionaryRecord(bytes.first(dictionaryRecordSize));
    switch (lookUpTrainingFile(record, reading)) {
        case services::FileLookup::readable:
            record.description = descriptionAt(bytes.subspan(descriptionOffset), reading);
            reading.index.kept.push_back(std::move(record));
            break;
        case services::FileLookup::missing:
            ++reading.index.missing;
            break;
        case services::FileLookup::untold:
            reading.index.untold.append(reinterpret_cast<const char*>(bytes.data()),
                                        dictionaryRecordSize);
            break;
    }
}

// False when fewer whole records arrive than the length promised, for whatever reason.
bool readAllRecords(const ReadIndex& read, std::int64_t length, Reading& reading) {
    constexpr auto recordSize = static_cast<std::int64_t>(dictionaryRecordSize);
    const std::int64_t count = length / recordSize;
    // A block's records are followed by as much as the description of the last one can need.
    const auto blockRecords = static_cast<std::size_t>(std::min(count, recordsPerBlock));
    std::vector<std::byte> block(blockRecords * dictionaryRecordSize + longestDescription);
    std::size_t filled = 0;
    std::int64_t unread = length;

    for (std::int64_t first = 0; first < count;) {
        const auto room = static_cast<std::int64_t>(block.size() - filled);
        const auto asked = static_cast<std::size_t>(std::min(room, unread));
        unread -= static_cast<std::int64_t>(asked);
        const auto arrived =
            std::span(block).subspan(filled, read(std::span(block).subspan(filled, asked)));
        filled += arrived.size();
        reading.index.hash = services::hashOf(
            {reinterpret_cast<const char*>(arrived.data()), arrived.size()}, reading.index.hash);

        const std::span<const std::byte> bytes = std::span(block).first(filled);
        const auto wanted = static_cast<std::size_t>(std::min(count - first, recordsPerBlock));
        if (filled / dictionaryRecordSize < wanted) return false;
        for (std::size_t i = 0; i < wanted; ++i)
            readRecord(bytes.subspan(i * dictionaryRecordSize), reading);
        // No card of this device; the system would end a program that goes on.
        if (!services::fitsIntoMemory(reading.index.kept.size() * sizeof(DictionaryRecord)))
            return false;
        first += static_cast<std::int64_t>(wanted);

        // What follows begins the next block: the file is read once, from front to end.
        const auto rest = bytes.subspan(wanted * dictionaryRecordSize);
        std::copy(rest.begin(), rest.end(), block.begin());
        filled = rest.size();
    }
    return true;
}

// Nothing when the index can't be read to its end.
std::optional<IndexReading> readIndex(const ReadIndex& read, std::int64_t length,
                                      CutOffNames cutOff) {
    if (length < static_cast<std::int64_t>(dictionaryRecordSize)) return std::nullopt;
    if (static_cast<std::uint64_t>(length) > services::longestFile) return std::nullopt;
    std::optional<IndexReading> result;
    static_cast<void>(services::withinMemory([&] {
        Reading reading;
        reading.runOnLeft = static_cast<std::uint64_t>(length);
        reading.cutOff = cutOff;
        if (!readAllRecords(read, length, reading)) return;
        std::stable_sort(reading.index.kept.begin(), reading.index.kept.end(),
                         [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
        result = std::move(reading.index);
    }));
    return result;
}

}  // namespace

std::optional<IndexReading> readIndexFile(int file, std::int64_t length, CutOffNames cutOff) {
    if (!services::seekFile(file, 0)) return std::nullopt;
    return readIndex(
        [file](std::span<std::byte> block) { return services::readBlock(file, block); }, length,
        cutOff);
}

std::optional<IndexReading> readIndexBytes(std::string_view bytes, CutOffNames cutOff) {
    std::string_view rest = bytes;
    const auto read = [&rest](std::span<std::byte> block) {
        const auto part = std::as_bytes(std::span(rest)).first(std::min(block.size(), rest.size()));
        std::copy(part.begin(), part.end(), block.begin());
        rest.remove_prefix(part.size());
        return part.size();
    };
    return readIndex(read, static_cast<std::int64_t>(bytes.size()), cutOff);
}

std::optional<std::vector<DictionaryRecord>> readDictionaryRecords(int file, std::int64_t length) {
    std::optional<IndexReading> reading = readIndexFile(file, length);
    if (!reading) return std::nullopt;
    return std::move(reading->kept);
}

}  // namespace device
