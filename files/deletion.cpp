#include "files/deletion.h"

#include <algorithm>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/training_names.h"
#include "services/disk/durable_names.h"
#include "services/disk/memory.h"
#include "services/requesters.h"

namespace files {

using services::operator""_l1;

void deleteChosenTrainings() {
    if (!services::askYesNo("Lösche Datei"_l1,
                            "Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1)) {
        return;
    }
    const auto isChosen = [](const device::DictionaryRecord& record) {
        return record.selected != 0;
    };
    if (std::ranges::none_of(device::state.dictionary, isChosen)) {
        services::showMessage("Lösche Datei"_l1,
                              "Es wurden keine Dateien zum Löschen ausgewählt!"_l1);
        return;
    }
    // Another card may lie in the slot by now, with other trainings under the same names.
    if (!device::beginChange()) {
        device::loadDictionary();
        return;
    }
    // The index first: interrupted, it must not list a training whose file is going.
    device::saveDictionary(device::SaveMode::unselected);
    // Where memory ran out the deletion failed like any other.
    static_cast<void>(services::withinMemory([&isChosen] {
        std::vector<services::Path> names;
        for (const device::DictionaryRecord& record : device::state.dictionary) {
            // By its bare name in the working directory, and nothing but a training file.
            if (isChosen(record) && device::isTrainingName(record.fileName))
                names.push_back(record.fileName);
        }
        services::deleteAllForGood(names);
    }));
    device::loadDictionary();
}

}  // namespace files
