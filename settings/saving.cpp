#include "settings/saving.h"

#include <algorithm>
#include <cstddef>

#include "charts/chart_state.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "device/device_tree.h"
#include "services/disk/directories.h"
#include "services/disk/durable_names.h"
#include "services/disk/memory.h"
#include "services/disk/preferences.h"
#include "services/disk/whole_files.h"
#include "services/menus.h"
#include "services/requesters.h"
#include "settings/path_text.h"
#include "settings/settings_keys.h"
#include "settings/settings_state.h"
#include "settings/start_settings.h"

namespace settings {

using services::operator""_l1;

namespace {

// Empty unless the working directory leads to a device tree.
services::Path deviceDirectory() {
    if (device::locateDeviceTree() == device::TreeLocation::notFound) return {};
    return services::currentDirectory();
}

void writeProgramSettings(services::Preferences& preferences, services::PathView directory) {
    services::preferenceGroup(preferences, keys::programGroup);
    services::writeInteger(preferences, keys::windowWidth, state.windowWidth);
    services::writeInteger(preferences, keys::windowHeight, state.windowHeight);
    services::writeText(preferences, keys::deviceDirectory, pathToStoredText(directory));
    services::writeText(preferences, keys::backupDirectory,
                        pathToStoredText(device::state.backupDirectory));
    services::writeInteger(preferences, keys::renumbering, device::state.renumberingEnabled);
    services::preferenceComment(preferences, {});
}

void writeColours(services::Preferences& preferences) {
    services::preferenceGroup(preferences, keys::colourGroup);
    for (int i = 0; i < charts::valueNumberLimit; ++i) {
        const services::Colour colour = charts::state.colours[static_cast<std::size_t>(i)];
        if (colour == 0) continue;
        services::writeInteger(preferences, keys::numberedKey(keys::colour, i), colour);
    }
    services::preferenceComment(preferences, {});
}

void writeMenuMarks(services::Preferences& preferences) {
    services::preferenceGroup(preferences, keys::menuGroup);
    for (int i = 0; i < charts::valueNumberLimit; ++i) {
        for (int k = charts::firstMarkOption; k <= charts::lastMarkOption; ++k) {
            const int item = charts::optionItem(i, static_cast<charts::Option>(k));
            if (!services::itemMark(item)) continue;
            services::writeInteger(preferences, keys::numberedKey(keys::menuMark, item), 1);
        }
    }
}

}  // namespace

void saveStartSettings() {
    const services::Path directory = deviceDirectory();
    services::setCurrentDirectory(device::state.programDirectory);

    // The old file is not deleted first: the new one takes its place when it is whole and on the
    // disk, so that a full disk costs nobody the settings of last time.
    services::Preferences preferences;
    if (!services::createPreferences(preferences, settingsPath())) return;
    bool saved = false;
    const bool complete = services::withinMemory([&] {
        writeProgramSettings(preferences, directory);
        writeColours(preferences);
        writeMenuMarks(preferences);
        saved = services::closePreferences(preferences);
    });
    if (!complete) services::discardPreferences(preferences);
    if (!saved) return;
    services::showMessage("Preferences"_l1,
                          "Die aktuellen Einstellungen der Übersicht wurden als "
                          "Starteinstellungen gespeichert!"_l1);
}

void reloadStartSettings() {
    loadStartSettings();
    applyMenuPreselection();
    services::showMessage("Info"_l1, "Die Starteinstellungen wurden geladen!"_l1);
}

void deleteStartSettings() {
    if (!services::askYesNo("Starteinstellungen zurücksetzen"_l1,
                            "Sollen die Starteinstellungen wirklich gelöscht werden?"_l1)) {
        return;
    }
    services::setCurrentDirectory(device::state.programDirectory);
    services::deleteForGood(settingsPath());
    services::deleteFile(settingsPath());  // a link of that name
    services::flushDirectoryOf(settingsPath());
    loadStartSettings();
    // Only the overview's colours return to what they were.
    const charts::ColourTable builtIn = charts::builtInColours();
    std::copy_n(builtIn.begin(), charts::overviewValueCount, charts::state.colours.begin());
}

}  // namespace settings
