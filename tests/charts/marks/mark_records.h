// Marks that are compared and print themselves, computed on a small plot over what was there.
#pragma once

#include <ostream>
#include <vector>

#include "charts/marks/mark_geometry.h"
#include "tests/charts/chart_test.h"

namespace charts {

inline bool operator==(const BarMark& a, const BarMark& b) {
    return a.x == b.x && a.y == b.y && a.height == b.height;
}
inline bool operator==(const LineMark& a, const LineMark& b) {
    return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 &&
           a.shiftedX1 == b.shiftedX1 && a.shiftedX2 == b.shiftedX2;
}
inline bool operator==(const PointMark& a, const PointMark& b) {
    return a.x == b.x && a.y == b.y;
}

inline void PrintTo(const BarMark& mark, std::ostream* out) {
    *out << "bar " << mark.x << "," << mark.y << " " << mark.height;
}
inline void PrintTo(const LineMark& mark, std::ostream* out) {
    *out << "line " << mark.x1 << "," << mark.y1 << " " << mark.x2 << "," << mark.y2 << " "
         << mark.shiftedX1 << " " << mark.shiftedX2;
}
inline void PrintTo(const PointMark& mark, std::ostream* out) {
    *out << mark.x << "," << mark.y;
}

}  // namespace charts

namespace chart_tests {

// The plot of the marks is 120 wide and 100 high: columns 10 to 130, rows 5 to 105.
inline const charts::ChartFrame smallFrame = frameOf(10, 5, 122, 101);

// Gap 4, bars 19 1/3 wide, bars 23.2 and line points 23 1/3 apart.
inline const charts::ValueSeries risingSeries = seriesOf({1, 2, 3, 4, 5}, 1, 5, 3);

inline charts::BarMarks barsOf(const charts::ChartFrame& frame, const charts::ValueSeries& series) {
    charts::BarMarks marks;
    marks.width = 99;
    marks.bars = {{1, 2, 3}};
    charts::computeBars(frame, series, marks);
    return marks;
}

inline std::vector<charts::LineMark> lineOf(const charts::ChartFrame& frame,
                                            const charts::ValueSeries& series) {
    std::vector<charts::LineMark> marks = {{1, 2, 3, 4, 5, 6}};
    charts::computeLine(frame, series, marks);
    return marks;
}

using PointProcedure = void (*)(const charts::ChartFrame&, const charts::ValueSeries&,
                                charts::PointMarks&);

inline charts::PointMarks pointsOf(PointProcedure compute, const charts::ChartFrame& frame,
                                   const charts::ValueSeries& series) {
    charts::PointMarks marks;
    marks.size = 99;
    marks.points = {{1, 2}};
    compute(frame, series, marks);
    return marks;
}

}  // namespace chart_tests
