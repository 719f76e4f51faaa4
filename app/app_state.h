// The shell's own state. Resetting it is assigning {}.
#pragma once

#include <cstdint>
#include <optional>

#include "charts/range_band.h"
#include "charts/values/value_numbers.h"
#include "services/raster/raster.h"

namespace app {

struct AppState {
    charts::ChartKind currentChart = charts::ChartKind::overview;

    // The item of the last menu event; at start the first marked overview option, else 0.
    int lastMenuItem = 0;

    // On while a band is drawn over the chart, by the pointer or by keys.
    bool tracking = false;
    bool bandByKeys = false;

    // Where the keys have put the mark that begins and ends a band; 0 while there is none.
    int keyPosition = 0;

    bool quit = false;

    services::Surface chartImage;  // of the size of the main window's content, as last drawn

    // What the chart in it was drawn from (charts::digestOfChart); nothing when memory did not last
    // for drawing it.
    std::optional<std::uint64_t> drawnDigest;

    // The chart's image with the band over it, as last shown; empty while the chart itself is
    // shown. The chart's own image stays clean, so that the band follows the pointer without a new
    // drawing.
    services::Surface bandImage;
    charts::BandBox shownBand;
};

extern AppState state;

}  // namespace app
