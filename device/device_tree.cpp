#include "device/device_tree.h"

#include "device/device_state.h"
#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "services/disk/endings.h"
#include "services/disk/whole_files.h"
#include "services/requesters.h"
#include "services/text/text.h"

namespace device {

using services::operator""_l1;

TreeLocation locateDeviceTree() {
    services::setCurrentDirectory(services::replace(services::currentDirectory(), bundleTail, ""));
    if (hasIndex(treePath)) {
        services::setCurrentDirectory(treePath);
        return TreeLocation::below;
    }
    if (hasIndex({})) return TreeLocation::current;
    return TreeLocation::notFound;
}

void chooseDaumDirectory() {
    const services::Path chosen = services::chooseDirectory(
        "Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1, state.programDirectory, indexPath);
    if (chosen.empty()) return;

    const services::Path previous = services::currentDirectory();
    // A directory that can't be entered (a card pulled out meanwhile) holds no tree either; looking
    // for one would find the old tree again.
    if (!services::setCurrentDirectory(chosen) || locateDeviceTree() == TreeLocation::notFound) {
        services::showMessage(
            "Dateifehler"_l1,
            services::concatenate("Die Datei '"_l1, indexPath,
                                  "' wurde im gewählten Verzeichnis nicht gefunden!"_l1));
        services::setCurrentDirectory(previous);
    }
    // Also after the message above: a wrong directory on the backup's drive is told both.
    if (services::driveOf(chosen) == services::driveOf(state.backupDirectory)) {
        services::showMessage(
            "Fehler"_l1,
            "Das gewählte Laufwerk des Daum Verzeichnisses ist mit dem Laufwerk der "
            "Sicherheitskopie identisch!"_l1);
        services::setCurrentDirectory(previous);
    }
}

bool chooseBackupDirectory() {
    // A requester that the user cancels gives the empty path, which goes on as any other: the tree
    // is then made in the working directory.
    const services::Path chosen = services::chooseDirectory(
        "Wähle das Verzeichnis der Sicherheitskopie"_l1, state.programDirectory);
    // Nobody has cancelled it, and nobody wants a tree.
    if (services::isQuitAsked()) return false;
    if (services::driveOf(chosen) == services::driveOf(services::currentDirectory())) {
        services::showMessage(
            "Fehler"_l1,
            "Das gewählte Laufwerk der Sicherheitskopie ist mit dem Laufwerk des Daum "
            "Verzeichnisses identisch!"_l1);
        return !chosen.empty();
    }
    state.backupDirectory = chosen;
    if (services::find(chosen, treePath) != 0) return true;

    // Directories that exist already or can't be made are passed over: the backup copy itself tells
    // when it can't write.
    for (const services::PathView part : {"data", "data/result", "data/result/ergo_bike"}) {
        const services::Path path = services::concatenate(chosen, part);
        if (services::createDirectory(path)) services::flushDirectoryOf(path);
    }
    state.backupDirectory += treePath;
    return !chosen.empty();
}

}  // namespace device
