// The text of an exported training, beside the standard library's ways to write the same bytes.
#include "export/csv_text.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

namespace {

using device::TrainingSample;

std::vector<TrainingSample> training(std::int64_t count) {
    std::vector<TrainingSample> samples(static_cast<std::size_t>(count));
    std::uint32_t random = 1;
    const auto next = [&random](std::uint32_t limit) {
        random = random * 1664525U + 1013904223U;
        return static_cast<std::int16_t>((random >> 8U) % limit);
    };
    std::int32_t second = 0;
    float distance = 0.0F;
    for (TrainingSample& sample : samples) {
        sample.elapsedTime = second++;
        distance += static_cast<float>(next(120)) / 10.0F;
        sample.distance = distance;
        sample.kJoule = distance / 30.0F;
        sample.slope = next(200);
        sample.torque = next(500);
        sample.rpm = next(1200);
        sample.speed = next(450);
        sample.watt = next(400);
        sample.pulse = next(190);
        sample.pulseTime1 = next(1000);
        sample.pulseTime2 = next(1000);
        sample.trainingValue = static_cast<float>(next(4000)) / 10.0F;
    }
    return samples;
}

void trainingText(benchmark::State& state) {
    const auto samples = training(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(exporting::trainingCsv(samples));
    state.SetComplexityN(state.range(0));
}

constexpr const char* header =
    "Elapsed Time (s);Distance (km);Phys. kJoule;Slope (%);NM;RPM;Speed (km/h);Watt;Gear;Device "
    "Active;Pulse;Pulse Type;Training Type;Training Value;Pulse Time 1;2;3;4;5;6\r\n";

// Hands every cell of a sample to `cell(value, decimals)`; those without decimals are integers.
template <typename Cell>
void forEachCell(const TrainingSample& sample, const Cell& cell) {
    cell(static_cast<float>(sample.elapsedTime), 0);
    cell(sample.distance / 1000.0F, 3);
    cell(std::nearbyint(sample.kJoule), 0);
    for (const std::int16_t value : {sample.slope, sample.torque, sample.rpm})
        cell(static_cast<float>(value) / 10.0F, 0);
    cell(static_cast<float>(sample.speed) / 10.0F, 1);
    for (const int value : {int{sample.watt}, int{sample.gear}, int{sample.deviceActive},
                            int{sample.pulse}, int{sample.pulseType}, int{sample.trainingType}})
        cell(static_cast<float>(value), 0);
    cell(sample.trainingValue, 1);
    for (const std::int16_t value : {sample.pulseTime1, sample.pulseTime2, sample.pulseTime3,
                                     sample.pulseTime4, sample.pulseTime5, sample.pulseTime6})
        cell(static_cast<float>(value), 0);
}

void finishLine(std::string& line) {
    for (char& character : line) {
        if (character == '.') character = ',';
    }
    line.back() = '\r';
    line += '\n';
}

std::string streamedText(const std::vector<TrainingSample>& samples) {
    std::string text = header;
    for (const TrainingSample& sample : samples) {
        std::ostringstream line;
        line << std::fixed;
        forEachCell(sample, [&line](float value, int decimals) {
            line << std::setprecision(decimals) << value << ';';
        });
        std::string finished = line.str();
        finishLine(finished);
        text += finished;
    }
    return text;
}

std::string toCharsText(const std::vector<TrainingSample>& samples) {
    std::string text = header;
    std::string line;
    for (const TrainingSample& sample : samples) {
        line.clear();
        forEachCell(sample, [&line](float value, int decimals) {
            std::array<char, 64> digits{};
            const auto end =
                std::to_chars(digits.data(), digits.data() + digits.size(),
                              static_cast<double>(value), std::chars_format::fixed, decimals);
            line.append(digits.data(), end.ptr);
            line += ';';
        });
        finishLine(line);
        text += line;
    }
    return text;
}

template <std::string (*text)(const std::vector<TrainingSample>&)>
void otherText(benchmark::State& state) {
    const auto samples = training(state.range(0));
    if (text(samples) != exporting::trainingCsv(samples)) state.SkipWithError("other bytes");
    for (auto _ : state)
        benchmark::DoNotOptimize(text(samples));
}

BENCHMARK(otherText<streamedText>)
    ->Name("streamedTrainingText")
    ->Arg(86'400)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(otherText<toCharsText>)
    ->Name("toCharsTrainingText")
    ->Arg(86'400)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(trainingText)
    ->Arg(7'200)
    ->Arg(21'600)
    ->Arg(43'200)
    ->Arg(86'400)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
