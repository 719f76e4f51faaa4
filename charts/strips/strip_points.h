// What one value's circles, squares and cloud cover of a strip.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "charts/marks/mark_scale.h"
#include "charts/strips/slot_columns.h"
#include "charts/strips/strip_rows.h"
#include "charts/values/value_series.h"
#include "services/raster/cover_mask.h"
#include "services/raster/point_stamps.h"

namespace charts {

// A device pixel that stands for the place of a mark, and which of the mark's shapes begins there:
// where the pixel ratio is not a whole number, equal marks differ by how their edges are rounded.
struct MarkPlace {
    std::int32_t pixel = 0;
    std::uint32_t shape = 0;  // not below markShapes: one of those few that have no stamp
};

inline constexpr std::size_t markShapes = 2;  // along each axis

// Equal marks of a chart: circles of one radius, or squares of one side.
struct StripMark {
    int squareSide = 0;  // 0: a circle
    services::CircleShape circle;
    // By the shapes of column and row. Only for crowds.
    std::array<std::array<services::PointStamp, markShapes>, markShapes> stamps;
    std::vector<MarkPlace> rows;  // by logical row from -PointBits::rowsAbove on
    bool hasOneShape = false;     // all of these rows
    int left = 0;  // how many device columns the stamps reach to the left and to the right
    int right = 0;
};

// The same for all values and strips of a drawing, but for the room to work in.
struct StripPoints {
    double ratio = 1;
    int endRow = 0;                // of the plot
    bool crowdsAreStamped = true;  // not at extreme pixel ratios
    bool crowded = false;          // slots: one in a few columns, or more
    StripMark circle;
    StripMark square;
    StripMark cloudCircle;

    std::array<std::array<services::PointBits, markShapes>, markShapes> bits;
    services::StampRoom room;
};

StripPoints stripPoints(const services::Surface& surface, const Plot& plot, const Slots& slots,
                        std::size_t count);

void coverStripCircles(services::CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows);
void coverStripSquares(services::CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows);

// All points of a value's cloud in logical pixels, joined where they fall on each other.
services::PointBits collectCloud(const StripPoints& points, const Plot& plot,
                                 const ValueSeries& series);

// The strip has the logical columns from firstColumn to endColumn.
void coverStripCloud(services::CoverMask& mask, StripPoints& points,
                     const services::PointBits& cloud, int firstColumn, int endColumn);

}  // namespace charts
