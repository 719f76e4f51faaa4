#include "export/default_name.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "services/text/latin1.h"
#include "tests/export/export_fixture.h"

namespace {

using device::DictionaryRecord;
using exporting::defaultTrainingName;
using services::operator""_l1;

DictionaryRecord ride() {
    return {.fileName = "000000000000001a",
            .description = "Berg",
            .startDate = 1367949849,
            .rideTime = 1850,
            .distance = 15234.0F};
}

TEST(DefaultTrainingName, TellsNumberStartTimeDistanceAndDescription) {
    EXPECT_EQ(defaultTrainingName(ride()), "0026  07_05_2013 18_04_09   31min   15,2km  Berg.csv");
}

TEST(DefaultTrainingName, TheNumberIsItsLastFourCharacters) {
    struct Row {
        const char* fileName;
        const char* number;
    };
    const Row rows[] = {
        {"0000000000000000", "0000"},
        {"0000000000000009", "0009"},
        {"000000000000001a", "0026"},
        {"000000000000001A", "0026"},
        {"000000000000270f", "9999"},
        {"0000000000002710", "0000"},
        {"0000000000003039", "2345"},
        {"00000000004a3f1c", "5820"},
        {"7fffffffffffffff", "5807"},
        // Negative as the signed numbers they are read as.
        {"8000000000000000", "5808"},
        {"ffffffffffffd8f1", "9999"},
        {"fffffffffffffc19", "-999"},
        {"fffffffffffffff6", "0-10"},
        {"ffffffffffffffff", "00-1"},
        {"", "0000"},
    };
    for (const Row& row : rows) {
        DictionaryRecord training = ride();
        training.fileName = row.fileName;
        EXPECT_EQ(defaultTrainingName(training),
                  std::string(row.number) + "  07_05_2013 18_04_09   31min   15,2km  Berg.csv")
            << row.fileName;
    }
}

TEST(DefaultTrainingName, MinutesAndKilometresAreRoundedToTheEvenDigit) {
    struct Row {
        std::int32_t rideTime;
        float distance;
        const char* text;
    };
    const Row rows[] = {
        {0, 0.0F, "0min   0,0km"},
        {30, 250.0F, "0min   0,2km"},
        {90, 750.0F, "2min   0,8km"},
        {150, 1250.0F, "2min   1,2km"},
        {-150, -1250.0F, "-2min   -1,2km"},
        {-1, -1.0F, "-0min   -0,0km"},
        {std::numeric_limits<std::int32_t>::max(), 1e6F, "35791396min   1000,0km"},
        {60, std::numeric_limits<float>::quiet_NaN(), "1min   NaNkm"},
        {60, -std::numeric_limits<float>::infinity(), "1min   -Infinitykm"},
    };
    for (const Row& row : rows) {
        DictionaryRecord training = ride();
        training.rideTime = row.rideTime;
        training.distance = row.distance;
        EXPECT_EQ(defaultTrainingName(training),
                  std::string("0026  07_05_2013 18_04_09   ") + row.text + "  Berg.csv");
    }
}

TEST(DefaultTrainingName, DotsAndColonsOfTheDescriptionStay) {
    DictionaryRecord training = ride();
    training.description = "Tour 1.5: \"Mai\"; "_l1;
    EXPECT_EQ(defaultTrainingName(training),
              "0026  07_05_2013 18_04_09   31min   15,2km  Tour 1.5: \"Mai\"; .csv");
    training.description = "Übung süß"_l1;
    EXPECT_EQ(defaultTrainingName(training),
              "0026  07_05_2013 18_04_09   31min   15,2km  Übung süß.csv"_l1);
    training.description = "";
    EXPECT_EQ(defaultTrainingName(training), "0026  07_05_2013 18_04_09   31min   15,2km  .csv");
}

TEST(DefaultTrainingName, WhatNoFileNameHoldsBecomesAnUnderscore) {
    DictionaryRecord training = ride();
    training.description = "../a/b\t\x01\x1F\x7F\x80\x9F\xA0";
    EXPECT_EQ(defaultTrainingName(training),
              "0026  07_05_2013 18_04_09   31min   15,2km  .._a_b______\xA0.csv");
}

}  // namespace
