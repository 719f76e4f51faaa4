#include "services/raster/raster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/services/raster/raster_marks.h"
#include "tests/services/raster/reference_painter.h"

namespace services {
namespace {

using raster_tests::largest;
using raster_tests::pictureOf;
using raster_tests::pixelAt;
using raster_tests::smallest;
using raster_tests::surfaceOf;

constexpr double ratios[] = {1, 1.1, 1.25, 1.5, 1.75, 2, 3};

// Sizes.

TEST(Raster, AResizedSurfaceIsWhite) {
    Surface surface = surfaceOf(4, 2);
    fillSurface(surface, black);
    EXPECT_EQ(pictureOf(surface), "####\n####\n");
    resizeSurface(surface, 3, 1, 1);
    EXPECT_EQ(pictureOf(surface), "...\n");
}

TEST(Raster, SizesAndRatiosOutsideTheirRangesAreCut) {
    struct Case {
        const char* name;
        int width, height;
        double pixelRatio;
        int expectedWidth, expectedHeight;
        double expectedRatio;
        int deviceWidth, deviceHeight;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {"plain", 5, 3, 1.0, 5, 3, 1.0, 5, 3},
        {"halves are rounded upward", 5, 3, 1.5, 5, 3, 1.5, 8, 5},
        {"no width", 0, 3, 2.0, 0, 3, 2.0, 0, 6},
        {"negative width", -1, 3, 1.0, 0, 3, 1.0, 0, 3},
        {"smallest width and height", smallest, smallest, 1.0, 0, 0, 1.0, 0, 0},
        {"small ratio", 5, 3, 0.5, 5, 3, 1.0, 5, 3},
        {"negative ratio", 5, 3, -2.0, 5, 3, 1.0, 5, 3},
        {"infinite ratio", 5, 3, infinity, 5, 3, 1.0, 5, 3},
        {"ratio that is no number", 5, 3, notANumber, 5, 3, 1.0, 5, 3},
        {"large ratio", 2, 1, 65.0, 2, 1, 64.0, 128, 64},
        {"largest ratio", 2, 1, std::numeric_limits<double>::max(), 2, 1, 64.0, 128, 64},
        {"widest", 32767, 1, 1.0, 32767, 1, 1.0, 32767, 1},
        {"too wide", 32768, 1, 1.0, 32768, 1, 1.0, 32767, 1},
        {"too high in device pixels", 1, 20000, 3.0, 1, 20000, 3.0, 3, 32767},
        {"largest width of an empty image", largest, 0, 64.0, largest, 0, 64.0, 32767, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Surface surface = surfaceOf(c.width, c.height, c.pixelRatio);
        EXPECT_EQ(surface.width, c.expectedWidth);
        EXPECT_EQ(surface.height, c.expectedHeight);
        EXPECT_EQ(surface.pixelRatio, c.expectedRatio);
        EXPECT_EQ(surface.deviceWidth, c.deviceWidth);
        EXPECT_EQ(surface.deviceHeight, c.deviceHeight);
        EXPECT_EQ(surface.pixels.size(), static_cast<std::size_t>(c.deviceWidth) *
                                             static_cast<std::size_t>(c.deviceHeight));
        EXPECT_TRUE(std::all_of(surface.pixels.begin(), surface.pixels.end(),
                                [](std::uint32_t pixel) { return pixel == 0xFFFFFFFFU; }));
    }
}

TEST(Raster, PixelsHoldRedGreenAndBlueFromTheTopDown) {
    Surface surface = surfaceOf(1, 1);
    fillSurface(surface, rgb(0x12, 0x34, 0x56));
    EXPECT_EQ(pixelAt(surface, 0, 0), 0xFF123456U);
}

// What marks cover.

TEST(Raster, ABlendedBoxHalvesColourAndOldPixel) {
    struct Case {
        const char* name;
        Colour old;
        Colour colour;
        std::uint32_t expected;
    };
    const Case cases[] = {
        {"black over black", black, black, 0xFF000000U},
        {"black over white", white, black, 0xFF7F7F7FU},
        {"white over black", black, white, 0xFF808080U},
        {"white over white stays white", white, white, 0xFFFFFFFFU},
        {"orange over black", black, rgb(200, 100, 1), 0xFF643201U},
        {"orange over white", white, rgb(200, 100, 1), 0xFFE3B180U},
        {"orange over grey blue", rgb(11, 22, 33), rgb(200, 100, 1), 0xFF693D11U},
        {"odd channels do not spill into their neighbours", rgb(1, 1, 1), rgb(0, 0, 0),
         0xFF000000U},
        {"each channel alone", rgb(255, 0, 254), rgb(0, 255, 2), 0xFF7F8080U},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // 21 columns are two blocks and five single pixels.
        Surface surface = surfaceOf(23, 3);
        fillSurface(surface, c.old);
        const std::uint32_t old = pixelAt(surface, 0, 0);
        blendBox(surface, 1, 1, 21, 1, c.colour);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 23; ++x) {
                const bool covered = y == 1 && x >= 1 && x < 22;
                EXPECT_EQ(pixelAt(surface, x, y), covered ? c.expected : old) << x << ", " << y;
            }
        }
    }
}

TEST(Raster, ABlendedBoxCoversTheSamePixelsAsABox) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (int width = -1; width < 12; ++width) {
            Surface opaque = surfaceOf(8, 6, ratio);
            Surface half = opaque;
            fillBox(opaque, -2 + width / 2, 1, width, 3, black);
            blendBox(half, -2 + width / 2, 1, width, 3, black);
            std::string expected = pictureOf(opaque);
            std::replace(expected.begin(), expected.end(), '#', '?');
            EXPECT_EQ(pictureOf(half), expected);
        }
    }
}

// How often the pixels of a row of boxes are covered, by painting each on its own.
std::vector<int> coverage(double ratio, int boxWidth, int boxHeight) {
    Surface surface = surfaceOf(13, 7, ratio);
    std::vector<int> counts(surface.pixels.size());
    for (int y = -2 * boxHeight; y < 7; y += boxHeight) {
        for (int x = -2 * boxWidth; x < 13; x += boxWidth) {
            fillSurface(surface, white);
            fillBox(surface, x, y, boxWidth, boxHeight, black);
            for (std::size_t i = 0; i < counts.size(); ++i) {
                if (surface.pixels[i] == 0xFF000000U) ++counts[i];
            }
        }
    }
    return counts;
}

TEST(Raster, NeighboursNeitherOverlapNorLeaveAGap) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (const int size : {1, 2, 3, 5}) {
            const std::vector<int> counts = coverage(ratio, size, size);
            EXPECT_EQ(std::count(counts.begin(), counts.end(), 1),
                      static_cast<std::ptrdiff_t>(counts.size()));
        }
    }
}

TEST(Raster, RulesAreEquallyThickWhereverTheyStand) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        const auto thickness = static_cast<std::ptrdiff_t>(std::floor(ratio + 0.5));
        for (int position = 0; position < 20; ++position) {
            Surface surface = surfaceOf(24, 24, ratio);
            const std::ptrdiff_t deviceLength = surface.deviceWidth;
            drawHorizontalRule(surface, 0, position, 24, black);
            EXPECT_EQ(std::count(surface.pixels.begin(), surface.pixels.end(), 0xFF000000U),
                      thickness * deviceLength);
            fillSurface(surface, white);
            drawVerticalRule(surface, position, 0, 24, black);
            EXPECT_EQ(std::count(surface.pixels.begin(), surface.pixels.end(), 0xFF000000U),
                      thickness * deviceLength);
        }
    }
}

// The covered rows and columns without the white around them.
std::string shapeOf(const Surface& surface) {
    std::string shape;
    int left = surface.deviceWidth;
    int right = 0;
    for (int y = 0; y < surface.deviceHeight; ++y) {
        for (int x = 0; x < surface.deviceWidth; ++x) {
            if (pixelAt(surface, x, y) == 0xFF000000U) {
                left = std::min(left, x);
                right = std::max(right, x + 1);
            }
        }
    }
    for (int y = 0; y < surface.deviceHeight; ++y) {
        std::string row;
        for (int x = left; x < right; ++x) {
            row += pixelAt(surface, x, y) == 0xFF000000U ? '#' : '.';
        }
        if (row.find('#') != std::string::npos) shape += row + '\n';
    }
    return shape;
}

TEST(Raster, ABoxIsCopiedFromAnotherSurface) {
    Surface from = surfaceOf(6, 4);
    fillSurface(from, black);
    Surface to = surfaceOf(6, 4);
    copyBox(to, from, {4, -3, 99, 2});
    copyBox(to, from, {1, 3, 2, 4});
    copyBox(to, from, {3, 2, 3, 4});
    EXPECT_EQ(pictureOf(to), "....##\n....##\n......\n.#....\n");
}

TEST(Raster, CirclesOfOneRadiusHaveAtMostFourShapes) {
    for (const double ratio : ratios) {
        SCOPED_TRACE(ratio);
        for (int radius = 0; radius < 4; ++radius) {
            std::set<std::string> shapes;
            for (int y = 5; y < 15; ++y) {
                for (int x = 5; x < 15; ++x) {
                    Surface surface = surfaceOf(20, 20, ratio);
                    fillCircle(surface, x, y, radius, black);
                    shapes.insert(shapeOf(surface));
                }
            }
            EXPECT_LE(shapes.size(), 4U) << "radius " << radius;
            // Nothing at all is one of them where a radius of 0 falls between the pixels.
            if (radius > 0) {
                EXPECT_EQ(shapes.count(""), 0U) << "radius " << radius;
            }
        }
    }
}

TEST(Raster, LinesAreTheSameFromBothEnds) {
    std::mt19937 random(7);
    for (const double ratio : ratios) {
        for (int i = 0; i < 300; ++i) {
            const auto coordinate = [&random] { return static_cast<int>(random() % 40) - 10; };
            const int x1 = coordinate(), y1 = coordinate(), x2 = coordinate(), y2 = coordinate();
            Surface there = surfaceOf(20, 20, ratio);
            Surface back = there;
            drawLine(there, x1, y1, x2, y2, black);
            drawLine(back, x2, y2, x1, y1, black);
            ASSERT_EQ(pictureOf(there), pictureOf(back))
                << x1 << ", " << y1 << " to " << x2 << ", " << y2 << " at " << ratio;
        }
    }
}

// A part of a large picture must be what a small surface at that place shows.
TEST(Raster, CutLinesCoverThePixelsOfUncutOnes) {
    std::mt19937 random(11);
    constexpr int offset = 40;
    for (const double ratio : {1.0, 2.0, 3.0}) {  // whole ratios: shifting keeps all roundings
        const auto s = static_cast<int>(ratio);
        for (int i = 0; i < 200; ++i) {
            const auto coordinate = [&random] { return static_cast<int>(random() % 90); };
            const int x1 = coordinate(), y1 = coordinate(), x2 = coordinate(), y2 = coordinate();
            Surface whole = surfaceOf(95, 95, ratio);
            Surface part = surfaceOf(12, 12, ratio);
            drawLine(whole, x1, y1, x2, y2, black);
            drawLine(part, x1 - offset, y1 - offset, x2 - offset, y2 - offset, black);
            for (int y = 0; y < part.deviceHeight; ++y) {
                for (int x = 0; x < part.deviceWidth; ++x) {
                    ASSERT_EQ(pixelAt(part, x, y), pixelAt(whole, x + offset * s, y + offset * s))
                        << x1 << ", " << y1 << " to " << x2 << ", " << y2 << " at " << ratio;
                }
            }
        }
    }
}

// Billions of steps each, if anything outside the surface were walked.
TEST(Raster, ExtremeMarksCostNoMoreThanTheSurface) {
    Surface surface = surfaceOf(20, 10, 1.25);
    for (int i = 0; i < 2000; ++i) {
        drawLine(surface, smallest, smallest + i, largest, largest - i, black);
        drawLine(surface, i, smallest, -i, largest, black);
        fillCircle(surface, i, largest, largest - i, black);
        fillCircle(surface, 0, 0, largest, white);
        drawFrame(surface, -i, -i, largest, largest, black);
    }
    EXPECT_EQ(pixelAt(surface, 0, 0), 0xFFFFFFFFU);
}

// The squares of these circles differ by less than a double can tell: the half width that doubles
// give for the outermost row is 0 instead of 33, 1287 instead of 1288, and 306 instead of 304.
TEST(Raster, TheOutermostRowsOfHugeCirclesAreExact) {
    struct Case {
        const char* name;
        double pixelRatio;
        int centreY;
        int radius;
    };
    const Case cases[] = {
        {"doubles say nothing", 4.0 / 3, -2'147'183'647, 2'147'183'647},
        {"doubles say less", 1.2345678, -2'147'194'347, 2'147'194'348},
        {"doubles say more", 1.2345678, -2'147'195'076, 2'147'195'077},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Surface fast = surfaceOf(1200, 6, c.pixelRatio);
        Surface slow = fast;
        fillCircle(fast, 600, c.centreY, c.radius, black);
        reference_painter::fillCircle(slow, 600, c.centreY, c.radius, black);
        EXPECT_TRUE(fast.pixels == slow.pixels);
        // The row in question begins and ends within the surface.
        bool partlyCovered = false;
        for (int y = 0; y < slow.deviceHeight; ++y) {
            partlyCovered =
                partlyCovered || (pixelAt(slow, 0, y) == 0xFFFFFFFFU &&
                                  pixelAt(slow, slow.deviceWidth / 2, y) == 0xFF000000U);
        }
        EXPECT_TRUE(partlyCovered);
    }
}

}  // namespace
}  // namespace services
