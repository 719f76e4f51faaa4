// Where the marks of one value stand: whole logical pixels, rounded once (half to even).
//
// Each procedure replaces the contents of `marks`. Marks with a coordinate that is not finite or
// beyond 32 bits are left out. Where minimum and maximum are equal (and finite) their value stands
// at half the plot's height; a series without data has no marks. An overview value below the
// minimum, which the minimum's rule allows, stands below the plot: its bar has a negative height.
// Below a minimum that is the maximum as well it stands infinitely far below: circles, squares and
// points are kept inside, bars and lines have no place.
#pragma once

#include <optional>
#include <vector>

#include "charts/marks/chart_frame.h"
#include "charts/values/value_series.h"

namespace charts {

struct BarMark {
    int x;
    int y;
    int height;
};

struct BarMarks {
    int width = 1;  // of every bar
    std::vector<BarMark> bars;
};

// Each segment is drawn twice, the second time one pixel further right.
struct LineMark {
    int x1, y1, x2, y2;
    int shiftedX1, shiftedX2;
};

struct PointMark {
    int x;
    int y;
};

// Circles: centres and radius. Squares: top left corners and side. Cloud: centres and radius.
struct PointMarks {
    int size = 0;
    std::vector<PointMark> points;
};

// The exact positions place the texts beside these two, which are rounded once as well.
struct MeanMark {
    int y;
    double exactY;
};

struct TrendMark {
    double percent;  // by how much the second half lies above the first
    int x1, y1, x2, y2;
    double exactY2;
};

void computeBars(const ChartFrame& frame, const ValueSeries& series, BarMarks& marks);
void computeLine(const ChartFrame& frame, const ValueSeries& series, std::vector<LineMark>& marks);
void computeCircles(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks);
void computeSquares(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks);
void computeCloud(const ChartFrame& frame, const ValueSeries& series, PointMarks& marks);
std::optional<MeanMark> computeMean(const ChartFrame& frame, const ValueSeries& series);
std::optional<TrendMark> computeTrend(const ChartFrame& frame, const ValueSeries& series);

}  // namespace charts
