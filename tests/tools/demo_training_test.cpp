#include "tools/demo_training.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/device/card_fixture.h"

namespace {

using device::TrainingSample;
using tools::PlannedTraining;
using tools::Random;

PlannedTraining plan(int sampleSeconds, bool withPulseBelt) {
    PlannedTraining training;
    training.startDate = 1'000'000'000;
    training.thresholdPower = 200;
    training.withPulseBelt = withPulseBelt;
    training.sampleSeconds = sampleSeconds;
    training.trainingType = 2;
    training.cadence = 90;
    training.description = "Intervalle";
    training.stretches = {{600, 0.4, 0.6, 0}, {300, 1.0, 1.0, 4}, {600, 0.5, 0.5, 0}};
    return training;
}

std::vector<TrainingSample> ride(const PlannedTraining& training) {
    Random random{42};
    return tools::rideTraining(training, random);
}

// The mean of `member` over the samples from `from` to `to` seconds.
double meanOver(const std::vector<TrainingSample>& samples, std::int16_t TrainingSample::*member,
                int from, int to) {
    double sum = 0;
    int count = 0;
    for (const auto& sample : samples) {
        if (sample.elapsedTime < from || sample.elapsedTime > to) continue;
        sum += sample.*member;
        ++count;
    }
    return sum / count;
}

TEST(DemoTraining, SamplesAreEvenlySpacedFromZeroToTheEnd) {
    for (const int seconds : {1, 2, 3}) {
        const auto samples = ride(plan(seconds, true));
        ASSERT_EQ(samples.size(), static_cast<std::size_t>(1500 / seconds + 1));
        for (std::size_t i = 0; i < samples.size(); ++i) {
            ASSERT_EQ(samples[i].elapsedTime, static_cast<int>(i) * seconds);
        }
    }
}

TEST(DemoTraining, TotalsAreTheSumsOfTheSamples) {
    for (const int seconds : {1, 2, 3}) {
        const auto samples = ride(plan(seconds, true));
        double distance = 0;
        double kJoule = 0;
        for (std::size_t i = 1; i < samples.size(); ++i) {
            distance += samples[i].speed / 36.0 * seconds;
            kJoule += samples[i].watt / 1000.0 * seconds;
            ASSERT_EQ(samples[i].distance, static_cast<float>(distance));
            ASSERT_EQ(samples[i].kJoule, static_cast<float>(kJoule));
        }
        EXPECT_EQ(samples[0].distance, 0.0F);
        EXPECT_EQ(samples[0].kJoule, 0.0F);
    }
}

TEST(DemoTraining, ThePulseLagsBehindThePower) {
    const auto samples = ride(plan(1, true));
    const auto watt = &TrainingSample::watt;
    const auto pulse = &TrainingSample::pulse;
    // Ten seconds into the hard stretch the power is there, the pulse is not.
    const double pulseBefore = meanOver(samples, pulse, 590, 600);
    const double pulseHard = meanOver(samples, pulse, 850, 900);
    EXPECT_NEAR(meanOver(samples, watt, 615, 635), 200, 12);
    EXPECT_LT(meanOver(samples, pulse, 605, 615), pulseBefore + 0.4 * (pulseHard - pulseBefore));
    EXPECT_GT(pulseHard, pulseBefore + 20);
    // Ten seconds after it the power is gone, the pulse is not.
    EXPECT_NEAR(meanOver(samples, watt, 915, 935), 100, 12);
    EXPECT_GT(meanOver(samples, pulse, 905, 915), pulseBefore + 0.6 * (pulseHard - pulseBefore));
}

TEST(DemoTraining, ThePulseDriftsUpAtTheSamePower) {
    PlannedTraining training = plan(1, true);
    training.stretches = {{300, 0.7, 0.7, 0}, {4500, 0.7, 0.7, 0}};
    const auto samples = ride(training);
    EXPECT_GT(meanOver(samples, &TrainingSample::pulse, 4500, 4800),
              meanOver(samples, &TrainingSample::pulse, 600, 900) + 3);
}

TEST(DemoTraining, TheFieldsFitTogether) {
    for (const auto& sample : ride(plan(2, true))) {
        const double turns = sample.rpm / 10.0 * 0.104719755;  // radians per second
        EXPECT_NEAR(sample.torque / 10.0 * turns, sample.watt, 2);
        EXPECT_EQ(sample.trainingType, 2);
        EXPECT_EQ(sample.deviceActive, 1);
        EXPECT_GE(sample.gear, 1);
        EXPECT_GT(sample.rpm, 300);
        EXPECT_GT(sample.speed, 70);
        EXPECT_NEAR(60'000.0 / sample.pulseTime1, sample.pulse, 12);
    }
}

TEST(DemoTraining, WithoutABeltThereIsNoPulse) {
    const PlannedTraining training = plan(1, false);
    const auto samples = ride(training);
    for (const auto& sample : samples) {
        ASSERT_EQ(sample.pulse, 0);
        ASSERT_EQ(sample.pulseTime1, 0);
        ASSERT_EQ(sample.pulseType, 0);
    }
    EXPECT_EQ(tools::summarize(training, samples, "0000000000000001").pulse, 0.0F);
}

TEST(DemoTraining, TheIndexFollowsFromTheSamples) {
    std::vector<TrainingSample> samples(3);
    samples[0] = {.elapsedTime = 0,
                  .torque = 100,
                  .rpm = 800,
                  .speed = 250,
                  .watt = 100,
                  .gear = 7,
                  .pulse = 100};
    samples[1] = {.elapsedTime = 2,
                  .distance = 15,
                  .kJoule = 0.25F,
                  .torque = 200,
                  .rpm = 905,
                  .speed = 311,
                  .watt = 151,
                  .gear = 9,
                  .pulse = 111};
    samples[2] = {.elapsedTime = 4,
                  .distance = 31.5F,
                  .kJoule = 0.5F,
                  .torque = 300,
                  .rpm = 860,
                  .speed = 290,
                  .watt = 130,
                  .gear = 8,
                  .pulse = 110};
    const auto record = tools::summarize(plan(2, true), samples, "000000000000000a");
    EXPECT_EQ(record.fileName, "000000000000000a");
    EXPECT_EQ(record.trainingType, 2);
    EXPECT_EQ(record.description, "Intervalle");
    EXPECT_EQ(record.startDate, 1'000'000'000);
    EXPECT_EQ(record.endDate, 1'000'000'004);
    EXPECT_EQ(record.watt, 127.0F);
    EXPECT_EQ(record.pulse, 107.0F);
    EXPECT_EQ(record.rpm, 85.5F);
    EXPECT_EQ(record.speed, static_cast<float>(851.0 / 30));
    EXPECT_EQ(record.kJoulePerMinute, 127.0F * 0.06F);
    EXPECT_EQ(record.rideTime, 4);
    EXPECT_EQ(record.distance, 31.5F);
    EXPECT_EQ(record.maxSpeed, 31.1F);
    EXPECT_EQ(record.maxRpm, 90.5F);
    EXPECT_EQ(record.maxKJoulePerMinute, static_cast<float>(151 * 0.06));
    EXPECT_EQ(record.kJoule, 0.5F);
    EXPECT_EQ(record.unknown1, 20.0F);
    EXPECT_EQ(record.unknown2, 151);
    EXPECT_EQ(record.unknown3, 111.0F);
    EXPECT_EQ(record.unknown4, 0.5F / 4.1868F);
    EXPECT_EQ(record.unknown5, 9);
    EXPECT_EQ(record.unknown6, 2);
}

TEST(DemoTraining, EncodedSamplesAreReadBackAsTheyWere) {
    const auto samples = ride(plan(3, true));
    const std::string bytes = tools::encodeSamples(samples);
    ASSERT_EQ(bytes.size(), samples.size() * 44);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        ASSERT_EQ(device::decodeTrainingSample(device_tests::asBytes(bytes).subspan(44 * i, 44)),
                  samples[i]);
    }
}

}  // namespace
