#include "services/raster/raster_strip.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "services/raster/cover_mask.h"
#include "services/raster/wide_loops.h"

namespace services {
namespace {

constexpr unsigned wordBits = 64;

using EightPixels = std::uint32_t __attribute__((vector_size(32)));
constexpr unsigned eight = 8;

// The rows of one word. Most words that are not empty have covered and uncovered rows, which no
// branch could foresee.
SERVICES_PART_OF_LOOP void fillWord(std::uint32_t* rows, std::uint64_t word, std::uint32_t pixel) {
    constexpr EightPixels bitOf = {1, 2, 4, 8, 16, 32, 64, 128};
    for (unsigned first = 0; first < wordBits; first += eight) {
        const auto bits = static_cast<std::uint32_t>(word >> first) & 255U;
        const auto covered =
            reinterpret_cast<EightPixels>(((EightPixels{} + bits) & bitOf) == bitOf);
        EightPixels old;
        std::memcpy(&old, rows + first, sizeof(old));
        const EightPixels filled = (covered & pixel) | (~covered & old);
        std::memcpy(rows + first, &filled, sizeof(filled));
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

void fillStrip(StripPixels& strip, const StripArea& area, Colour colour) {
    strip.area = area;
    // Whole words of rows for fillWord; and a stride that is no multiple of 1,024, because the
    // pixels of one row would share few places of the nearest cache.
    const std::size_t words = (static_cast<std::size_t>(area.height) + wordBits - 1) / wordBits;
    strip.stride = words * wordBits + 2 * stripRoom;
    strip.pixels.assign(static_cast<std::size_t>(area.columns()) * strip.stride, pixelOf(colour));
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

SERVICES_WIDE_LOOP
void fillCovered(StripPixels& strip, const CoverMask& mask, Colour colour) {
    const std::uint32_t pixel = pixelOf(colour);
    for (int x = 0; x < strip.area.columns(); ++x) {
        const std::uint64_t* words = mask.column(x);
        std::uint32_t* rows = strip.column(x);
        for (std::size_t word = mask.firstWord; word < mask.endWord; ++word) {
            if (words[word] != 0) fillWord(rows + word * wordBits, words[word], pixel);
        }
    }
}

SERVICES_WIDE_LOOP
void fillUncovered(StripPixels& strip, const CoverMask& mask, CoverMask& covered, Colour colour) {
    if (mask.firstWord >= mask.endWord) return;
    covered.firstWord = std::min(covered.firstWord, mask.firstWord);
    covered.endWord = std::max(covered.endWord, mask.endWord);
    const std::uint32_t pixel = pixelOf(colour);
    for (int x = 0; x < strip.area.columns(); ++x) {
        const std::uint64_t* words = mask.column(x);
        std::uint64_t* coveredWords = covered.column(x);
        std::uint32_t* rows = strip.column(x);
        for (std::size_t word = mask.firstWord; word < mask.endWord; ++word) {
            const std::uint64_t left = words[word] & ~coveredWords[word];
            if (left == 0) continue;
            coveredWords[word] |= left;
            fillWord(rows + word * wordBits, left, pixel);
        }
    }
}

void fillUncoveredBox(StripPixels& strip, const DeviceBox& box, CoverMask& covered, Colour colour) {
    const std::uint32_t pixel = pixelOf(colour);
    const std::int64_t first = std::max<std::int64_t>(box.left, strip.area.first);
    const std::int64_t end = std::min<std::int64_t>(box.right, strip.area.end);
    const std::int64_t top = std::max<std::int64_t>(box.top, 0);
    const std::int64_t bottom = std::min<std::int64_t>(box.bottom, strip.area.height);
    for (std::int64_t x = first; x < end; ++x) {
        const auto column = static_cast<int>(x - strip.area.first);
        const std::uint64_t* words = covered.column(column);
        for (auto row = top; row < bottom; ++row) {
            const auto place = static_cast<std::size_t>(row);
            if ((words[place / wordBits] >> (place % wordBits) & 1) == 0) {
                strip.column(column)[row] = pixel;
            }
        }
        coverRows(covered, x, top, bottom);
    }
}

void storeStrip(Surface& surface, const StripPixels& strip, int top, int bottom) {
    const auto stride = static_cast<std::size_t>(surface.deviceWidth);
    const std::size_t columnStride = strip.stride;
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
