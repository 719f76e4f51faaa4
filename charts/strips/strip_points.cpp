#include "charts/strips/strip_points.h"

#include <algorithm>
#include <bit>

#include "charts/strips/mark_rows.h"
#include "services/raster/raster.h"
#include "services/text/numbers.h"

namespace charts {
namespace {

using services::CoverMask;
using services::deviceEdge;
using services::deviceMiddle;
using services::PointBits;

// A circle by its middle, which lies between two pixels or in the middle of one; a square by its
// first pixel and by how many it has.
MarkPlace placeOf(const StripMark& mark, std::int64_t logical, double ratio) {
    if (mark.squareSide == 0) {
        const std::int64_t middle = deviceMiddle(logical, ratio);
        return {static_cast<std::int32_t>(middle >> 1), static_cast<std::uint32_t>(middle & 1)};
    }
    const std::int64_t edge = deviceEdge(logical, ratio);
    const std::int64_t side = deviceEdge(logical + mark.squareSide, ratio) - edge;
    const auto least = static_cast<std::int64_t>(mark.squareSide * ratio);
    return {static_cast<std::int32_t>(edge), static_cast<std::uint32_t>(side - least)};
}

services::PointStamp stampOf(const StripMark& mark, std::size_t column, std::size_t row,
                             double ratio) {
    const auto ofColumn = static_cast<int>(column);
    const auto ofRow = static_cast<int>(row);
    if (mark.squareSide == 0) return services::circleStamp(mark.circle, ofColumn, ofRow);
    const auto least = static_cast<int>(mark.squareSide * ratio);
    return services::boxStamp(least + ofColumn, least + ofRow);
}

// Prepares a crowd of these marks.
void makeStamps(StripMark& mark, int endRow, double ratio) {
    for (std::size_t column = 0; column < markShapes; ++column) {
        for (std::size_t row = 0; row < markShapes; ++row) {
            services::PointStamp& stamp = mark.stamps[column][row];
            stamp = stampOf(mark, column, row, ratio);
            mark.left = std::max(mark.left, stamp.left);
            mark.right = std::max(mark.right, stamp.right);
        }
    }
    for (int row = -PointBits::rowsAbove; row < endRow + PointBits::rowsAbove; ++row)
        mark.rows.push_back(placeOf(mark, row, ratio));
    mark.hasOneShape = std::all_of(mark.rows.begin(), mark.rows.end(), [&](const MarkPlace& row) {
        return row.shape < markShapes && row.shape == mark.rows.front().shape;
    });
}

// Collects the points of one column. Neighbouring samples mostly fall into one word, which is
// written once.
struct ColumnWriter {
    PointBits& points;
    std::uint64_t* column;
    std::size_t word = 0;
    std::uint64_t rows = 0;

    void add(std::int32_t deviceRow) {
        const auto row = static_cast<std::size_t>(std::int64_t{deviceRow} + PointBits::rowsAbove);
        if (row / 64 != word) finish();
        word = row / 64;
        rows |= std::uint64_t{1} << (row % 64);
    }
    // Also what is too far above to have a number has no word: marks do not reach that far.
    void finish() {
        if (rows != 0 && word < points.words) points.add(column, word, rows);
        rows = 0;
    }
};

// The marks of one strip, column by column.
struct Crowd {
    StripPoints& points;
    const StripMark& mark;
    int first;  // device columns from which a mark touches the strip
    int end;
};

Crowd beginCrowd(StripPoints& points, const StripMark& mark, const CoverMask& mask) {
    const Crowd crowd = {points, mark, mask.area.first - mark.right, mask.area.end + mark.left};
    for (auto& ofColumn : points.bits) {
        for (PointBits& bits : ofColumn)
            services::clearPoints(bits, crowd.first, crowd.end, mask.area.height);
    }
    return crowd;
}

void coverMark(CoverMask& mask, const StripMark& mark, int x, int y, double ratio) {
    if (mark.squareSide == 0) {
        services::coverCircle(mask, mark.circle, deviceMiddle(x, ratio), deviceMiddle(y, ratio));
    } else {
        services::coverBox(mask,
                           services::boxPixels(ratio, x, y, mark.squareSide, mark.squareSide));
    }
}

// Calls addAll(add) with an add(logical row) that adds a mark in this logical column. At a few odd
// ratios, such as 13/6, rounding makes single squares of yet another size; they are covered by
// themselves.
template <typename AddAll>
void addColumn(CoverMask& mask, const Crowd& crowd, int column, AddAll addAll) {
    const MarkPlace place = placeOf(crowd.mark, column, crowd.points.ratio);
    if (place.pixel < crowd.first || place.pixel >= crowd.end) return;
    const auto coverRow = [&](int row) {
        coverMark(mask, crowd.mark, column, row, crowd.points.ratio);
    };
    if (place.shape >= markShapes) {
        addAll(coverRow);
        return;
    }
    // A few rows around the plot may be those of clamped points of a low one.
    const MarkPlace* const rows = crowd.mark.rows.data() + PointBits::rowsAbove;
    std::array<PointBits, markShapes>& bits = crowd.points.bits[place.shape];
    if (crowd.mark.hasOneShape) {
        PointBits& points = bits[rows->shape];
        ColumnWriter writer = {points, points.column(place.pixel)};
        addAll([rows, &writer](int row) { writer.add(rows[row].pixel); });
        writer.finish();
        return;
    }
    std::array<ColumnWriter, markShapes> writers = {
        ColumnWriter{bits[0], bits[0].column(place.pixel)},
        ColumnWriter{bits[1], bits[1].column(place.pixel)}};
    addAll([&](int row) {
        if (rows[row].shape >= markShapes) {
            coverRow(row);
        } else {
            writers[rows[row].shape].add(rows[row].pixel);
        }
    });
    for (ColumnWriter& writer : writers)
        writer.finish();
}

void coverCrowd(CoverMask& mask, const Crowd& crowd) {
    for (std::size_t column = 0; column < markShapes; ++column) {
        for (std::size_t row = 0; row < markShapes; ++row) {
            services::coverStamps(mask, crowd.points.bits[column][row],
                                  crowd.mark.stamps[column][row], crowd.points.room);
        }
    }
}

void coverSlots(CoverMask& mask, StripPoints& points, const StripMark& mark,
                const std::vector<SlotGroup>& columns, SlotRange groups, const StripRows& rows,
                const std::vector<int>& rowsOfStyle) {
    const auto forEachRow = [&](const SlotGroup& group, auto act) {
        const int* const first = rows.of(rowsOfStyle, group);
        for (const int* row = first; row < first + (group.end - group.first); ++row) {
            if (*row != noRow) act(*row);
        }
    };
    if (!points.crowded) {
        for (std::size_t g = groups.first; g < groups.end; ++g) {
            forEachRow(columns[g],
                       [&](int row) { coverMark(mask, mark, columns[g].x, row, points.ratio); });
        }
        return;
    }
    const Crowd crowd = beginCrowd(points, mark, mask);
    for (std::size_t g = groups.first; g < groups.end; ++g)
        addColumn(mask, crowd, columns[g].x, [&](auto add) { forEachRow(columns[g], add); });
    coverCrowd(mask, crowd);
}

}  // namespace

StripPoints stripPoints(const services::Surface& surface, const Plot& plot, const Slots& slots,
                        std::size_t count) {
    StripPoints points;
    const double ratio = surface.pixelRatio;
    points.ratio = ratio;
    points.endRow = static_cast<int>(plot.bottom());
    points.circle.circle = services::circleShape(slots.circleDiameter() / 2, ratio);
    points.square.squareSide = slots.squareSide();
    points.cloudCircle.circle =
        services::circleShape(services::roundToInt32(CloudScale::radius), ratio);
    // Of many points the marks have their smallest size: then stamps reach less than a word.
    constexpr double largestRatio = 4;
    points.crowdsAreStamped = ratio <= largestRatio;
    points.crowded = points.crowdsAreStamped && static_cast<double>(count) >= plot.width / 4;
    if (points.crowded) {
        makeStamps(points.circle, points.endRow, ratio);
        makeStamps(points.square, points.endRow, ratio);
    }
    if (points.crowdsAreStamped) makeStamps(points.cloudCircle, points.endRow, ratio);
    return points;
}

void coverStripCircles(CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows) {
    coverSlots(mask, points, points.circle, columns.circles, groups, rows, rows.circle);
}

void coverStripSquares(CoverMask& mask, StripPoints& points, const SlotColumns& columns,
                       SlotRange groups, const StripRows& rows) {
    coverSlots(mask, points, points.square, columns.squares, groups, rows, rows.square);
}

PointBits collectCloud(const StripPoints& points, const Plot& plot, const ValueSeries& series) {
    const CloudScale places(plot);
    const Scale scale(series);
    // A little around the square, which clamped points may reach.
    constexpr int room = 8;
    PointBits cloud;
    services::clearPoints(cloud, static_cast<int>(places.left) - room,
                          static_cast<int>(places.left) + static_cast<int>(places.side) + room,
                          points.endRow);

    // In blocks that stay in the first cache. The last value of a block is the first one's
    // predecessor in the next.
    constexpr std::size_t block = 1024;
    std::vector<double> along(block);
    std::vector<int> x(block);
    std::vector<int> y(block);
    int previousY = noRow;
    for (std::size_t start = 0; start < series.values.size(); start += block) {
        const std::size_t count = std::min(block, series.values.size() - start);
        computeAlong(scale, places.side, series.values.data() + start, count, along.data());
        computeRows(cloudColumnRule(places), along.data(), count, x.data());
        computeRows(cloudRowRule(places), along.data(), count, y.data());
        for (std::size_t i = 0; i < count; ++i) {
            if (x[i] != noRow && previousY != noRow) {
                const auto row =
                    static_cast<std::size_t>(std::int64_t{previousY} + PointBits::rowsAbove);
                cloud.add(cloud.column(x[i]), row / 64, std::uint64_t{1} << (row % 64));
            }
            previousY = y[i];
        }
    }
    return cloud;
}

void coverStripCloud(CoverMask& mask, StripPoints& points, const PointBits& cloud, int firstColumn,
                     int endColumn) {
    const StripMark& mark = points.cloudCircle;
    if (points.ratio == 1) {
        // A circle's middle is the middle of its pixel.
        services::coverStamps(mask, cloud, mark.stamps[1][1], points.room);
        return;
    }
    const int reach = services::roundToInt32(CloudScale::radius) + 1;
    const int first = std::max(firstColumn - reach, cloud.firstColumn);
    const int end = std::min(endColumn + reach, cloud.firstColumn + cloud.columns);
    const auto forEachRow = [&cloud](int column, auto act) {
        for (std::size_t word = cloud.firstWord; word < cloud.endWord; ++word) {
            const std::uint64_t rows = cloud.column(column)[word * cloud.stride];
            for (std::uint64_t left = rows; left != 0; left &= left - 1) {
                act(static_cast<int>(word * 64) + std::countr_zero(left) - PointBits::rowsAbove);
            }
        }
    };
    if (!points.crowdsAreStamped) {
        for (int column = first; column < end; ++column) {
            forEachRow(column, [&](int row) { coverMark(mask, mark, column, row, points.ratio); });
        }
        return;
    }
    const Crowd crowd = beginCrowd(points, mark, mask);
    for (int column = first; column < end; ++column)
        addColumn(mask, crowd, column, [&](auto add) { forEachRow(column, add); });
    coverCrowd(mask, crowd);
}

}  // namespace charts
