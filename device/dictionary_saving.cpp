#include <string>
#include <vector>

#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"

namespace device {

namespace {

constexpr int indexFile = 0;
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

}  // namespace

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
