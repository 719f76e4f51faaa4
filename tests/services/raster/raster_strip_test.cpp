// A strip's columns against the same marks painted into a surface, pixel by pixel: what a crowd of
// marks covers, runs of blended boxes, and filling from the uppermost mark to the lowest.
#include "services/raster/raster_strip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "services/raster/column_runs.h"
#include "services/raster/cover_mask.h"
#include "services/raster/point_stamps.h"
#include "tests/services/raster/reference_painter.h"

namespace {

using services::CoverMask;
using services::StripArea;
using services::StripPixels;
using services::Surface;

constexpr services::Colour red = services::rgb(255, 0, 0);
constexpr services::Colour blue = services::rgb(0, 0, 255);

class Dice {
  public:
    explicit Dice(unsigned seed) : random(seed) {}
    int between(int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    }

  private:
    std::mt19937 random;
};

Surface whiteSurface(int width, int height) {
    Surface surface;
    services::resizeSurface(surface, width, height, 1);
    return surface;
}

std::size_t at(const Surface& surface, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.deviceWidth) +
           static_cast<std::size_t>(x);
}

// Everything but the strip stays as it was.
void expectStrip(const Surface& before, const Surface& painted, const StripPixels& strip) {
    Surface stored = before;
    services::storeStrip(stored, strip, 0, strip.area.height);
    for (int y = 0; y < stored.height; ++y) {
        for (int x = 0; x < stored.width; ++x) {
            const bool inside = x >= strip.area.first && x < strip.area.end;
            const Surface& expected = inside ? painted : before;
            ASSERT_EQ(stored.pixels[at(stored, x, y)], expected.pixels[at(expected, x, y)])
                << "at " << x << ", " << y;
        }
    }
}

StripPixels whiteStrip(const StripArea& area) {
    StripPixels strip;
    services::fillStrip(strip, area, services::white);
    return strip;
}

// Heights around whole words of rows.
constexpr std::array<int, 6> heights = {1, 63, 64, 65, 130, 1024};

struct Stamp {
    services::PointStamp stamp;
    void (*paint)(Surface& surface, int x, int y);
};

// At a pixel ratio of 1 the middle of a circle is that of a pixel.
services::PointStamp circleStamp(int radius) {
    return services::circleStamp(services::circleShape(radius, 1), 1, 1);
}

std::vector<Stamp> stamps() {
    return {{circleStamp(4),
             [](Surface& s, int x, int y) { reference_painter::fillCircle(s, x, y, 4, red); }},
            {circleStamp(2),
             [](Surface& s, int x, int y) { reference_painter::fillCircle(s, x, y, 2, red); }},
            {circleStamp(0),
             [](Surface& s, int x, int y) { reference_painter::fillCircle(s, x, y, 0, red); }},
            {services::boxStamp(6, 6),
             [](Surface& s, int x, int y) { reference_painter::fillBox(s, x, y, 6, 6, red); }},
            {services::boxStamp(7, 3),
             [](Surface& s, int x, int y) { reference_painter::fillBox(s, x, y, 7, 3, red); }},
            {services::boxStamp(1, 1),
             [](Surface& s, int x, int y) { reference_painter::fillBox(s, x, y, 1, 1, red); }}};
}

// The four shapes that circles of one radius have, against the circle as its rows and columns are
// asked for.
TEST(RasterStrip, EveryShapeOfACircleHasAStamp) {
    services::StampRoom room;
    for (const double ratio : {1.0, 1.25, 1.5, 2.0, 2.75}) {
        for (const int radius : {0, 1, 2, 4, 7}) {
            const services::CircleShape shape = services::circleShape(radius, ratio);
            for (int middleX = 40; middleX < 42; ++middleX) {
                for (int middleY = 60; middleY < 62; ++middleY) {
                    const StripArea area = {0, 50, 70};
                    CoverMask circle;
                    services::clearMask(circle, area);
                    services::coverCircle(circle, shape, middleX, middleY);

                    services::PointBits points;
                    services::clearPoints(points, -30, 80, area.height);
                    const auto row = static_cast<std::size_t>(std::int64_t{middleY} / 2 + 64);
                    points.add(points.column(middleX / 2), row / 64,
                               std::uint64_t{1} << (row % 64));
                    CoverMask stamp;
                    services::clearMask(stamp, area);
                    services::coverStamps(stamp, points,
                                          services::circleStamp(shape, middleX % 2, middleY % 2),
                                          room);
                    EXPECT_EQ(stamp.bits, circle.bits) << "radius " << radius << " at " << ratio
                                                       << ", middle " << middleX << ", " << middleY;
                }
            }
        }
    }
}

TEST(RasterStrip, StampsCoverWhatTheirMarksPaint) {
    Dice dice(5);
    services::PointBits points;  // used again and again, at all sizes
    services::StampRoom room;
    for (const int height : heights) {
        for (const Stamp& stamp : stamps()) {
            for (const int number : {0, 1, 7, 300}) {
                const Surface before = whiteSurface(40, height);
                const StripArea area = {10, 10 + dice.between(1, 30), height};
                const int firstColumn = dice.between(-12, 30);
                const int endColumn = firstColumn + dice.between(1, 40);
                services::clearPoints(points, firstColumn, endColumn, height);
                Surface painted = before;
                for (int i = 0; i < number; ++i) {
                    const int x = dice.between(firstColumn, endColumn - 1);
                    const int y = dice.between(-20, height + 20);
                    const auto row =
                        static_cast<std::size_t>(std::int64_t{y} + services::PointBits::rowsAbove);
                    points.add(points.column(x), row / 64, std::uint64_t{1} << (row % 64));
                    stamp.paint(painted, x, y);
                }
                CoverMask mask;
                services::clearMask(mask, area);
                services::coverStamps(mask, points, stamp.stamp, room);
                StripPixels strip = whiteStrip(area);
                services::fillCovered(strip, mask, red);
                ASSERT_NO_FATAL_FAILURE(expectStrip(before, painted, strip))
                    << number << " points, height " << height << ", columns " << firstColumn
                    << " to " << endColumn;
            }
        }
    }
}

TEST(RasterStrip, LinesBoxesAndCirclesCoverWhatTheyPaint) {
    Dice dice(6);
    CoverMask mask;  // used again and again, at all sizes
    for (int turn = 0; turn < 300; ++turn) {
        const int height = heights[static_cast<std::size_t>(dice.between(0, 5))];
        const Surface before = whiteSurface(60, height);
        const StripArea area = {dice.between(0, 30), dice.between(31, 60), height};
        services::clearMask(mask, area);
        Surface painted = before;
        for (int i = 0; i < 6; ++i) {
            const int x1 = dice.between(-100, 160);
            const int x2 = dice.between(-100, 160);
            const int y1 = dice.between(-100, height + 100);
            const int y2 = dice.between(-100, height + 100);
            reference_painter::drawLine(painted, x1, y1, x2, y2, red);
            services::coverLine(mask, x1, y1, x2, y2, services::lineThickness(1));
            const int side = dice.between(0, 9);
            reference_painter::fillBox(painted, x2, y1, side, side, red);
            services::coverBox(mask, services::boxPixels(1, x2, y1, side, side));
            const int radius = dice.between(0, 12);
            reference_painter::fillCircle(painted, x1, y2, radius, red);
            services::coverCircle(mask, services::circleShape(radius, 1),
                                  services::deviceMiddle(x1, 1), services::deviceMiddle(y2, 1));
        }
        StripPixels strip = whiteStrip(area);
        services::fillCovered(strip, mask, red);
        ASSERT_NO_FATAL_FAILURE(expectStrip(before, painted, strip)) << turn;
    }
}

// Masks of random rows, the same painted from the lowest up and from the uppermost down.
TEST(RasterStrip, FillingFromTheUppermostDownIsFillingFromTheLowestUp) {
    Dice dice(7);
    for (const int height : heights) {
        const StripArea area = {3, 20, height};
        std::vector<CoverMask> masks(5);
        for (CoverMask& mask : masks) {
            services::clearMask(mask, area);
            for (int i = dice.between(0, 40); i > 0; --i) {
                const int first = dice.between(-5, height);
                services::coverRows(mask, dice.between(3, 19), first, first + dice.between(0, 70));
            }
        }
        const services::DeviceBox box = {0, height / 2, 12, height / 2 + 3};
        const auto colourOf = [](std::size_t i) { return static_cast<services::Colour>(40 * i); };
        StripPixels upward = whiteStrip(area);
        services::fillCovered(upward, masks[0], colourOf(0));
        services::fillCovered(upward, masks[1], colourOf(1));
        services::fillStripBox(upward, box, blue);
        for (std::size_t i = 2; i < masks.size(); ++i)
            services::fillCovered(upward, masks[i], colourOf(i));

        StripPixels downward = whiteStrip(area);
        CoverMask covered;
        services::clearMask(covered, area);
        for (std::size_t i = masks.size(); i-- > 2;)
            services::fillUncovered(downward, masks[i], covered, colourOf(i));
        services::fillUncoveredBox(downward, box, covered, blue);
        services::fillUncovered(downward, masks[1], covered, colourOf(1));
        services::fillUncovered(downward, masks[0], covered, colourOf(0));

        const Surface before = whiteSurface(24, height);
        Surface painted = before;
        services::storeStrip(painted, upward, 0, height);
        ASSERT_NO_FATAL_FAILURE(expectStrip(before, painted, downward)) << height;
    }
}

TEST(RasterStrip, RunsOfBlendedBoxesAreTheBoxesBlendedOneByOne) {
    Dice dice(8);
    services::ColumnRuns runs;  // used again and again, at all heights
    for (int turn = 0; turn < 400; ++turn) {
        const int height = heights[static_cast<std::size_t>(dice.between(1, 5))];
        Surface painted = whiteSurface(1, height);
        std::vector<std::uint64_t> breaks = services::noBreaks(height);
        for (int i = dice.between(0, 3); i > 0; --i) {  // the background
            const int row = dice.between(0, height - 1);
            reference_painter::fillBox(painted, 0, row, 1, 1, dice.between(0, 0xFFFFFF));
            services::addBreak(breaks, row);
            services::addBreak(breaks, row + 1);
        }
        StripPixels strip;
        services::fillStrip(strip, {0, 1, height}, services::white);
        services::loadStrip(strip, painted, 0, height);

        const int end = dice.between(1, height);
        services::addBreak(breaks, end);
        services::beginRuns(runs, height, breaks);
        struct Stack {
            std::vector<std::int16_t> tops;
            services::Colour colour;
        };
        std::vector<Stack> stacks(static_cast<std::size_t>(dice.between(0, 25)));
        for (Stack& stack : stacks) {
            stack.colour = dice.between(0, 0xFFFFFF);
            stack.tops.resize(static_cast<std::size_t>(dice.between(0, services::mostBlends)));
            const int lowest = dice.between(0, end - 1);
            for (std::int16_t& top : stack.tops)
                top = static_cast<std::int16_t>(dice.between(lowest / 2, lowest));
            std::sort(stack.tops.begin(), stack.tops.end());
            for (const std::int16_t top : stack.tops) {
                services::breakAt(runs, top);
                reference_painter::blendBox(painted, 0, top, 1, end - top, stack.colour);
            }
        }
        services::gatherRuns(runs, strip.column(0));
        for (const Stack& stack : stacks) {
            services::blendRuns(runs, stack.tops.data(), static_cast<int>(stack.tops.size()), end,
                                services::halfPixelOf(stack.colour));
        }
        services::spreadRuns(runs, strip.column(0));
        ASSERT_NO_FATAL_FAILURE(expectStrip(whiteSurface(1, height), painted, strip)) << turn;
    }
}

// What makes it enough to know the highest eight of any number of boxes.
TEST(RasterStrip, MoreBlendsThanTheMostChangeNothing) {
    for (int colour = 0; colour < 256; ++colour) {
        for (int background = 0; background < 256; ++background) {
            Surface surface = whiteSurface(1, 1);
            reference_painter::fillBox(surface, 0, 0, 1, 1, background);
            for (int i = 0; i < services::mostBlends; ++i)
                reference_painter::blendBox(surface, 0, 0, 1, 1, colour);
            const std::uint32_t most = surface.pixels.front();
            reference_painter::blendBox(surface, 0, 0, 1, 1, colour);
            ASSERT_EQ(surface.pixels.front(), most) << colour << " over " << background;
        }
    }
}

}  // namespace
