// Colours and limits of the chart values and the pointer's band: one state for the whole run.
// Resetting it is assigning {}.
#pragma once

#include <array>

#include "charts/values/value_numbers.h"
#include "charts/values/value_series.h"
#include "services/raster/colours.h"

namespace charts {

// Index 72 belongs to no value and no file; the table keeps it so that its size is that of the
// settings' colour list.
inline constexpr int colourTableSize = valueNumberLimit + 1;
using ColourTable = std::array<services::Colour, colourTableSize>;

// The colours before any settings are read: 0 to 19 and 50 to 71; all others 0.
ColourTable builtInColours();

struct ChartState {
    ColourTable colours = builtInColours();
    std::array<Limits, valueNumberLimit> limits = {};  // not saved

    // The band that the pointer draws over a chart, as vertical positions in its image. A start of
    // 0: none has begun.
    int bandStart = 0;
    int bandEnd = 0;
};

extern ChartState state;

}  // namespace charts
