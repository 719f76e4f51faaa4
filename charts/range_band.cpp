#include "charts/range_band.h"

#include <algorithm>
#include <cstddef>

#include "charts/chart_drawing.h"
#include "charts/chart_state.h"

namespace charts {
namespace {

constexpr Option lastStyle = Option::cloud;

bool isMarkedStyle(const OptionItem& item, const MarkedOptions& marks) {
    return item.option <= lastStyle && marks.has(item.valueNumber, item.option);
}

BandStep finish(const OptionItem& chosen, ChartKind currentChart, const ChartFrame& frame) {
    const int from = std::min(state.bandStart, state.bandEnd);
    const int to = std::max(state.bandStart, state.bandEnd);
    if (to > from && chosen.kind == currentChart) {
        ValueSeries series;
        computeSeries(currentChart, chosen.valueNumber, series);
        state.limits[static_cast<std::size_t>(chosen.valueNumber)] =
            limitsOfBand(frame, series.minimum, series.maximum, from, to);
    }
    state.bandStart = 0;
    return {.action = BandAction::redraw};
}

}  // namespace

int bandItem(int lastItem, const MarkedOptions& marks) {
    const auto last = optionOfItem(lastItem);
    if (last && isMarkedStyle(*last, marks)) return lastItem;

    for (int value = valueNumberLimit - 1; value >= 0; --value) {
        for (int number = firstMarkOption; number <= static_cast<int>(lastStyle); ++number) {
            const auto option = static_cast<Option>(number);
            if (marks.has(value, option)) return optionItem(value, option);
        }
    }
    return 0;
}

int clampToPlot(const ChartFrame& frame, int position) {
    if (position > 0 && position < frame.top) position = frame.top;
    return std::min(position, frame.top + frame.height);
}

Limits limitsOfBand(const ChartFrame& frame, float minimum, float maximum, int from, int to) {
    const int start = std::min(from, to);
    const int end = std::max(from, to);
    const float perPixel = (maximum - minimum) / static_cast<float>(frame.height);
    return {
        .lower = minimum + perPixel * static_cast<float>(frame.height + frame.top - end),
        .upper = maximum - perPixel * static_cast<float>(start - frame.top),
    };
}

BandBox bandBox(const ChartFrame& frame, int item, int start, int position) {
    const bool ofCloud = item / 100 == static_cast<int>(Option::cloud);
    return {
        .x = frame.left - 1,
        .y = std::min(start, position),
        .width = ofCloud ? frame.height + 3 : frame.width + 2,
        .height = std::max(start, position) - std::min(start, position),
    };
}

BandStep stepBand(int position, int lastItem, bool tracking, ChartKind currentChart,
                  const ChartFrame& frame) {
    const int item = bandItem(lastItem, readMarkedOptions());
    const auto chosen = optionOfItem(item);
    if (!chosen) return {};

    if (position == resetBand) {
        state.bandStart = 0;
        state.bandEnd = 0;
        if (chosen->kind == currentChart)
            state.limits[static_cast<std::size_t>(chosen->valueNumber)] = {};
        return {.action = BandAction::redraw};
    }

    position = clampToPlot(frame, position);
    if (state.bandStart == 0) {
        state.bandStart = position;
        state.bandEnd = position;
    }
    if (!tracking) {
        return position == finishBand ? finish(*chosen, currentChart, frame) : BandStep{};
    }
    if (state.bandEnd == position) return {};
    state.bandEnd = position;
    return {.action = BandAction::showBand, .box = bandBox(frame, item, state.bandStart, position)};
}

}  // namespace charts
