#include "charts/mark_strips.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "charts/mark_painting.h"
#include "charts/mark_rows.h"
#include "charts/mark_scale.h"
#include "services/raster_strip.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

using services::deviceEdge;
using services::StripArea;

// Neighbouring values whose marks begin in the same column.
struct SlotGroup {
    int x;
    int shiftedX;  // of a line's second stroke
    std::size_t first;
    std::size_t end;
};

struct SlotRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

// Where the values stand along x: the same for all values of a chart.
struct SlotColumns {
    std::vector<SlotRange> bars;  // by column of the image: whose bars cover it
    std::vector<SlotGroup> line;
    std::vector<SlotGroup> circles;
    std::vector<SlotGroup> squares;
};

template <typename Place>
std::vector<SlotGroup> groupSlots(std::size_t count, Place place) {
    std::vector<SlotGroup> groups;
    for (std::size_t i = 0; i < count; ++i) {
        SlotGroup group = {0, 0, i, i + 1};
        place(i, group);
        if (!groups.empty() && groups.back().x == group.x &&
            groups.back().shiftedX == group.shiftedX) {
            groups.back().end = group.end;
        } else {
            groups.push_back(group);
        }
    }
    return groups;
}

std::vector<SlotRange> barRanges(const Plot& plot, const Slots& slots, std::size_t count,
                                 int imageWidth) {
    std::vector<int> left(count);
    for (std::size_t i = 0; i < count; ++i)
        left[i] = rowOf(slots.barLeft(plot, i));
    std::vector<SlotRange> ranges(static_cast<std::size_t>(imageWidth));
    SlotRange range;
    for (int x = 0; x < imageWidth; ++x) {
        while (range.first < count && left[range.first] + slots.barPixels <= x)
            ++range.first;
        while (range.end < count && left[range.end] <= x)
            ++range.end;
        ranges[static_cast<std::size_t>(x)] = range;
    }
    return ranges;
}

SlotColumns slotColumns(const ChartLayers& layers, const Plot& plot, const Slots& slots,
                        std::size_t count, int imageWidth) {
    const auto anyHas = [&layers](Option option) {
        return std::any_of(layers.values.begin(), layers.values.end(),
                           [option](const ValueLayer& layer) { return layer.has(option); });
    };
    SlotColumns columns;
    if (anyHas(Option::bars)) columns.bars = barRanges(plot, slots, count, imageWidth);
    if (anyHas(Option::line)) {
        columns.line = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            const double x = slots.linePoint(plot, i);
            group.x = rowOf(x);
            group.shiftedX = rowOf(x + 1);
        });
    }
    if (anyHas(Option::circles)) {
        columns.circles = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            group.x = rowOf(circleColumn(plot, slots, i));
        });
    }
    if (anyHas(Option::squares)) {
        columns.squares = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            group.x = rowOf(squareColumn(plot, slots, i));
        });
    }
    return columns;
}

// The groups with x from `low` to `high`, both included; `around` of them more on both sides.
SlotRange groupsBetween(const std::vector<SlotGroup>& groups, int low, int high,
                        std::size_t around) {
    const auto first = std::partition_point(groups.begin(), groups.end(),
                                            [low](const SlotGroup& g) { return g.x < low; });
    const auto end = std::partition_point(first, groups.end(),
                                          [high](const SlotGroup& g) { return g.x <= high; });
    const auto before = static_cast<std::size_t>(first - groups.begin());
    const auto after = static_cast<std::size_t>(end - groups.begin());
    return {before - std::min(before, around), std::min(after + around, groups.size())};
}

// Points of a cloud, joined where they fall on each other: a bit for each logical pixel of the
// square and a little around it, which clamped points may reach.
struct CloudPoints {
    static constexpr int room = 8;
    int left = 0;
    int top = 0;
    int columns = 0;
    std::size_t words = 0;  // of each column
    std::vector<std::uint64_t> bits;
};

// The rows of one value's marks in the columns of a strip, from sample `first` on.
struct StripRows {
    std::size_t first = 0;
    std::vector<double> along;         // the plot's height, exactly
    std::vector<int> line;             // also the top of the bar
    std::vector<int> height;           // of the bar
    std::vector<std::int16_t> barTop;  // in the image; noBar for bars without a pixel
    bool unevenBars = false;           // some end above or below the plot's bottom
    std::vector<int> circle;
    std::vector<int> square;
};

void computeRows(const RowRule& rule, const std::vector<double>& along, std::vector<int>& rows) {
    rows.resize(along.size());
    computeRows(rule, along.data(), along.size(), rows.data());
}

// Eight rows that the processor compares at once.
using EightRows = std::int16_t __attribute__((vector_size(16)));
static_assert(services::mostBlends == 8);

constexpr std::int16_t noBar = std::numeric_limits<std::int16_t>::max();

// The highest bars of a column: one that covers a pixel for more than the eighth time changes
// nothing any more. Ascending rows, then noBar.
struct BarTops {
    EightRows rows = {noBar, noBar, noBar, noBar, noBar, noBar, noBar, noBar};
};

// Each place gets the lesser of its row and the new one, or the row before it if that is larger.
void addBar(BarTops& tops, std::int16_t top) {
    const EightRows added = EightRows{} + top;
    const EightRows least = EightRows{} + std::numeric_limits<std::int16_t>::min();
    const EightRows before = __builtin_shufflevector(tops.rows, least, 8, 0, 1, 2, 3, 4, 5, 6);
    const EightRows lesser = tops.rows < added ? tops.rows : added;
    tops.rows = before > lesser ? before : lesser;
}

// The slots whose marks may touch the strip: of these styles, as groups, and of all.
struct StripSlots {
    SlotRange line;
    SlotRange circles;
    SlotRange squares;
    SlotRange all;
};

// What one drawing works with.
struct Painting {
    services::Surface& surface;
    const ChartLayers& layers;
    double ratio;
    Plot plot;
    Slots slots;
    SlotColumns columns;
    services::CircleShape circle;
    services::CircleShape cloudCircle;
    std::vector<CloudPoints> clouds = {};  // by layer

    // Of the strip being painted, in logical columns.
    int firstColumn = 0;
    int endColumn = 0;
    StripSlots slotsOfStrip = {};
    services::StripPixels pixels = {};
    StripRows rows = {};
    std::vector<std::uint64_t> rowBits = {};  // all 0 between uses
    services::CoverMask trend = {};
    std::vector<services::CoverMask> masks = {};  // by layer
};

StripArea stripArea(const Painting& painting) {
    const auto edge = [&painting](int column) {
        return static_cast<int>(std::min<std::int64_t>(deviceEdge(column, painting.ratio),
                                                       painting.surface.deviceWidth));
    };
    return {edge(painting.firstColumn), edge(painting.endColumn), painting.surface.deviceHeight};
}

// How many rows apart two circles of this shape may stand without a gap between them.
int jointRows(const services::CircleShape& shape, std::int64_t middleX, double ratio) {
    const auto joint = static_cast<double>(shape.joint[static_cast<std::size_t>(middleX & 1)]);
    const double rounding = ratio == std::floor(ratio) ? 0 : 1;
    return static_cast<int>(std::max(0.0, std::floor((joint - rounding) / (2 * ratio))));
}

// Joins points of one column whose marks leave no gap: act(first row, last row).
template <typename Act>
class RowChain {
  public:
    RowChain(int jointDistance, Act action) : joint(jointDistance), act(action) {}

    void add(int firstRow, int lastRow) {
        if (open && firstRow <= last + joint && lastRow >= first - joint) {
            first = std::min(first, firstRow);
            last = std::max(last, lastRow);
            return;
        }
        finish();
        open = true;
        first = firstRow;
        last = lastRow;
    }
    void finish() {
        if (open) act(first, last);
        open = false;
    }

  private:
    int joint;
    Act act;
    bool open = false;
    int first = 0;
    int last = 0;
};

// The set bits as rows, counted from `top`, from the top down.
template <typename Chain>
void addBits(Chain& chain, const std::uint64_t* words, std::size_t firstWord, std::size_t endWord,
             int top) {
    for (std::size_t word = firstWord; word < endWord; ++word) {
        std::uint64_t bits = words[word];
        while (bits != 0) {
            const int start = std::countr_zero(bits);
            const int length = std::countr_one(bits >> start);
            const int row = top + static_cast<int>(word * 64) + start;
            chain.add(row, row + length - 1);
            if (start + length == 64) break;
            bits &= ~std::uint64_t{0} << (start + length);
        }
    }
}

// Points of one column as bits of their rows, from `rowsAbove` rows above the image on.
constexpr int rowsAbove = 64;

// The rows of a group of points that were kept inside the plot. Many of them are sorted first, by
// setting their bits, so that each place is covered once and most places join. What is left of them
// in a crowd is covered by coverCrowd(bits) at once, where that is possible.
template <typename Chain, typename CoverCrowd>
void addRows(Painting& painting, Chain& chain, const int* rows, std::size_t count,
             CoverCrowd coverCrowd) {
    constexpr std::size_t many = 6;
    constexpr std::size_t crowd = 24;
    if (count < many) {
        for (std::size_t i = 0; i < count; ++i) {
            if (rows[i] != noRow) chain.add(rows[i], rows[i]);
        }
        chain.finish();
        return;
    }
    // Clamped points of a low plot may stand a little outside, above as well as below.
    std::vector<std::uint64_t>& words = painting.rowBits;
    words.resize((static_cast<std::size_t>(painting.plot.bottom()) + 2 * rowsAbove) / 64 + 1);
    std::size_t firstWord = words.size();
    std::size_t endWord = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (rows[i] == noRow) continue;
        const auto row = static_cast<std::size_t>(std::int64_t{rows[i]} + rowsAbove);
        firstWord = std::min(firstWord, row / 64);
        endWord = std::max(endWord, row / 64 + 1);
        words[row / 64] |= std::uint64_t{1} << (row % 64);
    }
    // Crowds that are spread over many words: a crowd in a few rows joins anyway.
    if (painting.ratio != 1 || count < crowd || endWord < firstWord + crowd / 6) {
        addBits(chain, words.data(), firstWord, endWord, -rowsAbove);
        chain.finish();
    } else {
        coverCrowd(words);
    }
    for (std::size_t word = firstWord; word < endWord; ++word)
        words[word] = 0;
}

void coverCloud(const Painting& painting, services::CoverMask& mask, const CloudPoints& cloud) {
    constexpr int reach = 3;
    const int first = std::max(painting.firstColumn - reach - cloud.left, 0);
    const int end = std::min(painting.endColumn + reach - cloud.left, cloud.columns);
    for (int column = first; column < end; ++column) {
        const std::int64_t middleX = services::deviceMiddle(cloud.left + column, painting.ratio);
        RowChain chain(jointRows(painting.cloudCircle, middleX, painting.ratio),
                       [&](int firstRow, int lastRow) {
                           services::coverCircles(mask, painting.cloudCircle, middleX,
                                                  services::deviceMiddle(firstRow, painting.ratio),
                                                  services::deviceMiddle(lastRow, painting.ratio));
                       });
        addBits(chain, cloud.bits.data() + static_cast<std::size_t>(column) * cloud.words, 0,
                cloud.words, cloud.top);
        chain.finish();
    }
}

void collectCloud(const Painting& painting, const ValueSeries& series, CloudPoints& cloud) {
    const CloudScale places(painting.plot);
    const Scale scale(series);
    cloud.left = static_cast<int>(places.left) - CloudPoints::room;
    cloud.top = static_cast<int>(places.top) - CloudPoints::room;
    cloud.columns = static_cast<int>(places.side) + 2 * CloudPoints::room;
    cloud.words = (static_cast<std::size_t>(cloud.columns) + 63) / 64;
    cloud.bits.assign(static_cast<std::size_t>(cloud.columns) * cloud.words, 0);

    // In blocks that stay in the first cache. The last value of a block is the first one's
    // predecessor in the next.
    constexpr std::size_t block = 1024;
    std::vector<double> along;
    std::vector<int> x;
    std::vector<int> y;
    int previousY = noRow;
    for (std::size_t start = 0; start < series.values.size(); start += block) {
        const std::size_t count = std::min(block, series.values.size() - start);
        along.resize(count);
        computeAlong(scale, places.side, series.values.data() + start, count, along.data());
        computeRows(cloudColumnRule(places), along, x);
        computeRows(cloudRowRule(places), along, y);
        for (std::size_t i = 0; i < count; ++i) {
            if (x[i] != noRow && previousY != noRow) {
                const auto row = static_cast<std::size_t>(previousY - cloud.top);
                cloud.bits[static_cast<std::size_t>(x[i] - cloud.left) * cloud.words + row / 64] |=
                    std::uint64_t{1} << (row % 64);
            }
            previousY = y[i];
        }
    }
}

// The slots whose marks may touch the strip.
void chooseSlots(Painting& painting) {
    const SlotColumns& columns = painting.columns;
    StripSlots& slots = painting.slotsOfStrip;
    // Lines reach two columns beyond their x to the right at most, and from a point before the
    // strip to one behind it.
    constexpr int lineReach = 4;
    const int circleReach = painting.slots.circleDiameter() / 2 + 2;
    slots.line =
        groupsBetween(columns.line, painting.firstColumn - lineReach, painting.endColumn, 1);
    slots.circles = groupsBetween(columns.circles, painting.firstColumn - circleReach,
                                  painting.endColumn + circleReach, 0);
    slots.squares = groupsBetween(
        columns.squares, painting.firstColumn - painting.slots.squareSide(), painting.endColumn, 0);
    slots.all = {std::numeric_limits<std::size_t>::max(), 0};
    const auto include = [&slots](SlotRange range) {
        if (range.first >= range.end) return;
        slots.all.first = std::min(slots.all.first, range.first);
        slots.all.end = std::max(slots.all.end, range.end);
    };
    const auto includeGroups = [&include](const std::vector<SlotGroup>& groups, SlotRange range) {
        if (range.first < range.end)
            include({groups[range.first].first, groups[range.end - 1].end});
    };
    includeGroups(columns.line, slots.line);
    includeGroups(columns.circles, slots.circles);
    includeGroups(columns.squares, slots.squares);
    if (!columns.bars.empty()) {
        include({columns.bars[static_cast<std::size_t>(painting.firstColumn)].first,
                 columns.bars[static_cast<std::size_t>(painting.endColumn) - 1].end});
    }
    if (slots.all.first > slots.all.end) slots.all = {};
}

// All bars go down to the plot's bottom, but for the rounding of their top and height: halves may
// end a bar one row higher or lower.
void computeBarTops(StripRows& rows, int bottom) {
    const std::size_t count = rows.line.size();
    rows.barTop.resize(count);
    const int* const top = rows.line.data();
    const int* const height = rows.height.data();
    std::int16_t* const to = rows.barTop.data();
    int uneven = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isBar = height[i] >= 1 && top[i] != noRow;
        const int evenTop = bottom - (isBar ? height[i] : 0);
        uneven |= isBar && top[i] != evenTop ? 1 : 0;
        const int inImage = std::min(std::max(top[i], 0), noBar - 1);
        to[i] = static_cast<std::int16_t>(isBar ? inImage : noBar);
    }
    rows.unevenBars = uneven != 0;
}

void computeStripRows(Painting& painting, const ValueLayer& layer) {
    const SlotRange slots = painting.slotsOfStrip.all;
    const Plot& plot = painting.plot;
    StripRows& rows = painting.rows;
    rows.first = slots.first;
    rows.along.resize(slots.end - slots.first);
    computeAlong(Scale(*layer.series), plot.height, layer.series->values.data() + slots.first,
                 rows.along.size(), rows.along.data());
    if (layer.has(Option::bars) || layer.has(Option::line)) {
        computeRows(lineRule(plot), rows.along, rows.line);
    }
    if (layer.has(Option::bars)) {
        computeRows(heightRule(), rows.along, rows.height);
        computeBarTops(rows, static_cast<int>(plot.bottom()));
    }
    if (layer.has(Option::circles)) {
        computeRows(circleRule(plot, painting.slots), rows.along, rows.circle);
    }
    if (layer.has(Option::squares)) {
        computeRows(squareRule(plot, painting.slots), rows.along, rows.square);
    }
}

// The device rows from one logical row to another, in a column of the strip.
void blendRows(Painting& painting, std::uint32_t* column, std::int64_t first, std::int64_t end,
               std::uint32_t halfPixel, int times) {
    const std::int64_t height = painting.pixels.area.height;
    const std::int64_t top = std::clamp<std::int64_t>(deviceEdge(first, painting.ratio), 0, height);
    const std::int64_t bottom =
        std::clamp<std::int64_t>(deviceEdge(end, painting.ratio), 0, height);
    if (top >= bottom) return;
    services::blendColumn(column + top, static_cast<std::size_t>(bottom - top), halfPixel, times);
}

BarTops collectBars(const StripRows& rows, SlotRange slots) {
    BarTops tops;
    for (std::size_t i = slots.first - rows.first; i < slots.end - rows.first; ++i)
        addBar(tops, rows.barTop[i]);
    return tops;
}

// How many bars of the column cover a row, up to the most that matter.
int barsInRow(const StripRows& rows, SlotRange slots, int row) {
    int number = 0;
    for (std::size_t i = slots.first - rows.first; i < slots.end - rows.first; ++i) {
        if (rows.barTop[i] == noBar) continue;
        if (rows.line[i] <= row && row < rows.line[i] + rows.height[i]) ++number;
    }
    return std::min(number, services::mostBlends);
}

// From the bars' tops down to one row.
void paintBarColumn(Painting& painting, std::uint32_t* pixels, const BarTops& tops, int bottom,
                    std::uint32_t halfPixel) {
    for (int k = 0; k < services::mostBlends; ++k) {
        const int top = tops.rows[k];
        if (top >= bottom) break;
        const int next =
            k + 1 < services::mostBlends ? std::min<int>(tops.rows[k + 1], bottom) : bottom;
        if (next > top) blendRows(painting, pixels, top, next, halfPixel, k + 1);
    }
}

void paintStripBars(Painting& painting, const ValueLayer& layer) {
    const int bottom = static_cast<int>(painting.plot.bottom());
    const std::uint32_t halfPixel = services::halfPixelOf(layer.colour);
    for (int x = painting.firstColumn; x < painting.endColumn; ++x) {
        const SlotRange slots = painting.columns.bars[static_cast<std::size_t>(x)];
        if (slots.first >= slots.end) continue;
        const BarTops tops = collectBars(painting.rows, slots);
        // Where bars end differently, the last two rows are counted by themselves.
        const bool uneven = painting.rows.unevenBars;
        const int inLastRow = uneven ? barsInRow(painting.rows, slots, bottom - 1) : 0;
        const int belowLastRow = uneven ? barsInRow(painting.rows, slots, bottom) : 0;
        const StripArea& area = painting.pixels.area;
        const std::int64_t end =
            std::min<std::int64_t>(deviceEdge(x + 1, painting.ratio), area.end);
        for (std::int64_t device = deviceEdge(x, painting.ratio); device < end; ++device) {
            std::uint32_t* const column =
                painting.pixels.column(static_cast<int>(device - area.first));
            paintBarColumn(painting, column, tops, uneven ? bottom - 1 : bottom, halfPixel);
            if (!uneven) continue;
            blendRows(painting, column, bottom - 1, bottom, halfPixel, inLastRow);
            blendRows(painting, column, bottom, bottom + 1, halfPixel, belowLastRow);
        }
    }
}

// Both strokes of the line from one point to another.
void coverSegment(const Painting& painting, services::CoverMask& mask, const SlotGroup& from,
                  int fromRow, const SlotGroup& to, int toRow) {
    const double s = painting.ratio;
    const std::int64_t thickness = services::lineThickness(s);
    const std::int64_t y1 = deviceEdge(fromRow, s);
    const std::int64_t y2 = deviceEdge(toRow, s);
    services::coverLine(mask, deviceEdge(from.x, s), y1, deviceEdge(to.x, s), y2, thickness);
    services::coverLine(mask, deviceEdge(from.shiftedX, s), y1, deviceEdge(to.shiftedX, s), y2,
                        thickness);
}

// Between points of one column the line runs up and down: together from the highest to the lowest
// of them.
void coverLine(const Painting& painting, services::CoverMask& mask) {
    const SlotRange range = painting.slotsOfStrip.line;
    const StripRows& rows = painting.rows;
    for (std::size_t g = range.first; g < range.end; ++g) {
        const SlotGroup& group = painting.columns.line[g];
        const int* const first = rows.line.data() + (group.first - rows.first);
        const int* const end = rows.line.data() + (group.end - rows.first);
        int highest = *first;
        int lowest = *first;
        for (const int* row = first + 1; row < end; ++row) {
            highest = std::min(highest, *row);
            lowest = std::max(lowest, *row);
        }
        if (highest != noRow) {
            if (end - first > 1) coverSegment(painting, mask, group, highest, group, lowest);
        } else {
            for (const int* row = first; row + 1 < end; ++row) {
                if (row[0] == noRow || row[1] == noRow) continue;
                coverSegment(painting, mask, group, row[0], group, row[1]);
            }
        }
        if (g + 1 < range.end && end[-1] != noRow && *end != noRow) {
            coverSegment(painting, mask, group, end[-1], painting.columns.line[g + 1], *end);
        }
    }
}

void coverCirclePoints(Painting& painting, services::CoverMask& mask) {
    const SlotRange range = painting.slotsOfStrip.circles;
    const StripRows& rows = painting.rows;
    for (std::size_t g = range.first; g < range.end; ++g) {
        const SlotGroup& group = painting.columns.circles[g];
        const std::int64_t middleX = services::deviceMiddle(group.x, painting.ratio);
        RowChain chain(jointRows(painting.circle, middleX, painting.ratio),
                       [&](int firstRow, int lastRow) {
                           services::coverCircles(mask, painting.circle, middleX,
                                                  services::deviceMiddle(firstRow, painting.ratio),
                                                  services::deviceMiddle(lastRow, painting.ratio));
                       });
        addRows(painting, chain, rows.circle.data() + (group.first - rows.first),
                group.end - group.first, [&](const std::vector<std::uint64_t>& centres) {
                    services::coverCircleCrowd(mask, painting.circle, middleX, centres);
                });
    }
}

void coverSquares(Painting& painting, services::CoverMask& mask) {
    const SlotRange range = painting.slotsOfStrip.squares;
    const StripRows& rows = painting.rows;
    const int side = painting.slots.squareSide();
    for (std::size_t g = range.first; g < range.end; ++g) {
        const SlotGroup& group = painting.columns.squares[g];
        RowChain chain(side, [&](int firstRow, int lastRow) {
            services::coverBox(mask, services::boxPixels(painting.ratio, group.x, firstRow, side,
                                                         lastRow - firstRow + side));
        });
        addRows(painting, chain, rows.square.data() + (group.first - rows.first),
                group.end - group.first, [&](const std::vector<std::uint64_t>& tops) {
                    services::coverBoxCrowd(mask, group.x, side, tops);
                });
    }
}

bool hasOpaqueStyle(const ValueLayer& layer) {
    return layer.has(Option::line) || layer.has(Option::circles) || layer.has(Option::squares) ||
           layer.has(Option::cloud);
}

bool usesSlots(const ValueLayer& layer) {
    return layer.has(Option::bars) || layer.has(Option::line) || layer.has(Option::circles) ||
           layer.has(Option::squares);
}

// Blends the value's bars and collects what its other styles cover. They have one colour and come
// one after the other.
void paintStripStyles(Painting& painting, std::size_t index) {
    const ValueLayer& layer = painting.layers.values[index];
    if (usesSlots(layer)) computeStripRows(painting, layer);
    if (layer.has(Option::bars)) paintStripBars(painting, layer);
    if (!hasOpaqueStyle(layer)) return;
    services::CoverMask& mask = painting.masks[index];
    services::clearMask(mask, painting.pixels.area);
    if (layer.has(Option::line)) coverLine(painting, mask);
    if (layer.has(Option::circles)) coverCirclePoints(painting, mask);
    if (layer.has(Option::squares)) coverSquares(painting, mask);
    if (layer.has(Option::cloud)) coverCloud(painting, mask, painting.clouds[index]);
}

// Letters may reach a little beyond their box.
int textRoom(const PlacedText& text) {
    return services::textHeight(text.text);
}

// The columns of the image that the text may touch; where it stands outside, the nearest one.
SlotRange textColumns(const Painting& painting, const PlacedText& text) {
    const std::int64_t last = std::int64_t{painting.surface.width} - 1;
    const std::int64_t first = std::int64_t{text.x} - textRoom(text);
    const std::int64_t end = std::int64_t{text.x} + services::textWidth(text.text) + textRoom(text);
    const std::int64_t from = std::clamp<std::int64_t>(first, 0, last);
    return {static_cast<std::size_t>(from),
            static_cast<std::size_t>(std::clamp<std::int64_t>(end, from + 1, last + 1))};
}

// The toolkit writes into the surface, over what the strip has there so far.
void paintStripText(Painting& painting, const std::optional<PlacedText>& text) {
    if (!text) return;
    const auto column = static_cast<int>(textColumns(painting, *text).first);
    if (column < painting.firstColumn || column >= painting.endColumn) return;
    const std::int64_t height = services::textHeight(text->text);
    const auto row = [&painting](std::int64_t logical) {
        return static_cast<int>(std::clamp<std::int64_t>(deviceEdge(logical, painting.ratio), 0,
                                                         painting.pixels.area.height));
    };
    const int top = row(text->y - textRoom(*text));
    const int bottom = row(text->y + height + textRoom(*text));
    services::storeStrip(painting.surface, painting.pixels, top, bottom);
    services::drawText(painting.surface, text->x, text->y, text->text, text->colour);
    services::loadStrip(painting.pixels, painting.surface, top, bottom);
}

void paintStripOverlays(Painting& painting, std::size_t index) {
    const ValueLayer& layer = painting.layers.values[index];
    const double s = painting.ratio;
    if (hasOpaqueStyle(layer)) {
        services::fillCovered(painting.pixels, painting.masks[index], layer.colour);
    }
    paintStripText(painting, layer.cloudText);
    if (layer.mean) {
        services::fillStripBox(painting.pixels, meanPixels(s, painting.layers.frame, *layer.mean),
                               layer.colour);
    }
    paintStripText(painting, layer.meanText);
    if (layer.trend) {
        const TrendMark& trend = *layer.trend;
        services::clearMask(painting.trend, painting.pixels.area);
        services::coverLine(painting.trend, deviceEdge(trend.x1, s), deviceEdge(trend.y1, s),
                            deviceEdge(trend.x2, s), deviceEdge(trend.y2, s),
                            services::lineThickness(s));
        services::fillCovered(painting.pixels, painting.trend, trendColour);
    }
    paintStripText(painting, layer.trendText);
}

void paintStrip(Painting& painting) {
    services::fillStrip(painting.pixels, stripArea(painting), services::white);
    if (painting.pixels.area.columns() <= 0) return;
    for (const GridRule& rule : painting.layers.grid) {
        services::fillStripBox(painting.pixels, rulePixels(painting.ratio, rule), ruleColour(rule));
    }
    chooseSlots(painting);
    for (std::size_t i = 0; i < painting.layers.values.size(); ++i)
        paintStripStyles(painting, i);
    for (std::size_t i = 0; i < painting.layers.values.size(); ++i)
        paintStripOverlays(painting, i);
    services::storeStrip(painting.surface, painting.pixels, 0, painting.pixels.area.height);
}

// Whether a strip may end before each column of the image: no text stands across the end.
std::vector<bool> possibleEnds(const Painting& painting) {
    std::vector<bool> ends(static_cast<std::size_t>(painting.surface.width) + 1, true);
    for (const ValueLayer& layer : painting.layers.values) {
        for (const auto* text : {&layer.cloudText, &layer.meanText, &layer.trendText}) {
            if (!*text) continue;
            const SlotRange columns = textColumns(painting, **text);
            for (std::size_t x = columns.first + 1; x < columns.end; ++x)
                ends[x] = false;
        }
    }
    return ends;
}

void paintStrips(Painting& painting) {
    constexpr double deviceColumns = 64;
    const int columns = std::max(1, static_cast<int>(deviceColumns / painting.ratio));
    const std::vector<bool> ends = possibleEnds(painting);
    const int width = painting.surface.width;
    for (painting.firstColumn = 0; painting.firstColumn < width;
         painting.firstColumn = painting.endColumn) {
        painting.endColumn = std::min(painting.firstColumn + columns, width);
        while (!ends[static_cast<std::size_t>(painting.endColumn)])
            ++painting.endColumn;
        paintStrip(painting);
    }
}

// Values below the minimum or above the maximum, of which there are hardly ever any, can stand so
// far outside that their row is the one that stands for none.
bool mayStandInStrips(const Plot& plot, const ValueSeries& series) {
    const Scale scale(series);
    return std::all_of(series.values.begin(), series.values.end(), [&](float value) {
        if (value >= series.minimum && value <= series.maximum) return true;
        return !(heightOf(plot, scale, static_cast<double>(value)) < -2147483647.0);
    });
}

// Strips need a plot with room, so that positions along x grow from slot to slot and stay small,
// and values of one number.
bool canPaintStrips(const services::Surface& surface, const ChartLayers& layers) {
    if (surface.pixels.empty() || layers.values.empty()) return false;
    const Plot plot(layers.frame);
    if (plot.width < 1 || plot.height < 1) return false;
    const std::size_t count = layers.values.front().series->values.size();
    return count > 0 &&
           std::all_of(layers.values.begin(), layers.values.end(), [&](const ValueLayer& layer) {
               return layer.series->values.size() == count && mayStandInStrips(plot, *layer.series);
           });
}

// So few opaque marks are painted sooner than a strip is turned into rows of the surface.
bool hasFewMarks(const ChartLayers& layers) {
    constexpr std::size_t few = 2000;
    std::size_t marks = 0;
    for (const ValueLayer& layer : layers.values) {
        if (layer.has(Option::bars)) return false;
        const auto styles = std::count(layer.styles.begin(), layer.styles.end(), true);
        marks += layer.series->values.size() * static_cast<std::size_t>(styles);
    }
    return marks <= few;
}

void paintInStrips(services::Surface& surface, const ChartLayers& layers) {
    const Plot plot(layers.frame);
    const std::size_t count = layers.values.front().series->values.size();
    const Slots slots(plot, count);
    const double ratio = surface.pixelRatio;
    Painting painting = {
        .surface = surface,
        .layers = layers,
        .ratio = ratio,
        .plot = plot,
        .slots = slots,
        .columns = slotColumns(layers, plot, slots, count, surface.width),
        .circle = services::circleShape(slots.circleDiameter() / 2, ratio),
        .cloudCircle = services::circleShape(services::roundToInt32(CloudScale::radius), ratio),
        .clouds = std::vector<CloudPoints>(layers.values.size()),
        .masks = std::vector<services::CoverMask>(layers.values.size()),
    };
    for (std::size_t i = 0; i < layers.values.size(); ++i) {
        if (layers.values[i].has(Option::cloud)) {
            collectCloud(painting, *layers.values[i].series, painting.clouds[i]);
        }
    }
    paintStrips(painting);
}

void paintPlainText(services::Surface& surface, const std::optional<PlacedText>& text) {
    if (text) services::drawText(surface, text->x, text->y, text->text, text->colour);
}

void paintPlainly(services::Surface& surface, const ChartLayers& layers) {
    const ChartFrame& frame = layers.frame;
    services::fillSurface(surface, services::white);
    paintGrid(surface, layers.grid);
    BarMarks bars;
    for (const ValueLayer& layer : layers.values) {
        if (!layer.has(Option::bars)) continue;
        computeBars(frame, *layer.series, bars);
        paintBars(surface, bars, layer.colour);
    }
    std::vector<LineMark> line;
    PointMarks points;
    for (const ValueLayer& layer : layers.values) {
        if (layer.has(Option::line)) {
            computeLine(frame, *layer.series, line);
            paintLine(surface, line, layer.colour);
        }
        if (layer.has(Option::circles)) {
            computeCircles(frame, *layer.series, points);
            paintCircles(surface, points, layer.colour);
        }
        if (layer.has(Option::squares)) {
            computeSquares(frame, *layer.series, points);
            paintSquares(surface, points, layer.colour);
        }
        if (layer.has(Option::cloud)) {
            computeCloud(frame, *layer.series, points);
            paintCircles(surface, points, layer.colour);
        }
        paintPlainText(surface, layer.cloudText);
        if (layer.mean) paintMean(surface, frame, *layer.mean, layer.colour);
        paintPlainText(surface, layer.meanText);
        if (layer.trend) paintTrend(surface, *layer.trend);
        paintPlainText(surface, layer.trendText);
    }
}

}  // namespace

void paintLayers(services::Surface& surface, const ChartLayers& layers) {
    if (canPaintStrips(surface, layers) && !hasFewMarks(layers)) {
        paintInStrips(surface, layers);
    } else {
        paintPlainly(surface, layers);
    }
}

}  // namespace charts
