// Everything is clipped first, in 64 bits, and then painted by row loops that test nothing.
//
// With coordinates of 32 bits and a ratio of at most 64, device positions and distances stay below
// 2^39 and are exact in a double as well. Only their products are larger than 64 bits. Where a
// product is needed to the last bit, it is taken modulo 2^64 (in unsigned arithmetic) and
// subtracted from another one near it: the difference is small, therefore exact.
#include "services/raster/raster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace services {

namespace {

constexpr double largestPixelRatio = 64;
constexpr std::int64_t largestDeviceSize = 32767;

std::int64_t floorToInteger(double value) {
    const auto truncated = static_cast<std::int64_t>(value);
    return truncated - (static_cast<double>(truncated) > value ? 1 : 0);
}

// Also right for negative values, unlike a division.
std::int64_t floorOfHalf(std::int64_t value) {
    return value >> 1;
}
std::int64_t ceilingOfHalf(std::int64_t value) {
    return (value + 1) >> 1;
}

std::uint64_t modulo64(std::int64_t value) {
    return static_cast<std::uint64_t>(value);
}

std::int64_t ruleThickness(double pixelRatio) {
    return floorToInteger(pixelRatio + 0.5);
}

// No channel overflows into the next: at most 128 + 127.
std::uint32_t blended(std::uint32_t old, std::uint32_t halfPixel) {
    return halfPixel + ((old >> 1) & 0x7F7F7F7FU);
}

// Blocks of a fixed length, because compilers vectorise those at every level of optimisation.
constexpr std::size_t blockLength = 8;

void fillRow(std::uint32_t* row, std::size_t length, std::uint32_t pixel) {
    for (; length >= blockLength; length -= blockLength, row += blockLength) {
        for (std::size_t i = 0; i < blockLength; ++i)
            row[i] = pixel;
    }
    for (std::size_t i = 0; i < length; ++i)
        row[i] = pixel;
}

void blendRow(std::uint32_t* row, std::size_t length, std::uint32_t halfPixel) {
    for (; length >= blockLength; length -= blockLength, row += blockLength) {
        for (std::size_t i = 0; i < blockLength; ++i)
            row[i] = blended(row[i], halfPixel);
    }
    for (std::size_t i = 0; i < length; ++i)
        row[i] = blended(row[i], halfPixel);
}

// Calls paintRow(first pixel, length) for each row of the box's part inside the surface.
template <typename PaintRow>
void forEachRow(Surface& surface, const DeviceBox& box, PaintRow paintRow) {
    const std::int64_t left = std::max<std::int64_t>(box.left, 0);
    const std::int64_t top = std::max<std::int64_t>(box.top, 0);
    const std::int64_t right = std::min<std::int64_t>(box.right, surface.deviceWidth);
    const std::int64_t bottom = std::min<std::int64_t>(box.bottom, surface.deviceHeight);
    if (left >= right || top >= bottom) return;

    const auto length = static_cast<std::size_t>(right - left);
    const auto stride = static_cast<std::size_t>(surface.deviceWidth);
    std::size_t start = static_cast<std::size_t>(top) * stride + static_cast<std::size_t>(left);
    for (std::int64_t y = top; y < bottom; ++y, start += stride) {
        paintRow(surface.pixels.data() + start, length);
    }
}

void fillDeviceBox(Surface& surface, const DeviceBox& box, std::uint32_t pixel) {
    forEachRow(surface, box,
               [pixel](std::uint32_t* row, std::size_t length) { fillRow(row, length, pixel); });
}

// A line seen along its major axis: at step k, 0 to length, it stands at majorStart + k and at
// minorStart + k * rise / length, rounded to the nearest whole number, halves upward.
struct LineCourse {
    std::int64_t majorStart;
    std::int64_t minorStart;
    std::int64_t length;
    std::int64_t rise;  // from -length to length
};

// The exact minor position is minor + (remainder / (2 * length) - 1/2), remainder at least 0 and
// below 2 * length. So a step adds 2 * rise to the remainder and carries.
struct LinePosition {
    std::int64_t minor;
    std::int64_t remainder;
};

LinePosition positionAt(const LineCourse& course, std::int64_t step) {
    if (step == 0) return {course.minorStart, course.length};
    if (step == course.length) return {course.minorStart + course.rise, course.length};
    const double exactEnough = static_cast<double>(step) * static_cast<double>(course.rise) /
                               static_cast<double>(course.length);
    // Wrong by at most one or two: the products are far from exact, their quotient is below 2^39.
    std::int64_t offset = floorToInteger(exactEnough + 0.5);
    const std::int64_t period = 2 * course.length;
    auto remainder =
        static_cast<std::int64_t>(2 * modulo64(step) * modulo64(course.rise) +
                                  modulo64(course.length) - modulo64(offset) * modulo64(period));
    for (; remainder < 0; remainder += period)
        --offset;
    for (; remainder >= period; remainder -= period)
        ++offset;
    return {course.minorStart + offset, remainder};
}

// The first step from `first` to `end` whose minor position has reached the bound, upward or
// downward as the line goes; `end` if none has.
std::int64_t firstStepReaching(const LineCourse& course, std::int64_t first, std::int64_t end,
                               std::int64_t bound) {
    const auto hasReached = [&course, bound](std::int64_t step) {
        const std::int64_t minor = positionAt(course, step).minor;
        return course.rise >= 0 ? minor >= bound : minor <= bound;
    };
    // Most lines lie wholly inside and need no search.
    if (first >= end || hasReached(first)) return first;
    if (!hasReached(end - 1)) return end;
    while (first < end) {
        const std::int64_t middle = first + (end - first) / 2;
        if (hasReached(middle)) {
            end = middle;
        } else {
            first = middle + 1;
        }
    }
    return first;
}

struct StepRange {
    std::int64_t first;
    std::int64_t end;
};

// The steps whose squares touch the surface.
StepRange visibleSteps(const LineCourse& course, std::int64_t thickness, std::int64_t majorSize,
                       std::int64_t minorSize) {
    StepRange range = {
        std::max<std::int64_t>(1 - thickness - course.majorStart, 0),
        std::min<std::int64_t>(majorSize - 1 - course.majorStart, course.length) + 1,
    };
    if (range.first >= range.end) return {0, 0};
    const bool rising = course.rise >= 0;
    range.first =
        firstStepReaching(course, range.first, range.end, rising ? 1 - thickness : minorSize - 1);
    range.end = firstStepReaching(course, range.first, range.end, rising ? minorSize : -thickness);
    return range;
}

// Lines of one pixel. All steps are inside the surface.
void paintThinLine(Surface& surface, const LineCourse& course, StepRange steps, bool horizontal,
                   std::uint32_t pixel) {
    const std::int64_t stride = surface.deviceWidth;
    const std::int64_t majorStride = horizontal ? 1 : stride;
    const std::int64_t minorStride = horizontal ? stride : 1;
    const LinePosition start = positionAt(course, steps.first);
    const std::int64_t period = 2 * course.length;
    const bool rising = course.rise >= 0;
    // A falling line is the mirror image of a rising one, its remainder counted from the other end.
    const std::int64_t carry = rising ? minorStride : -minorStride;
    const std::int64_t advance = rising ? 2 * course.rise : -2 * course.rise;
    std::int64_t remainder = rising ? start.remainder : period - 1 - start.remainder;
    std::int64_t index =
        (course.majorStart + steps.first) * majorStride + start.minor * minorStride;
    std::uint32_t* const pixels = surface.pixels.data();
    for (std::int64_t step = steps.first; step < steps.end; ++step) {
        pixels[index] = pixel;
        index += majorStride;
        remainder += advance;
        if (remainder >= period) {
            remainder -= period;
            index += carry;
        }
    }
}

// Thicker lines: the squares of a run of steps at one minor position make a box.
void paintThickLine(Surface& surface, const LineCourse& course, StepRange steps, bool horizontal,
                    std::int64_t thickness, std::uint32_t pixel) {
    LinePosition position = positionAt(course, steps.first);
    const std::int64_t period = 2 * course.length;
    std::int64_t runStart = steps.first;
    for (std::int64_t step = steps.first; step < steps.end; ++step) {
        LinePosition next = {position.minor, position.remainder + 2 * course.rise};
        if (next.remainder >= period) {
            next.remainder -= period;
            ++next.minor;
        } else if (next.remainder < 0) {
            next.remainder += period;
            --next.minor;
        }
        if (next.minor != position.minor || step + 1 == steps.end) {
            const std::int64_t majorFirst = course.majorStart + runStart;
            const std::int64_t majorEnd = course.majorStart + step + thickness;
            const std::int64_t minorEnd = position.minor + thickness;
            fillDeviceBox(surface,
                          horizontal ? DeviceBox{majorFirst, position.minor, majorEnd, minorEnd}
                                     : DeviceBox{position.minor, majorFirst, minorEnd, majorEnd},
                          pixel);
            runStart = step + 1;
        }
        position = next;
    }
}

}  // namespace

DeviceBox boxPixels(double pixelRatio, int x, int y, int width, int height) {
    if (width < 1 || height < 1) return {};
    return {deviceEdge(x, pixelRatio), deviceEdge(y, pixelRatio),
            deviceEdge(std::int64_t{x} + width, pixelRatio),
            deviceEdge(std::int64_t{y} + height, pixelRatio)};
}

DeviceBox horizontalRulePixels(double pixelRatio, int x, int y, int length) {
    DeviceBox box = boxPixels(pixelRatio, x, y, length, 1);
    if (length >= 1) box.bottom = box.top + ruleThickness(pixelRatio);
    return box;
}

DeviceBox verticalRulePixels(double pixelRatio, int x, int y, int length) {
    DeviceBox box = boxPixels(pixelRatio, x, y, 1, length);
    if (length >= 1) box.right = box.left + ruleThickness(pixelRatio);
    return box;
}

std::array<DeviceBox, 4> framePixels(double pixelRatio, int x, int y, int width, int height) {
    const DeviceBox box = boxPixels(pixelRatio, x, y, width, height);
    const std::int64_t thickness = ruleThickness(pixelRatio);
    const std::int64_t innerLeft = std::min(box.left + thickness, box.right);
    const std::int64_t innerTop = std::min(box.top + thickness, box.bottom);
    const std::int64_t innerRight = std::max(box.right - thickness, innerLeft);
    const std::int64_t innerBottom = std::max(box.bottom - thickness, innerTop);
    return {{{box.left, box.top, box.right, innerTop},
             {box.left, innerBottom, box.right, box.bottom},
             {box.left, innerTop, innerLeft, innerBottom},
             {innerRight, innerTop, box.right, innerBottom}}};
}

std::int64_t lineThickness(double pixelRatio) {
    return static_cast<std::int64_t>(std::ceil(pixelRatio));
}

std::uint32_t pixelOf(Colour colour) {
    const int value = (red(colour) << 16) | (green(colour) << 8) | blue(colour);
    return 0xFF000000U | static_cast<std::uint32_t>(value);
}

std::uint32_t halfPixelOf(Colour colour) {
    const int value = (((red(colour) + 1) >> 1) << 16) | (((green(colour) + 1) >> 1) << 8) |
                      ((blue(colour) + 1) >> 1);
    return 0x80000000U | static_cast<std::uint32_t>(value);
}

void resizeSurface(Surface& surface, int width, int height, double pixelRatio) {
    const double ratio =
        std::isfinite(pixelRatio) ? std::clamp(pixelRatio, 1.0, largestPixelRatio) : 1.0;
    const auto deviceSize = [ratio](int logicalSize) {
        return static_cast<int>(
            std::min(deviceEdge(std::max(logicalSize, 0), ratio), largestDeviceSize));
    };
    const int deviceWidth = deviceSize(width);
    const int deviceHeight = deviceSize(height);
    const std::size_t count =
        static_cast<std::size_t>(deviceWidth) * static_cast<std::size_t>(deviceHeight);
    if (count > surface.pixels.capacity()) {
        // A larger image needs room before anything changes; the old one is not needed any more.
        std::vector<std::uint32_t> pixels(count);
        surface.pixels.swap(pixels);
    }
    surface.width = std::max(width, 0);
    surface.height = std::max(height, 0);
    surface.pixelRatio = ratio;
    surface.deviceWidth = deviceWidth;
    surface.deviceHeight = deviceHeight;
    surface.pixels.assign(count, pixelOf(white));
}

void fillSurface(Surface& surface, Colour colour) {
    fillDeviceBox(surface, {0, 0, surface.deviceWidth, surface.deviceHeight}, pixelOf(colour));
}

void fillBox(Surface& surface, int x, int y, int width, int height, Colour colour) {
    fillDeviceBox(surface, boxPixels(surface.pixelRatio, x, y, width, height), pixelOf(colour));
}

void blendBox(Surface& surface, int x, int y, int width, int height, Colour colour) {
    const std::uint32_t halfPixel = halfPixelOf(colour);
    forEachRow(
        surface, boxPixels(surface.pixelRatio, x, y, width, height),
        [halfPixel](std::uint32_t* row, std::size_t length) { blendRow(row, length, halfPixel); });
}

void drawFrame(Surface& surface, int x, int y, int width, int height, Colour colour) {
    for (const DeviceBox& edge : framePixels(surface.pixelRatio, x, y, width, height))
        fillDeviceBox(surface, edge, pixelOf(colour));
}

void copyBox(Surface& surface, const Surface& from, const DeviceBox& box) {
    forEachRow(surface, box, [&](std::uint32_t* row, std::size_t length) {
        std::copy_n(from.pixels.data() + (row - surface.pixels.data()), length, row);
    });
}

void drawHorizontalRule(Surface& surface, int x, int y, int length, Colour colour) {
    fillDeviceBox(surface, horizontalRulePixels(surface.pixelRatio, x, y, length), pixelOf(colour));
}

void drawVerticalRule(Surface& surface, int x, int y, int length, Colour colour) {
    fillDeviceBox(surface, verticalRulePixels(surface.pixelRatio, x, y, length), pixelOf(colour));
}

void drawLine(Surface& surface, int x1, int y1, int x2, int y2, Colour colour) {
    const double s = surface.pixelRatio;
    const std::int64_t left = deviceEdge(x1, s);
    const std::int64_t top = deviceEdge(y1, s);
    const std::int64_t dx = deviceEdge(x2, s) - left;
    const std::int64_t dy = deviceEdge(y2, s) - top;
    const bool horizontal = std::abs(dx) >= std::abs(dy);
    LineCourse course = horizontal ? LineCourse{left, top, dx, dy} : LineCourse{top, left, dy, dx};
    if (course.length < 0) {
        course = {course.majorStart + course.length, course.minorStart + course.rise,
                  -course.length, -course.rise};
    }

    const std::int64_t thickness = lineThickness(surface.pixelRatio);
    const StepRange steps =
        visibleSteps(course, thickness, horizontal ? surface.deviceWidth : surface.deviceHeight,
                     horizontal ? surface.deviceHeight : surface.deviceWidth);
    if (steps.first >= steps.end) return;
    if (thickness == 1) {
        paintThinLine(surface, course, steps, horizontal, pixelOf(colour));
    } else {
        paintThickLine(surface, course, steps, horizontal, thickness, pixelOf(colour));
    }
}

void fillCircle(Surface& surface, int centreX, int centreY, int radius, Colour colour) {
    if (radius < 0) return;
    const double s = surface.pixelRatio;
    // In half device pixels, where the middle of pixel p stands at 2 * p + 1.
    const std::int64_t middleX = deviceEdge(2 * std::int64_t{centreX} + 1, s);
    const std::int64_t middleY = deviceEdge(2 * std::int64_t{centreY} + 1, s);
    const double deviceRadius = static_cast<double>(2 * std::int64_t{radius} + 1) * s;
    const double square = std::floor(deviceRadius * deviceRadius);  // the other side is whole
    const auto squareModulo64 = static_cast<std::uint64_t>(std::fmod(square, 0x1p64));
    const std::uint32_t pixel = pixelOf(colour);

    const std::int64_t reach = floorToInteger(deviceRadius) + 1;
    const std::int64_t top = std::max<std::int64_t>(ceilingOfHalf(middleY - reach - 1), 0);
    const std::int64_t bottom =
        std::min<std::int64_t>(floorOfHalf(middleY + reach - 1) + 1, surface.deviceHeight);
    for (std::int64_t y = top; y < bottom; ++y) {
        // The half width is the largest whole number with halfWidth^2 <= square - v^2. Doubles give
        // it roughly, and the excess that this leaves is far below 2^63.
        const std::int64_t v = 2 * y + 1 - middleY;
        const double rest = square - static_cast<double>(v) * static_cast<double>(v);
        std::int64_t halfWidth = rest > 0 ? static_cast<std::int64_t>(std::sqrt(rest)) : 0;
        auto excess = static_cast<std::int64_t>(squareModulo64 - modulo64(v) * modulo64(v) -
                                                modulo64(halfWidth) * modulo64(halfWidth));
        while (excess < 0 && halfWidth > 0) {
            excess += 2 * halfWidth - 1;
            --halfWidth;
        }
        if (excess < 0) continue;
        while (excess > 2 * halfWidth) {
            excess -= 2 * halfWidth + 1;
            ++halfWidth;
        }
        fillDeviceBox(surface,
                      {ceilingOfHalf(middleX - halfWidth - 1), y,
                       floorOfHalf(middleX + halfWidth - 1) + 1, y + 1},
                      pixel);
    }
}

}  // namespace services
