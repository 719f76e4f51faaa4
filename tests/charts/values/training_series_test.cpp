#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "charts/values/value_catalogue.h"
#include "charts/values/value_series.h"
#include "tests/charts/chart_test.h"
#include "tests/charts/values/series_rows.h"

namespace {

using chart_tests::expectSeries;
using chart_tests::infinity;
using chart_tests::nan;
using chart_tests::SeriesRow;
using charts::computeTrainingSeries;
using charts::ValueSeries;

constexpr int ratioValue = 51;   // power by pulse
constexpr int storedValue = 71;  // any float

TEST(TrainingSeries, FollowsItsRulesForMinimumMaximumMeanAndLimits) {
    const SeriesRow rows[] = {
        {"no sample", {}, {}, false, 0, 0, 0, {}},
        {"one", {4}, {}, true, 4, 4, 4, {4}},
        {"several", {5, 3, 1}, {}, true, 1, 5, 3, {5, 3, 1}},
        {"zeros anywhere are replaced", {0, 5, 0, 3, 0}, {}, true, 3, 5, 3.4F, {3, 5, 3, 3, 3}},
        {"a zero makes nothing forgotten", {2, 0, 3}, {}, true, 2, 3, 7.0F / 3.0F, {2, 2, 3}},
        {"the minimum is the smallest positive value",
         {-5, 3, 4},
         {},
         true,
         3,
         4,
         10.0F / 3.0F,
         {3, 3, 4}},
        {"only negatives", {-5, -2}, {}, false, 0, 0, 0, {0, 0}},
        {"only zeros", {0, 0}, {}, false, 0, 0, 0, {0, 0}},
        {"fractions between 0 and 1 are values like others",
         {0.5F, 0.75F, 0.625F},
         {},
         true,
         0.5F,
         0.75F,
         0.625F,
         {0.5F, 0.75F, 0.625F}},
        {"lower limit raises", {3, 5, 6}, {4, 0}, true, 4, 6, 5, {4, 5, 6}},
        {"upper limit lowers", {3, 5, 10}, {0, 7}, true, 3, 7, 5, {3, 5, 7}},
        {"both limits", {1, 5, 10}, {2, 8}, true, 2, 8, 5, {2, 5, 8}},
        {"not a number first is passed over", {nan, 2, 3}, {}, true, 2, 3, 2.5F, {nan, 2, 3}},
        {"only not a number", {nan, nan}, {}, false, 0, 0, 0, {nan, nan}},
        {"not a number is not raised to a limit", {nan, 2, 3}, {3, 0}, true, 3, 3, 3, {nan, 3, 3}},
        {"infinity is the maximum", {2, infinity}, {}, true, 2, infinity, infinity, {2, infinity}},
        {"negative infinity is replaced",
         {-infinity, 2, 4},
         {},
         true,
         2,
         4,
         8.0F / 3.0F,
         {2, 2, 4}},
        {"only infinities",
         {infinity, infinity},
         {},
         true,
         infinity,
         infinity,
         infinity,
         {infinity, infinity}},
        {"the largest float",
         {3.4028235e38F, 3.4028235e38F},
         {},
         true,
         3.4028235e38F,
         3.4028235e38F,
         3.4028235e38F,
         {3.4028235e38F, 3.4028235e38F}},
    };
    for (const SeriesRow& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<device::TrainingSample> samples;
        for (const float value : row.data) {
            device::TrainingSample sample;
            sample.trainingValue = value;
            samples.push_back(sample);
        }
        ValueSeries series;
        computeTrainingSeries(storedValue, samples, row.limits, series);
        expectSeries(series, row);
        EXPECT_EQ(series.firstDate, 0);
        EXPECT_EQ(series.lastDate, 0);
        EXPECT_EQ(series.totalRideTime, 0);
    }
}

// Power 100, 0 and -100 by a pulse of 0: infinity, not a number, negative infinity.
TEST(TrainingSeries, WithoutAnyPulseTheRatiosAreNotFinite) {
    const auto samples = chart_tests::samplesOfWatt({100, 0, -100});
    ValueSeries series;
    computeTrainingSeries(ratioValue, samples, {}, series);
    EXPECT_TRUE(series.hasData);
    EXPECT_EQ(series.minimum, infinity);
    EXPECT_EQ(series.maximum, infinity);
    EXPECT_EQ(series.mean, infinity);
    ASSERT_EQ(series.values.size(), 3U);
    EXPECT_EQ(series.values[0], infinity);
    EXPECT_TRUE(std::isnan(series.values[1]));
    EXPECT_EQ(series.values[2], infinity);  // replaced by the minimum
}

TEST(TrainingSeries, TheRatioOfRpmToPulseIsTenTimesTheShownOne) {
    device::TrainingSample sample;
    sample.rpm = 850;
    sample.pulse = 120;
    ValueSeries series;
    computeTrainingSeries(52, std::vector{sample}, {}, series);
    EXPECT_FLOAT_EQ(series.maximum, 7.0833335F);
}

TEST(TrainingSeries, EveryNumberHasTheValuesOfItsOwnSource) {
    device::TrainingSample sample;
    sample.distance = 1500;
    sample.kJoule = 20;
    sample.slope = 25;
    sample.torque = 300;
    sample.rpm = 850;
    sample.speed = 251;
    sample.watt = 200;
    sample.gear = 7;
    sample.deviceActive = 1;
    sample.pulse = 130;
    sample.pulseTime1 = 1001;
    sample.pulseTime2 = 1002;
    sample.pulseTime3 = 1003;
    sample.pulseTime4 = 1004;
    sample.pulseTime5 = 1005;
    sample.pulseTime6 = 1006;
    sample.trainingType = 3;
    sample.pulseType = 2;
    sample.trainingValue = 0.5F;
    for (const charts::TrainingValue& value : charts::trainingValues()) {
        SCOPED_TRACE(value.number);
        ValueSeries series;
        computeTrainingSeries(value.number, std::vector{sample}, {}, series);
        EXPECT_TRUE(series.hasData);
        EXPECT_EQ(series.values, std::vector{value.source(sample)});
    }
}

TEST(TrainingSeries, UnknownNumbersHaveNoData) {
    const auto samples = chart_tests::samplesOfWatt({5, 3});
    for (const int number : {-1, 0, 19, 49, 72, std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(number);
        ValueSeries series;
        computeTrainingSeries(59, samples, {}, series);
        ASSERT_TRUE(series.hasData);
        computeTrainingSeries(number, samples, {}, series);
        EXPECT_FALSE(series.hasData);
        EXPECT_TRUE(series.values.empty());
    }
}

}  // namespace
