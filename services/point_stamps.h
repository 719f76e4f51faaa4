// Crowds of equal small marks at a pixel ratio of 1: points become bits, and all their marks are
// covered at once by shifting whole columns of bits, in a time that hardly depends on how many
// points there are.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/cover_mask.h"

namespace services {

// One bit a pixel from the row -rowsAbove on: a word holds 64 rows of a column, and the words of
// neighbouring columns are neighbours. Columns are those of the surface.
struct PointBits {
    static constexpr int rowsAbove = 64;

    int firstColumn = 0;
    int columns = 0;
    std::size_t words = 0;   // that rows may stand in, of each column
    std::size_t stride = 0;  // words from one word of a column to its next
    std::vector<std::uint64_t> bits;

    // The first word of a column; `stride` leads to the next.
    std::uint64_t* column(int x) { return bits.data() + (x - firstColumn + margin); }
    const std::uint64_t* column(int x) const { return bits.data() + (x - firstColumn + margin); }

    static constexpr int margin = 16;  // columns without points on both sides
};

// No points; room for the columns from `firstColumn` up to but not including `endColumn`, and for
// rows from -rowsAbove up to but not including endRow + rowsAbove.
void clearPoints(PointBits& points, int firstColumn, int endColumn, int endRow);

// What one point covers: in each of some columns the rows from `up` above it to `down` below it.
struct PointStamp {
    // Longer columns come first; each step takes its columns' points and grows with all before it.
    struct Step {
        std::vector<int> columns;  // from the point's, rightward
        int up = 0;
        int down = 0;
    };
    std::vector<Step> steps;
    int left = 0;  // how many columns it reaches to the left and to the right
    int right = 0;
};

// The circle of this radius and the box of this side whose top left pixel is the point.
PointStamp circleStamp(int radius);
PointStamp boxStamp(int side);

// The marks of all points, as far as they touch the area. A stamp reaches at most half the margin of
// columns to the left and to the right, and a word of rows up and down.
void coverStamps(CoverMask& mask, const PointBits& points, const PointStamp& stamp);

}  // namespace services
