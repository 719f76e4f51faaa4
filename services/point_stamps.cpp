#include "services/point_stamps.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

#include "services/wide_loops.h"

namespace services {
namespace {

constexpr unsigned wordBits = 64;
using FourWords = std::uint64_t __attribute__((vector_size(32)));
constexpr std::size_t four = 4;

struct WordRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

SERVICES_PART_OF_LOOP FourWords loadWords(const std::uint64_t* from) {
    FourWords words;
    std::memcpy(&words, from, sizeof(words));
    return words;
}

SERVICES_PART_OF_LOOP void storeWords(std::uint64_t* to, const FourWords& words) {
    std::memcpy(to, &words, sizeof(words));
}

// Columns that are worked on at once, a part of the strip with its neighbours.
struct ColumnRange {
    int first;
    int end;
};

// The words that some of the columns have a point in.
SERVICES_WIDE_LOOP
WordRange usedWords(const PointBits& points, ColumnRange columns) {
    WordRange range = {points.words, 0};
    for (std::size_t word = 0; word < points.words; ++word) {
        const std::uint64_t* const from = points.column(columns.first) + word * points.stride;
        const auto count = static_cast<std::size_t>(columns.end - columns.first);
        std::uint64_t any = 0;
        for (std::size_t i = 0; i < count; ++i)
            any |= from[i];
        if (any == 0) continue;
        range.first = std::min(range.first, word);
        range.end = word + 1;
    }
    return range;
}

// Some words of neighbouring columns, with a word of 0 above the first and below the last. A line
// of them is one word of each column.
struct GrowingLines {
    std::size_t columns = 0;  // a multiple of four
    std::size_t words = 0;
    std::vector<std::uint64_t> lines;
    std::vector<std::uint64_t> before;

    std::uint64_t* line(std::size_t word) { return lines.data() + (word + 1) * columns; }
};

void clearLines(GrowingLines& growing, std::size_t columns, std::size_t words) {
    growing.columns = (columns + four - 1) / four * four;
    growing.words = words;
    growing.lines.assign(growing.columns * (words + 2), 0);
    growing.before.assign(growing.columns * (words + 2), 0);
}

// Each row and the ones next to it above and below.
SERVICES_PART_OF_LOOP void growBothWays(GrowingLines& growing) {
    growing.lines.swap(growing.before);
    const std::size_t columns = growing.columns;
    for (std::size_t word = 1; word <= growing.words; ++word) {
        const std::uint64_t* const from = growing.before.data() + word * columns;
        std::uint64_t* const to = growing.lines.data() + word * columns;
        for (std::size_t i = 0; i < columns; i += four) {
            const FourWords rows = loadWords(from + i);
            const FourWords above = loadWords(from - columns + i) >> (wordBits - 1);
            const FourWords below = loadWords(from + columns + i) << (wordBits - 1);
            storeWords(to + i, rows | (rows << 1) | above | (rows >> 1) | below);
        }
    }
}

// Each row and the one so far below it.
SERVICES_PART_OF_LOOP void growDown(GrowingLines& growing, unsigned distance) {
    growing.lines.swap(growing.before);
    const std::size_t columns = growing.columns;
    for (std::size_t word = 1; word <= growing.words; ++word) {
        const std::uint64_t* const from = growing.before.data() + word * columns;
        std::uint64_t* const to = growing.lines.data() + word * columns;
        for (std::size_t i = 0; i < columns; i += four) {
            const FourWords rows = loadWords(from + i);
            const FourWords above = loadWords(from - columns + i) >> (wordBits - distance);
            storeWords(to + i, rows | (rows << distance) | above);
        }
    }
}

// The columns from `firstColumn` on take the points of those that the step reaches them from.
SERVICES_PART_OF_LOOP void takeColumns(GrowingLines& growing, const PointBits& points,
                                       const PointStamp::Step& step, int firstColumn,
                                       std::size_t firstWord) {
    for (std::size_t word = 0; word < growing.words; ++word) {
        std::uint64_t* const to = growing.line(word);
        const std::uint64_t* const from =
            points.column(firstColumn) + (firstWord + word) * points.stride;
        for (std::size_t i = 0; i < growing.columns; i += four) {
            FourWords rows = loadWords(to + i);
            for (const int offset : step.columns)
                rows |= loadWords(from + i - offset);
            storeWords(to + i, rows);
        }
    }
}

SERVICES_PART_OF_LOOP void grow(GrowingLines& growing, const PointStamp::Step& step) {
    const int both = std::min(step.up, step.down);
    for (int i = 0; i < both; ++i)
        growBothWays(growing);
    for (int grown = 0; grown < step.down - both;) {
        const int more = std::min(grown + 1, step.down - both - grown);
        growDown(growing, static_cast<unsigned>(more));
        grown += more;
    }
}

}  // namespace

void clearPoints(PointBits& points, int firstColumn, int endColumn, int endRow) {
    points.firstColumn = firstColumn;
    points.columns = endColumn - firstColumn;
    points.words = (static_cast<std::size_t>(endRow) + 2 * PointBits::rowsAbove) / wordBits + 1;
    points.stride = static_cast<std::size_t>(points.columns) + 2 * PointBits::margin;
    // Four columns are read at once, also at the end.
    points.bits.assign(points.stride * points.words + four, 0);
}

PointStamp circleStamp(int radius) {
    const CircleShape shape = circleShape(radius, 1);
    // The centre of the pixel row 0 is 1 in half pixels.
    std::map<std::int64_t, std::vector<int>, std::greater<>> columnsByHeight;
    PointStamp stamp = {.steps = {}, .left = radius, .right = radius};
    for (int offset = -radius; offset <= radius; ++offset) {
        const std::int64_t halfHeight =
            shape.halfHeights[static_cast<std::size_t>(2 * std::abs(offset))];
        columnsByHeight[halfHeight / 2].push_back(offset);
    }
    for (auto place = columnsByHeight.begin(); place != columnsByHeight.end(); ++place) {
        const auto next = std::next(place);
        const std::int64_t rest = next == columnsByHeight.end() ? 0 : next->first;
        const int grown = static_cast<int>(place->first - rest);
        stamp.steps.push_back({.columns = place->second, .up = grown, .down = grown});
    }
    return stamp;
}

PointStamp boxStamp(int side) {
    PointStamp stamp = {
        .steps = {{.columns = {}, .up = 0, .down = side - 1}}, .left = 0, .right = side - 1};
    for (int offset = 0; offset < side; ++offset)
        stamp.steps.front().columns.push_back(offset);
    return stamp;
}

SERVICES_WIDE_LOOP
void coverStamps(CoverMask& mask, const PointBits& points, const PointStamp& stamp) {
    const int endOfPoints = points.firstColumn + points.columns;
    // The columns that marks of the points may touch.
    const int first = std::max(mask.area.first, points.firstColumn - stamp.left);
    const int end = std::min(mask.area.end, endOfPoints + stamp.right);
    if (first >= end) return;
    WordRange range = usedWords(points, {std::max(first - stamp.right, points.firstColumn),
                                         std::min(end + stamp.left, endOfPoints)});
    if (range.first >= range.end) return;
    // Marks reach into the next words. The word 0 lies above the image.
    range.first -= range.first > 0 ? 1 : 0;
    range.end = std::min(range.end + 1, points.words);
    const std::size_t firstCovered = std::max<std::size_t>(range.first, 1);
    const std::size_t endCovered = std::min(range.end, mask.words + 1);
    if (firstCovered >= endCovered) return;
    mask.firstWord = std::min(mask.firstWord, firstCovered - 1);
    mask.endWord = std::max(mask.endWord, endCovered - 1);

    GrowingLines growing;
    clearLines(growing, static_cast<std::size_t>(end - first), range.end - range.first);
    for (const PointStamp::Step& step : stamp.steps) {
        takeColumns(growing, points, step, first, range.first);
        grow(growing, step);
    }
    const auto rowsInLastWord = static_cast<unsigned>(mask.area.height) % wordBits;
    const std::uint64_t lastWord =
        rowsInLastWord == 0 ? ~std::uint64_t{0} : ~std::uint64_t{0} >> (wordBits - rowsInLastWord);
    for (int x = first; x < end; ++x) {
        std::uint64_t* const to = mask.column(x - mask.area.first);
        const std::uint64_t* const from = growing.line(0) + (x - first);
        for (std::size_t word = firstCovered; word < endCovered; ++word)
            to[word - 1] |= from[(word - range.first) * growing.columns];
        to[mask.words - 1] &= lastWord;
    }
}

}  // namespace services
