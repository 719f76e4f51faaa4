// Whole redraws at 1920 x 1080, from the tables to the pixels, each beside the toolkit's painter on
// the same chart.
#include <benchmark/benchmark.h>

#include <QImage>
#include <vector>

#include "benchmarks/chart_data.h"
#include "benchmarks/toolkit_painter.h"
#include "charts/chart_drawing.h"
#include "services/raster/raster.h"

namespace {

using benchmarks::Course;
using charts::ChartKind;
using charts::Option;

constexpr int imageWidth = 1920;
constexpr int imageHeight = 1080;

// What there is to draw.
struct Chart {
    const char* name;
    ChartKind kind;
    int values;
    std::vector<Option> options;  // none: all of them
    int count;
    Course course;
    double pixelRatio = 1;
};

void load(const Chart& chart) {
    benchmarks::openMenus();
    if (chart.kind == ChartKind::training) {
        benchmarks::loadTraining(chart.count, chart.course);
    } else {
        benchmarks::loadOverview(chart.count);
    }
    if (chart.options.empty()) {
        benchmarks::markEverything(chart.kind, chart.values);
    } else if (chart.options.size() == 1) {
        benchmarks::markOptions(chart.kind, chart.values, {chart.options[0]});
    } else {
        benchmarks::markOptions(chart.kind, chart.values, {chart.options[0], chart.options[1]});
    }
}

void redraw(benchmark::State& state, const Chart& chart) {
    load(chart);
    services::Surface surface;
    services::resizeSurface(surface, imageWidth, imageHeight, chart.pixelRatio);
    while (state.KeepRunning()) {
        if (!charts::drawChart(chart.kind, surface)) state.SkipWithError("nothing drawn");
        benchmark::DoNotOptimize(surface.pixels.data());
        benchmark::ClobberMemory();
    }
}

void redrawWithToolkit(benchmark::State& state, const Chart& chart) {
    load(chart);
    QImage image(imageWidth, imageHeight, QImage::Format_RGB32);
    while (state.KeepRunning()) {
        benchmarks::paintWithToolkit(image, chart.kind);
        benchmark::DoNotOptimize(image.bits());
        benchmark::ClobberMemory();
    }
}

const std::vector<Chart>& charted() {
    static const std::vector<Chart> charts = {
        {"3 bars 500", ChartKind::training, 3, {Option::bars}, 500, Course::ridden},
        {"3 line 500", ChartKind::training, 3, {Option::line}, 500, Course::ridden},
        {"5 bars+line 7200",
         ChartKind::training,
         5,
         {Option::bars, Option::line},
         7200,
         Course::ridden},
        {"22x7 7200", ChartKind::training, 22, {}, 7200, Course::ridden},
        {"22x7 7200 noise", ChartKind::training, 22, {}, 7200, Course::noise},
        {"22x7 86400", ChartKind::training, 22, {}, 86'400, Course::ridden},
        {"overview 20x7 100000", ChartKind::overview, 20, {}, 100'000, Course::ridden},
    };
    return charts;
}

// On sharp screens, where the image has more pixels.
const std::vector<Chart>& sharp() {
    static const std::vector<Chart> charts = {
        {"22x7 7200 at 1.25", ChartKind::training, 22, {}, 7200, Course::ridden, 1.25},
        {"22x7 7200 at 2", ChartKind::training, 22, {}, 7200, Course::ridden, 2},
    };
    return charts;
}

// How the cost grows with the samples and with the values.
const std::vector<Chart>& scaled() {
    static const std::vector<Chart> charts = {
        {"22x7 5400", ChartKind::training, 22, {}, 5400, Course::ridden},
        {"22x7 21600", ChartKind::training, 22, {}, 21'600, Course::ridden},
        {"22x7 86400", ChartKind::training, 22, {}, 86'400, Course::ridden},
        {"22x7 345600", ChartKind::training, 22, {}, 345'600, Course::ridden},
        {"3x7 21600", ChartKind::training, 3, {}, 21'600, Course::ridden},
        {"6x7 21600", ChartKind::training, 6, {}, 21'600, Course::ridden},
        {"11x7 21600", ChartKind::training, 11, {}, 21'600, Course::ridden},
        {"22x7 21600", ChartKind::training, 22, {}, 21'600, Course::ridden},
    };
    return charts;
}

const bool registered = [] {
    for (const Chart& chart : charted()) {
        benchmark::RegisterBenchmark((std::string("redraw/") + chart.name).c_str(), redraw, chart)
            ->Unit(benchmark::kMillisecond);
    }
    for (const Chart& chart : charted()) {
        benchmark::RegisterBenchmark((std::string("toolkit/") + chart.name).c_str(),
                                     redrawWithToolkit, chart)
            ->Unit(benchmark::kMillisecond);
    }
    for (const Chart& chart : sharp()) {
        benchmark::RegisterBenchmark((std::string("sharp/") + chart.name).c_str(), redraw, chart)
            ->Unit(benchmark::kMillisecond);
    }
    for (const Chart& chart : scaled()) {
        benchmark::RegisterBenchmark((std::string("growth/") + chart.name).c_str(), redraw, chart)
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
