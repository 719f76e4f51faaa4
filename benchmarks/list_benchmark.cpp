// The training list of many years: its two orders, the cells of one screen, and the window itself
// as its user meets it, from the call to the painted pixels.
#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QApplication>
#include <QScrollBar>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary_record.h"
#include "files/list_window.h"
#include "files/training_order.h"
#include "files/training_rows.h"
#include "services/text/numbers.h"

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

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

struct ListTimes {
    double opening = 0;
    double sorting = 0;    // by description
    double scrolling = 0;  // the longest of all pages, by the processor's time
};

template <typename Widget>
Widget* findIn(QWidget& window, const QString& text = {}) {
    for (Widget* found : window.findChildren<Widget*>()) {
        if (text.isEmpty() || found->property("text").toString() == text) return found;
    }
    return nullptr;
}

double longestPage(QTreeView& list) {
    constexpr int pages = 200;
    double longest = 0;
    QScrollBar* bar = list.verticalScrollBar();
    for (int i = 1; i <= pages; ++i) {
        // What else the machine does would make the longest of so many whatever it likes.
        const std::clock_t start = std::clock();
        // Far apart, so that no page is like the one before it.
        bar->setValue(static_cast<int>(std::int64_t{bar->maximum()} * i / pages));
        list.viewport()->repaint();
        longest = std::max(longest, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return longest;
}

// Opens the list, sorts it, scrolls through it and closes it.
ListTimes useList(const std::vector<DictionaryRecord>& records) {
    device::state.dictionary = records;
    ListTimes times;
    int step = 0;
    std::int32_t firstByDate = 0;
    Clock::time_point start;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget* window = nullptr;
        for (QWidget* other : QApplication::topLevelWidgets()) {
            if (other->isVisible() && findIn<QTreeView>(*other) != nullptr) window = other;
        }
        if (window == nullptr) return;
        // What was clicked is done by the list's own loop later.
        const std::int32_t first = device::state.dictionary.front().startDate;
        if (step == 1 && first == firstByDate) return;
        firstByDate = first;
        window->repaint();
        findIn<QTreeView>(*window)->viewport()->repaint();
        if (step == 0) {
            times.opening = secondsSince(start);
            start = Clock::now();
            findIn<QAbstractButton>(*window, QStringLiteral("Sortieren"))->click();
        } else {
            times.sorting = secondsSince(start);
            times.scrolling = longestPage(*findIn<QTreeView>(*window));
            timer.stop();
            window->close();
        }
        ++step;
    });
    timer.start(0);
    start = Clock::now();
    files::openTrainingList(files::ListMode::edit, 1728, 756);
    device::state.dictionary = {};
    return times;
}

template <double ListTimes::*time>
void useListWindow(benchmark::State& state) {
    const auto records = trainings(state.range(0));
    for (auto _ : state) {
        const ListTimes times = useList(records);
        if (times.scrolling == 0) state.SkipWithError("the list was not used to its end");
        state.SetIterationTime(times.*time);
    }
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
BENCHMARK(useListWindow<&ListTimes::opening>)
    ->Name("list/opens")
    ->Arg(100'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(useListWindow<&ListTimes::sorting>)
    ->Name("list/sorts")
    ->Arg(100'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(useListWindow<&ListTimes::scrolling>)
    ->Name("list/longest page")
    ->Arg(100'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(cellsOfOneScreen)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
