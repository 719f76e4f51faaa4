#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "device/record_layout.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/system_files.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"

namespace device {

namespace {

constexpr services::PathView indexName = "dictionary.2";

// A copy that comes later is of another program that was cut off: what the index names may have
// been renamed.
bool isCopyAsLoaded() {
    const services::FileDigest digest =
        services::digestOfFile(indexCopyName, services::LinksAre::refused);
    return digest.state != services::WholeFile::State::unreadable &&
           digest.length == state.copyLength && digest.hash == state.copyHash;
}

std::string encodeTable(SaveMode mode) {
    std::string index;
    for (const DictionaryRecord& record : state.dictionary) {
        if (mode == SaveMode::all || record.selected == 0) index += encodeDictionaryRecord(record);
    }
    return index + state.untoldRecords;
}

// What writing a record does to it.
void clearUnmeasured(DictionaryRecord& record) {
    if (record.pulse == 1.0F) record.pulse = 0.0F;
    if (record.rpm == 1.0F) record.rpm = 0.0F;
}

// For each rename whether nothing has its new name when its turn comes.
std::vector<bool> lookWhichAreFree(std::span<const PendingName> names) {
    std::unordered_set<services::Text> givenUp;
    std::vector<bool> areFree;
    for (const PendingName& name : names) {
        const services::Text& newName = state.dictionary[name.record].fileName;
        areFree.push_back(givenUp.erase(newName) > 0 ||
                          services::presenceOf(newName) == services::Presence::missing);
        if (areFree.back()) givenUp.insert(name.oldName);
    }
    return areFree;
}

// Files that get their new names by a copy are told with what they hold. On a card that is too full
// for the longest of them all are renamed instead. So is, in vain, one whose new name something
// else has: whatever that holds is no copy of it.
void tellWhatIsCopied(std::vector<PendingRename>& renames, std::span<const PendingName> names,
                      std::uint64_t indexLength) {
    const std::vector<bool> areFree = lookWhichAreFree(names);
    std::vector<services::FileDigest> digests;
    std::uint64_t longest = 0;
    for (const PendingRename& rename : renames) {
        digests.push_back(services::digestOfFile(rename.oldName, services::LinksAre::refused));
        longest = std::max(longest, digests.back().length);
    }
    // The new index twice, beside the old one, and some clusters for its directory.
    constexpr std::uint64_t clusters = std::uint64_t{256} << 10U;
    const std::int64_t free = services::freeBytes({});
    if (free < 0 || static_cast<std::uint64_t>(free) < longest + 2 * indexLength + clusters) return;
    for (std::size_t i = 0; i < renames.size(); ++i) {
        if (!areFree[i]) continue;
        renames[i].length = digests[i].length;
        renames[i].hash = digests[i].hash;
    }
}

void replaceIndex(SaveMode mode) {
    // An index that could not be read is not replaced by one that says nothing: what is on the card
    // may be whole, and only the reader, the slot or the moment was bad.
    if (state.dictionaryUnreadable || state.dictionaryReadOnly) return;
    const std::string index = encodeTable(mode);
    if (!layCopyBeside(index)) return;
    if (!services::replaceWholeFile(indexName, unfinishedIndexName, index)) return;
    for (DictionaryRecord& record : state.dictionary) {
        if (mode == SaveMode::all || record.selected == 0) clearUnmeasured(record);
    }
    removeSettledCopy();
}

}  // namespace

bool appendDictionaryRecords(std::string& bytes, std::span<const std::size_t> indexes) {
    for (const std::size_t index : indexes) {
        if (index >= state.dictionary.size()) return false;
        clearUnmeasured(state.dictionary[index]);
        bytes += encodeDictionaryRecord(state.dictionary[index]);
    }
    return true;
}

bool writeDictionaryRecord(int file, std::size_t index) {
    std::string bytes;
    return appendDictionaryRecords(bytes, {&index, 1}) && services::writeText(file, bytes);
}

bool beginChange() {
    if (state.dictionaryUnreadable) return holdTree();
    if (!state.dictionaryReadOnly && holdTree() && isIndexAsLoaded() && isCopyAsLoaded())
        return true;
    leaveTree();
    return false;
}

bool announceRenaming(std::span<PendingName> names) {
    if (state.dictionaryUnreadable || state.dictionaryReadOnly) return false;
    bool announced = false;
    static_cast<void>(services::withinMemory([&] {
        std::vector<std::uint64_t> positions;  // records with long descriptions are longer
        std::string index;
        for (const DictionaryRecord& record : state.dictionary) {
            positions.push_back(index.size());
            index += encodeDictionaryRecord(record);
        }
        index += state.untoldRecords;
        std::vector<PendingRename> renames;
        for (const PendingName& name : names)
            renames.push_back({.position = positions[name.record], .oldName = name.oldName});
        if (!services::renamesInOneStep({})) tellWhatIsCopied(renames, names, index.size());
        for (std::size_t i = 0; i < names.size(); ++i)
            names[i].isByCopying = renames[i].isByCopying();
        announced = layCopyBeside(index, std::move(renames));
    }));
    return announced;
}

bool hasUntoldName(services::TextView name) {
    const std::uint64_t number = services::hexadecimalToNumber(name);
    const auto bytes = std::as_bytes(std::span(state.untoldRecords));
    for (std::size_t at = 0; at < bytes.size(); at += dictionaryRecordSize) {
        if (readNumber<std::uint64_t>(bytes, at) == number) return true;
    }
    return false;
}

void saveDictionary(SaveMode mode) {
    static_cast<void>(services::withinMemory([mode] { replaceIndex(mode); }));
}

bool isIndexAsLoaded() {
    if (state.dictionaryUnreadable) return true;
    const services::FileDigest digest =
        services::digestOfFile(indexName, services::LinksAre::followed);
    if (digest.state == services::WholeFile::State::missing)
        return state.indexLength == 0 && state.indexHash == 0;
    // It was unreadable then as well, and the copy beside it was listed.
    if (digest.state == services::WholeFile::State::unreadable)
        return state.dictionaryReadOnly && state.indexLength == 0 && isCopyAsLoaded();
    return digest.state == services::WholeFile::State::read && digest.length == state.indexLength &&
           digest.hash == state.indexHash;
}

}  // namespace device
