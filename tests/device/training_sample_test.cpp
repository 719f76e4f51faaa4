#include "device/training_sample.h"

#include <gtest/gtest.h>

#include "tests/device/card_fixture.h"

namespace {

using device::decodeTrainingSample;
using device::TrainingSample;
using device_tests::asBytes;
using device_tests::RecordBytes;

TEST(TrainingSamples, EveryFieldIsReadFromItsOffset) {
    RecordBytes bytes(44);
    bytes.int32(0, 3600).real(4, 29000.5F).real(8, 466.5F);
    for (std::size_t offset = 12; offset < 22; offset += 2)
        bytes.put(offset, 100 + offset, 2);
    bytes.put(22, 9, 1).put(23, 1, 1);
    for (std::size_t offset = 24; offset < 38; offset += 2)
        bytes.put(offset, 100 + offset, 2);
    bytes.put(38, 5, 1).put(39, 2, 1).real(40, 75.25F);

    const TrainingSample sample = decodeTrainingSample(asBytes(bytes.bytes));
    EXPECT_EQ(sample.elapsedTime, 3600);
    EXPECT_EQ(sample.distance, 29000.5F);
    EXPECT_EQ(sample.kJoule, 466.5F);
    EXPECT_EQ(sample.slope, 112);
    EXPECT_EQ(sample.torque, 114);
    EXPECT_EQ(sample.rpm, 116);
    EXPECT_EQ(sample.speed, 118);
    EXPECT_EQ(sample.watt, 120);
    EXPECT_EQ(sample.gear, 9);
    EXPECT_EQ(sample.deviceActive, 1);
    EXPECT_EQ(sample.pulse, 124);
    EXPECT_EQ(sample.pulseTime1, 126);
    EXPECT_EQ(sample.pulseTime2, 128);
    EXPECT_EQ(sample.pulseTime3, 130);
    EXPECT_EQ(sample.pulseTime4, 132);
    EXPECT_EQ(sample.pulseTime5, 134);
    EXPECT_EQ(sample.pulseTime6, 136);
    EXPECT_EQ(sample.trainingType, 5);
    EXPECT_EQ(sample.pulseType, 2);
    EXPECT_EQ(sample.trainingValue, 75.25F);
}

TEST(TrainingSamples, AllIntegersAreSigned) {
    RecordBytes bytes(44);
    bytes.bytes.assign(44, '\xFF');
    bytes.put(22, 0x80, 1);
    bytes.put(12, 0x8000, 2);
    const TrainingSample sample = decodeTrainingSample(asBytes(bytes.bytes));
    EXPECT_EQ(sample.elapsedTime, -1);
    EXPECT_EQ(sample.slope, -32768);
    EXPECT_EQ(sample.torque, -1);
    EXPECT_EQ(sample.watt, -1);
    EXPECT_EQ(sample.gear, -128);
    EXPECT_EQ(sample.deviceActive, -1);
    EXPECT_EQ(sample.pulse, -1);
    EXPECT_EQ(sample.pulseTime6, -1);
    EXPECT_EQ(sample.trainingType, -1);
    EXPECT_EQ(sample.pulseType, -1);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(sample.trainingValue), 0xFFFFFFFFU);
}

TEST(TrainingSamples, ANaNKeepsItsPayload) {
    RecordBytes bytes(44);
    bytes.put(4, 0x7FA12345, 4);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(decodeTrainingSample(asBytes(bytes.bytes)).distance),
              0x7FA12345U);
}

}  // namespace
