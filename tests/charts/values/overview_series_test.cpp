#include <gtest/gtest.h>

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
using chart_tests::recordsOfWatt;
using chart_tests::SeriesRow;
using charts::computeOverviewSeries;
using charts::Limits;
using charts::ValueSeries;

constexpr int wattValue = 3;

ValueSeries wattSeries(std::initializer_list<float> watts, const Limits& limits = {}) {
    ValueSeries series;
    computeOverviewSeries(wattValue, recordsOfWatt(watts), limits, series);
    return series;
}

TEST(OverviewSeries, FollowsItsRulesForMinimumMaximumMeanAndLimits) {
    const SeriesRow rows[] = {
        {"no record", {}, {}, false, 0, 0, 0, {}},
        {"one", {4}, {}, true, 4, 4, 4, {4}},
        {"several", {5, 3, 1}, {}, true, 1, 5, 3, {5, 3, 1}},
        {"zeros before positive values", {0, 0, 5, 3}, {}, true, 3, 5, 3.5F, {3, 3, 5, 3}},
        {"a zero at the end stays the minimum", {5, 3, 0}, {}, false, 0, 5, 0, {5, 3, 0}},
        {"a zero makes what was smaller before it forgotten",
         {2, 0, 3, 5},
         {},
         true,
         3,
         5,
         11.0F / 3.0F,
         {2, 3, 3, 5}},
        {"a negative value is the minimum and replaces all that are not positive",
         {-5, -2, 0, 3},
         {},
         true,
         -5,
         3,
         -3,
         {-5, -5, -5, 3}},
        {"only negatives: the maximum never rises above 0",
         {-5, -2},
         {},
         false,
         -5,
         0,
         0,
         {-5, -5}},
        {"only zeros", {0, 0}, {}, false, 0, 0, 0, {0, 0}},
        {"fractions between 0 and 1 are values like others",
         {0.5F, 2, 0.25F},
         {},
         true,
         0.25F,
         2,
         2.75F / 3.0F,
         {0.5F, 2, 0.25F}},
        {"lower limit raises", {3, 5, 6}, {4, 0}, true, 4, 6, 5, {4, 5, 6}},
        {"lower limit below the data widens", {3, 5, 7}, {1, 0}, true, 1, 7, 5, {3, 5, 7}},
        {"upper limit lowers", {3, 5, 10}, {0, 7}, true, 3, 7, 5, {3, 5, 7}},
        {"upper limit above the data widens", {3, 5, 7}, {0, 70}, true, 3, 70, 5, {3, 5, 7}},
        {"both limits", {1, 5, 10}, {2, 8}, true, 2, 8, 5, {2, 5, 8}},
        {"equal limits", {1, 5, 10}, {5, 5}, true, 5, 5, 5, {5, 5, 5}},
        {"negative lower limit", {3, 5}, {-1, 0}, true, -1, 5, 4, {3, 5}},
        {"lower limit above the maximum: the mean of nothing",
         {3, 5},
         {8, 0},
         true,
         8,
         5,
         nan,
         {8, 8}},
        {"limits don't make data", {0, 0}, {1, 2}, false, 0, 0, 0, {0, 0}},
        {"not a number first stays the minimum", {nan, 2, 3}, {}, true, nan, 3, nan, {nan, 2, 3}},
        {"not a number later is passed over", {2, nan, 3}, {}, true, 2, 3, 2.5F, {2, nan, 3}},
        {"not a number after a zero", {0, nan, 3}, {}, true, nan, 3, nan, {nan, nan, 3}},
        {"infinity is the maximum", {2, infinity}, {}, true, 2, infinity, infinity, {2, infinity}},
        {"an upper limit makes infinity finite", {2, infinity}, {0, 6}, true, 2, 6, 4, {2, 6}},
        {"negative infinity is the minimum",
         {-infinity, 2},
         {},
         true,
         -infinity,
         2,
         -infinity,
         {-infinity, 2}},
        {"only infinities",
         {infinity, infinity},
         {},
         true,
         infinity,
         infinity,
         infinity,
         {infinity, infinity}},
    };
    for (const SeriesRow& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<device::DictionaryRecord> records;
        for (const float watt : row.data)
            records.push_back(chart_tests::recordOfWatt(watt));
        ValueSeries series;
        computeOverviewSeries(wattValue, records, row.limits, series);
        expectSeries(series, row);
    }
}

TEST(OverviewSeries, LeavesOutTrainingsThatAreNotSelected) {
    auto records = recordsOfWatt({5, 100, 3, 1});
    records[1].selected = 0;
    records[3].selected = 0;
    records[0].startDate = 1000;
    records[1].startDate = 2000;
    records[2].startDate = 3000;
    records[3].startDate = 4000;
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.values, (std::vector<float>{5, 3}));
    EXPECT_EQ(series.maximum, 5);
    EXPECT_EQ(series.firstDate, 1000);
    EXPECT_EQ(series.lastDate, 3000);
    EXPECT_EQ(series.totalRideTime, 120);
}

TEST(OverviewSeries, ARecordCountsWithAnySelectionOtherThanZero) {
    auto records = recordsOfWatt({5, 3});
    records[0].selected = -1;
    records[1].selected = 2;
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.values.size(), 2U);
}

TEST(OverviewSeries, NothingSelectedMeansNoDataForEveryValue) {
    auto records = recordsOfWatt({5, 3});
    for (auto& record : records) {
        record.unknown1 = record.speed = record.kJoulePerMinute = record.distance = 1;
        record.selected = 0;
    }
    for (int value = 0; value < charts::overviewValueCount; ++value) {
        SCOPED_TRACE(value);
        ValueSeries series;
        computeOverviewSeries(value, records, {}, series);
        EXPECT_FALSE(series.hasData);
        EXPECT_TRUE(series.values.empty());
    }
}

TEST(OverviewSeries, WithoutAPulseTheRatioIsThePower) {
    // Reading the index has turned a pulse of 0 into 1.
    ValueSeries series;
    computeOverviewSeries(1, recordsOfWatt({5, 3, 1}), {}, series);
    EXPECT_EQ(series.values, (std::vector<float>{5, 3, 1}));
}

TEST(OverviewSeries, DatesKeepAFloatsPrecision) {
    auto records = recordsOfWatt({5, 3});
    records[0].startDate = 1362506649;
    records[1].startDate = 1362592000;
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.firstDate, 1362506624.0F);  // 128 seconds apart are the floats there
    EXPECT_EQ(series.lastDate, 1362592000.0F);
}

TEST(OverviewSeries, AFirstDateOfExactlyZeroCountsAsNotSet) {
    auto records = recordsOfWatt({5, 3, 1});
    records[0].startDate = 0;
    records[1].startDate = 77;
    records[2].startDate = 0;
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.firstDate, 77);
    EXPECT_EQ(series.lastDate, 0);
}

TEST(OverviewSeries, RidingTimeAddsUpInSinglePrecision) {
    auto records = recordsOfWatt({5, 3, 1});
    records[0].rideTime = 16777216;
    records[1].rideTime = 1;  // lost: a float has no 16777217
    records[2].rideTime = 1;
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.totalRideTime, 16777216.0F);
}

TEST(OverviewSeries, TheMeanAddsUpInDoublePrecision) {
    std::vector<device::DictionaryRecord> records(100000, chart_tests::recordOfWatt(0.1F));
    ValueSeries series;
    computeOverviewSeries(wattValue, records, {}, series);
    EXPECT_EQ(series.mean, 0.1F);
}

TEST(OverviewSeries, UnknownNumbersHaveNoData) {
    const auto records = recordsOfWatt({5, 3});
    for (const int number : {-1, 20, 50, 72, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(number);
        ValueSeries series = wattSeries({1, 2});
        computeOverviewSeries(number, records, {}, series);
        EXPECT_FALSE(series.hasData);
        EXPECT_TRUE(series.values.empty());
    }
}

TEST(OverviewSeries, EveryNumberHasTheValuesOfItsOwnSource) {
    device::DictionaryRecord record = chart_tests::recordOfWatt(200);
    record.pulse = 130;
    record.rpm = 85;
    record.unknown1 = 4.5F;
    record.speed = 25;
    record.kJoulePerMinute = 8;
    record.distance = 12;
    record.maxSpeed = 40;
    record.unknown2 = 12;
    record.maxRpm = 110;
    record.unknown3 = 14;
    record.maxKJoulePerMinute = 15;
    record.kJoule = 500;
    record.unknown4 = 17;
    record.unknown5 = 18;
    record.unknown6 = 19;
    for (const charts::OverviewValue& value : charts::overviewValues()) {
        SCOPED_TRACE(value.number);
        ValueSeries series;
        computeOverviewSeries(value.number, std::vector{record}, {}, series);
        EXPECT_TRUE(series.hasData);
        EXPECT_EQ(series.values, std::vector{value.source(record)});
    }
}

// Drawing computes one value after the other, of a hundred thousand samples perhaps.
TEST(OverviewSeries, TheRoomOfAnEarlierComputationIsUsedAgain) {
    const std::vector<device::DictionaryRecord> many(1000, chart_tests::recordOfWatt(5));
    ValueSeries series;
    computeOverviewSeries(wattValue, many, {}, series);
    computeOverviewSeries(wattValue, recordsOfWatt({7, 9}), {}, series);
    EXPECT_EQ(series.values, (std::vector{7.0F, 9.0F}));
    EXPECT_GE(series.values.capacity(), many.size());
}

TEST(OverviewSeries, NothingOfAnEarlierComputationRemains) {
    ValueSeries series = wattSeries({5, 3, 1}, {2, 4});
    computeOverviewSeries(wattValue, {}, {}, series);
    EXPECT_FALSE(series.hasData);
    EXPECT_EQ(series.minimum, 0);
    EXPECT_EQ(series.maximum, 0);
    EXPECT_EQ(series.mean, 0);
    EXPECT_EQ(series.totalRideTime, 0);
    EXPECT_TRUE(series.values.empty());
}

}  // namespace
