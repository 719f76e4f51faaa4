#include "charts/values/value_catalogue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace {

using charts::overviewValues;
using charts::trainingValues;
using services::latin1ToUtf8;
using services::operator""_l1;

struct ExpectedTexts {
    int number;
    std::string_view menuText;  // UTF-8, as the label
    std::string_view label;
    int decimals;
};

constexpr ExpectedTexts expectedTexts[] = {
    {0, "Watt / Puls / RPM * 100", "Watt/Puls*RPM/100", 2},
    {1, "Watt / Puls", "Watt/Puls", 2},
    {2, "RPM / Puls", "RPM/Puls", 2},
    {3, "Watt", "Watt", 0},
    {4, "Unbekannt 1", "Unbekannt1", 2},
    {5, "Puls", "Puls", 0},
    {6, "RPM", "RPM", 0},
    {7, "km/h", "km/h", 1},
    {8, "KJoule / Minute", "KJoule/Min.", 2},
    {9, "Fahrzeit", "Fahrzeit", charts::durationDecimals},
    {10, "Strecke", "km", 2},
    {11, "Max. km/h", "Max.km/h", 2},
    {12, "Unbekannt 2", "Unbekannt2", 2},
    {13, "Max. RPM", "Max. RPM", 0},
    {14, "Unbekannt 3", "Unbekannt3", 0},
    {15, "Max. Joule / Minute", "Max.Joule/Minute", 2},
    {16, "KJoule", "KJoule", 0},
    {17, "Unbekannt 4", "Unbekannt4", 2},
    {18, "Unbekannt 5", "Unbekannt5", 2},
    {19, "Unbekannt 6", "Unbekannt6", 2},
    {50, "Watt / Puls / RPM * 100", "Watt/Puls*RPM/100", 2},
    {51, "Watt / Puls", "Watt/Puls", 2},
    {52, "RPM / Puls", "RPM/Puls", 2},
    {53, "km", "Gefahrene km", 2},
    {54, "KJolue", "KJoule", 0},
    {55, "Steigung", "Steigung", 2},
    {56, "Newtonmeter", "Newtonmeter", 0},
    {57, "RPM", "RPM", 0},
    {58, "km/h", "km/h", 2},
    {59, "Watt", "Watt", 0},
    {60, "Gang", "Gang", 2},
    {61, "Gerät", "Gerät", 0},
    {62, "Puls", "Puls", 0},
    {63, "Pulszeit 1", "Pulszeit 1", 0},
    {64, "Pulszeit 2", "Pulszeit 2", 0},
    {65, "Pulszeit 3", "Pulszeit 3", 0},
    {66, "Pulszeit 4", "Pulszeit 4", 0},
    {67, "Pulszeit 5", "Pulszeit 5", 0},
    {68, "Pulszeit 6", "Pulszeit 6", 0},
    {69, "Trainingsart", "Trainingsart", 0},
    {70, "Pulsart", "Pulsart", 0},
    {71, "Trainingswert", "Trainingswert", 2},
};

TEST(ValueCatalogue, EveryValueHasItsTextsAndDecimals) {
    EXPECT_EQ(std::size(expectedTexts), overviewValues().size() + trainingValues().size());
    for (const ExpectedTexts& expected : expectedTexts) {
        SCOPED_TRACE(expected.number);
        const auto texts = charts::valueTexts(expected.number);
        ASSERT_TRUE(texts.has_value());
        EXPECT_EQ(latin1ToUtf8(texts->menuText), expected.menuText);
        EXPECT_EQ(latin1ToUtf8(texts->label), expected.label);
        EXPECT_EQ(texts->decimals, expected.decimals);
    }
}

TEST(ValueCatalogue, OtherNumbersHaveNoTexts) {
    for (const int number :
         {-1, 20, 49, 72, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(number);
        EXPECT_FALSE(charts::valueTexts(number).has_value());
        EXPECT_EQ(charts::valueText(number, 1.0F), "");
    }
}

TEST(ValueCatalogue, TheTablesOfBothChartsStandInTheirRanges) {
    const auto overview = charts::valueRange(charts::ChartKind::overview);
    EXPECT_EQ(overview.first, 0);
    EXPECT_EQ(overview.end, 20);
    const auto training = charts::valueRange(charts::ChartKind::training);
    EXPECT_EQ(training.first, 50);
    EXPECT_EQ(training.end, 72);
    EXPECT_EQ(overviewValues().front().number, 0);
    EXPECT_EQ(trainingValues().front().number, 50);
}

// Every field has a value of its own, so that a source of the wrong field shows.
TEST(ValueCatalogue, OverviewValuesComeFromTheirFields) {
    device::DictionaryRecord record;
    record.trainingType = 901;
    record.startDate = 902;
    record.endDate = 903;
    record.watt = 150.5F;
    record.unknown1 = 2.25F;
    record.pulse = 120.0F;
    record.rpm = 80.0F;
    record.speed = 25.5F;
    record.kJoulePerMinute = 9.5F;
    record.rideTime = 3661;
    record.distance = 12.75F;
    record.maxSpeed = 40.5F;
    record.unknown2 = -7;
    record.maxRpm = 101.0F;
    record.unknown3 = 3.5F;
    record.maxKJoulePerMinute = 20.25F;
    record.kJoule = 555.0F;
    record.unknown4 = 4.75F;
    record.unknown5 = 16777217;  // one more than a float can count to
    record.unknown6 = 66;
    const float expected[] = {150.5F / 120.0F * 80.0F / 100.0F,
                              150.5F / 120.0F,
                              80.0F / 120.0F,
                              150.5F,
                              2.25F,
                              120.0F,
                              80.0F,
                              25.5F,
                              9.5F,
                              3661.0F,
                              12.75F,
                              40.5F,
                              -7.0F,
                              101.0F,
                              3.5F,
                              20.25F,
                              555.0F,
                              4.75F,
                              16777216.0F,
                              66.0F};
    for (std::size_t i = 0; i < overviewValues().size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(overviewValues()[i].source(record), expected[i]);
    }
}

TEST(ValueCatalogue, TrainingValuesComeFromTheirFieldsWithTheirSigns) {
    device::TrainingSample sample;
    sample.elapsedTime = 901;
    sample.distance = 2500.0F;
    sample.kJoule = 77.5F;
    sample.slope = -35;
    sample.torque = 123;
    sample.rpm = 850;
    sample.speed = 255;
    sample.watt = 180;
    sample.gear = -3;
    sample.deviceActive = -1;
    sample.pulse = 120;
    sample.pulseTime1 = -32768;
    sample.pulseTime2 = 32767;
    sample.pulseTime3 = 13;
    sample.pulseTime4 = 14;
    sample.pulseTime5 = 15;
    sample.pulseTime6 = 16;
    sample.trainingType = -128;
    sample.pulseType = 127;
    sample.trainingValue = 6.25F;
    const float expected[] = {180.0F / 120.0F * 850.0F / 1000.0F,
                              1.5F,
                              850.0F / 120.0F,
                              2.5F,
                              77.5F,
                              -3.5F,
                              12.3F,
                              85.0F,
                              25.5F,
                              180.0F,
                              -3.0F,
                              -1.0F,
                              120.0F,
                              -32768.0F,
                              32767.0F,
                              13.0F,
                              14.0F,
                              15.0F,
                              16.0F,
                              -128.0F,
                              127.0F,
                              6.25F};
    for (std::size_t i = 0; i < trainingValues().size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(trainingValues()[i].source(sample), expected[i]);
    }
}

TEST(ValueCatalogue, TheTrainingRatioOfRpmToPulseUsesTheStoredTenths) {
    device::TrainingSample sample;
    sample.rpm = 850;
    sample.pulse = 120;
    EXPECT_FLOAT_EQ(trainingValues()[2].source(sample), 7.0833335F);
}

TEST(ValueCatalogue, APulseOfZeroDividesAllTheSame) {
    device::TrainingSample sample;
    sample.watt = 100;
    EXPECT_EQ(trainingValues()[1].source(sample), std::numeric_limits<float>::infinity());
    sample.watt = -100;
    EXPECT_EQ(trainingValues()[1].source(sample), -std::numeric_limits<float>::infinity());
    sample.watt = 0;
    EXPECT_TRUE(std::isnan(trainingValues()[1].source(sample)));
    EXPECT_TRUE(std::isnan(trainingValues()[0].source(sample)));
    EXPECT_TRUE(std::isnan(trainingValues()[2].source(sample)));
}

TEST(ValueCatalogue, FiguresHaveTheValuesOwnDecimalsAndAPoint) {
    struct Row {
        int number;
        float value;
        std::string_view text;
    };
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Row rows[] = {
        {3, 150.5F, "150"},
        {3, 151.5F, "152"},
        {7, 25.25F, "25.2"},
        {1, 1.375F, "1.38"},
        {60, 3.0F, "3.00"},
        {57, 85.4F, "85"},
        {3, -0.25F, "-0"},
        {9, 3725.0F, "1:02:05"},
        {9, 59.5F, "0:01:00"},  // rounded to 60, the even neighbour
        {9, 60.5F, "0:01:00"},
        {9, -3725.0F, "-1:02:05"},
        {9, 0x1.fffffep62F, "2562047635305267:12:00"},
        {9, 0x1p63F, "2562047788015215:30:08"},
        {9, -0x1p63F, "-2562047788015215:30:08"},
        {9, 1e20F, "27777778334468815:04:32"},
        {9, infinity, "+Infinity"},
        {9, -infinity, "-Infinity"},
        {9, nan, "NaN"},
        {51, infinity, "+Infinity"},
        {51, nan, "NaN"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.number) + ": " + std::string(row.text));
        EXPECT_EQ(charts::valueText(row.number, row.value), row.text);
    }
}

}  // namespace
