// One training's entry of the index file "dictionary.2" and its bytes on disk (docs/formats.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "services/text/latin1.h"

namespace device {

inline constexpr std::size_t dictionaryRecordSize = 152;  // bytes on disk
inline constexpr std::size_t descriptionOffset = 12;
inline constexpr std::size_t descriptionSize = 64;
inline constexpr std::size_t rideTimeOffset = 108;

struct DictionaryRecord {
    services::Text fileName = {};  // 16 lower-case hexadecimal digits; the training file's name
    std::int32_t trainingType = 0;
    services::Text description = {};  // Latin-1
    std::int32_t startDate = 0;       // seconds since 1970, the device's wall clock
    std::int32_t endDate = 0;         // the same
    float watt = 0;                   // mean power, W
    float unknown1 = 0;
    float pulse = 0;            // mean, beats per minute; 1.0 stands for not measured
    float rpm = 0;              // mean cadence, per minute; 1.0 stands for none
    float speed = 0;            // mean, km/h
    float kJoulePerMinute = 0;  // mean
    std::int32_t rideTime = 0;  // seconds
    float distance = 0;         // as stored
    float maxSpeed = 0;         // km/h
    std::int32_t unknown2 = 0;
    float maxRpm = 0;
    float unknown3 = 0;
    float maxKJoulePerMinute = 0;
    float kJoule = 0;  // total work
    float unknown4 = 0;
    std::int32_t unknown5 = 0;
    std::int32_t unknown6 = 0;
    std::int32_t selected = 0;  // in memory only: 1 when the charts and exports use this training

    bool operator==(const DictionaryRecord&) const = default;
};

// The fields of one whole record of the file but for the description, which may go on beyond the
// record's end and is left empty. A pulse or rpm of +0.0 becomes 1.0, so that later divisions stay
// finite; `selected` becomes 1. `bytes` holds dictionaryRecordSize bytes.
DictionaryRecord decodeDictionaryRecord(std::span<const std::byte> bytes);

// The riding time alone, which tells whether the rest of a record is worth decoding.
std::int32_t decodeRideTime(std::span<const std::byte> bytes);

// The record as it goes to disk: dictionaryRecordSize bytes when the description has at most 64,
// more when it is longer. A pulse or rpm of exactly 1.0 is written as 0.0.
services::Text encodeDictionaryRecord(const DictionaryRecord& record);

}  // namespace device
