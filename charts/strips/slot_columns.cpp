#include "charts/strips/slot_columns.h"

#include <algorithm>
#include <limits>

#include "charts/strips/mark_rows.h"

namespace charts {
namespace {

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

}  // namespace

SlotColumns slotColumns(const WantedColumns& wanted, const Plot& plot, const Slots& slots,
                        std::size_t count, int imageWidth) {
    SlotColumns columns;
    if (wanted.bars) columns.bars = barRanges(plot, slots, count, imageWidth);
    if (wanted.line) {
        columns.line = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            const double x = slots.linePoint(plot, i);
            group.x = rowOf(x);
            group.shiftedX = rowOf(x + 1);
        });
    }
    if (wanted.circles) {
        columns.circles = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            group.x = rowOf(circleColumn(plot, slots, i));
        });
    }
    if (wanted.squares) {
        columns.squares = groupSlots(count, [&](std::size_t i, SlotGroup& group) {
            group.x = rowOf(squareColumn(plot, slots, i));
        });
    }
    return columns;
}

SlotsInColumns slotsInColumns(const SlotColumns& columns, const Slots& slots, int firstColumn,
                              int endColumn) {
    SlotsInColumns found;
    // Lines reach two columns beyond their x to the right at most, and from a point before the
    // strip to one behind it.
    constexpr int lineReach = 4;
    const int circleReach = slots.circleDiameter() / 2 + 2;
    found.line = groupsBetween(columns.line, firstColumn - lineReach, endColumn, 1);
    found.circles =
        groupsBetween(columns.circles, firstColumn - circleReach, endColumn + circleReach, 0);
    found.squares = groupsBetween(columns.squares, firstColumn - slots.squareSide(), endColumn, 0);
    found.all = {std::numeric_limits<std::size_t>::max(), 0};
    const auto include = [&found](SlotRange range) {
        if (range.first >= range.end) return;
        found.all.first = std::min(found.all.first, range.first);
        found.all.end = std::max(found.all.end, range.end);
    };
    const auto includeGroups = [&include](const std::vector<SlotGroup>& groups, SlotRange range) {
        if (range.first < range.end)
            include({groups[range.first].first, groups[range.end - 1].end});
    };
    includeGroups(columns.line, found.line);
    includeGroups(columns.circles, found.circles);
    includeGroups(columns.squares, found.squares);
    if (!columns.bars.empty()) {
        include({columns.bars[static_cast<std::size_t>(firstColumn)].first,
                 columns.bars[static_cast<std::size_t>(endColumn) - 1].end});
    }
    if (found.all.first > found.all.end) found.all = {};
    return found;
}

}  // namespace charts
