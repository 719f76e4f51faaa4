// The series of one value: what a chart draws, its limits applied, with minimum, maximum and mean.
#pragma once

#include <span>
#include <vector>

#include "charts/values/value_numbers.h"
#include "device/dictionary_record.h"
#include "device/training_sample.h"

namespace charts {

// A limit of exactly 0 is no limit on that side.
struct Limits {
    float lower = 0;
    float upper = 0;
};

// Values may be infinite or not a number where the data are; comparisons follow IEEE 754.
struct ValueSeries {
    bool hasData = false;  // false when the minimum or the maximum is exactly 0: draws nothing
    float minimum = 0;     // after limits
    float maximum = 0;     // after limits
    float mean = 0;        // of the values from minimum to maximum; NaN when there is none of these
    float firstDate = 0;   // overview: start of the first and last included training, seconds since
    float lastDate = 0;    // 1970 to a float's precision (some minutes)
    float totalRideTime = 0;    // overview: seconds
    std::vector<float> values;  // those of the included trainings or all samples, in their order
};

// Overview values (0 to 19) of the records whose selected flag is set. An unknown number has no
// data.
void computeOverviewSeries(int valueNumber, std::span<const device::DictionaryRecord> records,
                           const Limits& limits, ValueSeries& series);

// Training values (50 to 71) of all samples. An unknown number has no data.
void computeTrainingSeries(int valueNumber, std::span<const device::TrainingSample> samples,
                           const Limits& limits, ValueSeries& series);

}  // namespace charts
