// The shell's own state. Resetting it is assigning {}.
#pragma once

#include "charts/value_catalogue.h"
#include "services/raster.h"

namespace app {

struct AppState {
    charts::ChartKind currentChart = charts::ChartKind::overview;

    // The item of the last menu event; at start the first marked overview option, else 0.
    int lastMenuItem = 0;

    // On while the pointer draws a band over the chart.
    bool tracking = false;

    bool quit = false;

    services::Surface chartImage;  // of the size of the main window's content

    // The chart's image with the band over it, as last shown. The chart's own image stays clean, so
    // that the band follows the pointer without a new drawing.
    services::Surface bandImage;
};

extern AppState state;

}  // namespace app
