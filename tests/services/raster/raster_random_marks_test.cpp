// Random marks against the reference painter.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <random>
#include <vector>

#include "tests/services/raster/raster_marks.h"

namespace {

using namespace raster_tests;
using services::Colour;
using services::Surface;

constexpr Kind kinds[] = {Kind::surface,        Kind::box,          Kind::blendedBox, Kind::frame,
                          Kind::horizontalRule, Kind::verticalRule, Kind::line,       Kind::circle};

class RandomMarks {
  public:
    explicit RandomMarks(unsigned seed) : random(seed) {}

    int between(int low, int high) {
        const auto span = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
        return static_cast<int>(low + static_cast<std::int64_t>(random() % span));
    }

    int coordinate(int size) {
        switch (nearby ? -1 : between(0, 8)) {
            case 0:
                return between(-100, 100);
            case 1:
                return between(-100'000, 100'000);
            case 2:
                return between(smallest, largest);
            case 3:
                return between(smallest, smallest + 2);
            case 4:
                return between(largest - 2, largest);
            default:
                return between(-2, size + 1);
        }
    }

    int length(int size) {
        switch (nearby ? -1 : between(0, 6)) {
            case 0:
                return between(-100, 100);
            case 1:
                return between(0, largest);
            case 2:
                return between(largest - 2, largest);
            case 3:
                return between(smallest, 0);
            default:
                return between(0, size + 2);
        }
    }

    Mark mark(const Surface& surface) {
        const Kind kind = kinds[static_cast<std::size_t>(
            between(between(0, 7) == 0 ? 0 : 1, static_cast<int>(std::size(kinds)) - 1))];
        const Colour colour = between(smallest, largest);
        nearby = between(0, 2) > 0;
        const int x = coordinate(surface.width);
        const int y = coordinate(surface.height);
        const bool towardsSurface = between(0, 1) == 0;
        if (kind == Kind::line) {
            if (!towardsSurface) {
                return {kind, x, y, coordinate(surface.width), coordinate(surface.height), colour};
            }
            // Through a point near the surface, however far away the ends are.
            return {kind,
                    x,
                    y,
                    cut(2.0 * between(-2, surface.width + 2) - x),
                    cut(2.0 * between(-2, surface.height + 2) - y),
                    colour};
        }
        if (kind == Kind::circle) {
            const int radius = length(surface.width);
            if (!towardsSurface) return {kind, x, y, radius, 0, colour};
            // Its border passes the surface, at its outermost points in half of the cases.
            const double angle = between(0, 1) == 0 ? between(0, 3) * 90.0 : between(0, 359);
            const double radians = angle * 3.14159265358979 / 180;
            return {kind,
                    cut(between(-2, surface.width + 2) + radius * std::cos(radians)),
                    cut(between(-2, surface.height + 2) + radius * std::sin(radians)),
                    radius,
                    0,
                    colour};
        }
        return {kind, x, y, length(surface.width), length(surface.height), colour};
    }

  private:
    static int cut(double value) {
        return static_cast<int>(std::clamp<double>(std::round(value), smallest, largest));
    }

    std::mt19937_64 random;
    bool nearby = false;  // so that enough marks are seen: two thirds are not far from the surface
};

struct RandomRun {
    double pixelRatio;
    int largestSide;  // logical; the reference painter is slow
    int marks;
};

void PrintTo(const RandomRun& run, std::ostream* stream) {
    *stream << run.pixelRatio;
}

class RasterRandomMarks : public testing::TestWithParam<RandomRun> {};

TEST_P(RasterRandomMarks, ArePaintedAsByTheReferencePainter) {
    const RandomRun& run = GetParam();
    RandomMarks random(20'240'229);
    const std::uint32_t guard = 0xDEADBEEFU;
    int visible = 0;
    for (int i = 0; i < run.marks; ++i) {
        Surface fast = surfaceOf(random.between(0, run.largestSide),
                                 random.between(1, run.largestSide), run.pixelRatio);
        for (std::uint32_t& pixel : fast.pixels) {
            pixel = 0xFF000000U | static_cast<std::uint32_t>(random.between(0, 0xFFFFFF));
        }
        Surface slow = fast;
        const std::vector<std::uint32_t> before = fast.pixels;
        const std::size_t size = before.size();
        fast.pixels.resize(size + 64, guard);

        const Mark mark = random.mark(fast);
        paint(fast, mark);
        paintSlowly(slow, mark);
        if (slow.pixels != before) ++visible;

        const auto end = fast.pixels.begin() + static_cast<std::ptrdiff_t>(size);
        ASSERT_EQ(std::count(end, fast.pixels.end(), guard), 64)
            << "mark " << i << " reaches below the surface: " << mark;
        const auto wrong =
            std::mismatch(slow.pixels.begin(), slow.pixels.end(), fast.pixels.begin());
        const auto index = static_cast<int>(wrong.first - slow.pixels.begin());
        ASSERT_EQ(wrong.first, slow.pixels.end())
            << "mark " << i << ": " << mark << " on " << fast.width << " x " << fast.height
            << " at " << run.pixelRatio << ", first wrong device pixel " << index % fast.deviceWidth
            << ", " << index / fast.deviceWidth;
    }
    EXPECT_GT(visible, run.marks / 12) << "most of these marks test nothing";
}

INSTANTIATE_TEST_SUITE_P(AtRatio, RasterRandomMarks,
                         testing::Values(RandomRun{1, 24, 10'000}, RandomRun{1.1, 20, 5000},
                                         RandomRun{1.25, 20, 5000}, RandomRun{1.5, 16, 5000},
                                         RandomRun{1.75, 16, 5000}, RandomRun{2, 12, 5000},
                                         RandomRun{3, 10, 5000}, RandomRun{7.3, 3, 1000},
                                         RandomRun{64, 1, 300}));

}  // namespace
