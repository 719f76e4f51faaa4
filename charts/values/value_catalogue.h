// The values a chart can draw: their numbers, texts, decimals and sources. One row per value;
// menus, labels, series and colours all follow from it.
#pragma once

#include <optional>
#include <span>

#include "device/dictionary_record.h"
#include "device/training_sample.h"
#include "services/text/latin1.h"

namespace charts {

enum class ChartKind {
    overview = 1,  // one value per training
    training = 2,  // one value per sample of the loaded training
};

// Value numbers: 0 to 19 overview, 50 to 71 training. They index the colours and limits tables, and
// item number = value number + 100 * option (chart_options.h).
inline constexpr int overviewValueCount = 20;
inline constexpr int firstTrainingValue = 50;
inline constexpr int trainingValueCount = 22;
inline constexpr int valueNumberLimit = firstTrainingValue + trainingValueCount;  // 72

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

// The value numbers of one chart: first and one past the last.
struct ValueRange {
    int first;
    int end;
};
ValueRange valueRange(ChartKind kind);

// A value's figure as the charts show it: the value's own decimals and a decimal point.
services::Text valueText(int valueNumber, float value);

}  // namespace charts
