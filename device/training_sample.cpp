#include "device/training_sample.h"

#include "device/record_layout.h"

namespace device {

namespace {

using Sample = TrainingSample;

constexpr std::tuple layout{
    Field{0, &Sample::elapsedTime}, Field{4, &Sample::distance},
    Field{8, &Sample::kJoule},      Field{12, &Sample::slope},
    Field{14, &Sample::torque},     Field{16, &Sample::rpm},
    Field{18, &Sample::speed},      Field{20, &Sample::watt},
    Field{22, &Sample::gear},       Field{23, &Sample::deviceActive},
    Field{24, &Sample::pulse},      Field{26, &Sample::pulseTime1},
    Field{28, &Sample::pulseTime2}, Field{30, &Sample::pulseTime3},
    Field{32, &Sample::pulseTime4}, Field{34, &Sample::pulseTime5},
    Field{36, &Sample::pulseTime6}, Field{38, &Sample::trainingType},
    Field{39, &Sample::pulseType},  Field{40, &Sample::trainingValue},
};

static_assert(fillsExactly(layout, 0, trainingSampleSize));

}  // namespace

TrainingSample decodeTrainingSample(std::span<const std::byte> bytes) {
    TrainingSample sample;
    readFields(bytes, layout, sample);
    return sample;
}

}  // namespace device
