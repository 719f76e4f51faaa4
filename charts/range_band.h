// The band that the pointer draws over a chart to choose the limits of one value.
//
// Vertical positions are logical pixels in the chart's image. The arithmetic is a function of its
// arguments; stepBand alone reads the tables and writes limits and band.
#pragma once

#include "charts/marks/chart_frame.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_series.h"

namespace charts {

// The item that the band acts on: the last one chosen in the menus when it is a marked style (bars
// to cloud), else the marked style of the highest value number, of either chart, with that value's
// first marked style. 0 when no style is marked.
int bandItem(int lastItem, const MarkedOptions& marks);

// Into the plot. 0 and below stay as they are: they are no positions.
int clampToPlot(const ChartFrame& frame, int position);

// The range of values between two positions, in single precision, by the scale of a chart whose
// series runs from `minimum` at the plot's bottom to `maximum` at its top. The positions come in
// any order. A plot without height gives what IEEE 754 says.
Limits limitsOfBand(const ChartFrame& frame, float minimum, float maximum, int from, int to);

struct BandBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const BandBox&) const = default;
};

// The rectangle to show from where the band began to the pointer, above or below. As wide as the
// plot, or, for a point cloud's item, as wide as its square is high, even in an image that is
// higher than wide.
BandBox bandBox(const ChartFrame& frame, int item, int start, int position);

// Positions with a meaning of their own.
inline constexpr int resetBand = -1;
inline constexpr int finishBand = 0;

enum class BandAction {
    nothing,
    redraw,   // the chart anew, without a band
    showBand  // over the finished picture of the chart
};

struct BandStep {
    BandAction action = BandAction::nothing;
    BandBox box = {};  // for showBand
};

// One step of the band. resetBand forgets the band and removes the value's limits; finishBand, with
// tracking off, makes the band's range its limits; any other position, with tracking on, moves the
// band's end there. A value that the current chart does not show keeps its limits: there is no
// scale to read a band by, and nobody would see what changed.
BandStep stepBand(int position, int lastItem, bool tracking, ChartKind currentChart,
                  const ChartFrame& frame);

}  // namespace charts
