#include "files/backup_copy.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "device/device_state.h"
#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "device/training_names.h"
#include "files/report_window.h"
#include "files/training_copies.h"
#include "services/disk/directories.h"
#include "services/disk/durable_names.h"
#include "services/disk/endings.h"
#include "services/disk/file_moves.h"
#include "services/disk/held_directory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace files {

using services::operator""_l1;

namespace {

constexpr int currentIndexFile = 2;
constexpr int backupIndexFile = 3;
constexpr services::PathView indexName = "dictionary.2";

bool isBackupCurrent() {
    return device::state.backupDirectory == services::currentDirectory();
}

// Nothing when the index can't be read to its end: half of its names would have trainings appended
// that it has already.
std::optional<services::Text> readIndex(int file) {
    const std::int64_t length = services::lengthOfFile(file);
    if (length < 0) return std::nullopt;
    try {
        services::Text bytes(static_cast<std::size_t>(length), '\0');
        if (services::seekFile(file, 0) &&
            services::readBlock(file, std::as_writable_bytes(std::span(bytes))) == bytes.size()) {
            return bytes;
        }
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    return std::nullopt;
}

std::vector<services::Text> namesIn(services::TextView index) {
    std::vector<services::Text> names;
    const std::int64_t count = namesInIndex(static_cast<std::int64_t>(index.size()));
    for (std::int64_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i) * device::dictionaryRecordSize;
        std::uint64_t number = 0;  // also that of the one name of an empty index
        for (std::size_t k = sizeof(number); at < index.size() && k-- > 0;)
            number = number << 8U | static_cast<unsigned char>(index[at + k]);
        names.push_back(services::numberToHexadecimal16(number));
    }
    return names;
}

// What copies that were cut off by a crash or a pulled card have left.
void removeUnfinishedCopies(const services::Path& directory) {
    for (const services::Path& name : services::namesInDirectory(directory)) {
        const services::Path path = services::concatenate(directory, name);
        if (!device::isUnfinishedName(name) || !services::isRegularFile(path)) continue;
        services::settleLeftover(path,
                                 services::concatenate(directory, device::finishedName(name)));
    }
}

void tellBackupIndexCantBeOpened() {
    if (isBackupCurrent()) {
        services::showMessage("Fehler"_l1,
                              "Der Pfad der Sicherheitskopie ist mit dem aktuellen Daum "
                              "Verzeichnis identisch!"_l1);
    } else {
        services::showMessage(
            "Fehler"_l1, services::concatenate("Die Datei '"_l1,
                                               services::pathToText(device::state.backupDirectory),
                                               "Dictionary.2' konnte nicht geöffnet werden!"_l1));
    }
}

// On a card that can't be written, a copy of the index may stand in for one that is missing.
bool isCopyStandingIn() {
    return !device::state.dictionaryUnreadable && device::isIndexAsLoaded();
}

void closeIndexes(services::HeldDirectory& hold) {
    services::closeFile(backupIndexFile);
    services::closeFile(currentIndexFile);
    services::letGo(hold);
    device::leaveTree();
}

bool openBackupIndex(services::HeldDirectory& hold, const services::Path& directory) {
    // The backup may have been the card once, and a save there cut off. Not through a link: what
    // lies elsewhere is none of the backup's. What it lists is to be on the disk: a program that
    // was killed may have left its last index in memory alone.
    return device::takeUpCopy(directory).state == device::TakenUp::State::nothing &&
           services::holdDirectory(hold, directory) != services::Holding::heldByAnother &&
           services::openFileItself(backupIndexFile, services::concatenate(directory, indexName)) &&
           services::flushDirectoryOf(directory) && services::flushFile(backupIndexFile);
}

// The card may be its own backup: then it is held already.
bool holdCard(const services::Path& backup) {
    return device::holdTree() || services::isCurrentDirectory(backup);
}

// The capital D of these messages is not the file's name; users know them so.
void tellIndexCantBeOpened() {
    services::showMessage("Fehler"_l1, "Die Datei 'Dictionary.2' konnte nicht geöffnet werden!"_l1);
}

bool openIndexes(services::HeldDirectory& hold) {
    const services::Path& directory = device::state.backupDirectory;
    if (!services::readFile(currentIndexFile, indexName) && !isCopyStandingIn()) {
        tellIndexCantBeOpened();
        return false;
    }
    const bool isBackupOpen = openBackupIndex(hold, directory);
    if (isBackupOpen && holdCard(directory)) return true;
    closeIndexes(hold);
    if (isBackupOpen) {
        tellIndexCantBeOpened();
    } else {
        tellBackupIndexCantBeOpened();
    }
    return false;
}

// What is missing in the backup by its open index, and the bytes of that; nothing when it can't be
// told. A record of which a backup that was cut off wrote a part goes: it would shift all that are
// appended behind it.
struct Missing {
    std::vector<bool> records;
    services::Text index;
};

std::optional<Missing> lookWhatIsMissing() {
    std::optional<services::Text> index = readIndex(backupIndexFile);
    if (!index) return std::nullopt;
    Missing missing = {.records = missingInBackup(device::state.dictionary, namesIn(*index)),
                       .index = std::move(*index)};
    missing.index.resize(missing.index.size() - tornRecordLength(missing.index,
                                                                 device::state.dictionary,
                                                                 missing.records));
    return missing;
}

// True when records may have been written.
bool copyWhatIsMissing(services::HeldDirectory& hold) {
    if (!openIndexes(hold)) return false;
    const services::Path directory = device::state.backupDirectory;
    removeUnfinishedCopies(directory);
    std::optional<Missing> missing = lookWhatIsMissing();
    if (!missing) {
        closeIndexes(hold);
        tellBackupIndexCantBeOpened();
        return false;
    }
    services::putOffEndings();
    const auto tell = [](std::size_t record, BackupMark mark) {
        addReportLine(backupLine(mark, device::state.dictionary[record]));
    };
    copyTrainings(missing->records, std::move(missing->index), directory, tell);
    return std::ranges::find(missing->records, true) != missing->records.end();
}

void copyMissingTrainings() {
    // No other program may rename what is copied, or back up into the same place, where both would
    // write under the same names.
    services::HeldDirectory hold;
    const auto finish = [&hold] {
        closeIndexes(hold);
        services::endIfAsked();
    };
    bool isTableUsed = false;
    try {
        isTableUsed = copyWhatIsMissing(hold);
    } catch (...) {  // memory ran short
        finish();
        throw;
    }
    finish();

    // Writing a record turns a pulse or cadence that was not measured into 0 in the table. One that
    // could not be read a moment ago is not read again, with its message.
    if (isTableUsed && !device::state.dictionaryUnreadable) device::loadDictionary();
}

// False when there is no place to copy to.
bool askForBackupDirectory() {
    const services::Path before = device::state.backupDirectory;
    if (!device::chooseBackupDirectory()) {
        // A tree that a cancelled requester has made lies within the card's own. With an index it
        // would be found in place of the card's from then on.
        device::state.backupDirectory = before;
        return false;
    }
    return !device::state.backupDirectory.empty();
}

}  // namespace

void copyToBackup(int mainHeight, const std::function<void()>& tableChanged) {
    const bool isChosen = !device::state.backupDirectory.empty() && !isBackupCurrent();
    if (!isChosen && !askForBackupDirectory()) return;

    // The text is as wide as the window and so reaches beyond its right edge.
    const ReportWindow report = {
        .title = "Dateien kopieren"_l1, .width = 448, .textWidth = 448, .mainHeight = mainHeight};
    if (!openReport(report)) return;

    device::loadDictionary();
    addReportLine("* = Die Datei ist bereits vorhanden."_l1);
    addReportLine("+ = Die Datei wurde kopiert."_l1);
    addReportLine("- = Die Datei konnte nicht kopiert werden."_l1);
    copyMissingTrainings();
    tableChanged();
    waitUntilReportIsRead(report);
}

}  // namespace files
