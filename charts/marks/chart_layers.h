// What of a chart is painted into its image before the texts at its top: grid and marks, as
// numbers.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "charts/marks/chart_frame.h"
#include "charts/marks/chart_texts.h"
#include "charts/marks/mark_geometry.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_series.h"
#include "services/raster/colours.h"

namespace charts {

// One value of the chart. Its items are painted in their order: bars behind the other items of all
// values, then line, circles, squares, cloud, mean and trend, each text after its item.
struct ValueLayer {
    const ValueSeries* series = nullptr;
    services::Colour colour = 0;
    // Which of the styles (bars to cloud) to paint, by number.
    std::array<bool, static_cast<std::size_t>(Option::cloud) + 1> styles = {};
    std::optional<MeanMark> mean;
    std::optional<TrendMark> trend;
    std::optional<PlacedText> cloudText;
    std::optional<PlacedText> meanText;
    std::optional<PlacedText> trendText;

    bool has(Option option) const { return styles[static_cast<std::size_t>(option)]; }
};

// From the background upward.
struct ChartLayers {
    ChartFrame frame;
    std::vector<GridRule> grid;
    std::vector<ValueLayer> values;
};

}  // namespace charts
