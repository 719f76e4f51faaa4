#include "charts/marks/mark_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "charts/marks/mark_scale.h"
#include "services/text/numbers.h"

namespace charts {
namespace {

bool drawsNothing(const ValueSeries& series) {
    return !series.hasData || series.values.empty();
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

void computeLine(const ChartFrame& frame, const ValueSeries& series, std::vector<LineMark>& marks) {
    marks.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    marks.reserve(series.values.size() - 1);
    for (std::size_t i = 0; i + 1 < series.values.size(); ++i) {
        const double x1 = slots.linePoint(plot, i);
        const double x2 = slots.linePoint(plot, i + 1);
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
    marks.size = slots.circleDiameter() / 2;
    marks.points.reserve(series.values.size());
    for (std::size_t i = 0; i < series.values.size(); ++i) {
        const double y = heightOf(plot, scale, static_cast<double>(series.values[i]));
        addPoint(circleColumn(plot, slots, i), circleRow(plot, slots, y), marks.points);
    }
}

void computeSquares(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks) {
    marks.size = 0;
    marks.points.clear();
    if (drawsNothing(series)) return;
    const Plot plot(frame);
    const Scale scale(series);
    const Slots slots(plot, series.values.size());
    marks.size = slots.squareSide();
    marks.points.reserve(series.values.size());
    for (std::size_t i = 0; i < series.values.size(); ++i) {
        const double y = heightOf(plot, scale, static_cast<double>(series.values[i]));
        addPoint(squareColumn(plot, slots, i), squareRow(plot, slots, y), marks.points);
    }
}

void computeCloud(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks) {
    marks.size = services::roundToInt32(CloudScale::radius);
    marks.points.clear();
    if (drawsNothing(series)) return;
    const CloudScale cloud{Plot(frame)};
    const Scale scale(series);
    marks.points.reserve(series.values.size() - 1);
    for (std::size_t i = 1; i < series.values.size(); ++i) {
        const auto along = [&](std::size_t index) {
            return scale.along(cloud.side, static_cast<double>(series.values[index]));
        };
        addPoint(cloud.x(along(i)), cloud.y(along(i - 1)), marks.points);
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
