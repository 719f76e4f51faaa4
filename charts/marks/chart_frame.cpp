#include "charts/marks/chart_frame.h"

#include <algorithm>

#include "services/text/numbers.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

using services::operator""_l1;

constexpr int bottomLineRoom = 20;

// No image has more pixels in one direction; within this no sum of coordinates can overflow.
constexpr int largestImageSize = 32767;

}  // namespace

ChartFrame chartFrame(int imageWidth, int imageHeight) {
    ChartFrame frame;
    frame.imageWidth = std::clamp(imageWidth, 0, largestImageSize);
    frame.imageHeight = std::clamp(imageHeight, 0, largestImageSize);
    frame.left = services::textWidth("000:00:00"_l1);
    frame.top = services::roundToInt32(services::textHeight("Ag"_l1) * 1.5);
    frame.width = frame.imageWidth - 2 * frame.left;
    frame.height = frame.imageHeight - frame.top - bottomLineRoom;
    return frame;
}

GridKind gridKind(const MarkedOptions& marks) {
    for (int value = 0; value < valueNumberLimit; ++value) {
        if (marks.has(value, Option::cloud)) return GridKind::square;
        if (marks.has(value, Option::mean)) return GridKind::horizontal;
    }
    return GridKind::horizontal;
}

std::vector<GridRule> gridRules(const ChartFrame& frame, GridKind kind) {
    std::vector<GridRule> rules;
    const auto horizontal = [&](int x, int y, int length, bool border) {
        rules.push_back({.vertical = false, .x = x, .y = y, .length = length, .border = border});
    };
    const auto vertical = [&](int x, int y, int length, bool border) {
        rules.push_back({.vertical = true, .x = x, .y = y, .length = length, .border = border});
    };

    if (kind == GridKind::horizontal) {
        for (int k = 1; k <= 9; ++k) {
            horizontal(frame.left, frame.top + frame.height / 10 * k, frame.width, false);
        }
        return rules;
    }

    // The square fills the shorter direction; its black side closes it in the longer one.
    const bool wide = frame.width >= frame.height;
    const int side = wide ? frame.height : frame.width;
    if (wide) {
        vertical(frame.left + side + 2, frame.top - 1, side + 2, true);
    } else {
        horizontal(frame.left - 1, frame.top + side + 2, side + 2, true);
    }
    for (int k = 1; k <= 9; ++k) {
        vertical(frame.left + side / 10 * k, frame.top - 1, side + 2, false);
        horizontal(frame.left, frame.top + side / 10 * k, side + 2, false);
    }
    return rules;
}

}  // namespace charts
