// Crowds of equal small marks: points become bits, and all their marks are covered at once by
// shifting whole columns of bits, in a time that hardly depends on how many points there are.
//
// Positions are device pixels of the surface.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/raster/cover_mask.h"

namespace services {

// One bit a pixel from the row -rowsAbove on: a word holds 64 rows of a column, and the words of
// neighbouring columns are neighbours.
struct PointBits {
    static constexpr int rowsAbove = 64;
    static constexpr int margin = 16;  // columns without points on both sides

    int firstColumn = 0;
    int columns = 0;
    std::size_t words = 0;   // of each column
    std::size_t stride = 0;  // words from one word of a column to its next
    // All words before and behind these are 0.
    std::size_t firstWord = 0;
    std::size_t endWord = 0;
    std::vector<std::uint64_t> bits;

    // The first word of a column; `stride` leads to the next.
    std::uint64_t* column(int x) { return bits.data() + (x - firstColumn + margin); }
    const std::uint64_t* column(int x) const { return bits.data() + (x - firstColumn + margin); }

    // Sets points of the column: bits of its word of this number.
    void add(std::uint64_t* column, std::size_t word, std::uint64_t rows) {
        column[word * stride] |= rows;
        firstWord = std::min(firstWord, word);
        endWord = std::max(endWord, word + 1);
    }
};

// No points; room for the columns from `firstColumn` up to but not including `endColumn`, and for
// the rows from -rowsAbove up to but not including endRow + rowsAbove.
void clearPoints(PointBits& points, int firstColumn, int endColumn, int endRow);

// What one point covers: in each of some columns the rows from `up` above it to `down` below it.
struct PointStamp {
    // Each step takes its columns' points, from the point's column rightward, and grows together
    // with all steps before it; so the longest columns come first.
    struct Step {
        std::vector<int> columns;
        int up = 0;
        int down = 0;
    };
    std::vector<Step> steps;
    int left = 0;  // how many columns it reaches to the left and to the right
    int right = 0;
};

// A circle whose middle has this place within its pixel: in half device pixels, 0 or 1 more than
// twice the point's column and row.
PointStamp circleStamp(const CircleShape& shape, int middleX, int middleY);

// A box whose top left pixel is the point.
PointStamp boxStamp(int width, int height);

// Where coverStamps works; kept for the next call.
struct StampRoom {
    std::size_t columns = 0;  // of a line, a multiple of four
    std::size_t words = 0;
    std::vector<std::uint64_t> lines;
    std::vector<std::uint64_t> before;
};

// The marks of all points, as far as they touch the area. A stamp reaches at most a word of rows up
// and down. The points' columns must begin at least `right` before the area and end `left` behind
// it, unless both are no more than half the margin.
void coverStamps(CoverMask& mask, const PointBits& points, const PointStamp& stamp,
                 StampRoom& room);

}  // namespace services
