// The off-screen image of a chart and the marks painted into it.
//
// Callers speak logical pixels: whole numbers, origin top left, y downward. The surface knows its
// device pixel ratio s (1 or more) and holds device pixels. Everything is clipped to the surface;
// any coordinates are allowed, int32 extremes included. Marks are not anti-aliased.
//
// PIXEL RULES. These are all the rules there are; a slow painter in the tests follows the same.
//
//   Numbers   Sums and differences of coordinates (x + w, 2 * r + 1) are exact, they don't wrap.
//             Then x * s + 1/2, (2 * x + 1) * s + 1/2, R and R^2 are rounded to a double after each
//             operation; everything after that is exact again.
//   Edges     The logical edge x stands at the device edge E(x) = floor(x * s + 1/2). A logical
//             pixel x covers the device pixels from E(x) to E(x + 1), so neighbours neither overlap
//             nor leave a gap.
//   Box       (x, y, w, h) covers the columns from E(x) up to but not including E(x + w) and the
//             rows from E(y) up to but not including E(y + h); nothing when w or h is below 1.
//   Blended   A blended box covers the same pixels; with alpha 128 each channel becomes
//   box       ((colour + 1) >> 1) + (old >> 1).
//   Rule      A horizontal or vertical rule of the length of a box is t = floor(s + 1/2) device
//             pixels thick, from E(y) down (horizontal) or E(x) rightward (vertical): even
//             hairlines on every screen. Nothing when the length is below 1.
//   Frame     (x, y, w, h) covers the pixels of the box of the same size that are less than t
//             pixels inside its edges, t as for rules; nothing when w or h is below 1.
//   Line      From (x1, y1) to (x2, y2), both included: with dx and dy the differences of the
//             device positions E(x2) - E(x1) and E(y2) - E(y1), the larger of |dx| and |dy| (dx on
//             a tie) is the major axis, and its steps are walked one device pixel at a time from
//             the end point with the smaller major position. The minor position is the exact one
//             rounded to the nearest pixel, halves upward (toward the larger coordinate). Each step
//             sets a square of ceil(s) by ceil(s) device pixels whose top left corner stands there.
//             Two equal end points are one step.
//   Circle    Filled, centre (cx, cy), radius r (0 or more, one pixel at s = 1 for 0): with the
//             centre at Cx = floor((2 * cx + 1) * s + 1/2) and Cy likewise, in half device pixels,
//             and R = (2 * r + 1) * s, a device pixel (px, py) is covered when
//             (2 * px + 1 - Cx)^2 + (2 * py + 1 - Cy)^2 <= R^2. So every circle of one radius has
//             at most four shapes; of radius 0, one of them is empty while s is above 1 but below
//             the square root of 2. Nothing for a negative radius.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "services/raster/colours.h"

namespace services {

struct Surface {
    int width = 0;   // logical pixels
    int height = 0;  // logical pixels
    double pixelRatio = 1.0;
    int deviceWidth = 0;
    int deviceHeight = 0;
    std::vector<std::uint32_t> pixels;  // deviceWidth * deviceHeight, row by row, 0xFFRRGGBB
};

// The image gets this size and becomes white: E(width) by E(height) device pixels. Sizes below 0
// count as 0, ratios below 1 (or not finite) as 1, ratios above 64 as 64; more than 32,767 device
// pixels in one direction are cut to that. Without memory for it (std::bad_alloc) the surface stays
// as it was. Nothing else may change a surface's size or ratio.
void resizeSurface(Surface& surface, int width, int height, double pixelRatio);

// Device pixels from the first up to but not including the last; may reach beyond any surface.
struct DeviceBox {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
};

// E(x) of the rules, for any x that an int32 or twice one can hold.
inline std::int64_t deviceEdge(std::int64_t logical, double pixelRatio) {
    if (pixelRatio == 1) return logical;
    // Not std::floor, which is a call on the oldest processors we build for; small marks are mostly
    // edges.
    const double exact = static_cast<double>(logical) * pixelRatio + 0.5;
    const auto truncated = static_cast<std::int64_t>(exact);
    return truncated - (static_cast<double>(truncated) > exact ? 1 : 0);
}

// Cx or Cy of a circle with this centre, in half device pixels.
inline std::int64_t deviceMiddle(std::int64_t centre, double pixelRatio) {
    return deviceEdge(2 * centre + 1, pixelRatio);
}

// What the rules say of boxes and rules; empty where nothing is covered.
DeviceBox boxPixels(double pixelRatio, int x, int y, int width, int height);
DeviceBox horizontalRulePixels(double pixelRatio, int x, int y, int length);
DeviceBox verticalRulePixels(double pixelRatio, int x, int y, int length);

// The upper, lower, left and right edge.
std::array<DeviceBox, 4> framePixels(double pixelRatio, int x, int y, int width, int height);

// The side of the squares that lines are made of.
std::int64_t lineThickness(double pixelRatio);

// The colour as a surface holds it.
std::uint32_t pixelOf(Colour colour);

// The colour's share of a blended pixel: (colour + 1) >> 1 in each channel, and an alpha that makes
// 255 with the half of 255.
std::uint32_t halfPixelOf(Colour colour);

// The box's pixels, from another surface of the same size and ratio.
void copyBox(Surface& surface, const Surface& from, const DeviceBox& box);

void fillSurface(Surface& surface, Colour colour);
void fillBox(Surface& surface, int x, int y, int width, int height, Colour colour);
void blendBox(Surface& surface, int x, int y, int width, int height, Colour colour);
void drawFrame(Surface& surface, int x, int y, int width, int height, Colour colour);
void drawHorizontalRule(Surface& surface, int x, int y, int length, Colour colour);
void drawVerticalRule(Surface& surface, int x, int y, int length, Colour colour);
void drawLine(Surface& surface, int x1, int y1, int x2, int y2, Colour colour);
void fillCircle(Surface& surface, int centreX, int centreY, int radius, Colour colour);

}  // namespace services
