#include "files/deletion.h"

#include "device/device_state.h"
#include "device/dictionary.h"
#include "files/training_names.h"
#include "services/file_moves.h"
#include "services/requesters.h"

namespace files {

using services::operator""_l1;

void deleteChosenTrainings() {
    if (!services::askYesNo("Lösche Datei"_l1,
                            "Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1)) {
        return;
    }
    bool anyChosen = false;
    for (const device::DictionaryRecord& record : device::state.dictionary) {
        if (record.selected == 0) continue;
        anyChosen = true;
        // By its bare name in the working directory, and nothing but a training file.
        if (isTrainingName(record.fileName)) services::deleteRegularFile(record.fileName);
    }
    if (!anyChosen) {
        services::showMessage("Lösche Datei"_l1,
                              "Es wurden keine Dateien zum Löschen ausgewählt!"_l1);
        return;
    }
    device::saveDictionary(device::SaveMode::unselected);
    device::loadDictionary();
}

}  // namespace files
