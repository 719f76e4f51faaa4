// Many marks at once, column by column: which device rows of a few neighbouring device columns they
// cover, by the pixel rules of raster.h, and these columns' pixels, which then go to the surface.
//
// A strip is narrow, so that its masks and pixels stay in the processor's nearest caches. Columns
// lie one after the other in memory, so that the rows of a bar or of a steep line are neighbours.
// Positions are device pixels of the whole surface; what lies outside the strip is cut off.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/colours.h"
#include "services/raster.h"

namespace services {

// Device columns from `first` up to but not including `end`, all rows.
struct StripArea {
    int first = 0;
    int end = 0;
    int height = 0;

    int columns() const { return end - first; }
};

// One bit a pixel, 64 rows a word.
struct CoverMask {
    StripArea area;
    std::size_t words = 0;  // of each column
    std::vector<std::uint64_t> bits;

    const std::uint64_t* column(int index) const {
        return bits.data() + static_cast<std::size_t>(index) * words;
    }
};

// Nothing is covered.
void clearMask(CoverMask& mask, const StripArea& area);

void coverBox(CoverMask& mask, const DeviceBox& box);

// A line between the device positions of its ends; `thickness` is lineThickness of the surface.
void coverLine(CoverMask& mask, std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
               std::int64_t thickness);

// All circles of one radius.
struct CircleShape {
    // By |2 * px + 1 - Cx|: the largest v with u^2 + v^2 <= R^2.
    std::vector<std::int64_t> halfHeights;
    // By the parity of Cx: two circles above each other whose Cy differ by at most so much have no
    // uncovered pixel between them.
    std::array<std::int64_t, 2> joint = {};
};

CircleShape circleShape(int radius, double pixelRatio);

// The circles whose centre is Cx and any Cy that leaves no gap between the first and the last; in
// half device pixels, as deviceMiddle gives them.
void coverCircles(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                  std::int64_t firstMiddleY, std::int64_t lastMiddleY);

// The same for many marks that begin in one column, at a pixel ratio of 1: bit k of `rows` stands
// for the row k - 64, of a circle's centre or of the top of a square of this side.
void coverCircleCrowd(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                      const std::vector<std::uint64_t>& rows);
void coverBoxCrowd(CoverMask& mask, std::int64_t left, int side,
                   const std::vector<std::uint64_t>& rows);

// The pixels of a strip, column after column.
struct StripPixels {
    StripArea area;
    std::vector<std::uint32_t> pixels;

    std::uint32_t* column(int index) {
        return pixels.data() +
               static_cast<std::size_t>(index) * static_cast<std::size_t>(area.height);
    }
    const std::uint32_t* column(int index) const {
        return pixels.data() +
               static_cast<std::size_t>(index) * static_cast<std::size_t>(area.height);
    }
};

// All of one colour.
void fillStrip(StripPixels& strip, const StripArea& area, Colour colour);

void fillStripBox(StripPixels& strip, const DeviceBox& box, Colour colour);
void fillCovered(StripPixels& strip, const CoverMask& mask, Colour colour);

// More blends with one colour change nothing any more.
inline constexpr int mostBlends = 8;

// As many blended boxes over each other: 0 to mostBlends. `halfPixel` is halfPixelOf the colour.
void blendColumn(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel, int times);

// Between the strip and the surface: the rows from `top` up to but not including `bottom`.
void storeStrip(Surface& surface, const StripPixels& strip, int top, int bottom);
void loadStrip(StripPixels& strip, const Surface& surface, int top, int bottom);

}  // namespace services
