#include "services/raster/point_stamps.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

#include "services/raster/wide_loops.h"

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
    for (std::size_t word = points.firstWord; word < points.endWord; ++word) {
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

// A line is one word of each of some neighbouring columns. There is a line of 0 above the first and
// below the last.
std::uint64_t* lineOf(StampRoom& room, std::size_t word) {
    return room.lines.data() + (word + 1) * room.columns;
}

void beginLines(StampRoom& room, std::size_t columns, std::size_t words) {
    room.columns = (columns + four - 1) / four * four;
    room.words = words;
    for (std::vector<std::uint64_t>* lines : {&room.lines, &room.before}) {
        lines->resize(room.columns * (words + 2));
        std::fill_n(lines->begin(), room.columns, 0);
        std::fill(lines->end() - static_cast<std::ptrdiff_t>(room.columns), lines->end(), 0);
    }
}

// Each row and the ones next to it above and below.
SERVICES_PART_OF_LOOP void growBothWays(StampRoom& room) {
    room.lines.swap(room.before);
    const std::size_t columns = room.columns;
    for (std::size_t word = 1; word <= room.words; ++word) {
        const std::uint64_t* const from = room.before.data() + word * columns;
        std::uint64_t* const to = room.lines.data() + word * columns;
        for (std::size_t i = 0; i < columns; i += four) {
            const FourWords rows = loadWords(from + i);
            const FourWords above = loadWords(from - columns + i) >> (wordBits - 1);
            const FourWords below = loadWords(from + columns + i) << (wordBits - 1);
            storeWords(to + i, rows | (rows << 1) | above | (rows >> 1) | below);
        }
    }
}

// Each row and the one so far below it, or above it.
SERVICES_PART_OF_LOOP void growOneWay(StampRoom& room, unsigned distance, bool down) {
    room.lines.swap(room.before);
    const std::size_t columns = room.columns;
    for (std::size_t word = 1; word <= room.words; ++word) {
        const std::uint64_t* const from = room.before.data() + word * columns;
        const std::uint64_t* const beside = down ? from - columns : from + columns;
        std::uint64_t* const to = room.lines.data() + word * columns;
        for (std::size_t i = 0; i < columns; i += four) {
            const FourWords rows = loadWords(from + i);
            const FourWords other = loadWords(beside + i);
            const FourWords moved = down ? (rows << distance) | (other >> (wordBits - distance))
                                         : (rows >> distance) | (other << (wordBits - distance));
            storeWords(to + i, rows | moved);
        }
    }
}

// Every step doubles what was gained, as far as that is not too much.
SERVICES_PART_OF_LOOP void growOneWay(StampRoom& room, int rows, bool down) {
    for (int grown = 0; grown < rows;) {
        const int more = std::min(grown + 1, rows - grown);
        growOneWay(room, static_cast<unsigned>(more), down);
        grown += more;
    }
}

// The columns from `firstColumn` on take the points of those that the step reaches them from, in
// place of what the lines hold or beside it.
SERVICES_PART_OF_LOOP void takeColumns(StampRoom& room, const PointBits& points,
                                       const PointStamp::Step& step, int firstColumn,
                                       std::size_t firstWord, bool beside) {
    for (std::size_t word = 0; word < room.words; ++word) {
        std::uint64_t* const to = lineOf(room, word);
        const std::uint64_t* const from =
            points.column(firstColumn) + (firstWord + word) * points.stride;
        for (std::size_t i = 0; i < room.columns; i += four) {
            FourWords rows = beside ? loadWords(to + i) : FourWords{};
            for (const int column : step.columns)
                rows |= loadWords(from + i - column);
            storeWords(to + i, rows);
        }
    }
}

SERVICES_PART_OF_LOOP void grow(StampRoom& room, const PointStamp::Step& step) {
    const int both = std::min(step.up, step.down);
    for (int i = 0; i < both; ++i)
        growBothWays(room);
    growOneWay(room, step.down - both, true);
    growOneWay(room, step.up - both, false);
}

}  // namespace

void clearPoints(PointBits& points, int firstColumn, int endColumn, int endRow) {
    const int columns = endColumn - firstColumn;
    const std::size_t words =
        (static_cast<std::size_t>(endRow) + 2 * PointBits::rowsAbove) / wordBits + 1;
    if (columns == points.columns && words == points.words) {
        if (points.firstWord < points.endWord) {
            std::fill_n(points.bits.data() + points.firstWord * points.stride,
                        (points.endWord - points.firstWord) * points.stride, 0);
        }
    } else {
        points.columns = columns;
        points.words = words;
        points.stride = static_cast<std::size_t>(columns) + 2 * PointBits::margin;
        // Four columns are read at once, also at the end.
        points.bits.assign(points.stride * words + four, 0);
    }
    points.firstColumn = firstColumn;
    points.firstWord = words;
    points.endWord = 0;
}

PointStamp circleStamp(const CircleShape& shape, int middleX, int middleY) {
    const auto reach = static_cast<int>(shape.halfHeights.size()) - 1;
    // The height tells how far a column reaches up and down.
    std::map<std::int64_t, std::vector<int>, std::greater<>> columnsByHeight;
    PointStamp stamp;
    for (int column = -reach; column <= reach; ++column) {
        const int distance = std::abs(2 * column + 1 - middleX);
        if (distance > reach) continue;
        const std::int64_t halfHeight = shape.halfHeights[static_cast<std::size_t>(distance)];
        if (halfHeight == 0 && middleY == 0) continue;  // between two rows
        columnsByHeight[halfHeight].push_back(column);
        stamp.left = std::max(stamp.left, -column);
        stamp.right = std::max(stamp.right, column);
    }
    const auto up = [middleY](std::int64_t halfHeight) {
        return -static_cast<int>((middleY - halfHeight) >> 1);
    };
    const auto down = [middleY](std::int64_t halfHeight) {
        return static_cast<int>((middleY + halfHeight - 1) >> 1);
    };
    for (auto place = columnsByHeight.begin(); place != columnsByHeight.end(); ++place) {
        const auto next = std::next(place);
        const bool isLast = next == columnsByHeight.end();
        stamp.steps.push_back({.columns = place->second,
                               .up = up(place->first) - (isLast ? 0 : up(next->first)),
                               .down = down(place->first) - (isLast ? 0 : down(next->first))});
    }
    return stamp;
}

PointStamp boxStamp(int width, int height) {
    PointStamp stamp = {
        .steps = {{.columns = {}, .up = 0, .down = height - 1}}, .left = 0, .right = width - 1};
    for (int column = 0; column < width; ++column)
        stamp.steps.front().columns.push_back(column);
    return stamp;
}

SERVICES_WIDE_LOOP
void coverStamps(CoverMask& mask, const PointBits& points, const PointStamp& stamp,
                 StampRoom& room) {
    if (points.firstWord >= points.endWord) return;
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

    beginLines(room, static_cast<std::size_t>(end - first), range.end - range.first);
    bool beside = false;
    for (const PointStamp::Step& step : stamp.steps) {
        takeColumns(room, points, step, first, range.first, beside);
        grow(room, step);
        beside = true;
    }
    if (!beside) return;
    const auto rowsInLastWord = static_cast<unsigned>(mask.area.height) % wordBits;
    const std::uint64_t lastWord =
        rowsInLastWord == 0 ? ~std::uint64_t{0} : ~std::uint64_t{0} >> (wordBits - rowsInLastWord);
    for (int x = first; x < end; ++x) {
        std::uint64_t* const to = mask.column(x - mask.area.first);
        const std::uint64_t* const from = lineOf(room, 0) + (x - first);
        for (std::size_t word = firstCovered; word < endCovered; ++word)
            to[word - 1] |= from[(word - range.first) * room.columns];
        to[mask.words - 1] &= lastWord;
    }
}

}  // namespace services
