#include "charts/strips/strip_bars.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "charts/marks/mark_painting.h"
#include "charts/strips/mark_rows.h"
#include "services/raster/wide_loops.h"

namespace charts {
namespace {

using services::deviceEdge;
using services::mostBlends;

constexpr std::int16_t noBar = std::numeric_limits<std::int16_t>::max();
constexpr std::uint8_t coversLastRow = 1;
constexpr std::uint8_t coversBelow = 2;

// The eight rows of two values, which the processor compares at once.
using RowsOfTwo = std::int16_t __attribute__((vector_size(32)));
static_assert(mostBlends == 8);

// The highest bars of both values among `count` samples: ascending rows, then noBar.
SERVICES_WIDE_LOOP
void collectTops(const std::int16_t* one, const std::int16_t* other, std::size_t count,
                 std::int16_t* topsOfOne, std::int16_t* topsOfOther) {
    constexpr RowsOfTwo firstHalf = {-1, -1, -1, -1, -1, -1, -1, -1};
    const RowsOfTwo least = RowsOfTwo{} + std::numeric_limits<std::int16_t>::min();
    RowsOfTwo tops = RowsOfTwo{} + noBar;
    for (std::size_t i = 0; i < count; ++i) {
        // Each place gets the lesser of its row and the new one, or the row before it if that is
        // larger.
        const RowsOfTwo added =
            ((RowsOfTwo{} + one[i]) & firstHalf) | ((RowsOfTwo{} + other[i]) & ~firstHalf);
        const RowsOfTwo before = __builtin_shufflevector(tops, least, 23, 0, 1, 2, 3, 4, 5, 6, 31,
                                                         8, 9, 10, 11, 12, 13, 14);
        const RowsOfTwo lesser = tops < added ? tops : added;
        tops = before > lesser ? before : lesser;
    }
    std::array<std::int16_t, 16> both{};
    std::memcpy(both.data(), &tops, sizeof(tops));
    std::memcpy(topsOfOne, both.data(), sizeof(tops) / 2);
    std::memcpy(topsOfOther, both.data() + mostBlends, sizeof(tops) / 2);
}

bool isBar(int top, int height) {
    return height >= 1 && top != noRow;
}

// How many of the bars cover one of the two rows around the bottom, up to the most that matter.
int barsInRow(const BarRows& rows, std::size_t first, std::size_t end, std::uint8_t row) {
    int number = 0;
    for (std::size_t i = first; i < end; ++i)
        number += (rows.ends[i] & row) != 0 ? 1 : 0;
    return std::min(number, mostBlends);
}

void computeEnds(const StripRows& rows, int bottom, BarRows& bars) {
    bars.ends.resize(rows.line.size());
    for (std::size_t i = 0; i < rows.line.size(); ++i) {
        const int top = rows.line[i];
        const int height = rows.height[i];
        unsigned ends = 0;
        if (isBar(top, height)) {
            const int end = top + height;
            if (top <= bottom - 1 && bottom - 1 < end) ends |= coversLastRow;
            if (top <= bottom && bottom < end) ends |= coversBelow;
        }
        bars.ends[i] = static_cast<std::uint8_t>(ends);
    }
}

// Blends a stack of bars that all begin at one row.
void blendRow(services::ColumnRuns& runs, int row, int end, int times, std::uint32_t halfPixel) {
    if (row >= end) return;
    std::array<std::int16_t, mostBlends> tops{};
    tops.fill(static_cast<std::int16_t>(row));
    services::blendRuns(runs, tops.data(), times, end, halfPixel);
}

// The tops of all values in a column, as breaks of its runs.
void collectColumn(SlotRange slots, const BarRoom& room, StripBars& bars) {
    const std::size_t first = slots.first - bars.firstSample;
    const std::size_t number = slots.end - slots.first;
    for (std::size_t v = 0; v < bars.count; v += 2) {
        const std::size_t other = std::min(v + 1, bars.count - 1);
        collectTops(bars.values[v].tops.data() + first, bars.values[other].tops.data() + first,
                    number, bars.tops.data() + v * mostBlends,
                    bars.tops.data() + other * mostBlends);
    }
    for (std::size_t v = 0; v < bars.count; ++v) {
        const int end = bars.values[v].uneven ? room.lastRow : room.bottomRow;
        const std::int16_t* const tops = bars.tops.data() + v * mostBlends;
        int count = 0;
        for (; count < mostBlends && tops[count] < end; ++count)
            services::breakAt(bars.runs, tops[count]);
        bars.topCounts[v] = count;
    }
}

void blendColumn(SlotRange slots, const BarRoom& room, StripBars& bars) {
    const std::size_t first = slots.first - bars.firstSample;
    const std::size_t end = slots.end - bars.firstSample;
    for (std::size_t v = 0; v < bars.count; ++v) {
        const BarRows& rows = bars.values[v];
        services::blendRuns(bars.runs, bars.tops.data() + v * mostBlends, bars.topCounts[v],
                            rows.uneven ? room.lastRow : room.bottomRow, rows.halfPixel);
        if (!rows.uneven) continue;
        blendRow(bars.runs, room.lastRow, room.bottomRow,
                 barsInRow(rows, first, end, coversLastRow), rows.halfPixel);
        blendRow(bars.runs, room.bottomRow, room.belowRow, barsInRow(rows, first, end, coversBelow),
                 rows.halfPixel);
    }
}

}  // namespace

BarRoom barRoom(const services::Surface& surface, const ChartLayers& layers, const Plot& plot) {
    BarRoom room;
    room.ratio = surface.pixelRatio;
    room.bottom = static_cast<int>(plot.bottom());
    room.deviceHeight = surface.deviceHeight;
    const auto inImage = [&surface](std::int64_t row) {
        return static_cast<int>(std::clamp<std::int64_t>(row, 0, surface.deviceHeight));
    };
    room.lastRow = inImage(deviceEdge(std::int64_t{room.bottom} - 1, room.ratio));
    room.bottomRow = inImage(deviceEdge(room.bottom, room.ratio));
    room.belowRow = inImage(deviceEdge(std::int64_t{room.bottom} + 1, room.ratio));
    room.breaks = services::noBreaks(surface.deviceHeight);
    for (const int row : {room.lastRow, room.bottomRow, room.belowRow})
        services::addBreak(room.breaks, row);
    for (const GridRule& rule : layers.grid) {
        const services::DeviceBox box = rulePixels(room.ratio, rule);
        services::addBreak(room.breaks, inImage(box.top));
        services::addBreak(room.breaks, inImage(box.bottom));
    }
    return room;
}

void addBars(StripBars& bars, const StripRows& rows, services::Colour colour, const BarRoom& room) {
    if (bars.count == bars.values.size()) bars.values.emplace_back();
    BarRows& added = bars.values[bars.count++];
    bars.firstSample = rows.first;
    added.halfPixel = services::halfPixelOf(colour);
    const std::size_t count = rows.line.size();
    added.tops.resize(count);
    const int* const top = rows.line.data();
    const int* const height = rows.height.data();
    std::int16_t* const to = added.tops.data();
    int uneven = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const bool is = isBar(top[i], height[i]);
        const int evenTop = room.bottom - (is ? height[i] : 0);
        uneven |= is && top[i] != evenTop ? 1 : 0;
        const int inImage = std::min(std::max(top[i], 0), noBar - 1);
        to[i] = static_cast<std::int16_t>(is ? inImage : noBar);
    }
    added.uneven = uneven != 0;
    if (added.uneven) computeEnds(rows, room.bottom, added);
    if (room.ratio == 1) return;
    for (std::int16_t& row : added.tops) {
        if (row == noBar) continue;
        row = static_cast<std::int16_t>(std::min<std::int64_t>(deviceEdge(row, room.ratio), noBar));
    }
}

void paintStripBars(services::StripPixels& pixels, const std::vector<SlotRange>& columns,
                    int firstColumn, int endColumn, const BarRoom& room, StripBars& bars) {
    if (bars.count == 0) return;
    bars.tops.resize(bars.count * mostBlends);
    bars.topCounts.resize(bars.count);
    for (int x = firstColumn; x < endColumn; ++x) {
        const SlotRange slots = columns[static_cast<std::size_t>(x)];
        if (slots.first >= slots.end) continue;
        services::beginRuns(bars.runs, room.deviceHeight, room.breaks);
        collectColumn(slots, room, bars);
        const std::int64_t end =
            std::min<std::int64_t>(deviceEdge(std::int64_t{x} + 1, room.ratio), pixels.area.end);
        for (std::int64_t device = deviceEdge(x, room.ratio); device < end; ++device) {
            std::uint32_t* const column =
                pixels.column(static_cast<int>(device - pixels.area.first));
            services::gatherRuns(bars.runs, column);
            blendColumn(slots, room, bars);
            services::spreadRuns(bars.runs, column);
        }
    }
}

}  // namespace charts
