// Many marks at once, column by column: which device rows of a few neighbouring device columns they
// cover, by the pixel rules of raster.h.
//
// Positions are device pixels of the whole surface; what lies outside the area is cut off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/raster/raster.h"
#include "services/raster/raster_strip.h"

namespace services {

// One bit a pixel, 64 rows a word, column after column. Bits below the last row are 0, and so are
// all words of a column before firstWord and from endWord on.
struct CoverMask {
    StripArea area;
    std::size_t words = 0;  // of each column
    std::size_t firstWord = 0;
    std::size_t endWord = 0;
    std::vector<std::uint64_t> bits;

    std::uint64_t* column(int index) {
        return bits.data() + static_cast<std::size_t>(index) * words;
    }
    const std::uint64_t* column(int index) const {
        return bits.data() + static_cast<std::size_t>(index) * words;
    }
};

// Nothing is covered.
void clearMask(CoverMask& mask, const StripArea& area);

// The rows from `first` up to but not including `end`, in one of the area's columns.
void coverRows(CoverMask& mask, std::int64_t column, std::int64_t first, std::int64_t end);

void coverBox(CoverMask& mask, const DeviceBox& box);

// A line between the device positions of its ends; `thickness` is lineThickness of the surface.
void coverLine(CoverMask& mask, std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
               std::int64_t thickness);

// All circles of one radius.
struct CircleShape {
    // By |2 * px + 1 - Cx|: the largest v with u^2 + v^2 <= R^2.
    std::vector<std::int64_t> halfHeights;
};

CircleShape circleShape(int radius, double pixelRatio);

// The circle whose centre is Cx and Cy, in half device pixels, as deviceMiddle gives them.
void coverCircle(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                 std::int64_t middleY);

}  // namespace services
