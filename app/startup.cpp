#include "app/startup.h"

#include "app/app_state.h"
#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/menu_tree.h"
#include "app/tree_loading.h"
#include "device/device_tree.h"
#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/text/text.h"
#include "services/windows.h"
#include "settings/settings_state.h"
#include "settings/start_settings.h"

namespace app {

services::Path workingDirectoryAtStart(services::PathView current, services::PathView executable) {
    if (executable.empty()) return services::Path(current);
    if (services::canReadFile(services::concatenate(executable, settings::fileName)) ||
        device::hasIndex(executable) ||
        device::hasIndex(services::concatenate(executable, device::treePath))) {
        return services::Path(executable);
    }
    return services::Path(current);
}

namespace {

void findTrainings() {
    if (!ensureDeviceTree()) return;
    loadTrainings();
    redraw();
}

}  // namespace

bool startUp(services::PathView executable) {
    const services::Path current = services::currentDirectory();
    const services::Path start = workingDirectoryAtStart(current, executable);
    if (start != current) services::setCurrentDirectory(start);

    settings::loadStartSettings();
    if (settings::state.windowWidth > services::desktopWidth(0) ||
        settings::state.windowHeight > services::desktopHeight(0)) {
        settings::useDesktopSize();
    }
    bool isOpen = false;
    if (!services::withinMemory([&isOpen] { isOpen = openMainWindow(); }) || !isOpen) return false;
    buildMenus();
    state.lastMenuItem = firstMarkedOverviewItem();
    services::keyboardShortcut(services::mainWindow, services::escapeKey, escapeItem);
    services::showWindow(services::mainWindow);
    if (!services::withinMemory(findTrainings)) giveUpAction();
    return true;
}

}  // namespace app
