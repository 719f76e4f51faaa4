// Deleting and renumbering 1,000 of 10,000 trainings as their user starts it, everything on the
// disk when it is done, by the clock. TMPDIR says which disk.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "files/deletion.h"
#include "files/renumbering.h"
#include "services/events.h"
#include "services/qt/toolkit_state.h"
#include "services/windows.h"
#include "tests/builders/card_builder.h"

namespace {

namespace fs = std::filesystem;

constexpr int trainings = 10'000;
constexpr int changed = 1'000;

// A user who answers every question with Yes and closes the report at once.
class Answers {
  public:
    Answers() {
        QObject::connect(&timer, &QTimer::timeout, [] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box != nullptr) {
                QAbstractButton* const yes = box->button(QMessageBox::Yes);
                (yes != nullptr ? yes : box->button(QMessageBox::Ok))->click();
                return;
            }
            services::qt::post(
                {.kind = services::EventKind::close, .window = services::reportWindow});
        });
        timer.start(1);
    }

  private:
    QTimer timer;
};

void change(benchmark::State& state, const std::function<void(const fs::path& card)>& prepare,
            const std::function<void()>& command, std::size_t left) {
    for (auto _ : state) {
        std::string pattern = fs::temp_directory_path() / "kurbelbuch-changes-XXXXXX";
        const fs::path root = mkdtemp(pattern.data());
        prepare(root);
        fs::current_path(root / "data/result/ergo_bike");
        device::loadDictionary();
        device::state.renumberingEnabled = true;
        for (int i = 0; i < trainings; ++i)
            device::state.dictionary[static_cast<std::size_t>(i)].selected = i % 10 == 5 ? 1 : 0;
        sync();
        const Answers answers;
        const auto start = std::chrono::steady_clock::now();
        command();
        const auto end = std::chrono::steady_clock::now();
        if (device::state.dictionary.size() != left) state.SkipWithError("not done");
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
        fs::current_path("/");
        fs::remove_all(root);
    }
}

void deleteTrainings(benchmark::State& state) {
    change(
        state, [](const fs::path& card) { builders::writeCard(card, trainings); },
        files::deleteChosenTrainings, trainings - changed);
}

// The last tenth has a gap before it.
void renumberTrainings(benchmark::State& state) {
    change(
        state,
        [](const fs::path& card) {
            std::vector<device::DictionaryRecord> records;
            for (int i = 1; i <= trainings; ++i) {
                records.push_back(builders::makeRecord(
                    static_cast<std::uint64_t>(i <= trainings - changed ? i : i + 1)));
                records.back().startDate = i;
            }
            builders::writeCard(card, records);
        },
        [] { files::renumberTrainings(700, [] {}); }, trainings);
}

BENCHMARK(deleteTrainings)
    ->Name("changes/delete/1000")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(renumberTrainings)
    ->Name("changes/renumber/1000")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
