#include "files/renumbering.h"

#include <cstddef>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "files/renumber_plan.h"
#include "files/report_window.h"
#include "files/training_names.h"
#include "files/training_order.h"
#include "services/file_moves.h"
#include "services/requesters.h"

namespace files {

using services::operator""_l1;

namespace {

// Yes unlocks until the program ends, and beyond when the start settings are saved.
bool isUnlocked() {
    if (!device::state.renumberingEnabled) {
        device::state.renumberingEnabled = services::askYesNo(
            "Sicherheitswarnung"_l1,
            "Das Durchnummerieren ist nicht freigeschaltet! Beim Durchnummerieren kann es zu "
            "Konflikten mit den Dateinamen der Sicherheitskopie kommen. Soll das "
            "Durchnummerieren trotzdem freigeschaltet werden?"_l1);
    }
    return device::state.renumberingEnabled;
}

void renameTrainings() {
    auto& records = device::state.dictionary;
    sortTrainings(records, SortMode::byDate);
    const std::vector<RenumberStep> steps = planRenumbering(records);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].renames) {
            // A rename that fails goes unnoticed, and the record has the new name all the same. No
            // file is lost by that: none is ever replaced.
            if (isTrainingName(steps[i].oldName))
                services::renameFile(steps[i].oldName, steps[i].newName);
            records[i].fileName = steps[i].newName;
        }
        addReportLine(renumberLine(steps[i]));
    }
}

}  // namespace

void renumberTrainings(int mainHeight, const std::function<void()>& tableChanged) {
    if (!isUnlocked()) return;
    if (!services::askYesNo("Dateinamen neu durchnummerieren"_l1,
                            "Sollen die Dateinamen neu durchnummeriert werden?"_l1)) {
        return;
    }
    const ReportWindow report = {.title = "Dateinamen neu nummerieren"_l1,
                                 .width = 256,
                                 .textWidth = 238,
                                 .mainHeight = mainHeight};
    if (!openReport(report)) return;

    // A table without a record has no first number to go on from. It is left alone with its index,
    // which may hold trainings whose files merely can't be found at the moment.
    if (!device::state.dictionary.empty()) {
        renameTrainings();
        device::saveDictionary(device::SaveMode::all);
        device::loadDictionary();
    }
    tableChanged();
    services::showMessage("Dateinamen"_l1, "Die Dateinamen wurden neu durchnummeriert!"_l1);
    waitUntilReportIsRead(report);
}

}  // namespace files
