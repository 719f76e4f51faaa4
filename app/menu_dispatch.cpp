#include "app/menu_dispatch.h"

#include <cstddef>

#include "app/app_state.h"
#include "app/info_window.h"
#include "app/main_window.h"
#include "app/menu_tree.h"
#include "app/training_commands.h"
#include "app/tree_loading.h"
#include "charts/chart_state.h"
#include "charts/limits_dialog.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_catalogue.h"
#include "device/device_tree.h"
#include "services/menus.h"
#include "services/requesters.h"
#include "settings/saving.h"

namespace app {

using charts::ChartKind;
using charts::Option;

namespace {

void changeDaumDirectory() {
    device::chooseDaumDirectory();
    if (device::locateDeviceTree() == device::TreeLocation::notFound) return;
    loadTrainings();
    redraw();
}

void clearChart(ChartKind kind) {
    charts::clearOptions(kind);
    redraw();
}

// A cancelled requester gives back the colour it was opened with.
void chooseColourOf(int valueNumber) {
    services::Colour& colour = charts::state.colours[static_cast<std::size_t>(valueNumber)];
    colour = services::chooseColour(colour);
}

void dispatchOption(const charts::OptionItem& chosen, int item) {
    switch (chosen.option) {
        case Option::limits:
            charts::editLimits(chosen.kind, chosen.valueNumber);
            rememberWindow();
            break;
        case Option::colour:
            chooseColourOf(chosen.valueNumber);
            break;
        default:
            charts::toggleOption(item);
            state.currentChart = chosen.kind;
            break;
    }
    redraw();
}

}  // namespace

void dispatchMenuItem(int item) {
    switch (item) {
        case services::quitItem:
        case endItem:
        case escapeItem:
            state.quit = true;
            return;
        case chooseDaumDirectoryItem:
            changeDaumDirectory();
            return;
        case chooseBackupDirectoryItem:
            device::chooseBackupDirectory();
            return;
        case editTrainingFilesItem:
            editTrainingFiles();
            return;
        case saveSettingsItem:
            settings::saveStartSettings();
            return;
        case reloadSettingsItem:
            settings::reloadStartSettings();
            redraw();
            return;
        case deleteSettingsItem:
            settings::deleteStartSettings();
            redraw();
            return;
        case openTrainingsItem:
            openTrainings();
            return;
        case exportTrainingsItem:
            exportTrainings();
            return;
        case openTrainingItem:
            openTraining();
            return;
        case exportTrainingItem:
            exportTraining();
            return;
        case clearOverviewItem:
            clearChart(ChartKind::overview);
            return;
        case clearTrainingItem:
            clearChart(ChartKind::training);
            return;
        case services::aboutItem:
        case versionItem:
            showInfoBox();
            catchUpWithWindow();
            return;
        case programItem:
            showHelpWindow();
            catchUpWithWindow();
            return;
        default:
            break;
    }
    if (const auto chosen = charts::optionOfItem(item)) dispatchOption(*chosen, item);
}

}  // namespace app
