#include "files/training_rows.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "services/text/dates.h"

namespace {

using device::DictionaryRecord;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

enum Column {
    date,
    training,
    km,
    duration,
    speed,
    watt,
    pulse,
    wattPulse,
    fitness,
    rpm,
    rpmPulse,
    kJoule,
    fileName
};

std::string cell(const DictionaryRecord& record, int column) {
    return files::trainingCell(record, column);
}

DictionaryRecord ride() {
    DictionaryRecord record;
    record.fileName = "00000000004a3f1c";
    record.description =
        "Berg \xFC"
        "ber Tal";
    record.startDate = static_cast<std::int32_t>(services::makeDate(2013, 5, 7, 18, 4, 9));
    record.distance = 25340.0F;
    record.rideTime = 3725;
    record.speed = 24.5F;
    record.watt = 150.0F;
    record.pulse = 120.0F;
    record.rpm = 85.5F;
    record.kJoule = 540.5F;
    return record;
}

TEST(TrainingRows, ARowShowsEveryColumnInItsFormat) {
    const std::vector<std::string> expected = {"07.05.2013 18:04:09",
                                               "Berg \xFC"
                                               "ber Tal",
                                               " 25.3",
                                               "1:02:05",
                                               " 24.5",
                                               "150.0",
                                               "120.0",
                                               "  1.25",
                                               "  1.069",
                                               " 85.5",
                                               "     0.71",
                                               "  540",
                                               "00000000004a3f1c"};
    ASSERT_EQ(expected.size(), std::size_t{files::trainingColumnCount});
    for (int column = 0; column < files::trainingColumnCount; ++column)
        EXPECT_EQ(cell(ride(), column), expected[static_cast<std::size_t>(column)]) << column;
}

TEST(TrainingRows, WattAndPulseArePaddedWithZerosAndAllOthersWithBlanks) {
    DictionaryRecord record = ride();
    record.watt = record.pulse = record.speed = record.rpm = 9.5F;
    record.distance = 9500.0F;
    record.kJoule = 9.0F;
    EXPECT_EQ(cell(record, watt), "009.5");
    EXPECT_EQ(cell(record, pulse), "009.5");
    EXPECT_EQ(cell(record, speed), "  9.5");
    EXPECT_EQ(cell(record, rpm), "  9.5");
    EXPECT_EQ(cell(record, km), "  9.5");
    EXPECT_EQ(cell(record, kJoule), "    9");
}

TEST(TrainingRows, ATooLongFigureKeepsItsFirstCharacters) {
    DictionaryRecord record = ride();
    record.watt = 1234.5F;
    record.distance = 12345600.0F;
    record.kJoule = 1234567.0F;
    EXPECT_EQ(cell(record, watt), "1234.");
    EXPECT_EQ(cell(record, km), "12345");
    EXPECT_EQ(cell(record, kJoule), "12345");
}

TEST(TrainingRows, APulseOfZeroShowsTheFirstCharactersOfInfinity) {
    DictionaryRecord record = ride();
    record.pulse = 0.0F;
    EXPECT_EQ(cell(record, wattPulse), "+Infin");
    EXPECT_EQ(cell(record, fitness), "+Infini");
    EXPECT_EQ(cell(record, rpmPulse), "+Infinity");
    record.watt = 0.0F;
    EXPECT_EQ(cell(record, wattPulse), "   NaN");
}

TEST(TrainingRows, FiguresThatAreNotFiniteAreCutLikeAnyOther) {
    DictionaryRecord record = ride();
    record.distance = record.speed = record.rpm = -infinity;
    record.watt = record.pulse = notANumber;
    record.kJoule = infinity;
    EXPECT_EQ(cell(record, km), "-Infi");
    EXPECT_EQ(cell(record, speed), "-Infi");
    EXPECT_EQ(cell(record, rpm), "-Infi");
    EXPECT_EQ(cell(record, watt), "00NaN");
    EXPECT_EQ(cell(record, pulse), "00NaN");
    EXPECT_EQ(cell(record, kJoule), "+Infi");
    EXPECT_EQ(cell(record, fitness), "    NaN");
}

TEST(TrainingRows, TotalWorkIsRoundedToAWholeNumberHalvesToTheEvenOne) {
    const struct {
        float value;
        const char* text;
    } rows[] = {{0.5F, "    0"},  {1.5F, "    2"},  {2.5F, "    2"},   {2.51F, "    3"},
                {-0.4F, "    0"}, {-1.5F, "   -2"}, {3.0e38F, "30000"}};
    for (const auto& row : rows) {
        DictionaryRecord record = ride();
        record.kJoule = row.value;
        // The largest floats have digits of their own; five of them are shown.
        const std::string text = cell(record, kJoule);
        if (row.value > 1e30F)
            EXPECT_EQ(text.size(), 5U);
        else
            EXPECT_EQ(text, row.text) << row.value;
    }
}

TEST(TrainingRows, ExtremeDatesAndDurationsHaveTexts) {
    DictionaryRecord record;
    record.startDate = std::numeric_limits<std::int32_t>::min();
    record.rideTime = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(cell(record, date), "13.12.1901 20:45:52");
    EXPECT_EQ(cell(record, duration), "596523:14:07");
}

TEST(TrainingRows, ColumnsOutsideTheTableAreEmpty) {
    EXPECT_EQ(cell(ride(), -1), "");
    EXPECT_EQ(cell(ride(), files::trainingColumnCount), "");
}

TEST(TrainingRows, TheHeadersStandInTheirOrder) {
    const std::vector<std::string> titles = {"Datum",    "Training", "km",        "Zeit",    "km/h",
                                             "Watt",     "Puls",     "Watt/Puls", "Fitness", "RPM",
                                             "RPM/Puls", "kJoule",   "Dateiname"};
    for (std::size_t i = 0; i < titles.size(); ++i)
        EXPECT_EQ(files::trainingColumns()[i].title, titles[i]);
}

TEST(TrainingRows, ColumnWidthsFollowTheFont) {
    const int ofSeven[] = {178, 264, 57, 68, 51, 51, 51, 73, 64, 51, 82, 64, 136};
    const int ofTen[] = {255, 377, 81, 98, 73, 73, 73, 104, 91, 73, 117, 91, 195};
    for (std::size_t i = 0; i < files::trainingColumnCount; ++i) {
        EXPECT_EQ(files::columnWidth(files::trainingColumns()[i], 7), ofSeven[i]) << i;
        EXPECT_EQ(files::columnWidth(files::trainingColumns()[i], 10), ofTen[i]) << i;
    }
}

TEST(TrainingRows, OnlyTextColumnsAreLeftAligned) {
    for (std::size_t i = 0; i < files::trainingColumnCount; ++i) {
        const bool isText = i == date || i == training || i == fileName;
        EXPECT_EQ(files::trainingColumns()[i].rightAligned, !isText) << i;
    }
}

}  // namespace
