#include "charts/values/value_series.h"

#include <cstddef>
#include <utility>

#include "charts/values/value_catalogue.h"

namespace charts {
namespace {

// Empty, but with the room that earlier values took.
void clearSeries(ValueSeries& series) {
    std::vector<float> values = std::move(series.values);
    values.clear();
    series = {};
    series.values = std::move(values);
}

// Starts at 0 and so never falls below it.
void raiseMaximum(ValueSeries& series, float value) {
    if (series.maximum < value) series.maximum = value;
}

// What both kinds of chart do once minimum, maximum and values are known. Every comparison with a
// NaN is false: such a value stays where it is and takes no part in the mean.
void finishSeries(const Limits& limits, ValueSeries& series) {
    for (float& value : series.values) {
        if (value <= 0) value = series.minimum;
    }
    series.hasData = series.minimum != 0 && series.maximum != 0;
    if (!series.hasData) return;

    if (limits.lower != 0) {
        series.minimum = limits.lower;
        for (float& value : series.values) {
            if (value < limits.lower) value = limits.lower;
        }
    }
    if (limits.upper != 0) {
        series.maximum = limits.upper;
        for (float& value : series.values) {
            if (value > limits.upper) value = limits.upper;
        }
    }

    double sum = 0;
    std::size_t count = 0;
    for (const float value : series.values) {
        if (value >= series.minimum && value <= series.maximum) {
            sum += static_cast<double>(value);
            ++count;
        }
    }
    // Without a guard: the mean of nothing is not a number.
    series.mean = static_cast<float>(sum / static_cast<double>(count));
}

}  // namespace

void computeOverviewSeries(int valueNumber, std::span<const device::DictionaryRecord> records,
                           const Limits& limits, ValueSeries& series) {
    clearSeries(series);
    if (valueNumber < 0 || valueNumber >= overviewValueCount) return;
    const auto source = overviewValues()[static_cast<std::size_t>(valueNumber)].source;

    series.values.reserve(records.size());
    for (const device::DictionaryRecord& record : records) {
        if (record.selected == 0) continue;
        const auto startDate = static_cast<float>(record.startDate);
        if (series.firstDate == 0) series.firstDate = startDate;
        series.lastDate = startDate;
        series.totalRideTime += static_cast<float>(record.rideTime);

        const float value = source(record);
        series.values.push_back(value);
        // A minimum of 0 is taken for none: the next value replaces it, and whatever smaller value
        // came before the 0 is forgotten with it.
        if (series.minimum > value || series.minimum == 0) series.minimum = value;
        raiseMaximum(series, value);
    }
    finishSeries(limits, series);
}

void computeTrainingSeries(int valueNumber, std::span<const device::TrainingSample> samples,
                           const Limits& limits, ValueSeries& series) {
    clearSeries(series);
    if (valueNumber < firstTrainingValue || valueNumber >= valueNumberLimit) return;
    const auto source =
        trainingValues()[static_cast<std::size_t>(valueNumber - firstTrainingValue)].source;

    series.values.reserve(samples.size());
    for (const device::TrainingSample& sample : samples) {
        const float value = source(sample);
        series.values.push_back(value);
        // Unlike the overview's, the smallest positive value.
        if (value > 0 && (series.minimum > value || series.minimum <= 0)) series.minimum = value;
        raiseMaximum(series, value);
    }
    finishSeries(limits, series);
}

}  // namespace charts
