// Reading a card: the index with a look for every training file, and one training; each beside the
// simplest program that does as much with the system's calls or the standard library's streams.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "device/dictionary.h"
#include "device/training_file.h"
#include "services/disk/numbered_files.h"
#include "tests/builders/card_builder.h"

namespace {

constexpr int file = 0;

// Cards by their number of trainings, each made once: the benchmarks are called again and again.
// The one asked for last is the working directory.
class Cards {
  public:
    Cards() = default;
    Cards(const Cards&) = delete;
    Cards& operator=(const Cards&) = delete;
    ~Cards() {
        std::filesystem::current_path("/");
        for (const auto& [trainings, root] : roots)
            std::filesystem::remove_all(root);
    }

    void use(std::int64_t trainings) {
        std::filesystem::path& root = roots[trainings];
        if (root.empty()) {
            std::string pattern = std::filesystem::temp_directory_path() / "kurbelbuch-card-XXXXXX";
            root = mkdtemp(pattern.data());
            builders::writeCard(root, static_cast<int>(trainings));
        }
        std::filesystem::current_path(root / "data/result/ergo_bike");
    }

  private:
    std::map<std::int64_t, std::filesystem::path> roots;
};

Cards cards;

void readIndex(benchmark::State& state) {
    cards.use(state.range(0));
    for (auto _ : state) {
        services::readFile(file, "dictionary.2");
        auto records = device::readDictionaryRecords(file, services::lengthOfFile(file));
        services::closeFile(file);
        if (!records || static_cast<std::int64_t>(records->size()) != state.range(0))
            state.SkipWithError("the index was not read whole");
        benchmark::DoNotOptimize(records);
    }
    state.SetComplexityN(state.range(0));
}

// What can't be avoided: every training file is opened and closed.
void openEveryTraining(benchmark::State& state) {
    cards.use(state.range(0));
    std::vector<std::string> names;
    for (int i = 1; i <= state.range(0); ++i) {
        std::array<char, 17> name{};
        std::snprintf(name.data(), name.size(), "%016x", static_cast<unsigned>(i));
        names.emplace_back(name.data());
    }
    for (auto _ : state) {
        for (const std::string& name : names) {
            const int descriptor = openat(AT_FDCWD, name.c_str(), O_RDONLY | O_CLOEXEC);
            if (descriptor < 0) state.SkipWithError("a training is missing");
            close(descriptor);
        }
    }
    state.SetComplexityN(state.range(0));
}

void streamEveryTraining(benchmark::State& state) {
    cards.use(state.range(0));
    for (auto _ : state) {
        for (int i = 1; i <= state.range(0); ++i) {
            std::array<char, 17> name{};
            std::snprintf(name.data(), name.size(), "%016x", static_cast<unsigned>(i));
            const std::ifstream stream(name.data(), std::ios::binary);
            if (!stream) state.SkipWithError("a training is missing");
        }
    }
    state.SetComplexityN(state.range(0));
}

void useTraining(std::int64_t samples) {
    std::string bytes(static_cast<std::size_t>(samples) * device::trainingSampleSize, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7919 >> 3U);
    std::ofstream("training", std::ios::binary) << bytes;
}

void readTraining(benchmark::State& state) {
    cards.use(1);
    useTraining(state.range(0));
    for (auto _ : state) {
        services::readFile(file, "training");
        auto samples = device::readTrainingSamples(file, services::lengthOfFile(file));
        services::closeFile(file);
        if (!samples) state.SkipWithError("the training was not read whole");
        benchmark::DoNotOptimize(samples);
    }
    state.SetComplexityN(state.range(0));
}

template <typename Value>
Value nextValue(std::ifstream& stream) {
    std::array<unsigned char, sizeof(Value)> bytes{};
    stream.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
    Value value{};
    std::memcpy(&value, bytes.data(), sizeof(Value));
    return value;
}

// Field by field from a stream, as programs of this kind usually read.
void streamTraining(benchmark::State& state) {
    cards.use(1);
    useTraining(state.range(0));
    for (auto _ : state) {
        std::ifstream stream("training", std::ios::binary);
        std::vector<device::TrainingSample> samples(static_cast<std::size_t>(state.range(0)));
        for (device::TrainingSample& sample : samples) {
            sample.elapsedTime = nextValue<std::int32_t>(stream);
            sample.distance = nextValue<float>(stream);
            sample.kJoule = nextValue<float>(stream);
            sample.slope = nextValue<std::int16_t>(stream);
            sample.torque = nextValue<std::int16_t>(stream);
            sample.rpm = nextValue<std::int16_t>(stream);
            sample.speed = nextValue<std::int16_t>(stream);
            sample.watt = nextValue<std::int16_t>(stream);
            sample.gear = nextValue<std::int8_t>(stream);
            sample.deviceActive = nextValue<std::int8_t>(stream);
            sample.pulse = nextValue<std::int16_t>(stream);
            sample.pulseTime1 = nextValue<std::int16_t>(stream);
            sample.pulseTime2 = nextValue<std::int16_t>(stream);
            sample.pulseTime3 = nextValue<std::int16_t>(stream);
            sample.pulseTime4 = nextValue<std::int16_t>(stream);
            sample.pulseTime5 = nextValue<std::int16_t>(stream);
            sample.pulseTime6 = nextValue<std::int16_t>(stream);
            sample.trainingType = nextValue<std::int8_t>(stream);
            sample.pulseType = nextValue<std::int8_t>(stream);
            sample.trainingValue = nextValue<float>(stream);
        }
        benchmark::DoNotOptimize(samples);
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(openEveryTraining)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readIndex)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(30'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(streamEveryTraining)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(streamTraining)->Arg(86'400)->Unit(benchmark::kMillisecond);
BENCHMARK(readTraining)
    ->Arg(7'200)
    ->Arg(21'600)
    ->Arg(43'200)
    ->Arg(86'400)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
