#include "settings/start_settings.h"

#include "charts/chart_state.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "device/device_tree.h"
#include "services/disk/directories.h"
#include "services/disk/preferences.h"
#include "services/menus.h"
#include "services/text/numbers.h"
#include "services/text/text.h"
#include "services/windows.h"
#include "settings/path_text.h"
#include "settings/settings_keys.h"
#include "settings/settings_state.h"

namespace settings {

namespace {

// Numbers beyond 32 bits wrap.
std::int32_t readInteger32(const services::Preferences& preferences, services::TextView key) {
    return static_cast<std::int32_t>(services::readInteger(preferences, key, 0));
}

void loadColours(const services::Preferences& preferences) {
    for (int i = 0; i < charts::valueNumberLimit; ++i) {
        const services::Colour colour =
            readInteger32(preferences, keys::numberedKey(keys::colour, i));
        // 0 stands for a missing entry as well, so black can't be stored.
        if (colour != 0) charts::state.colours[static_cast<std::size_t>(i)] = colour;
    }
}

void loadMenuPreselection(const services::Preferences& preferences) {
    for (int i = 0; i < charts::valueNumberLimit; ++i) {
        for (int k = charts::firstMarkOption; k <= charts::lastMarkOption; ++k) {
            const int item = charts::optionItem(i, static_cast<charts::Option>(k));
            state.menuPreselection[static_cast<std::size_t>(item)] =
                readInteger32(preferences, keys::numberedKey(keys::menuMark, item));
        }
    }
}

void enterDeviceDirectory(services::PathView stored) {
    if (stored.empty()) return;
    const services::Path previous = services::currentDirectory();
    services::setCurrentDirectory(stored);
    if (device::locateDeviceTree() == device::TreeLocation::notFound) {
        services::setCurrentDirectory(previous);
    }
}

}  // namespace

services::Path settingsPath() {
    return services::concatenate(device::state.programDirectory, fileName);
}

void loadStartSettings() {
    if (device::state.programDirectory.empty()) {
        device::state.programDirectory = services::currentDirectory();
    } else {
        services::setCurrentDirectory(device::state.programDirectory);
    }
    services::Preferences preferences = services::openPreferences(settingsPath());
    services::preferenceGroup(preferences, keys::programGroup);
    state.windowWidth = readInteger32(preferences, keys::windowWidth);
    state.windowHeight = readInteger32(preferences, keys::windowHeight);
    if (state.windowWidth < smallestStoredSize || state.windowHeight < smallestStoredSize) {
        useDesktopSize();
    }
    const services::Text deviceDirectory =
        services::readText(preferences, keys::deviceDirectory, {});
    device::state.backupDirectory =
        storedTextToPath(services::readText(preferences, keys::backupDirectory, {}));
    device::state.renumberingEnabled = readInteger32(preferences, keys::renumbering);
    services::preferenceGroup(preferences, keys::colourGroup);
    loadColours(preferences);
    services::preferenceGroup(preferences, keys::menuGroup);
    loadMenuPreselection(preferences);
    services::closePreferences(preferences);
    enterDeviceDirectory(storedTextToPath(deviceDirectory));
}

void useDesktopSize() {
    // Neither 0.9 nor 0.7 is a binary fraction: multiplied by them a half would be less or more
    // than one. What is divided here is exact, and a half stays one.
    state.windowWidth = services::roundToInt32(services::desktopWidth(0) * 9 / 10.0);
    state.windowHeight = services::roundToInt32(services::desktopHeight(0) * 7 / 10.0);
}

void applyMenuPreselection() {
    for (int i = 0; i < charts::valueNumberLimit; ++i) {
        for (int k = charts::firstMarkOption; k <= charts::lastMarkOption; ++k) {
            const int item = charts::optionItem(i, static_cast<charts::Option>(k));
            services::setItemMark(item,
                                  state.menuPreselection[static_cast<std::size_t>(item)] != 0);
        }
    }
}

}  // namespace settings
