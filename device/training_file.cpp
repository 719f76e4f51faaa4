#include "device/training_file.h"

#include <algorithm>
#include <limits>
#include <new>
#include <span>
#include <stdexcept>
#include <utility>

#include "services/disk/memory.h"
#include "services/disk/numbered_files.h"
#include "services/requesters.h"
#include "services/text/text.h"

namespace device {

using services::operator""_l1;

namespace {

constexpr int trainingFile = 0;
constexpr std::size_t samplesPerBlock = 20'000;

// Beyond this many samples a file is none of this device's: it counts the seconds of a training in
// 32 bits.
constexpr std::int64_t sampleLimit = std::numeric_limits<std::int32_t>::max();

services::TextView nameOfChosenTraining() {
    const auto chosen = std::ranges::find_if(
        state.dictionary, [](const DictionaryRecord& record) { return record.selected != 0; });
    return chosen == state.dictionary.end() ? services::TextView() : chosen->fileName;
}

}  // namespace

std::optional<std::vector<TrainingSample>> readTrainingSamples(int file, std::int64_t length) {
    const std::int64_t count = length / static_cast<std::int64_t>(trainingSampleSize);
    if (count < 1 || count > sampleLimit) return std::nullopt;
    if (!services::fitsIntoMemory(static_cast<std::uint64_t>(count) * sizeof(TrainingSample)))
        return std::nullopt;
    try {
        const auto wanted = static_cast<std::size_t>(count);
        std::vector<TrainingSample> samples;
        samples.reserve(wanted);
        std::vector<std::byte> block(std::min(wanted, samplesPerBlock) * trainingSampleSize);
        while (samples.size() < wanted) {
            const std::size_t asked = std::min(wanted - samples.size(), samplesPerBlock);
            const auto part = std::span(block).first(asked * trainingSampleSize);
            if (services::readBlock(file, part) < part.size()) return std::nullopt;
            for (std::size_t i = 0; i < asked; ++i) {
                samples.push_back(
                    decodeTrainingSample(part.subspan(i * trainingSampleSize, trainingSampleSize)));
            }
        }
        return samples;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    } catch (const std::length_error&) {
        return std::nullopt;
    }
}

void loadTraining() {
    state.samples = {};
    const services::TextView name = nameOfChosenTraining();
    if (name.empty()) return;

    std::optional<std::vector<TrainingSample>> samples;
    if (services::readFile(trainingFile, name)) {
        samples = readTrainingSamples(trainingFile, services::lengthOfFile(trainingFile));
        services::closeFile(trainingFile);
    }
    if (samples) {
        state.samples = std::move(*samples);
        return;
    }
    // Backslashes whatever the platform's separator: users know this text.
    services::showMessage("Dateifehler"_l1,
                          services::concatenate("Die Datei 'data\\result\\ergo_bike\\"_l1, name,
                                                "' ist leer oder wurde nicht gefunden!"_l1));
}

}  // namespace device
