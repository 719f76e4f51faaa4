// What one value's circles, squares and cloud cover of a strip.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "charts/mark_scale.h"
#include "charts/slot_columns.h"
#include "charts/strip_rows.h"
#include "charts/value_series.h"
#include "services/cover_mask.h"
#include "services/point_stamps.h"

namespace charts {

// Circles of one radius, as points of a chart.
struct StripCircles {
    services::CircleShape shape;
    services::PointStamp stamp;
    // By the parity of a circle's middle: how many rows apart two circles may stand without a gap.
    std::array<int, 2> joint = {};
};

// The same for all values and strips of a drawing, but for the room to work in.
struct StripPoints {
    double ratio = 1;
    int endRow = 0;        // of the plot
    bool crowded = false;  // at about a point in each column or more
    int squareSide = 0;
    StripCircles circles;
    StripCircles cloudCircles;
    services::PointStamp square;

    services::PointBits bits;
    std::vector<std::uint64_t> rowBits;  // of one column, all 0 between uses
};

StripPoints stripPoints(const Plot& plot, const Slots& slots, std::size_t count, double ratio);

void coverStripCircles(services::CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows);
void coverStripSquares(services::CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows);

// All points of a value's cloud, joined where they fall on each other.
services::PointBits collectCloud(const StripPoints& points, const Plot& plot,
                                 const ValueSeries& series);

// The strip has the logical columns from firstColumn to endColumn.
void coverStripCloud(services::CoverMask& mask, const StripPoints& points,
                     const services::PointBits& cloud, int firstColumn, int endColumn);

}  // namespace charts
