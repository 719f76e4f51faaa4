#include "device/dictionary.h"

#include <optional>
#include <utility>
#include <vector>

#include "device/dictionary_reading.h"
#include "device/index_recovery.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"

namespace device {

using services::operator""_l1;

namespace {

constexpr int indexFile = 0;
constexpr services::PathView indexName = "dictionary.2";

// What lies there instead of what was loaded. A missing index is one of no bytes and no hash.
void rememberIndexOnDisk() {
    const services::FileDigest digest =
        services::digestOfFile(indexName, services::LinksAre::followed);
    state.indexLength = digest.length;
    state.indexHash = digest.hash;
}

struct Loaded {
    std::optional<IndexReading> reading;  // nothing when there is nothing to list
    std::uint64_t length = 0;             // of the file, which was read unless something else was
    bool isOnDisk = true;
    bool isReadOnly = false;
    services::FileDigest copy;  // that lay beside it
    std::vector<services::Text> cutOff;
};

bool tellsWholeTrainings(const IndexReading& reading, std::uint64_t length) {
    return length % dictionaryRecordSize == 0 && !reading.kept.empty() && reading.missing == 0 &&
           reading.untold.empty();
}

Loaded readWhatThereIs() {
    Loaded loaded;
    const TakenUp taken = takeUpCopy({});
    loaded.copy = taken.left;
    loaded.cutOff = taken.cutOff;
    if (taken.state == TakenUp::State::unwritten) {
        // The card takes no more writing; its trainings are all there nevertheless.
        loaded.reading = readIndexBytes(taken.index, loaded.cutOff);
        loaded.isOnDisk = false;
        return loaded;
    }
    if (taken.state == TakenUp::State::unreadableIndex) {
        // What the disk would give next time nobody knows: nothing is changed after the copy.
        loaded.reading = readIndexBytes(taken.index, loaded.cutOff);
        loaded.isOnDisk = false;
        loaded.isReadOnly = true;
        return loaded;
    }
    if (taken.state == TakenUp::State::unknown) return loaded;
    if (!services::readFile(indexFile, indexName)) return loaded;
    const std::int64_t length = services::lengthOfFile(indexFile);
    loaded.reading = readIndexFile(indexFile, length, loaded.cutOff);
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
    state.cutOffNames = {};
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
    state.cutOffNames = std::move(loaded.cutOff);
    state.copyLength = loaded.copy.length;
    state.copyHash = loaded.copy.hash;
}

}  // namespace

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

}  // namespace device
