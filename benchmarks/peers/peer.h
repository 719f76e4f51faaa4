// What the peers' programs share: the values to draw, and the time a drawing takes.
//
// PROGRAM FILE VALUES SAMPLES STYLES REPEATS: styles are the letters b (bars), l (line), c
// (circles), s (squares), p (point cloud), m (mean) and t (trend). Prints the median of the
// processor's time for one redraw in milliseconds.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace peer {

struct Task {
    std::vector<std::vector<float>> series;
    std::string styles;
    int repeats = 1;

    bool has(char style) const { return styles.find(style) != std::string::npos; }
};

inline Task readTask(int argumentCount, char** arguments) {
    if (argumentCount != 6) std::exit(2);
    Task task;
    std::ifstream file(arguments[1], std::ios::binary);
    const auto samples = static_cast<std::size_t>(std::atoi(arguments[3]));
    for (int i = 0; i < std::atoi(arguments[2]); ++i) {
        task.series.emplace_back(samples);
        file.read(reinterpret_cast<char*>(task.series.back().data()),
                  static_cast<std::streamsize>(samples * sizeof(float)));
    }
    if (!file) std::exit(1);
    task.styles = arguments[4];
    task.repeats = std::atoi(arguments[5]);
    return task;
}

inline float meanOf(const std::vector<float>& series) {
    double sum = 0;
    for (const float value : series)
        sum += static_cast<double>(value);
    return static_cast<float>(sum / static_cast<double>(series.size()));
}

template <typename Redraw>
void time(const Task& task, Redraw redraw) {
    std::vector<double> times;
    for (int i = 0; i < task.repeats; ++i) {
        const std::clock_t start = std::clock();
        redraw();
        times.push_back(1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::sort(times.begin(), times.end());
    std::printf("%.2f\n", times[times.size() / 2]);
}

}  // namespace peer
