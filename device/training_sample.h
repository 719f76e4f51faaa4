// One sample of a training file: 44 bytes on disk (docs/formats.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace device {

inline constexpr std::size_t trainingSampleSize = 44;  // bytes on disk

struct TrainingSample {
    std::int32_t elapsedTime = 0;  // seconds since the start
    float distance = 0;            // metres so far
    float kJoule = 0;              // physical work so far
    std::int16_t slope = 0;        // tenths of a per cent
    std::int16_t torque = 0;       // tenths of a newton metre
    std::int16_t rpm = 0;          // tenths of a revolution per minute
    std::int16_t speed = 0;        // tenths of km/h
    std::int16_t watt = 0;         // W
    std::int8_t gear = 0;
    std::int8_t deviceActive = 0;  // raw
    std::int16_t pulse = 0;        // beats per minute; 0 when none is measured
    std::int16_t pulseTime1 = 0;   // raw, as the five below
    std::int16_t pulseTime2 = 0;
    std::int16_t pulseTime3 = 0;
    std::int16_t pulseTime4 = 0;
    std::int16_t pulseTime5 = 0;
    std::int16_t pulseTime6 = 0;
    std::int8_t trainingType = 0;  // raw
    std::int8_t pulseType = 0;     // raw
    float trainingValue = 0;       // raw

    bool operator==(const TrainingSample&) const = default;
};

// `bytes` holds trainingSampleSize bytes.
TrainingSample decodeTrainingSample(std::span<const std::byte> bytes);

}  // namespace device
