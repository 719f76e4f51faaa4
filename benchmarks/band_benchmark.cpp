// A tick of the pointer's band over a drawn chart, beside a copy of the chart's image.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <vector>

#include "app/app_state.h"
#include "app/main_window.h"
#include "benchmarks/chart_data.h"
#include "charts/range_band.h"
#include "services/raster/colours.h"
#include "services/raster/raster.h"
#include "services/windows.h"
#include "settings/settings_state.h"

namespace {

using charts::ChartKind;

constexpr int imageWidth = 1920;
constexpr int imageHeight = 1080;

void followPointer(benchmark::State& state) {
    settings::state.windowWidth = imageWidth;
    settings::state.windowHeight = imageHeight;
    app::openMainWindow();
    benchmarks::openMenus();
    benchmarks::loadTraining(static_cast<int>(state.range(0)), benchmarks::Course::ridden);
    benchmarks::markEverything(ChartKind::training, charts::trainingValueCount);
    app::state.currentChart = ChartKind::training;
    services::showWindow(services::mainWindow);
    app::redraw();
    QCoreApplication::processEvents();
    const charts::ChartFrame frame = charts::chartFrame(imageWidth, imageHeight);
    int position = frame.top + 1;
    while (state.KeepRunning()) {
        position = position < frame.height ? position + 7 : frame.top + 1;
        app::showBand(charts::bandBox(frame, 100, frame.top, position));
        QCoreApplication::processEvents();
    }
    services::closeWindow(services::mainWindow);
    app::state = {};
}

void copyImage(benchmark::State& state) {
    services::Surface surface;
    services::resizeSurface(surface, imageWidth, imageHeight, 1.0);
    std::vector<std::uint32_t> copy(surface.pixels.size());
    while (state.KeepRunning()) {
        copy = surface.pixels;
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(followPointer)->Name("band/tick")->Arg(7200)->Arg(86'400)->Unit(benchmark::kMicrosecond);
BENCHMARK(copyImage)->Name("band/copy")->Unit(benchmark::kMicrosecond);

}  // namespace
