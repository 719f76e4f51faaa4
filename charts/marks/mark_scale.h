// The scale that all styles of one value share: where a value and its slot stand, as exact
// positions in logical pixels. Everything here follows IEEE 754 for values that are no numbers.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "charts/marks/chart_frame.h"
#include "charts/values/value_series.h"
#include "services/text/numbers.h"

namespace charts {

// The whole pixel nearest to an exact position; false when there is none.
inline bool toPixel(double exact, int& pixel) {
    // The bounds are those of the rounding: the lower one is a tie that goes to the even -2^31.
    if (!(exact >= -2147483648.5 && exact < 2147483647.5)) return false;
    pixel = services::roundToInt32(exact);
    return true;
}

// The plot as the marks of one value see it, a little narrower and lower than its frame.
struct Plot {
    double left, top, width, height;

    explicit Plot(const ChartFrame& frame)
        : left(frame.left),
          top(frame.top),
          width(static_cast<double>(frame.width) - 2),
          height(static_cast<double>(frame.height) - 1) {}

    double right() const { return left + width; }
    double bottom() const { return top + height; }
};

struct Scale {
    double minimum, range;

    explicit Scale(const ValueSeries& series)
        : minimum(static_cast<double>(series.minimum)),
          range(static_cast<double>(series.maximum) - static_cast<double>(series.minimum)) {}

    // How far the value lies from the minimum on an axis of this length. Without a range there is
    // no scale for the one value that is both minimum and maximum; one below it, which the
    // overview's minimum may forget, lies infinitely far away. An infinite minimum and maximum are
    // not a range of 0 but none at all.
    double along(double length, double value) const {
        if (range == 0 && value == minimum) return length / 2;
        return length * (value - minimum) / range;
    }
};

inline double heightOf(const Plot& plot, const Scale& scale, double value) {
    return plot.bottom() - scale.along(plot.height, value);
}

// How the values share the width: bars a fifth apart.
struct Slots {
    static constexpr double pitchFactor = 1.2;
    double gap = 0;
    double bar = 0;
    int barPixels = 1;

    Slots(const Plot& plot, std::size_t count) {
        const auto number = static_cast<double>(count);
        gap = plot.width / number - plot.width / number / pitchFactor;
        bar = (plot.width - gap) / number / pitchFactor;
        if (bar >= 1) barPixels = services::roundToInt32(bar);
    }

    double barLeft(const Plot& plot, std::size_t index) const {
        return plot.left + gap + bar * static_cast<double>(index) * pitchFactor;
    }

    double circleMiddle(const Plot& plot, std::size_t index) const {
        return plot.left + gap + bar * 0.5 + bar * static_cast<double>(index) * pitchFactor;
    }

    // The pitch and the start are not those of the bars, so the line drifts against them.
    double linePoint(const Plot& plot, std::size_t index) const {
        return plot.left + bar / 1.5 + (gap + bar) * static_cast<double>(index);
    }

    int circleDiameter() const { return std::max(barPixels, 8); }
    int squareSide() const { return std::max(barPixels, 6); }
};

// The two clamps of an axis come one after the other and so the second wins where both apply.
inline void keepInside(double& position, double low, double high, double reach, double lowPlace,
                       double highPlace) {
    if (low > position - reach) position = lowPlace;
    if (position + reach > high) position = highPlace;
}

// A cloud's points: each value against the one before it. A point moves in by the radius at the low
// end of an axis and by twice the radius at the high end.
struct CloudScale {
    static constexpr double radius = 1.5;
    double side, left, right, top, bottom;

    explicit CloudScale(const Plot& plot)
        : side(std::min(plot.width, plot.height)),
          left(plot.left),
          right(plot.left + side),
          top(plot.top),
          bottom(plot.top + side) {}

    // From how far a value lies along the side.
    double x(double along) const {
        double position = left + along;
        keepInside(position, left, right, radius, left + radius, right - 2 * radius);
        return position;
    }
    double y(double along) const {
        double position = bottom - along;
        keepInside(position, top, bottom, radius, top + radius, bottom - 2 * radius);
        return position;
    }
};

// The circles' and squares' rows, from the exact position of the value. Not quite the same rules: a
// square stands at the left of its slot, half a bar above its value.
inline double circleRow(const Plot& plot, const Slots& slots, double y) {
    const double reach = slots.circleDiameter();
    keepInside(y, plot.top, plot.bottom(), reach, plot.top + reach / 2, plot.bottom() - reach / 2);
    return y;
}
inline double circleColumn(const Plot& plot, const Slots& slots, std::size_t index) {
    const double reach = slots.circleDiameter();
    double x = slots.circleMiddle(plot, index);
    keepInside(x, plot.left, plot.right(), reach, plot.left + reach / 2, plot.right() - reach / 2);
    return x;
}
inline double squareRow(const Plot& plot, const Slots& slots, double y) {
    const double reach = slots.squareSide();
    y -= slots.bar / 2;
    keepInside(y, plot.top, plot.bottom(), reach, plot.top, plot.bottom() - reach);
    return y;
}
inline double squareColumn(const Plot& plot, const Slots& slots, std::size_t index) {
    const double reach = slots.squareSide();
    double x = slots.barLeft(plot, index);
    keepInside(x, plot.left, plot.right(), reach, plot.left, plot.right() - reach);
    return x;
}

}  // namespace charts
