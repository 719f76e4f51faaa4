#include "files/backup_copy.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "device/device_state.h"
#include "device/device_tree.h"
#include "device/dictionary.h"
#include "device/training_names.h"
#include "files/report_window.h"
#include "services/directories.h"
#include "services/file_moves.h"
#include "services/numbered_files.h"
#include "services/numbers.h"
#include "services/requesters.h"
#include "services/text.h"

namespace files {

using services::operator""_l1;

namespace {

constexpr int currentIndexFile = 2;
constexpr int backupIndexFile = 3;
constexpr services::PathView indexName = "dictionary.2";

bool isBackupCurrent() {
    return device::state.backupDirectory == services::currentDirectory();
}

std::vector<services::Text> readNames(int file) {
    std::vector<services::Text> names;
    const std::int64_t count = namesInIndex(services::lengthOfFile(file));
    for (std::int64_t i = 0; i < count; ++i) {
        services::seekFile(file, i * static_cast<std::int64_t>(device::dictionaryRecordSize));
        const auto number = static_cast<std::uint64_t>(services::readQuad(file));
        names.push_back(services::numberToHexadecimal16(number));
    }
    return names;
}

// What copies that were cut off by a crash or a pulled card have left.
void removeUnfinishedCopies(const services::Path& directory) {
    for (const services::Path& name : services::namesInDirectory(directory)) {
        if (isUnfinishedName(name))
            services::deleteRegularFile(services::concatenate(directory, name));
    }
}

// The capital D of these messages is not the file's name; users know them so.
bool openIndexes() {
    if (!services::readFile(currentIndexFile, indexName)) {
        services::showMessage("Fehler"_l1,
                              "Die Datei 'Dictionary.2' konnte nicht geöffnet werden!"_l1);
        return false;
    }
    const services::Path& directory = device::state.backupDirectory;
    // Not through a link: what lies elsewhere is none of the backup's.
    if (services::openFileItself(backupIndexFile, services::concatenate(directory, indexName)))
        return true;

    services::closeFile(currentIndexFile);
    if (isBackupCurrent()) {
        services::showMessage("Fehler"_l1,
                              "Der Pfad der Sicherheitskopie ist mit dem aktuellen Daum "
                              "Verzeichnis identisch!"_l1);
    } else {
        services::showMessage(
            "Fehler"_l1, services::concatenate("Die Datei '"_l1, services::pathToText(directory),
                                               "Dictionary.2' konnte nicht geöffnet werden!"_l1));
    }
    return false;
}

void copyMissingTrainings() {
    if (!openIndexes()) return;
    const services::Path directory = device::state.backupDirectory;
    removeUnfinishedCopies(directory);
    const std::vector<bool> missing =
        missingInBackup(device::state.dictionary, readNames(backupIndexFile));
    for (std::size_t i = 0; i < missing.size(); ++i) {
        const BackupMark mark =
            missing[i] ? copyTraining(i, backupIndexFile, directory) : BackupMark::present;
        addReportLine(backupLine(mark, device::state.dictionary[i]));
    }
    services::closeFile(backupIndexFile);
    services::closeFile(currentIndexFile);

    // Writing a record turns a pulse or cadence that was not measured into 0 in the table. A table
    // of which nothing was written is fresh still.
    if (std::find(missing.begin(), missing.end(), true) != missing.end()) device::loadDictionary();
}

}  // namespace

BackupMark copyTraining(std::size_t record, int indexFile, const services::Path& backupDirectory) {
    const services::Text name = device::state.dictionary[record].fileName;
    if (!device::isTrainingName(name) ||
        !services::copyFile(name, services::concatenate(backupDirectory, name),
                            services::concatenate(backupDirectory, unfinishedName(name)))) {
        return BackupMark::failed;
    }
    // Behind everything, stray bytes of an odd last record included.
    const std::int64_t end = services::lengthOfFile(indexFile);
    if (services::seekFile(indexFile, end) && device::writeDictionaryRecord(indexFile, record) &&
        services::flushFile(indexFile)) {
        return BackupMark::copied;
    }
    // A piece of a record would shift all that are appended later.
    if (end >= 0) services::cutFile(services::concatenate(backupDirectory, indexName), end);
    return BackupMark::failed;
}

void copyToBackup(int mainHeight, const std::function<void()>& tableChanged) {
    if (device::state.backupDirectory.empty() || isBackupCurrent()) device::chooseBackupDirectory();
    if (device::state.backupDirectory.empty()) return;

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
