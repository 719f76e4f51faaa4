#include "services/raster/cover_mask.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace services {
namespace {

constexpr unsigned wordBits = 64;

// Rows from `first` up to but not including `end`, not empty and inside the column.
void coverWords(std::uint64_t* column, std::size_t first, std::size_t end) {
    const std::size_t firstWord = first / wordBits;
    const std::size_t lastWord = (end - 1) / wordBits;
    const std::uint64_t fromFirst = ~std::uint64_t{0} << (first % wordBits);
    const std::uint64_t toLast = ~std::uint64_t{0} >> (wordBits - 1 - (end - 1) % wordBits);
    if (firstWord == lastWord) {
        column[firstWord] |= fromFirst & toLast;
        return;
    }
    column[firstWord] |= fromFirst;
    for (std::size_t word = firstWord + 1; word < lastWord; ++word)
        column[word] = ~std::uint64_t{0};
    column[lastWord] |= toLast;
}

// What one column of a thin line covers, made as thick as the line: the squares of its steps.
void coverSteps(CoverMask& mask, std::int64_t column, std::int64_t firstRow, std::int64_t lastRow,
                std::int64_t thickness) {
    const std::int64_t first = std::max<std::int64_t>(column, mask.area.first);
    const std::int64_t end = std::min<std::int64_t>(column + thickness, mask.area.end);
    for (std::int64_t x = first; x < end; ++x)
        coverRows(mask, x, firstRow, lastRow + thickness);
}

std::int64_t floorOfQuotient(std::int64_t dividend, std::int64_t divisor) {
    const std::int64_t quotient = dividend / divisor;
    return quotient - (quotient * divisor > dividend ? 1 : 0);
}

// x2 > x1, and the line is at least as wide as high: one row in each column.
void coverFlatLine(CoverMask& mask, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                   std::int64_t y2, std::int64_t thickness) {
    const std::int64_t length = x2 - x1;
    const std::int64_t rise = y2 - y1;
    const std::int64_t first = std::max<std::int64_t>(x1, mask.area.first - thickness + 1);
    const std::int64_t last = std::min<std::int64_t>(x2, mask.area.end - 1);
    if (first > last) return;
    const std::int64_t period = 2 * length;
    const std::int64_t start = 2 * (first - x1) * rise + length;
    std::int64_t offset = floorOfQuotient(start, period);
    std::int64_t remainder = start - offset * period;
    for (std::int64_t x = first; x <= last; ++x) {
        coverSteps(mask, x, y1 + offset, y1 + offset, thickness);
        remainder += 2 * rise;
        if (remainder >= period) {
            remainder -= period;
            ++offset;
        } else if (remainder < 0) {
            remainder += period;
            --offset;
        }
    }
}

// y2 > y1, and the line is higher than wide. Its steps are counted from the top; column j, counted
// from the start in the line's direction, begins with the step at which the exact position has
// passed the middle between two columns. On the middle itself the larger column is the nearer one.
void coverSteepLine(CoverMask& mask, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                    std::int64_t y2, std::int64_t thickness) {
    const std::int64_t length = y2 - y1;
    const std::int64_t columns = std::abs(x2 - x1);
    const std::int64_t direction = x2 >= x1 ? 1 : -1;
    const auto firstStep = [=](std::int64_t j) -> std::int64_t {
        if (j <= 0) return 0;
        if (j > columns) return length + 1;
        const std::int64_t steps = (2 * j - 1) * length;
        return direction > 0 ? (steps + 2 * columns - 1) / (2 * columns)
                             : steps / (2 * columns) + 1;
    };
    const std::int64_t left = mask.area.first - thickness + 1;
    const std::int64_t right = mask.area.end - 1;
    const std::int64_t first = std::max<std::int64_t>(direction > 0 ? left - x1 : x1 - right, 0);
    const std::int64_t last = std::min(direction > 0 ? right - x1 : x1 - left, columns);
    std::int64_t step = firstStep(first);
    for (std::int64_t j = first; j <= last; ++j) {
        const std::int64_t next = firstStep(j + 1);
        if (next > step) {
            coverSteps(mask, x1 + direction * j, y1 + step, y1 + next - 1, thickness);
        }
        step = next;
    }
}

// The largest whole number whose square is at most this; below 2^50.
std::int64_t rootOf(std::int64_t square) {
    auto root = static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)));
    while (root * root > square)
        --root;
    while ((root + 1) * (root + 1) <= square)
        ++root;
    return root;
}

}  // namespace

void clearMask(CoverMask& mask, const StripArea& area) {
    const std::size_t words = (static_cast<std::size_t>(area.height) + wordBits - 1) / wordBits;
    const std::size_t size = words * static_cast<std::size_t>(area.columns());
    if (words == mask.words && size <= mask.bits.size()) {
        for (int x = 0; x < mask.area.columns() && mask.firstWord < mask.endWord; ++x)
            std::fill(mask.column(x) + mask.firstWord, mask.column(x) + mask.endWord, 0);
    } else {
        mask.bits.assign(size, 0);
    }
    mask.area = area;
    mask.words = words;
    mask.firstWord = words;
    mask.endWord = 0;
}

void coverRows(CoverMask& mask, std::int64_t column, std::int64_t first, std::int64_t end) {
    first = std::max<std::int64_t>(first, 0);
    end = std::min<std::int64_t>(end, mask.area.height);
    if (first >= end) return;
    const std::size_t firstWord = static_cast<std::size_t>(first) / wordBits;
    const std::size_t endWord = static_cast<std::size_t>(end - 1) / wordBits + 1;
    mask.firstWord = std::min(mask.firstWord, firstWord);
    mask.endWord = std::max(mask.endWord, endWord);
    coverWords(mask.column(static_cast<int>(column - mask.area.first)),
               static_cast<std::size_t>(first), static_cast<std::size_t>(end));
}

void coverBox(CoverMask& mask, const DeviceBox& box) {
    const std::int64_t first = std::max<std::int64_t>(box.left, mask.area.first);
    const std::int64_t end = std::min<std::int64_t>(box.right, mask.area.end);
    for (std::int64_t x = first; x < end; ++x)
        coverRows(mask, x, box.top, box.bottom);
}

void coverLine(CoverMask& mask, std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
               std::int64_t thickness) {
    if (x1 == x2) {
        coverSteps(mask, x1, std::min(y1, y2), std::max(y1, y2), thickness);
    } else if (std::abs(x2 - x1) >= std::abs(y2 - y1)) {
        if (x2 < x1) {
            std::swap(x1, x2);
            std::swap(y1, y2);
        }
        coverFlatLine(mask, x1, y1, x2, y2, thickness);
    } else {
        if (y2 < y1) {
            std::swap(x1, x2);
            std::swap(y1, y2);
        }
        coverSteepLine(mask, x1, y1, x2, y2, thickness);
    }
}

CircleShape circleShape(int radius, double pixelRatio) {
    CircleShape shape;
    const double deviceRadius = static_cast<double>(2 * std::int64_t{radius} + 1) * pixelRatio;
    const auto square = static_cast<std::int64_t>(std::floor(deviceRadius * deviceRadius));
    const std::int64_t reach = rootOf(square);
    for (std::int64_t u = 0; u <= reach; ++u)
        shape.halfHeights.push_back(rootOf(square - u * u));
    return shape;
}

void coverCircle(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                 std::int64_t middleY) {
    const auto reach = static_cast<std::int64_t>(shape.halfHeights.size()) - 1;
    // Arithmetic shifts: quotients rounded down, for negative numbers as well.
    const std::int64_t first = std::max<std::int64_t>((middleX - reach) >> 1, mask.area.first);
    const std::int64_t end =
        std::min<std::int64_t>(((middleX + reach - 1) >> 1) + 1, mask.area.end);
    for (std::int64_t x = first; x < end; ++x) {
        const auto u = static_cast<std::size_t>(std::abs(2 * x + 1 - middleX));
        const std::int64_t halfHeight = shape.halfHeights[u];
        coverRows(mask, x, (middleY - halfHeight) >> 1, ((middleY + halfHeight - 1) >> 1) + 1);
    }
}

}  // namespace services
