// Where the plot lies in the image, and its grid. Logical pixels, origin top left.
#pragma once

#include <vector>

#include "charts/values/chart_options.h"

namespace charts {

// May be narrower or lower than nothing in a tiny image; nothing guards that, the marks just fall
// where the arithmetic puts them.
struct ChartFrame {
    int imageWidth = 0;
    int imageHeight = 0;
    int left = 0;    // L: the width of "000:00:00"
    int top = 0;     // P: one and a half text heights
    int width = 0;   // W: as much room right of the plot as left of it
    int height = 0;  // H: 20 pixels below the plot hold the bottom line
};

// Sizes below 0 count as 0, above 32,767 (no image is larger) as that.
ChartFrame chartFrame(int imageWidth, int imageHeight);

enum class GridKind {
    horizontal,  // nine lines across
    square,      // ten by ten, for point clouds
};

// Decided by the first value of either chart with a point cloud or a mean line, the cloud looked at
// first: a cloud marked in the training menu makes the overview's grid square as well.
GridKind gridKind(const MarkedOptions& marks);

struct GridRule {
    bool vertical = false;
    int x = 0;
    int y = 0;
    int length = 0;
    bool border = false;  // the black side of the square
};

std::vector<GridRule> gridRules(const ChartFrame& frame, GridKind kind);

}  // namespace charts
