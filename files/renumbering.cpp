#include "files/renumbering.h"

#include <cstddef>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "device/training_names.h"
#include "files/renumber_plan.h"
#include "files/report_window.h"
#include "files/training_order.h"
#include "services/disk/memory.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"

namespace files {

using services::operator""_l1;

namespace {

// Yes unlocks until the program ends, and beyond when the start settings are saved.
bool isUnlocked() {
    if (device::state.renumberingEnabled == 0 &&
        services::askYesNo(
            "Sicherheitswarnung"_l1,
            "Das Durchnummerieren ist nicht freigeschaltet! Beim Durchnummerieren kann es zu "
            "Konflikten mit den Dateinamen der Sicherheitskopie kommen. Soll das "
            "Durchnummerieren trotzdem freigeschaltet werden?"_l1)) {
        device::state.renumberingEnabled = 1;
    }
    return device::state.renumberingEnabled == 1;
}

// A file that the card tells nothing of may have the name: it is passed by like a foreign one.
bool isPassedBy(const RenumberStep& step) {
    return step.renames && device::hasUntoldName(step.newName);
}

// What is not there can't be renamed.
bool canBeRenamed(const RenumberStep& step) {
    return step.renames && !isPassedBy(step) && device::isTrainingName(step.oldName) &&
           services::presenceOf(step.oldName) != services::Presence::missing;
}

std::vector<device::PendingName> pendingNames(const std::vector<RenumberStep>& steps) {
    std::vector<device::PendingName> pending;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (canBeRenamed(steps[i])) pending.push_back({.record = i, .oldName = steps[i].oldName});
    }
    return pending;
}

// What the table is to hold: also the new names of files that are gone.
std::vector<services::Text> namesAfter(const std::vector<RenumberStep>& steps) {
    std::vector<services::Text> names;
    names.reserve(steps.size());
    for (const RenumberStep& step : steps)
        names.push_back(step.renames && !isPassedBy(step) ? step.newName : step.oldName);
    return names;
}

// The table takes the names and gives its own for them. Needs no memory, which could end halfway.
void exchangeNames(std::vector<services::Text>& names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        device::state.dictionary[i].fileName.swap(names[i]);
}

void renameTrainings() {
    auto& records = device::state.dictionary;
    sortTrainings(records, SortMode::byDate);
    const std::vector<RenumberStep> steps = planRenumbering(records);
    std::vector<device::PendingName> pending = pendingNames(steps);
    std::vector<services::Text> names = namesAfter(steps);
    exchangeNames(names);
    // Without room for what completes an interrupted renumbering every file keeps its name.
    const bool announced = pending.empty() || device::announceRenaming(pending);
    if (!announced) exchangeNames(names);

    auto next = pending.begin();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (announced && next != pending.end() && next->record == i) {
            // A rename that fails goes unnoticed here. No file is lost by that: none is ever
            // replaced, and loading the index finds the name that the file has.
            device::moveTraining({}, {.oldName = steps[i].oldName,
                                      .newName = steps[i].newName,
                                      .isByCopying = next->isByCopying});
            ++next;
        }
        addReportLine(renumberLine(steps[i]));
    }
    // The names come to the disk before the index that holds them.
    if (announced && !pending.empty()) services::flushDirectoryOf(pending.front().oldName);
}

}  // namespace

void renumberTrainings(int mainHeight, const std::function<void()>& tableChanged) {
    if (!isUnlocked()) return;
    if (!services::askYesNo("Dateinamen neu durchnummerieren"_l1,
                            "Sollen die Dateinamen neu durchnummeriert werden?"_l1)) {
        return;
    }
    // Another card may lie in the slot by now, with other trainings under the same names.
    if (!device::beginChange()) {
        device::loadDictionary();
        tableChanged();
        return;
    }
    const ReportWindow report = {.title = "Dateinamen neu nummerieren"_l1,
                                 .width = 256,
                                 .textWidth = 238,
                                 .mainHeight = mainHeight};
    if (!openReport(report)) {
        device::leaveTree();
        return;
    }

    // A table without a record has no first number to go on from. It is left alone with its index,
    // which may hold trainings whose files merely can't be found at the moment.
    if (!device::state.dictionary.empty()) {
        // Whatever memory runs out for: once files may have new names, saving and loading see to it
        // that the index has them, too.
        static_cast<void>(services::withinMemory(renameTrainings));
        device::saveDictionary(device::SaveMode::all);
        device::loadDictionary();
    }
    device::leaveTree();
    tableChanged();
    services::showMessage("Dateinamen"_l1, "Die Dateinamen wurden neu durchnummeriert!"_l1);
    waitUntilReportIsRead(report);
}

}  // namespace files
