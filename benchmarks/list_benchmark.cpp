// The training list of many years: its two orders, and the cells of one screen.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "device/dictionary_record.h"
#include "files/training_order.h"
#include "files/training_rows.h"
#include "services/numbers.h"

namespace {

using device::DictionaryRecord;

// In an order of dates that sorting has to undo; forty descriptions.
std::vector<DictionaryRecord> trainings(std::int64_t count) {
    std::vector<DictionaryRecord> records(static_cast<std::size_t>(count));
    std::uint32_t random = 1;
    for (std::size_t i = 0; i < records.size(); ++i) {
        random = random * 1664525U + 1013904223U;
        records[i].startDate = static_cast<std::int32_t>(random >> 2U);
        records[i].fileName = services::numberToHexadecimal16(i + 1);
        records[i].description = "Ausdauertraining im Gel\xE4nde " + std::to_string(random % 40);
        records[i].pulse = 120.0F;
        records[i].watt = static_cast<float>(random % 300);
    }
    return records;
}

template <files::SortMode mode>
void sortTrainings(benchmark::State& state) {
    const auto unsorted = trainings(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto records = unsorted;
        state.ResumeTiming();
        files::sortTrainings(records, mode);
        benchmark::DoNotOptimize(records);
    }
    state.SetComplexityN(state.range(0));
}

void cellsOfOneScreen(benchmark::State& state) {
    const auto records = trainings(state.range(0));
    for (auto _ : state) {
        for (const DictionaryRecord& record : records) {
            for (int column = 0; column < files::trainingColumnCount; ++column)
                benchmark::DoNotOptimize(files::trainingCell(record, column));
        }
    }
}

BENCHMARK(sortTrainings<files::SortMode::byDate>)
    ->Name("sortTrainingsByDate")
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(sortTrainings<files::SortMode::byDescription>)
    ->Name("sortTrainingsByDescription")
    ->Arg(12'500)
    ->Arg(25'000)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oNLogN);
BENCHMARK(cellsOfOneScreen)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
