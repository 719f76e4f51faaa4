#include "export/csv_export.h"

#include <algorithm>

#include "device/device_state.h"
#include "export/csv_text.h"
#include "export/default_name.h"
#include "export/export_state.h"
#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"
#include "services/text/text.h"

namespace exporting {

using services::operator""_l1;

namespace {

constexpr int csvFile = 0;

// Misspelt once and kept: it is the name that users know.
constexpr services::TextView indexName = "Dicitonary.csv";

// Empty when no training is selected.
services::Text nameForLoadedTraining() {
    const auto training = std::ranges::find_if(
        device::state.dictionary,
        [](const device::DictionaryRecord& record) { return record.selected != 0; });
    return training == device::state.dictionary.end() ? services::Text()
                                                      : defaultTrainingName(*training);
}

void tellCantBeOpened(services::TextView shown) {
    services::showMessage("Dateifehler"_l1, services::concatenate("Die Datei '"_l1, shown,
                                                                  "' konnte nicht geöffnet!"_l1));
}

// `write` hands over the file's text and is called once the file is open.
template <typename Write>
void saveAs(services::Path& lastDirectory, services::TextView defaultName, const Write& write) {
    const services::Path chosen = services::chooseSaveFile("Name und Ort der CSV-Datei wählen"_l1,
                                                           lastDirectory, defaultName, "*.csv");
    // Up to and with the last "/"; nothing of a path without one, and of a cancelled requester's
    // empty path.
    const std::size_t nameStart = chosen.rfind('/') + 1;
    lastDirectory = chosen.substr(0, nameStart);
    if (nameStart == chosen.size()) return;

    const services::Text shown = services::pathToText(chosen);
    if (!services::openFile(csvFile, chosen)) {
        tellCantBeOpened(shown);
        return;
    }
    const bool complete = services::withinMemory([&write] {
        write([](services::TextView piece) { return services::writeText(csvFile, piece); });
    });
    // The message that follows says no more than that, but it had better be true.
    services::flushFile(csvFile);
    services::closeFile(csvFile);
    services::flushDirectoryOf(chosen);
    if (!complete) {
        tellCantBeOpened(shown);
        return;
    }
    services::showMessage(
        "Info"_l1, services::concatenate("Die Datei '"_l1, shown, "' wurde gespeichert!"_l1));
}

}  // namespace

void exportIndex() {
    if (device::state.dictionary.size() == 1) return;
    saveAs(state.indexDirectory, indexName,
           [](const TakePiece& take) { writeIndexCsv(device::state.dictionary, take); });
}

void exportTraining() {
    if (device::state.samples.size() <= 1) return;
    saveAs(state.trainingDirectory, nameForLoadedTraining(),
           [](const TakePiece& take) { writeTrainingCsv(device::state.samples, take); });
}

}  // namespace exporting
