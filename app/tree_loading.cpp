#include "app/tree_loading.h"

#include "charts/values/chart_options.h"
#include "device/device_tree.h"
#include "device/dictionary.h"

namespace app {

bool ensureDeviceTree() {
    if (device::locateDeviceTree() == device::TreeLocation::notFound) device::chooseDaumDirectory();
    // Again, whatever was chosen: a refused choice leaves the previous directory current.
    return device::locateDeviceTree() != device::TreeLocation::notFound;
}

void loadTrainings() {
    device::loadDictionary();
    charts::enableOptions(charts::ChartKind::overview, true);
    charts::enableOptions(charts::ChartKind::training, false);
}

}  // namespace app
