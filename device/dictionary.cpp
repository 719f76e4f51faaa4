#include "device/dictionary.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"

namespace device {

using services::operator""_l1;

namespace {

constexpr int indexFile = 0;
constexpr services::PathView indexName = "dictionary.2";

// Whole records, about 1 MiB: the index is read in blocks and only kept records stay in memory, so
// that a huge file of dropped ones costs time but no memory.
constexpr std::int64_t recordsPerBlock = 6900;

// Fills the block as far as the index goes and returns the number of bytes.
using ReadIndex = std::function<std::size_t(std::span<std::byte> block)>;

// What is carried from record to record while one index is read.
struct Reading {
    std::vector<DictionaryRecord> kept;
    std::uint64_t runOnLeft = 0;  // bytes that descriptions may still run on

    std::string untold;       // records of untold files, byte for byte
    std::size_t missing = 0;  // records with a riding time that have no file

    // The training file looked for last: a damaged index names the same one again and again.
    services::Text lastName;
    services::FileLookup lastFound = services::FileLookup::missing;

    std::uint64_t hash = services::emptyHash;  // of what was read so far
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
            reading.kept.push_back(std::move(record));
            break;
        case services::FileLookup::missing:
            ++reading.missing;
            break;
        case services::FileLookup::untold:
            reading.untold.append(reinterpret_cast<const char*>(bytes.data()),
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
        reading.hash = services::hashOf(
            {reinterpret_cast<const char*>(arrived.data()), arrived.size()}, reading.hash);

        const std::span<const std::byte> bytes = std::span(block).first(filled);
        const auto wanted = static_cast<std::size_t>(std::min(count - first, recordsPerBlock));
        if (filled / dictionaryRecordSize < wanted) return false;
        for (std::size_t i = 0; i < wanted; ++i)
            readRecord(bytes.subspan(i * dictionaryRecordSize), reading);
        // No card of this device; the system would end a program that goes on.
        if (!services::fitsIntoMemory(reading.kept.size() * sizeof(DictionaryRecord))) return false;
        first += static_cast<std::int64_t>(wanted);

        // What follows begins the next block: the file is read once, from front to end.
        const auto rest = bytes.subspan(wanted * dictionaryRecordSize);
        std::copy(rest.begin(), rest.end(), block.begin());
        filled = rest.size();
    }
    return true;
}

// Nothing when the index can't be read to its end.
std::optional<Reading> readIndex(const ReadIndex& read, std::int64_t length) {
    if (length < static_cast<std::int64_t>(dictionaryRecordSize)) return std::nullopt;
    if (static_cast<std::uint64_t>(length) > services::longestFile) return std::nullopt;
    std::optional<Reading> result;
    static_cast<void>(services::withinMemory([&] {
        Reading reading;
        reading.runOnLeft = static_cast<std::uint64_t>(length);
        if (!readAllRecords(read, length, reading)) return;
        std::stable_sort(reading.kept.begin(), reading.kept.end(),
                         [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
        result = std::move(reading);
    }));
    return result;
}

std::optional<Reading> readIndexFile(int file, std::int64_t length) {
    if (!services::seekFile(file, 0)) return std::nullopt;
    return readIndex(
        [file](std::span<std::byte> block) { return services::readBlock(file, block); }, length);
}

std::optional<Reading> readIndexBytes(std::string_view bytes) {
    std::string_view rest = bytes;
    const auto read = [&rest](std::span<std::byte> block) {
        const auto part = std::as_bytes(std::span(rest)).first(std::min(block.size(), rest.size()));
        std::copy(part.begin(), part.end(), block.begin());
        rest.remove_prefix(part.size());
        return part.size();
    };
    return readIndex(read, static_cast<std::int64_t>(bytes.size()));
}

// What lies there instead of what was loaded. A missing index is one of no bytes and no hash.
void rememberIndexOnDisk() {
    const services::FileDigest digest =
        services::digestOfFile(indexName, services::LinksAre::followed);
    state.indexLength = digest.length;
    state.indexHash = digest.hash;
}

// A copy that comes later is of another program that was cut off: what the index names may have
// been renamed.
bool isCopyAsLoaded() {
    const services::FileDigest digest =
        services::digestOfFile(indexCopyName, services::LinksAre::refused);
    return digest.state != services::WholeFile::State::unreadable &&
           digest.length == state.copyLength && digest.hash == state.copyHash;
}

std::string encodeTable(SaveMode mode) {
    // In front, where no record with a longer description has shifted them.
    std::string index = state.untoldRecords;
    for (const DictionaryRecord& record : state.dictionary) {
        if (mode == SaveMode::all || record.selected == 0) index += encodeDictionaryRecord(record);
    }
    return index;
}

// What writing a record does to it.
void clearUnmeasured(DictionaryRecord& record) {
    if (record.pulse == 1.0F) record.pulse = 0.0F;
    if (record.rpm == 1.0F) record.rpm = 0.0F;
}

void replaceIndex(SaveMode mode) {
    // An index that could not be read is not replaced by one that says nothing: what is on the card
    // may be whole, and only the reader, the slot or the moment was bad.
    if (state.dictionaryUnreadable || state.dictionaryReadOnly) return;
    const std::string index = encodeTable(mode);
    if (!layCopyBeside(index)) return;
    services::deleteFile(indexName);
    if (!services::createFile(indexFile, indexName)) return;
    for (DictionaryRecord& record : state.dictionary) {
        if (mode == SaveMode::all || record.selected == 0) clearUnmeasured(record);
    }
    const bool written = services::writeText(indexFile, index) && services::flushFile(indexFile);
    services::closeFile(indexFile);
    if (written && services::flushDirectoryOf(indexName)) removeSettledCopy();
}

struct Loaded {
    std::optional<Reading> reading;  // nothing when there is nothing to list
    std::uint64_t length = 0;        // of the file, which was read unless something else was
    bool isOnDisk = true;
    bool isReadOnly = false;
    services::FileDigest copy;  // that lay beside it
};

bool tellsWholeTrainings(const Reading& reading, std::uint64_t length) {
    return length % dictionaryRecordSize == 0 && !reading.kept.empty() && reading.missing == 0 &&
           reading.untold.empty();
}

Loaded readWhatThereIs() {
    Loaded loaded;
    const TakenUp taken = takeUpCopy({});
    loaded.copy = taken.left;
    if (taken.state == TakenUp::State::unwritten) {
        // The card takes no more writing; its trainings are all there nevertheless.
        loaded.reading = readIndexBytes(taken.index);
        loaded.isOnDisk = false;
        return loaded;
    }
    if (taken.state == TakenUp::State::unknown) return loaded;
    if (!services::readFile(indexFile, indexName)) return loaded;
    const std::int64_t length = services::lengthOfFile(indexFile);
    loaded.reading = readIndexFile(indexFile, length);
    services::closeFile(indexFile);
    loaded.length = static_cast<std::uint64_t>(length);
    const bool isCopyUnreadable = taken.state == TakenUp::State::unreadableCopy;
    // While another program changes the tree, files may have other names than they are listed by.
    loaded.isReadOnly = isCopyUnreadable || taken.state == TakenUp::State::heldByAnother;
    if (isCopyUnreadable && loaded.reading &&
        !tellsWholeTrainings(*loaded.reading, loaded.length)) {
        loaded.reading.reset();
    }
    return loaded;
}

// What is shown when nothing can be read: one training without a name.
void takeEmptyTable() {
    state.dictionaryUnreadable = true;
    state.dictionaryReadOnly = false;
    state.untoldRecords = {};
    state.indexLength = 0;
    state.indexHash = 0;
    state.copyLength = 0;
    state.copyHash = 0;
    // In the old table's room: a new one might find none.
    state.dictionary.resize(1);
    state.dictionary.front() = {};
    state.dictionary.shrink_to_fit();
}

void takeTable(Loaded loaded) {
    state.dictionaryUnreadable = false;
    state.dictionaryReadOnly = loaded.isReadOnly;
    state.untoldRecords = std::move(loaded.reading->untold);
    state.indexLength = loaded.length;
    state.indexHash = loaded.reading->hash;
    state.dictionary = std::move(loaded.reading->kept);
    if (!loaded.isOnDisk) rememberIndexOnDisk();
    state.copyLength = loaded.copy.length;
    state.copyHash = loaded.copy.hash;
}

}  // namespace

std::optional<std::vector<DictionaryRecord>> readDictionaryRecords(int file, std::int64_t length) {
    std::optional<Reading> reading = readIndexFile(file, length);
    if (!reading) return std::nullopt;
    return std::move(reading->kept);
}

void loadDictionary() {
    leaveTree();
    takeEmptyTable();  // the old table's memory may be what the new one needs
    Loaded loaded;
    const bool complete = services::withinMemory([&] { loaded = readWhatThereIs(); });
    services::closeFile(indexFile);
    if (complete && loaded.reading) {
        takeTable(std::move(loaded));
        return;
    }
    // Backslashes whatever the platform's separator: users know this text.
    services::showMessage(
        "Dateifehler"_l1,
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!"_l1);
}

bool writeDictionaryRecords(int file, std::span<const std::size_t> indexes) {
    std::string bytes;
    for (const std::size_t index : indexes) {
        if (index >= state.dictionary.size()) return false;
        clearUnmeasured(state.dictionary[index]);
        bytes += encodeDictionaryRecord(state.dictionary[index]);
    }
    return services::writeText(file, bytes);
}

bool writeDictionaryRecord(int file, std::size_t index) {
    return writeDictionaryRecords(file, {&index, 1});
}

bool beginChange() {
    if (state.dictionaryUnreadable) return holdTree();
    if (!state.dictionaryReadOnly && holdTree() && isIndexAsLoaded() && isCopyAsLoaded())
        return true;
    leaveTree();
    return false;
}

bool announceRenaming(std::span<const PendingName> names) {
    if (state.dictionaryUnreadable || state.dictionaryReadOnly || !state.untoldRecords.empty())
        return false;
    bool announced = false;
    static_cast<void>(services::withinMemory([&] {
        std::vector<std::uint64_t> positions;  // records with long descriptions are longer
        std::string index;
        for (const DictionaryRecord& record : state.dictionary) {
            positions.push_back(index.size());
            index += encodeDictionaryRecord(record);
        }
        std::vector<PendingRename> renames;
        for (const PendingName& name : names)
            renames.push_back({.position = positions[name.record], .oldName = name.oldName});
        announced = layCopyBeside(index, std::move(renames));
    }));
    return announced;
}

void saveDictionary(SaveMode mode) {
    static_cast<void>(services::withinMemory([mode] { replaceIndex(mode); }));
    services::closeFile(indexFile);
    leaveTree();
}

bool isIndexAsLoaded() {
    if (state.dictionaryUnreadable) return true;
    const services::FileDigest digest =
        services::digestOfFile(indexName, services::LinksAre::followed);
    if (digest.state == services::WholeFile::State::missing)
        return state.indexLength == 0 && state.indexHash == 0;
    return digest.state == services::WholeFile::State::read && digest.length == state.indexLength &&
           digest.hash == state.indexHash;
}

}  // namespace device
