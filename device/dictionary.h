// The index file "dictionary.2" of the working directory and the table it fills.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "device/device_state.h"

namespace device {

// Nothing of a description beyond this many bytes is read. The text of a damaged record may run on
// to the end of the file, and the file may hold millions of such records: without a limit time
// would grow with the square of the file's length. What all descriptions of one index together run
// on beyond their own 64 bytes is limited to the file's length, and memory with it.
inline constexpr std::size_t longestDescription = 4096;

// The kept records of an open index file that was `length` bytes long when it was opened, in the
// order of loadDictionary. Nothing beyond that length is read. Nothing comes back when the length
// holds no record, when fewer whole records arrive than it promised (a read error, a file that
// shrank), or when memory can't hold them: half an index would be saved as the whole of it later.
std::optional<std::vector<DictionaryRecord>> readDictionaryRecords(int file, std::int64_t length);

// Takes up what an interrupted command has left (device/index_recovery.h), then replaces the
// dictionary table with the file's records: those with a riding time whose training
// file can be opened, by start date, those of one start date in file order. Records of which the
// card does not tell whether their file can be opened go to `untoldRecords`. Shows a message,
// leaves one all-zero record and sets `dictionaryUnreadable` when the file can't be opened, holds
// no whole record, or can't be read to its end or kept in memory.
//
// Beside a copy that can't be read nobody knows what the index means, unless it is whole and each
// of its records has a file: then it is listed, and `dictionaryReadOnly` is set. So it is while
// another program changes the tree: files may have other names by now than those listed.
void loadDictionary();

enum class SaveMode {
    unselected = 0,  // only records whose selected flag is 0
    all = 1,
};

// The names that the records of the table have on the disk until the files are renamed.
struct PendingName {
    std::size_t record = 0;
    services::Text oldName = {};
    bool isByCopying = false;  // how the file gets its new name: told by announceRenaming
};

// To be called before any file is touched for a change of the trainings; a load ends it. False when
// nothing may be touched: another program is at work on the tree, the index or the copy beside it
// is not as it was loaded, or it was loaded to be read only. Then the callers load it again.
bool beginChange();

// To be called before files are renamed, with the new names in the table: puts on the disk what it
// takes to complete both the renaming and the saving of all records after an interruption.
// saveDictionary follows in any case; nothing may be renamed when this returns false. Each file is
// moved in this order, by moveTraining. No name of a record of an untold file may be among the new
// ones (hasUntoldName).
bool announceRenaming(std::span<PendingName> names);

// True for the name of a record of an untold file: it counts as taken.
bool hasUntoldName(services::TextView name);

// Replaces the file in one step: the table in its order, then the records of untold files, as they
// were read. A complete copy of the new index lies beside it meanwhile; without room for that, on
// the disk or in memory, nothing is replaced. Does nothing after a load that failed or was
// for reading only: an index that could not be read is not replaced by one that says nothing. Nor
// beside a copy that the load could not settle, which tells what the index should be: the next load
// does that. Silent on every failure. Callers call loadDictionary()
// after it, which also leaves the tree: until then a written pulse or rpm of 1.0 reads 0.0 in the
// table.
void saveDictionary(SaveMode mode);

// True also after a load that failed, which nothing is done with. False when the index is not, byte
// for byte, the one that was loaded: another card, or one that somebody else has changed.
bool isIndexAsLoaded();

// Appends records of the table, by their indexes, to the bytes of an index, or writes one at the
// current position of an open file. True when all were written. Sets a pulse or rpm of 1.0 to 0.0
// in the table.
bool appendDictionaryRecords(std::string& bytes, std::span<const std::size_t> indexes);
bool writeDictionaryRecord(int file, std::size_t index);

}  // namespace device
