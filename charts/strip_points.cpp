#include "charts/strip_points.h"

#include <algorithm>
#include <cmath>

#include "charts/mark_rows.h"
#include "charts/row_chains.h"
#include "services/numbers.h"

namespace charts {
namespace {

using services::CoverMask;
using services::deviceMiddle;
using services::PointBits;

StripCircles stripCircles(int radius, double ratio) {
    StripCircles circles;
    circles.shape = services::circleShape(radius, ratio);
    circles.stamp = services::circleStamp(radius);
    const double rounding = ratio == std::floor(ratio) ? 0 : 1;
    for (std::size_t parity = 0; parity < circles.joint.size(); ++parity) {
        const auto joint = static_cast<double>(circles.shape.joint[parity]);
        circles.joint[parity] =
            static_cast<int>(std::max(0.0, std::floor((joint - rounding) / (2 * ratio))));
    }
    return circles;
}

int jointOf(const StripCircles& circles, std::int64_t middleX) {
    return circles.joint[static_cast<std::size_t>(middleX & 1)];
}

std::uint64_t bitOf(std::size_t row) {
    return std::uint64_t{1} << (row % 64);
}

// A row that was kept inside the plot, as the number of its bit. Clamped points of a low plot may
// stand a little outside, above as well as below.
std::size_t bitRow(int row) {
    return static_cast<std::size_t>(std::int64_t{row} + PointBits::rowsAbove);
}

// Neighbouring samples mostly fall into one word, which is written once.
void setPoints(std::uint64_t* words, std::size_t stride, const int* rows, std::size_t count) {
    std::size_t word = 0;
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (rows[i] == noRow) continue;
        const std::size_t row = bitRow(rows[i]);
        if (row / 64 != word) {
            words[word * stride] |= bits;
            word = row / 64;
            bits = 0;
        }
        bits |= bitOf(row);
    }
    words[word * stride] |= bits;
}

void coverCrowd(CoverMask& mask, StripPoints& points, const services::PointStamp& stamp,
                const std::vector<SlotGroup>& columns, SlotRange groups, const StripRows& rows,
                const std::vector<int>& rowsOfStyle) {
    const int first = mask.area.first - stamp.right;
    const int end = mask.area.end + stamp.left;
    services::clearPoints(points.bits, first, end, points.endRow);
    for (std::size_t g = groups.first; g < groups.end; ++g) {
        const SlotGroup& group = columns[g];
        if (group.x < first || group.x >= end) continue;
        setPoints(points.bits.column(group.x), points.bits.stride, rows.of(rowsOfStyle, group),
                  group.end - group.first);
    }
    services::coverStamps(mask, points.bits, stamp);
}

// The rows of a group of points. Many of them are sorted first, by setting their bits, so that each
// place is covered once and most places join.
template <typename Chain>
void addRows(StripPoints& points, Chain& chain, const int* rows, std::size_t count) {
    constexpr std::size_t many = 6;
    if (count < many) {
        for (std::size_t i = 0; i < count; ++i) {
            if (rows[i] != noRow) chain.add(rows[i], rows[i]);
        }
    } else {
        std::vector<std::uint64_t>& words = points.rowBits;
        setPoints(words.data(), 1, rows, count);
        for (std::size_t word = 0; word < words.size(); ++word)
            addBits(chain, words[word], word, -PointBits::rowsAbove);
        std::fill(words.begin(), words.end(), 0);
    }
    chain.finish();
}

}  // namespace

StripPoints stripPoints(const Plot& plot, const Slots& slots, std::size_t count, double ratio) {
    StripPoints points;
    points.ratio = ratio;
    points.endRow = static_cast<int>(plot.bottom());
    // Of many points the marks have their smallest size.
    points.crowded = ratio == 1 && static_cast<double>(count) >= plot.width / 4;
    points.squareSide = slots.squareSide();
    points.circles = stripCircles(slots.circleDiameter() / 2, ratio);
    points.cloudCircles = stripCircles(services::roundToInt32(CloudScale::radius), ratio);
    points.square = services::boxStamp(points.squareSide);
    points.rowBits.resize(
        (static_cast<std::size_t>(points.endRow) + 2 * PointBits::rowsAbove) / 64 + 1);
    return points;
}

void coverStripCircles(CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows) {
    if (points.crowded) {
        coverCrowd(mask, points, points.circles.stamp, columns.circles, groups, rows, rows.circle);
        return;
    }
    for (std::size_t g = groups.first; g < groups.end; ++g) {
        const SlotGroup& group = columns.circles[g];
        const std::int64_t middleX = deviceMiddle(group.x, points.ratio);
        RowChain chain(jointOf(points.circles, middleX), [&](int firstRow, int lastRow) {
            services::coverCircles(mask, points.circles.shape, middleX,
                                   deviceMiddle(firstRow, points.ratio),
                                   deviceMiddle(lastRow, points.ratio));
        });
        addRows(points, chain, rows.of(rows.circle, group), group.end - group.first);
    }
}

void coverStripSquares(CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows) {
    if (points.crowded) {
        coverCrowd(mask, points, points.square, columns.squares, groups, rows, rows.square);
        return;
    }
    const int side = points.squareSide;
    for (std::size_t g = groups.first; g < groups.end; ++g) {
        const SlotGroup& group = columns.squares[g];
        RowChain chain(side, [&](int firstRow, int lastRow) {
            services::coverBox(mask, services::boxPixels(points.ratio, group.x, firstRow, side,
                                                         lastRow - firstRow + side));
        });
        addRows(points, chain, rows.of(rows.square, group), group.end - group.first);
    }
}

PointBits collectCloud(const StripPoints& points, const Plot& plot, const ValueSeries& series) {
    const CloudScale places(plot);
    const Scale scale(series);
    // A little around the square, which clamped points may reach, and a strip may ask for.
    constexpr int room = 8;
    PointBits cloud;
    services::clearPoints(cloud, static_cast<int>(places.left) - room,
                          static_cast<int>(places.left) + static_cast<int>(places.side) + room,
                          points.endRow);

    // In blocks that stay in the first cache. The last value of a block is the first one's
    // predecessor in the next.
    constexpr std::size_t block = 1024;
    std::vector<double> along;
    std::vector<int> x(block);
    std::vector<int> y(block);
    int previousY = noRow;
    for (std::size_t start = 0; start < series.values.size(); start += block) {
        const std::size_t count = std::min(block, series.values.size() - start);
        along.resize(count);
        computeAlong(scale, places.side, series.values.data() + start, count, along.data());
        computeRows(cloudColumnRule(places), along.data(), count, x.data());
        computeRows(cloudRowRule(places), along.data(), count, y.data());
        for (std::size_t i = 0; i < count; ++i) {
            if (x[i] != noRow && previousY != noRow) {
                const std::size_t row = bitRow(previousY);
                cloud.column(x[i])[row / 64 * cloud.stride] |= bitOf(row);
            }
            previousY = y[i];
        }
    }
    return cloud;
}

void coverStripCloud(CoverMask& mask, const StripPoints& points, const PointBits& cloud,
                     int firstColumn, int endColumn) {
    if (points.ratio == 1) {
        services::coverStamps(mask, cloud, points.cloudCircles.stamp);
        return;
    }
    constexpr int reach = 3;
    const int first = std::max(firstColumn - reach, cloud.firstColumn);
    const int end = std::min(endColumn + reach, cloud.firstColumn + cloud.columns);
    for (int column = first; column < end; ++column) {
        const std::int64_t middleX = deviceMiddle(column, points.ratio);
        RowChain chain(jointOf(points.cloudCircles, middleX), [&](int firstRow, int lastRow) {
            services::coverCircles(mask, points.cloudCircles.shape, middleX,
                                   deviceMiddle(firstRow, points.ratio),
                                   deviceMiddle(lastRow, points.ratio));
        });
        for (std::size_t word = 0; word < cloud.words; ++word)
            addBits(chain, cloud.column(column)[word * cloud.stride], word, -PointBits::rowsAbove);
        chain.finish();
    }
}

}  // namespace charts
