// The raster on the marks charts consist of, beside a naive painter that asks for every pixel
// whether it lies on the surface. Both run on the same marks, so that the ratio of two lines of the
// output holds whatever else the machine does.
#include "services/raster/raster.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace {

using services::Colour;
using services::Surface;

constexpr int imageWidth = 1920;
constexpr int imageHeight = 1080;
constexpr Colour colour = services::rgb(200, 100, 50);

constexpr int barCount = 500;
constexpr int lineCount = 20'000;
constexpr int circleCount = 10'000;
constexpr int circleRadius = 4;

// The naive painter works at a ratio of 1 only.

void blendPixel(Surface& surface, int x, int y, Colour mark) {
    if (x < 0 || y < 0 || x >= surface.deviceWidth || y >= surface.deviceHeight) return;
    std::uint32_t& pixel =
        surface.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.deviceWidth) +
                       static_cast<std::size_t>(x)];
    const int old = static_cast<int>(pixel & 0xFFFFFF);
    const int red = ((services::red(mark) + 1) >> 1) + (((old >> 16) & 255) >> 1);
    const int green = ((services::green(mark) + 1) >> 1) + (((old >> 8) & 255) >> 1);
    const int blue = ((services::blue(mark) + 1) >> 1) + ((old & 255) >> 1);
    pixel = 0xFF000000U | static_cast<std::uint32_t>((red << 16) | (green << 8) | blue);
}

void setPixel(Surface& surface, int x, int y, Colour mark) {
    if (x < 0 || y < 0 || x >= surface.deviceWidth || y >= surface.deviceHeight) return;
    surface.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.deviceWidth) +
                   static_cast<std::size_t>(x)] =
        0xFF000000U |
        static_cast<std::uint32_t>((services::red(mark) << 16) | (services::green(mark) << 8) |
                                   services::blue(mark));
}

void naiveBlendBox(Surface& surface, int x, int y, int width, int height, Colour mark) {
    for (int py = y; py < y + height; ++py) {
        for (int px = x; px < x + width; ++px)
            blendPixel(surface, px, py, mark);
    }
}

void naiveLine(Surface& surface, int x1, int y1, int x2, int y2, Colour mark) {
    const int steps = std::max({std::abs(x2 - x1), std::abs(y2 - y1), 1});
    for (int step = 0; step <= steps; ++step) {
        const double part = static_cast<double>(step) / steps;
        setPixel(surface, static_cast<int>(std::floor(x1 + part * (x2 - x1) + 0.5)),
                 static_cast<int>(std::floor(y1 + part * (y2 - y1) + 0.5)), mark);
    }
}

void naiveCircle(Surface& surface, int centreX, int centreY, int radius, Colour mark) {
    const int diameter = 2 * radius + 1;
    for (int v = -radius; v <= radius; ++v) {
        for (int u = -radius; u <= radius; ++u) {
            if (4 * (u * u + v * v) <= diameter * diameter) {
                setPixel(surface, centreX + u, centreY + v, mark);
            }
        }
    }
}

template <typename BlendBox>
void paintTallBars(benchmark::State& state, double pixelRatio, BlendBox blendBox) {
    Surface surface;
    services::resizeSurface(surface, imageWidth, imageHeight, pixelRatio);
    for (auto _ : state) {
        for (int bar = 0; bar < barCount; ++bar) {
            const int height = 800 + bar * 37 % 250;
            blendBox(surface, 4 * bar - 40, imageHeight - height, 3, height, colour);
        }
        benchmark::DoNotOptimize(surface.pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * barCount);
}

// Lines from sample to sample of a long training: up and down, next to no way to the right.
template <typename DrawLine>
void paintSteepLines(benchmark::State& state, double pixelRatio, DrawLine drawLine) {
    Surface surface;
    services::resizeSurface(surface, imageWidth, imageHeight, pixelRatio);
    for (auto _ : state) {
        int y = imageHeight / 2;
        for (int line = 0; line < lineCount; ++line) {
            const int x = 40 + line * 18 / 200;
            const int nextY = imageHeight / 2 + line * 7919 % 41 - 20;
            drawLine(surface, x, y, x + line % 2, nextY, colour);
            y = nextY;
        }
        benchmark::DoNotOptimize(surface.pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
}

template <typename FillCircle>
void paintSmallCircles(benchmark::State& state, double pixelRatio, FillCircle fillCircle) {
    Surface surface;
    services::resizeSurface(surface, imageWidth, imageHeight, pixelRatio);
    for (auto _ : state) {
        for (int circle = 0; circle < circleCount; ++circle) {
            fillCircle(surface, 10 + circle * 19 / 100, 40 + circle * 7919 % 1000, circleRadius,
                       colour);
        }
        benchmark::DoNotOptimize(surface.pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * circleCount);
}

BENCHMARK_CAPTURE(paintTallBars, naive, 1.0, naiveBlendBox)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintTallBars, raster, 1.0, services::blendBox)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintTallBars, raster_doubled, 2.0, services::blendBox)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_CAPTURE(paintSteepLines, naive, 1.0, naiveLine)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintSteepLines, raster, 1.0, services::drawLine)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintSteepLines, raster_doubled, 2.0, services::drawLine)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK_CAPTURE(paintSmallCircles, naive, 1.0, naiveCircle)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintSmallCircles, raster, 1.0, services::fillCircle)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paintSmallCircles, raster_doubled, 2.0, services::fillCircle)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
