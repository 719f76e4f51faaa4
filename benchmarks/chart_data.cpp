#include "benchmarks/chart_data.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "charts/chart_state.h"
#include "device/device_state.h"
#include "services/menus.h"
#include "services/windows.h"
#include "tools/demo_random.h"
#include "tools/demo_training.h"

namespace benchmarks {

using charts::ChartKind;
using charts::Option;

namespace {

// A training of this many seconds: the same hour of intervals over and over.
tools::PlannedTraining longTraining(int seconds) {
    tools::PlannedTraining training;
    training.thresholdPower = 230;
    training.trainingType = 3;
    training.cadence = 86;
    training.sampleSeconds = 1;
    constexpr std::array<tools::Stretch, 5> hour = {{{600, 0.5, 0.75, 0.5},
                                                     {900, 0.95, 0.95, 1.5},
                                                     {300, 0.5, 0.5, -1},
                                                     {1200, 0.8, 0.9, 3},
                                                     {600, 0.7, 0.4, 0.3}}};
    for (int left = seconds; left > 0;) {
        for (const tools::Stretch& stretch : hour) {
            training.stretches.push_back(stretch);
            left -= stretch.seconds;
        }
    }
    return training;
}

std::int16_t anything(tools::Random& random, int low, int high) {
    return static_cast<std::int16_t>(tools::nextInteger(random, low, high));
}

void makeNoise(device::TrainingSample& sample, tools::Random& random) {
    sample.distance = static_cast<float>(tools::nextReal(random) * 60'000);
    sample.kJoule = static_cast<float>(tools::nextReal(random) * 3'000);
    sample.trainingValue = static_cast<float>(tools::nextReal(random) * 300);
    sample.slope = anything(random, 1, 120);
    sample.torque = anything(random, 1, 900);
    sample.rpm = anything(random, 300, 1300);
    sample.speed = anything(random, 50, 600);
    sample.watt = anything(random, 20, 500);
    sample.pulse = anything(random, 60, 190);
    for (std::int16_t* time : {&sample.pulseTime1, &sample.pulseTime2, &sample.pulseTime3,
                               &sample.pulseTime4, &sample.pulseTime5, &sample.pulseTime6}) {
        *time = anything(random, 300, 1000);
    }
    sample.gear = static_cast<std::int8_t>(anything(random, 1, 28));
    sample.deviceActive = static_cast<std::int8_t>(anything(random, 1, 3));
    sample.trainingType = static_cast<std::int8_t>(anything(random, 1, 9));
    sample.pulseType = static_cast<std::int8_t>(anything(random, 1, 3));
}

}  // namespace

void loadTraining(int samples, Course course) {
    tools::Random random = {7};
    auto& loaded = device::state.samples;
    loaded = tools::rideTraining(longTraining(samples), random);
    loaded.resize(static_cast<std::size_t>(samples));
    for (device::TrainingSample& sample : loaded) {
        if (course == Course::noise) makeNoise(sample, random);
        // Two beats fall into a second; the other four times get a course as well.
        if (sample.pulseTime3 == 0) sample.pulseTime3 = sample.pulseTime1;
        if (sample.pulseTime4 == 0) sample.pulseTime4 = sample.pulseTime2;
        if (sample.pulseTime5 == 0) sample.pulseTime5 = sample.pulseTime1;
        if (sample.pulseTime6 == 0) sample.pulseTime6 = sample.pulseTime2;
    }
    device::state.dictionary.assign(1, device::DictionaryRecord());
    device::state.dictionary.front().selected = 1;
}

void loadOverview(int trainings) {
    tools::Random random = {11};
    auto& records = device::state.dictionary;
    records.assign(static_cast<std::size_t>(trainings), device::DictionaryRecord());
    double form = 0;
    std::int32_t date = 1'000'000'000;
    for (device::DictionaryRecord& record : records) {
        form += (tools::nextNormal(random) - form * 0.02) * 0.3;
        const double power = 180 + 20 * form + 8 * tools::nextNormal(random);
        const auto real = [&random](double value, double deviation) {
            return static_cast<float>(std::fabs(value + deviation * tools::nextNormal(random)) + 1);
        };
        record.startDate = date;
        date += tools::nextInteger(random, 3600, 20'000);
        record.watt = real(power, 3);
        record.pulse = real(80 + power / 3, 4);
        record.rpm = real(85, 3);
        record.speed = real(20 + power / 20, 2);
        record.kJoulePerMinute = record.watt * 0.06F;
        record.rideTime = tools::nextInteger(random, 1200, 5400);
        record.distance = record.speed * static_cast<float>(record.rideTime) / 3600;
        record.maxSpeed = real(30 + power / 20, 4);
        record.maxRpm = real(105, 6);
        record.maxKJoulePerMinute = real(power * 0.1, 2);
        record.kJoule = record.watt * static_cast<float>(record.rideTime) / 1000;
        record.unknown1 = real(20, 2);
        record.unknown2 = tools::nextInteger(random, 200, 600);
        record.unknown3 = real(170, 6);
        record.unknown4 = record.kJoule / 4.1868F;
        record.unknown5 = tools::nextInteger(random, 10, 28);
        record.unknown6 = tools::nextInteger(random, 1, 5);
        record.selected = 1;
    }
}

void openMenus() {
    if (services::windowWidth(services::mainWindow) == 0) {
        services::WindowRow window;
        window.width = window.height = 300;
        services::openWindow(window);
    }
    std::vector<services::MenuRow> rows;
    for (const ChartKind kind : {ChartKind::overview, ChartKind::training}) {
        const charts::ValueRange range = charts::valueRange(kind);
        for (int value = range.first; value < range.end; ++value) {
            for (int option = charts::firstMarkOption; option <= charts::lastOption; ++option) {
                rows.push_back({services::MenuRowKind::checkItem,
                                charts::optionItem(value, static_cast<Option>(option)),
                                {}});
            }
        }
    }
    services::buildMenuBar(services::mainWindow, rows);
}

int markOptions(ChartKind kind, int values, std::initializer_list<Option> options) {
    charts::clearOptions(ChartKind::overview);
    charts::clearOptions(ChartKind::training);
    constexpr std::array<int, 5> favouriteOfTraining = {59, 62, 57, 58, 53};
    constexpr std::array<int, 5> favouriteOfOverview = {3, 5, 6, 7, 10};
    const bool ofTraining = kind == ChartKind::training;
    std::vector<int> numbers(ofTraining ? favouriteOfTraining.begin() : favouriteOfOverview.begin(),
                             ofTraining ? favouriteOfTraining.end() : favouriteOfOverview.end());
    const charts::ValueRange range = charts::valueRange(kind);
    for (int value = range.first; value < range.end; ++value) {
        bool isFavourite = false;
        for (std::size_t i = 0; i < favouriteOfTraining.size(); ++i)
            isFavourite = isFavourite || numbers[i] == value;
        if (!isFavourite) numbers.push_back(value);
    }
    numbers.resize(static_cast<std::size_t>(values));
    for (const int value : numbers) {
        for (const Option option : options)
            services::setItemMark(charts::optionItem(value, option), true);
    }
    return values * static_cast<int>(options.size());
}

int markEverything(ChartKind kind, int values) {
    return markOptions(kind, values,
                       {Option::bars, Option::line, Option::circles, Option::squares, Option::cloud,
                        Option::mean, Option::trend});
}

}  // namespace benchmarks
