// The texts of a chart and where they stand, as data. Besides their arguments they depend on the
// widths and heights of texts only.
#pragma once

#include <array>
#include <vector>

#include "charts/marks/chart_frame.h"
#include "charts/marks/mark_geometry.h"
#include "charts/values/value_series.h"
#include "device/dictionary_record.h"
#include "services/raster/colours.h"
#include "services/raster/raster.h"
#include "services/text/latin1.h"

namespace charts {

// (x, y) is the top left corner of the text's box.
struct PlacedText {
    int x = 0;
    int y = 0;
    services::Text text;
    services::Colour colour = 0;

    bool operator==(const PlacedText&) const = default;
};

// Where the texts of the next marked item go. Starts as {}.
struct ItemTextPlace {
    int labelOffset = 0;  // labels stand side by side above the plot
    int count = 0;        // minima stack upward from the bottom, maxima downward from the top
};

// Label, minimum and maximum of one marked item; none for a series without data. Moves the place
// on.
std::vector<PlacedText> itemTexts(const ChartFrame& frame, int valueNumber,
                                  const ValueSeries& series, services::Colour colour,
                                  ItemTextPlace& place);

// Below the plot, left, middle and right: first day, riding times, last day.
std::array<PlacedText, 3> overviewBottomLine(const ChartFrame& frame, const ValueSeries& series);

// Below the plot, left, middle and right: start, description, duration.
std::array<PlacedText, 3> trainingBottomLine(const ChartFrame& frame,
                                             const device::DictionaryRecord& record);

// Left of the mean line.
PlacedText meanText(const ChartFrame& frame, int valueNumber, const ValueSeries& series,
                    const MeanMark& mark, services::Colour colour);

// Right of the trend line.
PlacedText trendText(const ChartFrame& frame, const TrendMark& mark, services::Colour colour);

// Where the next point cloud's text goes. Starts as {}.
struct CloudTextPlace {
    int count = 0;  // of the clouds so far, the current one included: the texts are stacked
};

// The maximum of a point cloud, which is the end of both its axes, right of the square. Beside a
// square that is as wide as the plot no mark of a later value covers it.
PlacedText cloudText(const ChartFrame& frame, int valueNumber, const ValueSeries& series,
                     services::Colour colour, const CloudTextPlace& place);

}  // namespace charts
