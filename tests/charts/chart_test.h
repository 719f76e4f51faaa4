// What the tests of the charts share: fresh tables, a menu bar with every option, small builders.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "charts/chart_state.h"
#include "charts/marks/chart_frame.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_series.h"
#include "device/device_state.h"
#include "services/menus.h"
#include "tests/stand_ins/stand_ins.h"

namespace chart_tests {

class ChartTest : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        stand_ins::StandInTest::SetUp();
        device::state = {};
        charts::state = {};
        std::vector<services::MenuRow> rows;
        for (const charts::ChartKind kind :
             {charts::ChartKind::overview, charts::ChartKind::training}) {
            const charts::ValueRange range = charts::valueRange(kind);
            for (int value = range.first; value < range.end; ++value) {
                for (int option = 1; option <= charts::lastOption; ++option) {
                    rows.push_back({services::MenuRowKind::checkItem, value + 100 * option, {}});
                }
            }
        }
        services::buildMenuBar(services::mainWindow, rows);
    }

    void TearDown() override {
        stand_ins::StandInTest::TearDown();
        device::state = {};
        charts::state = {};
    }
};

inline void mark(int valueNumber, charts::Option option) {
    services::setItemMark(charts::optionItem(valueNumber, option), true);
}

// A selected training that differs from an empty one in its power.
inline device::DictionaryRecord recordOfWatt(float watt) {
    device::DictionaryRecord record;
    record.watt = watt;
    record.pulse = 1;
    record.rpm = 1;
    record.rideTime = 60;
    record.selected = 1;
    return record;
}

inline std::vector<device::DictionaryRecord> recordsOfWatt(std::initializer_list<float> watts) {
    std::vector<device::DictionaryRecord> records;
    for (const float watt : watts)
        records.push_back(recordOfWatt(watt));
    return records;
}

inline device::TrainingSample sampleOfWatt(std::int16_t watt) {
    device::TrainingSample sample;
    sample.watt = watt;
    return sample;
}

inline std::vector<device::TrainingSample> samplesOfWatt(
    std::initializer_list<std::int16_t> watts) {
    std::vector<device::TrainingSample> samples;
    for (const std::int16_t watt : watts)
        samples.push_back(sampleOfWatt(watt));
    return samples;
}

// A series with data as the computations would leave it, but for the mean.
inline charts::ValueSeries seriesOf(std::vector<float> values, float minimum, float maximum,
                                    float mean = 0) {
    charts::ValueSeries series;
    series.hasData = true;
    series.minimum = minimum;
    series.maximum = maximum;
    series.mean = mean;
    series.values = std::move(values);
    return series;
}

inline charts::ChartFrame frameOf(int left, int top, int width, int height) {
    charts::ChartFrame frame;
    frame.imageWidth = width + 2 * left;
    frame.imageHeight = height + top + 20;
    frame.left = left;
    frame.top = top;
    frame.width = width;
    frame.height = height;
    return frame;
}

}  // namespace chart_tests
