#include "tools/demo_training.h"

#include <algorithm>

#include "device/record_layout.h"
#include "services/text/numbers.h"

namespace tools {

using device::TrainingSample;

namespace {

struct Rider {
    double power = 60;    // W
    double noise = 0;     // W, wanders
    double cadence = 60;  // per minute
    double cadenceNoise = 0;
    double speed = 5;   // m/s
    double pulse = 78;  // per minute
    double drift = 0;   // beats added by heat and fatigue
};

struct Wish {
    double power;
    double slope;
};

Wish wishAt(const PlannedTraining& training, int second) {
    for (const Stretch& stretch : training.stretches) {
        if (second < stretch.seconds) {
            const double share = static_cast<double>(second) / stretch.seconds;
            const double part = stretch.from + (stretch.to - stretch.from) * share;
            return {part * training.thresholdPower, stretch.slope};
        }
        second -= stretch.seconds;
    }
    const Stretch& last = training.stretches.back();
    return {last.to * training.thresholdPower, last.slope};
}

// Moves `value` towards `target` as a first-order lag of `seconds` does in one second.
void follow(double& value, double target, double seconds) {
    value += (target - value) / seconds;
}

void rideSecond(Rider& rider, const Wish& wish, const PlannedTraining& training, Random& random) {
    rider.noise = 0.8 * rider.noise + 1.6 * nextNormal(random);
    follow(rider.power, wish.power, 5);

    rider.cadenceNoise = 0.93 * rider.cadenceNoise + 0.4 * nextNormal(random);
    follow(rider.cadence, training.cadence - 1.2 * std::max(0.0, wish.slope), 6);

    // A bike of 85 kg with its rider: the power goes into air, tyres, slope and acceleration.
    const double watt = std::max(20.0, rider.power + rider.noise);
    const double drag =
        4 + 0.24 * rider.speed * rider.speed + 85 * 9.81 * wish.slope / 100;  // newtons
    rider.speed += (watt / rider.speed - drag) / 85;
    rider.speed = std::clamp(rider.speed, 2.0, 16.0);

    const double effort = rider.power / training.thresholdPower;
    rider.drift += 0.0035 * effort * effort;
    const double wanted = std::min(186.0, 66 + 102 * effort + rider.drift);
    follow(rider.pulse, wanted, wanted > rider.pulse ? 38 : 55);
}

template <typename Number>
Number rounded(double value) {
    return static_cast<Number>(services::roundToInt32(value));
}

// The times between the beats since the last sample in milliseconds; 0 where none was left.
void recordBeats(TrainingSample& sample, const Rider& rider, int seconds, Random& random) {
    std::int16_t* const times[] = {&sample.pulseTime1, &sample.pulseTime2, &sample.pulseTime3,
                                   &sample.pulseTime4, &sample.pulseTime5, &sample.pulseTime6};
    const int beats = std::clamp(rounded<int>(rider.pulse / 60 * seconds), 1, 6);
    for (int i = 0; i < beats; ++i) {
        *times[i] = rounded<std::int16_t>(60'000 / rider.pulse * (1 + 0.015 * nextNormal(random)));
    }
}

TrainingSample measure(const Rider& rider, const Wish& wish, const PlannedTraining& training,
                       Random& random) {
    TrainingSample sample;
    const double cadence = rider.cadence + rider.cadenceNoise;
    const double watt = std::max(20.0, rider.power + rider.noise);
    sample.slope = rounded<std::int16_t>(wish.slope * 10);
    sample.watt = rounded<std::int16_t>(watt);
    sample.rpm = rounded<std::int16_t>(cadence * 10);
    sample.torque = rounded<std::int16_t>(watt / (cadence * 0.104719755) * 10);
    sample.speed = rounded<std::int16_t>(rider.speed * 36);
    const double metresPerTurn = rider.speed * 60 / cadence;
    sample.gear = rounded<std::int8_t>(std::clamp((metresPerTurn - 1.8) / 0.35, 1.0, 28.0));
    sample.deviceActive = 1;
    sample.trainingType = static_cast<std::int8_t>(training.trainingType);
    sample.trainingValue = static_cast<float>(wish.power);
    if (training.withPulseBelt) {
        sample.pulseType = 1;
        sample.pulse = rounded<std::int16_t>(rider.pulse);
        recordBeats(sample, rider, training.sampleSeconds, random);
    }
    return sample;
}

float mean(const std::vector<TrainingSample>& samples, std::int16_t TrainingSample::*member,
           double divisor) {
    std::int64_t sum = 0;
    for (const TrainingSample& sample : samples)
        sum += sample.*member;
    return static_cast<float>(static_cast<double>(sum) /
                              (static_cast<double>(samples.size()) * divisor));
}

template <typename Number>
double highest(const std::vector<TrainingSample>& samples, Number TrainingSample::*member) {
    Number most = samples.front().*member;
    for (const TrainingSample& sample : samples)
        most = std::max(most, sample.*member);
    return static_cast<double>(most);
}

}  // namespace

std::vector<TrainingSample> rideTraining(const PlannedTraining& training, Random& random) {
    int duration = 0;
    for (const Stretch& stretch : training.stretches)
        duration += stretch.seconds;

    Rider rider;
    rider.power = wishAt(training, 0).power;
    rider.pulse = 74 + 5 * nextReal(random);
    double distance = 0;
    double kJoule = 0;
    std::vector<TrainingSample> samples;
    for (int second = 0; second <= duration; ++second) {
        const Wish wish = wishAt(training, second);
        if (second > 0) rideSecond(rider, wish, training, random);
        if (second % training.sampleSeconds != 0) continue;

        TrainingSample sample = measure(rider, wish, training, random);
        sample.elapsedTime = second;
        if (second > 0) {
            distance += sample.speed / 36.0 * training.sampleSeconds;
            kJoule += sample.watt / 1000.0 * training.sampleSeconds;
        }
        sample.distance = static_cast<float>(distance);
        sample.kJoule = static_cast<float>(kJoule);
        samples.push_back(sample);
    }
    return samples;
}

device::DictionaryRecord summarize(const PlannedTraining& training,
                                   const std::vector<TrainingSample>& samples,
                                   services::TextView fileName) {
    device::DictionaryRecord record;
    record.fileName = services::Text(fileName);
    record.trainingType = training.trainingType;
    record.description = training.description;
    record.startDate = training.startDate;
    if (samples.empty()) return record;

    const TrainingSample& last = samples.back();
    record.endDate = training.startDate + last.elapsedTime;
    record.rideTime = last.elapsedTime;
    record.distance = last.distance;
    record.kJoule = last.kJoule;
    record.watt = mean(samples, &TrainingSample::watt, 1);
    record.pulse = mean(samples, &TrainingSample::pulse, 1);
    record.rpm = mean(samples, &TrainingSample::rpm, 10);
    record.speed = mean(samples, &TrainingSample::speed, 10);
    record.maxSpeed = static_cast<float>(highest(samples, &TrainingSample::speed) / 10);
    record.maxRpm = static_cast<float>(highest(samples, &TrainingSample::rpm) / 10);
    const double maxWatt = highest(samples, &TrainingSample::watt);
    record.kJoulePerMinute = record.watt * 0.06F;
    record.maxKJoulePerMinute = static_cast<float>(maxWatt * 0.06);

    record.unknown1 = mean(samples, &TrainingSample::torque, 10);
    record.unknown2 = rounded<std::int32_t>(maxWatt);
    record.unknown3 = static_cast<float>(highest(samples, &TrainingSample::pulse));
    record.unknown4 = record.kJoule / 4.1868F;
    record.unknown5 = rounded<std::int32_t>(highest(samples, &TrainingSample::gear));
    record.unknown6 = training.sampleSeconds;
    return record;
}

services::Text encodeSamples(const std::vector<TrainingSample>& samples) {
    services::Text bytes;
    bytes.reserve(samples.size() * device::trainingSampleSize);
    for (const TrainingSample& sample : samples) {
        // In the order of the file (docs/formats.md).
        const auto append = [&bytes](auto... numbers) {
            (device::appendNumber(bytes, numbers), ...);
        };
        append(sample.elapsedTime, sample.distance, sample.kJoule, sample.slope, sample.torque,
               sample.rpm, sample.speed, sample.watt, sample.gear, sample.deviceActive,
               sample.pulse, sample.pulseTime1, sample.pulseTime2, sample.pulseTime3,
               sample.pulseTime4, sample.pulseTime5, sample.pulseTime6, sample.trainingType,
               sample.pulseType, sample.trainingValue);
    }
    return bytes;
}

}  // namespace tools
