#include "services/raster_strip.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "services/wide_loops.h"

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

// `column` is one of the strip's.
void coverRows(CoverMask& mask, std::int64_t column, std::int64_t first, std::int64_t end) {
    first = std::max<std::int64_t>(first, 0);
    end = std::min<std::int64_t>(end, mask.area.height);
    if (first >= end) return;
    coverWords(mask.bits.data() + static_cast<std::size_t>(column - mask.area.first) * mask.words,
               static_cast<std::size_t>(first), static_cast<std::size_t>(end));
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

// Rows as bits, the row above the first word's first bit being lost.

// Each row and those next to it. `before` is room to work in.
void growByOne(std::vector<std::uint64_t>& rows, std::vector<std::uint64_t>& before) {
    before = rows;
    const std::size_t count = rows.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t above = i > 0 ? before[i - 1] >> (wordBits - 1) : 0;
        const std::uint64_t below = i + 1 < count ? before[i + 1] << (wordBits - 1) : 0;
        rows[i] |= (before[i] << 1) | above | (before[i] >> 1) | below;
    }
}

// Each row and the one so far below it, less than a word.
void growDown(std::vector<std::uint64_t>& rows, unsigned distance) {
    for (std::size_t i = rows.size(); i-- > 0;) {
        const std::uint64_t above = i > 0 ? rows[i - 1] >> (wordBits - distance) : 0;
        rows[i] |= (rows[i] << distance) | above;
    }
}

// Rows that begin a word above the image. Those below the image are cut off.
void coverColumn(CoverMask& mask, std::int64_t column, const std::vector<std::uint64_t>& rows) {
    if (column < mask.area.first || column >= mask.area.end) return;
    std::uint64_t* const to =
        mask.bits.data() + static_cast<std::size_t>(column - mask.area.first) * mask.words;
    const std::size_t count = std::min(mask.words, rows.size() - 1);
    for (std::size_t i = 0; i < count; ++i)
        to[i] |= rows[i + 1];
    const auto rest = static_cast<unsigned>(mask.area.height) % wordBits;
    if (rest != 0) to[mask.words - 1] &= ~std::uint64_t{0} >> (wordBits - rest);
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

// Calls act(first row, end row) for each run of covered rows within a word.
template <typename Act>
void forEachRun(std::uint64_t word, std::size_t firstRow, Act act) {
    while (word != 0) {
        const auto start = static_cast<unsigned>(std::countr_zero(word));
        const auto length = static_cast<unsigned>(std::countr_one(word >> start));
        act(firstRow + start, firstRow + start + length);
        if (start + length == wordBits) return;
        word &= ~std::uint64_t{0} << (start + length);
    }
}

// Blends one after the other, as the rule says it.
std::uint32_t blendedOnce(std::uint32_t pixel, std::uint32_t halfPixel) {
    return halfPixel + ((pixel >> 1) & 0x7F7F7F7FU);
}

SERVICES_WIDE_LOOP
void blendOnce(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel) {
    for (std::size_t i = 0; i < count; ++i)
        rows[i] = blendedOnce(rows[i], halfPixel);
}

SERVICES_WIDE_LOOP
void blendTwice(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel) {
    for (std::size_t i = 0; i < count; ++i)
        rows[i] = blendedOnce(blendedOnce(rows[i], halfPixel), halfPixel);
}

SERVICES_WIDE_LOOP
void blendThrice(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel) {
    for (std::size_t i = 0; i < count; ++i) {
        rows[i] = blendedOnce(blendedOnce(blendedOnce(rows[i], halfPixel), halfPixel), halfPixel);
    }
}

// c blends make floor((d + s * (2^(c + 1) - 2)) / 2^c) of a channel d, where s is the colour's
// half: nested divisions by two with cut remainders are one division. With c up to 8 the dividend
// has 16 bits, two channels fit in a word, and what one of them shifts into the other is masked
// away.
SERVICES_WIDE_LOOP
void blendAtOnce(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel, int times) {
    constexpr std::uint32_t channels = 0x00FF00FFU;
    const auto shift = static_cast<unsigned>(times);
    const std::uint32_t factor = (2U << shift) - 2;
    const std::uint32_t addedEven = (halfPixel & channels) * factor;
    const std::uint32_t addedOdd = ((halfPixel >> 8) & channels) * factor;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t even = ((rows[i] & channels) + addedEven) >> shift;
        const std::uint32_t odd = (((rows[i] >> 8) & channels) + addedOdd) >> shift;
        rows[i] = (even & channels) | ((odd & channels) << 8);
    }
}

// 8 blends or more come to 2 * s where d is at least that, else to 2 * s - 1. A 2 * s of 256 is
// always out of reach: then 255 comes out, here as 254 and one more.
SERVICES_WIDE_LOOP
void blendFully(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel) {
    constexpr std::size_t block = 16;
    std::array<std::uint8_t, block> thresholds{};
    std::array<std::uint8_t, block> bases{};
    for (std::size_t i = 0; i < block; ++i) {
        const unsigned channel = 2 * ((halfPixel >> (8 * (i % 4))) & 255U);
        thresholds[i] = static_cast<std::uint8_t>(channel);
        bases[i] = static_cast<std::uint8_t>(channel == 256 ? 254 : channel - 1);
    }
    static_assert(std::endian::native == std::endian::little);
    auto* bytes = reinterpret_cast<std::uint8_t*>(rows);
    std::size_t left = count * 4;
    for (; left >= block; left -= block, bytes += block) {
        for (std::size_t i = 0; i < block; ++i) {
            bytes[i] = static_cast<std::uint8_t>(bases[i] + (bytes[i] >= thresholds[i] ? 1 : 0));
        }
    }
    for (std::size_t i = 0; i < left; ++i) {
        bytes[i] = static_cast<std::uint8_t>(bases[i] + (bytes[i] >= thresholds[i] ? 1 : 0));
    }
}

using FourPixels = std::uint32_t __attribute__((vector_size(16)));
constexpr int blockSide = 4;

FourPixels loadFour(const std::uint32_t* from) {
    FourPixels four;
    std::memcpy(&four, from, sizeof(four));
    return four;
}

// Four rows of four columns, turned into four rows of the surface.
void storeBlock(const std::uint32_t* column, std::size_t columnStride, std::uint32_t* row,
                std::size_t rowStride) {
    const FourPixels a = loadFour(column);
    const FourPixels b = loadFour(column + columnStride);
    const FourPixels c = loadFour(column + 2 * columnStride);
    const FourPixels d = loadFour(column + 3 * columnStride);
    const FourPixels ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const FourPixels ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const FourPixels cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const FourPixels cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    const std::array<FourPixels, blockSide> rows = {
        __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5),
        __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7),
        __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5),
        __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7)};
    for (const FourPixels& four : rows) {
        std::memcpy(row, &four, sizeof(four));
        row += rowStride;
    }
}

}  // namespace

void clearMask(CoverMask& mask, const StripArea& area) {
    mask.area = area;
    mask.words = (static_cast<std::size_t>(area.height) + wordBits - 1) / wordBits;
    mask.bits.assign(mask.words * static_cast<std::size_t>(area.columns()), 0);
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
    for (std::int64_t parity = 0; parity < 2; ++parity) {
        // The outermost column is the lowest one; 2 * px + 1 - Cx is even where Cx is odd.
        const std::int64_t outermost = reach - (reach + parity + 1) % 2;
        shape.joint[static_cast<std::size_t>(parity)] =
            outermost < 0 ? 0 : 2 * shape.halfHeights[static_cast<std::size_t>(outermost)];
    }
    return shape;
}

void coverCircles(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                  std::int64_t firstMiddleY, std::int64_t lastMiddleY) {
    const auto reach = static_cast<std::int64_t>(shape.halfHeights.size()) - 1;
    // Arithmetic shifts: quotients rounded down, for negative numbers as well.
    const std::int64_t first = std::max<std::int64_t>((middleX - reach) >> 1, mask.area.first);
    const std::int64_t end =
        std::min<std::int64_t>(((middleX + reach - 1) >> 1) + 1, mask.area.end);
    for (std::int64_t x = first; x < end; ++x) {
        const auto u = static_cast<std::size_t>(std::abs(2 * x + 1 - middleX));
        const std::int64_t halfHeight = shape.halfHeights[u];
        coverRows(mask, x, (firstMiddleY - halfHeight) >> 1,
                  ((lastMiddleY + halfHeight - 1) >> 1) + 1);
    }
}

void coverCircleCrowd(CoverMask& mask, const CircleShape& shape, std::int64_t middleX,
                      const std::vector<std::uint64_t>& rows) {
    const auto reach = static_cast<std::int64_t>(shape.halfHeights.size()) - 1;
    std::vector<std::uint64_t> grown = rows;
    std::vector<std::uint64_t> before;
    std::int64_t rowsAround = 0;
    // From the outermost column, which is the lowest, to the middle: each needs a little more.
    for (std::int64_t u = reach; u >= 0; --u) {
        if ((u + middleX) % 2 == 0) continue;
        const std::int64_t wanted = shape.halfHeights[static_cast<std::size_t>(u)] / 2;
        for (; rowsAround < wanted; ++rowsAround)
            growByOne(grown, before);
        coverColumn(mask, (middleX + u - 1) / 2, grown);
        if (u > 0) coverColumn(mask, (middleX - u - 1) / 2, grown);
    }
}

void coverBoxCrowd(CoverMask& mask, std::int64_t left, int side,
                   const std::vector<std::uint64_t>& rows) {
    std::vector<std::uint64_t> grown = rows;
    for (unsigned height = 1; height < static_cast<unsigned>(side);) {
        const unsigned more = std::min({height, static_cast<unsigned>(side) - height, 63U});
        growDown(grown, more);
        height += more;
    }
    for (std::int64_t x = left; x < left + side; ++x)
        coverColumn(mask, x, grown);
}

void fillStrip(StripPixels& strip, const StripArea& area, Colour colour) {
    strip.area = area;
    strip.pixels.assign(
        static_cast<std::size_t>(area.columns()) * static_cast<std::size_t>(area.height),
        pixelOf(colour));
}

void fillStripBox(StripPixels& strip, const DeviceBox& box, Colour colour) {
    const std::int64_t first = std::max<std::int64_t>(box.left, strip.area.first);
    const std::int64_t end = std::min<std::int64_t>(box.right, strip.area.end);
    const std::int64_t top = std::max<std::int64_t>(box.top, 0);
    const std::int64_t bottom = std::min<std::int64_t>(box.bottom, strip.area.height);
    if (top >= bottom) return;
    for (std::int64_t x = first; x < end; ++x) {
        std::fill_n(strip.column(static_cast<int>(x - strip.area.first)) + top, bottom - top,
                    pixelOf(colour));
    }
}

void fillCovered(StripPixels& strip, const CoverMask& mask, Colour colour) {
    const std::uint32_t pixel = pixelOf(colour);
    for (int x = 0; x < strip.area.columns(); ++x) {
        const std::uint64_t* words = mask.column(x);
        std::uint32_t* rows = strip.column(x);
        for (std::size_t word = 0; word < mask.words; ++word) {
            forEachRun(words[word], word * wordBits,
                       [rows, pixel](std::size_t first, std::size_t end) {
                           for (std::size_t row = first; row < end; ++row)
                               rows[row] = pixel;
                       });
        }
    }
}

void blendColumn(std::uint32_t* rows, std::size_t count, std::uint32_t halfPixel, int times) {
    switch (times) {
        case 0:
            break;
        case 1:
            blendOnce(rows, count, halfPixel);
            break;
        case 2:
            blendTwice(rows, count, halfPixel);
            break;
        case 3:
            blendThrice(rows, count, halfPixel);
            break;
        case mostBlends:
            blendFully(rows, count, halfPixel);
            break;
        default:
            blendAtOnce(rows, count, halfPixel, times);
            break;
    }
}

void storeStrip(Surface& surface, const StripPixels& strip, int top, int bottom) {
    const auto stride = static_cast<std::size_t>(surface.deviceWidth);
    const auto columnStride = static_cast<std::size_t>(strip.area.height);
    const int columns = strip.area.columns();
    std::uint32_t* const surfaceRows =
        surface.pixels.data() + static_cast<std::size_t>(strip.area.first);
    // Blocks of rows that write whole cache lines of the surface one after the other.
    int y = top;
    for (; y + blockSide <= bottom; y += blockSide) {
        std::uint32_t* const to = surfaceRows + static_cast<std::size_t>(y) * stride;
        int x = 0;
        for (; x + blockSide <= columns; x += blockSide)
            storeBlock(strip.column(x) + y, columnStride, to + x, stride);
        for (; x < columns; ++x) {
            for (std::size_t i = 0; i < blockSide; ++i)
                to[i * stride + static_cast<std::size_t>(x)] =
                    strip.column(x)[y + static_cast<int>(i)];
        }
    }
    for (; y < bottom; ++y) {
        for (int x = 0; x < columns; ++x)
            surfaceRows[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)] =
                strip.column(x)[y];
    }
}

void loadStrip(StripPixels& strip, const Surface& surface, int top, int bottom) {
    const auto stride = static_cast<std::size_t>(surface.deviceWidth);
    for (int x = 0; x < strip.area.columns(); ++x) {
        std::uint32_t* to = strip.column(x);
        const std::uint32_t* from =
            surface.pixels.data() + static_cast<std::size_t>(strip.area.first + x);
        for (int y = top; y < bottom; ++y)
            to[y] = from[static_cast<std::size_t>(y) * stride];
    }
}

}  // namespace services
