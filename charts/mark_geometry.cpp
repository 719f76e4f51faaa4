#include "charts/mark_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "services/numbers.h"

namespace charts {
namespace {

// The whole pixel nearest to an exact position; false when there is none.
bool toPixel(double exact, int& pixel) {
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
    // no scale; an infinite minimum and maximum are not a range of 0 but none at all.
    double along(double length, double value) const {
        if (range == 0 && !std::isnan(value)) return length / 2;
        return length * (value - minimum) / range;
    }
};

double heightOf(const Plot& plot, const Scale& scale, double value) {
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
};

bool drawsNothing(const ValueSeries& series) {
    return !series.hasData || series.values.empty();
}

// The two clamps of an axis come one after the other and so the second wins where both apply.
void keepInside(double& position, double low, double high, double reach, double lowPlace,
                double highPlace) {
    if (low > position - reach) position = lowPlace;
    if (position + reach > high) position = highPlace;
}

void addPoint(double x, double y, std::vector<PointMark>& points) {
    PointMark mark;
    if (toPixel(x, mark.x) && toPixel(y, mark.y)) points.push_back(mark);
}

std::optional<double> meanPosition(const Plot& plot, const ValueSeries& series) {
    if (drawsNothing(series)) return std::nullopt;
    const double y = heightOf(plot, Scale(series), static_cast<double>(series.mean));
    return std::isfinite(y) ? std::optional(y) : std::nullopt;
}

}  // namespace

void computeBars(const ChartFrame& frame, const ValueSeries& series, BarMarks& marks) {
    marks.width = 1;
    marks.bars.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    marks.width = slots.barPixels;
    marks.bars.reserve(series.values.size());
    for (std::size_t i = 0; i < series.values.size(); ++i) {
        const double height = scale.along(plot.height, static_cast<double>(series.values[i]));
        BarMark mark;
        if (toPixel(slots.barLeft(plot, i), mark.x) && toPixel(plot.bottom() - height, mark.y) &&
            toPixel(height, mark.height)) {
            marks.bars.push_back(mark);
        }
    }
}

// The pitch and the start are not those of the bars, so the line drifts against them.
void computeLine(const ChartFrame& frame, const ValueSeries& series, std::vector<LineMark>& marks) {
    marks.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    const double start = plot.left + slots.bar / 1.5;
    const double pitch = slots.gap + slots.bar;
    marks.reserve(series.values.size() - 1);
    for (std::size_t i = 0; i + 1 < series.values.size(); ++i) {
        const double x1 = start + pitch * static_cast<double>(i);
        const double x2 = start + pitch * static_cast<double>(i + 1);
        const double y1 = heightOf(plot, scale, static_cast<double>(series.values[i]));
        const double y2 = heightOf(plot, scale, static_cast<double>(series.values[i + 1]));
        LineMark mark;
        // The second stroke is rounded by itself: where x stands halfway between two pixels it may
        // fall on the first.
        if (toPixel(x1, mark.x1) && toPixel(y1, mark.y1) && toPixel(x2, mark.x2) &&
            toPixel(y2, mark.y2) && toPixel(x1 + 1, mark.shiftedX1) &&
            toPixel(x2 + 1, mark.shiftedX2)) {
            marks.push_back(mark);
        }
    }
}

void computeCircles(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks) {
    marks.size = 0;
    marks.points.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    const int diameter = std::max(slots.barPixels, 8);
    const double reach = diameter;
    marks.size = diameter / 2;
    marks.points.reserve(series.values.size());
    for (std::size_t i = 0; i < series.values.size(); ++i) {
        double x = plot.left + slots.gap + slots.bar * 0.5 +
                   slots.bar * static_cast<double>(i) * Slots::pitchFactor;
        double y = heightOf(plot, scale, static_cast<double>(series.values[i]));
        keepInside(y, plot.top, plot.bottom(), reach, plot.top + reach / 2,
                   plot.bottom() - reach / 2);
        keepInside(x, plot.left, plot.right(), reach, plot.left + reach / 2,
                   plot.right() - reach / 2);
        addPoint(x, y, marks.points);
    }
}

// Not quite the circles' rules: a square stands at the left of its slot, half a bar above its
// value.
void computeSquares(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks) {
    marks.size = 0;
    marks.points.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    marks.size = std::max(slots.barPixels, 6);
    const double reach = marks.size;
    marks.points.reserve(series.values.size());
    for (std::size_t i = 0; i < series.values.size(); ++i) {
        double x = slots.barLeft(plot, i);
        double y = heightOf(plot, scale, static_cast<double>(series.values[i])) - slots.bar / 2;
        keepInside(y, plot.top, plot.bottom(), reach, plot.top, plot.bottom() - reach);
        keepInside(x, plot.left, plot.right(), reach, plot.left, plot.right() - reach);
        addPoint(x, y, marks.points);
    }
}

// Each value against the one before it. A point moves in by the radius at the low end of an axis
// and by twice the radius at the high end.
void computeCloud(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks) {
    constexpr double radius = 1.5;
    marks.size = services::roundToInt32(radius);
    marks.points.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const double side = std::min(plot.width, plot.height);
    const double right = plot.left + side;
    const double bottom = plot.top + side;
    marks.points.reserve(series.values.size() - 1);
    for (std::size_t i = 1; i < series.values.size(); ++i) {
        double x = plot.left + scale.along(side, static_cast<double>(series.values[i]));
        double y = bottom - scale.along(side, static_cast<double>(series.values[i - 1]));
        keepInside(y, plot.top, bottom, radius, plot.top + radius, bottom - 2 * radius);
        keepInside(x, plot.left, right, radius, plot.left + radius, right - 2 * radius);
        addPoint(x, y, marks.points);
    }
}

std::optional<MeanMark> computeMean(const ChartFrame& frame, const ValueSeries& series) {
    const std::optional<double> y = meanPosition(Plot(frame), series);
    MeanMark mark;
    if (!y || !toPixel(*y, mark.y)) return std::nullopt;
    mark.exactY = *y;
    return mark;
}

std::optional<TrendMark> computeTrend(const ChartFrame& frame, const ValueSeries& series) {
    const Plot plot(frame);
    const std::optional<double> mean = meanPosition(plot, series);
    if (!mean) return std::nullopt;

    // Of an odd number of values the middle one belongs to neither half.
    const std::size_t count = series.values.size();
    const std::size_t half = count / 2;
    double firstSum = 0;
    double secondSum = 0;
    for (std::size_t i = 0; i < half; ++i)
        firstSum += static_cast<double>(series.values[i]);
    for (std::size_t i = count - half; i < count; ++i) {
        secondSum += static_cast<double>(series.values[i]);
    }
    if (firstSum == 0 || secondSum == 0) return std::nullopt;

    TrendMark mark;
    mark.percent = 100 - firstSum / secondSum * 100;
    // The text shows it in single precision: what that can't hold counts as infinite.
    if (!(std::abs(mark.percent) <= static_cast<double>(std::numeric_limits<float>::max()))) {
        return std::nullopt;
    }
    // The tilt goes by the mean's pixel row, not by the plot's height.
    const auto inPlot = [&](double y) { return std::min(std::max(y, plot.top), plot.bottom()); };
    const double leftY = inPlot(*mean + *mean / 100 * mark.percent);
    mark.exactY2 = inPlot(*mean - *mean / 100 * mark.percent);
    if (!toPixel(plot.left, mark.x1) || !toPixel(leftY, mark.y1) ||
        !toPixel(plot.right() - 2, mark.x2) || !toPixel(mark.exactY2, mark.y2)) {
        return std::nullopt;
    }
    return mark;
}

}  // namespace charts
