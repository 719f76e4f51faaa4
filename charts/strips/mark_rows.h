// The rows that many values stand in, by the formulas of mark_scale.h, a whole stretch at a time.
#pragma once

#include <cstddef>
#include <limits>

#include "charts/marks/mark_scale.h"

namespace charts {

// Stands for a row of a value that has none: it is not a number or beyond 32 bits.
inline constexpr int noRow = std::numeric_limits<int>::min();

// roundToInt32 without a branch, so that a loop of it is vectorised: a sum this large has no room
// for halves. The smallest integer becomes noRow as well.
inline int rowOf(double exact) {
    constexpr double none = noRow;
    double row = exact >= -2147483647.5 ? exact : none;
    row = row < 2147483647.5 ? row : none;
    constexpr double noHalves = 0x1.8p52;
    return static_cast<int>((row + noHalves) - noHalves);
}

// How far values lie from the minimum on an axis of this length, exactly.
void computeAlong(const Scale& scale, double length, const float* values, std::size_t count,
                  double* along);

// A position from how far a value lies along an axis: offset + sign * along - shift, then kept
// inside (keepInside).
struct RowRule {
    double offset = 0;
    double sign = 1;
    double shift = 0;
    double reach = 0;
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    double lowPlace = 0;
    double highPlace = 0;
};

RowRule heightRule();                // of a bar
RowRule lineRule(const Plot& plot);  // also a bar's top
RowRule circleRule(const Plot& plot, const Slots& slots);
RowRule squareRule(const Plot& plot, const Slots& slots);
RowRule cloudColumnRule(const CloudScale& cloud);
RowRule cloudRowRule(const CloudScale& cloud);

// Rounded; noRow where there is none.
void computeRows(const RowRule& rule, const double* along, std::size_t count, int* rows);

}  // namespace charts
