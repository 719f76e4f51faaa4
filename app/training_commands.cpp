#include "app/training_commands.h"

#include "app/app_state.h"
#include "app/main_window.h"
#include "app/tree_loading.h"
#include "charts/values/chart_options.h"
#include "device/dictionary.h"
#include "device/training_file.h"
#include "export/csv_export.h"
#include "files/list_window.h"
#include "services/windows.h"

namespace app {

using charts::ChartKind;
using files::ListMode;

namespace {

// False when there is no tree to list. The trainings' selected flags tell what was chosen.
bool chooseTrainings(ListMode mode) {
    if (!ensureDeviceTree()) return false;
    device::loadDictionary();
    const files::ListResult result =
        files::openTrainingList(mode, services::windowWidth(services::mainWindow),
                                services::windowHeight(services::mainWindow));
    if (result == files::ListResult::notOpened) return false;
    rememberWindow();
    return true;
}

void showChart(ChartKind kind) {
    const ChartKind other = kind == ChartKind::overview ? ChartKind::training : ChartKind::overview;
    charts::enableOptions(kind, true);
    charts::enableOptions(other, false);
    state.currentChart = kind;
    redraw();
}

}  // namespace

void editTrainingFiles() {
    if (chooseTrainings(ListMode::edit)) redraw();
}

void openTrainings() {
    if (chooseTrainings(ListMode::chooseMany)) showChart(ChartKind::overview);
}

void openTraining() {
    if (!chooseTrainings(ListMode::chooseOne)) return;
    device::loadTraining();
    showChart(ChartKind::training);
}

void exportTrainings() {
    if (!chooseTrainings(ListMode::chooseMany)) return;
    fitUnchangedChart();
    exporting::exportIndex();
}

void exportTraining() {
    if (!chooseTrainings(ListMode::chooseOne)) return;
    device::loadTraining();
    fitUnchangedChart();
    exporting::exportTraining();
}

}  // namespace app
