// Writes what the peers draw: write_values VALUES SAMPLES FILE [noise]. The series of the first so
// many values of a ridden training or of pure noise, limits and all, each brought to 0..1 by its
// own scale, as 32-bit reals one series after the other.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string_view>

#include "benchmarks/chart_data.h"
#include "charts/chart_drawing.h"
#include "charts/values/chart_options.h"
#include "services/toolkit.h"

int main(int argumentCount, char** arguments) {
    const bool isNoise = argumentCount == 5 && std::string_view(arguments[4]) == "noise";
    if (argumentCount != 4 && !isNoise) {
        std::cerr << "usage: write_values VALUES SAMPLES FILE [noise]\n";
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    services::startToolkit(arguments[0]);
    benchmarks::openMenus();
    benchmarks::loadTraining(std::atoi(arguments[2]),
                             isNoise ? benchmarks::Course::noise : benchmarks::Course::ridden);
    benchmarks::markEverything(charts::ChartKind::training, std::atoi(arguments[1]));
    const charts::MarkedOptions marks = charts::readMarkedOptions();
    std::ofstream file(arguments[3], std::ios::binary);
    const charts::ValueRange range = charts::valueRange(charts::ChartKind::training);
    for (int value = range.first; value < range.end; ++value) {
        if (!marks.has(value, charts::Option::bars)) continue;
        charts::ValueSeries series;
        charts::computeSeries(charts::ChartKind::training, value, series);
        const float width = series.maximum - series.minimum;
        for (const float real : series.values) {
            const float part = width > 0 ? (real - series.minimum) / width : 0.5F;
            file.write(reinterpret_cast<const char*>(&part), sizeof(part));
        }
    }
    services::stopToolkit();
    return file.good() ? 0 : 1;
}
