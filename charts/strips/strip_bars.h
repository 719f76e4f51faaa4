// The half-transparent bars of all values in one strip.
//
// Of the bars that one value has in a column only the highest eight count: a ninth blend of one
// colour changes nothing any more. But for halves all of them end at the plot's bottom, so that
// their tops tell how often each row is blended, and a column has no more runs of equal rows than
// it has tops.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "charts/strips/slot_columns.h"
#include "charts/strips/strip_rows.h"
#include "services/raster/column_runs.h"
#include "services/raster/raster.h"
#include "services/raster/raster_strip.h"

namespace charts {

// One value's bars, by sample from the strip's first on; device rows.
struct BarRows {
    std::uint32_t halfPixel = 0;
    std::vector<std::int16_t> tops;  // a large one for bars without a pixel
    // Halves may end a bar a row above or below the plot's bottom. Then these tell which of the two
    // rows around the bottom each bar covers.
    bool uneven = false;
    std::vector<std::uint8_t> ends;
};

// Where bars end: the plot's bottom and a logical row around it, and the rows where the background
// changes, as device rows of the image.
struct BarRoom {
    double ratio = 1;
    int bottom = 0;  // logical
    int deviceHeight = 0;
    int lastRow = 0;
    int bottomRow = 0;
    int belowRow = 0;
    std::vector<std::uint64_t> breaks;
};

BarRoom barRoom(const services::Surface& surface, const ChartLayers& layers, const Plot& plot);

// In one strip. `values` are those that have bars, in their order.
struct StripBars {
    std::size_t firstSample = 0;
    std::vector<BarRows> values;
    std::size_t count = 0;  // of the values in use
    // Of one column.
    std::vector<std::int16_t> tops;  // mostBlends of each value
    std::vector<int> topCounts;
    services::ColumnRuns runs;
};

void addBars(StripBars& bars, const StripRows& rows, services::Colour colour, const BarRoom& room);

// `columns` by logical column of the image; the strip's are those from firstColumn to endColumn.
void paintStripBars(services::StripPixels& pixels, const std::vector<SlotRange>& columns,
                    int firstColumn, int endColumn, const BarRoom& room, StripBars& bars);

}  // namespace charts
