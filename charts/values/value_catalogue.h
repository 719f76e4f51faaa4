// The values a chart can draw: their numbers, texts, decimals and sources. One row per value;
// menus, labels, series and colours all follow from it.
#pragma once

#include <optional>
#include <span>

#include "charts/values/value_numbers.h"
#include "device/dictionary_record.h"
#include "device/training_sample.h"
#include "services/text/latin1.h"

namespace charts {

inline constexpr int durationDecimals = -1;  // written as hours, minutes and seconds

struct OverviewValue {
    int number;
    services::TextView menuText;
    services::TextView label;
    int decimals;  // 0 to 2, or durationDecimals
    float (*source)(const device::DictionaryRecord&);
};

struct TrainingValue {
    int number;
    services::TextView menuText;
    services::TextView label;
    int decimals;
    float (*source)(const device::TrainingSample&);
};

std::span<const OverviewValue, overviewValueCount> overviewValues();
std::span<const TrainingValue, trainingValueCount> trainingValues();

// What the two catalogues share, by value number.
struct ValueTexts {
    services::TextView menuText;
    services::TextView label;
    int decimals = 0;
};

// Nothing for a number outside the catalogues.
std::optional<ValueTexts> valueTexts(int valueNumber);

// A value's figure as the charts show it: the value's own decimals and a decimal point.
services::Text valueText(int valueNumber, float value);

}  // namespace charts
