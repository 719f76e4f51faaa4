// The backup copy of a whole card into an empty directory of the same disk, everything on the disk
// when it is done, beside the system's own tools: cp -r, and sync of all copies.
//
// What is measured is time on the clock: most of it is the disk's. TMPDIR says which disk.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "files/backup_copy.h"
#include "services/qt/toolkit_state.h"
#include "services/text/numbers.h"
#include "services/windows.h"
#include "tests/builders/card_builder.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t trainingLength = 200'000;

std::string trainingOf(std::uint32_t number) {
    std::string bytes(trainingLength, '\0');
    std::uint32_t random = number;
    for (char& byte : bytes) {
        random = random * 1664525U + 1013904223U;
        byte = static_cast<char>(random >> 24U);
    }
    return bytes;
}

// A card and room for its backups, gone with the program.
class Place {
  public:
    Place() = default;
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() {
        if (root.empty()) return;
        fs::current_path("/");
        fs::remove_all(root);
    }

    // The card's trainings are the working directory and in memory, its files on the disk.
    void use(std::int64_t trainings) {
        if (trainings == made) return;
        fs::current_path("/");
        if (!root.empty()) fs::remove_all(root);
        std::string pattern = fs::temp_directory_path() / "kurbelbuch-backup-XXXXXX";
        root = mkdtemp(pattern.data());
        builders::writeCard(root / "karte", static_cast<int>(trainings));
        fs::current_path(tree());
        for (std::uint32_t i = 1; i <= trainings; ++i)
            std::ofstream(services::numberToHexadecimal16(i), std::ios::binary) << trainingOf(i);
        device::loadDictionary();
        made = trainings;
    }

    fs::path tree() const { return root / "karte/data/result/ergo_bike"; }
    fs::path backup() const { return root / "sicherung"; }

  private:
    fs::path root;
    std::int64_t made = 0;
};

Place place;

bool run(std::vector<std::string> command) {
    std::vector<char*> arguments;
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = 0;
    return posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0 &&
           waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool copyWithTools() {
    if (!run({"cp", "-r", place.tree(), place.backup()})) return false;
    std::vector<std::string> sync = {"sync"};
    for (const auto& entry : fs::directory_iterator(place.backup()))
        sync.push_back(entry.path());
    return run(sync);
}

// With everything compared, as the command does it.
bool copyAndCompareWithTools() {
    return copyWithTools() && run({"diff", "-rq", place.tree(), place.backup()});
}

// The command as its user starts it, with its report, which is closed as soon as it can be.
bool copyWithCommand() {
    device::state.backupDirectory = place.backup().string() + "/";
    QTimer closing;
    QObject::connect(&closing, &QTimer::timeout, [] {
        services::qt::post({.kind = services::EventKind::close, .window = services::reportWindow});
    });
    closing.start(1);
    files::copyToBackup(700, [] {});
    return true;
}

void backUp(benchmark::State& state, const std::function<bool()>& copy, bool inNewDirectory) {
    place.use(state.range(0));
    for (auto _ : state) {
        fs::remove_all(place.backup());
        if (!inNewDirectory) fs::create_directory(place.backup());
        sync();
        const auto start = std::chrono::steady_clock::now();
        const bool copied = copy();
        const auto end = std::chrono::steady_clock::now();
        const auto index = state.range(0) * 152;
        std::error_code error;
        if (!copied ||
            fs::file_size(place.backup() / "dictionary.2", error) !=
                static_cast<std::uintmax_t>(index) ||
            !fs::exists(place.backup() / services::numberToHexadecimal16(
                                             static_cast<std::uint64_t>(state.range(0))))) {
            state.SkipWithError("the backup is not complete");
        }
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
    }
    state.SetComplexityN(state.range(0));
}

void backUpWithCommand(benchmark::State& state) {
    backUp(state, copyWithCommand, false);
}

void backUpWithTools(benchmark::State& state) {
    backUp(state, copyWithTools, true);
}

void backUpAndCompareWithTools(benchmark::State& state) {
    backUp(state, copyAndCompareWithTools, true);
}

BENCHMARK(backUpWithCommand)
    ->Name("backup/command")
    ->Arg(125)
    ->Arg(250)
    ->Arg(500)
    ->Arg(1'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(backUpWithTools)
    ->Name("backup/cp and sync")
    ->Arg(1'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(backUpAndCompareWithTools)
    ->Name("backup/cp, sync and diff")
    ->Arg(1'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
