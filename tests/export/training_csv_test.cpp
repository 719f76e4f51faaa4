#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "export/csv_text.h"
#include "tests/export/export_fixture.h"

namespace {

using device::TrainingSample;
using export_tests::plainSample;
using export_tests::plainSampleLine;
using export_tests::trainingHeader;
using exporting::trainingCsv;

TEST(TrainingCsv, EveryFieldHasItsColumnAndFormat) {
    EXPECT_EQ(trainingCsv(std::vector{plainSample()}), trainingHeader + plainSampleLine);
}

TEST(TrainingCsv, NoSamplesGiveTheHeaderAlone) {
    EXPECT_EQ(trainingCsv({}), trainingHeader);
}

TEST(TrainingCsv, ManySamplesAreWrittenInTheirOrder) {
    std::vector<TrainingSample> samples(5000);
    std::string expected = trainingHeader;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i].elapsedTime = static_cast<std::int32_t>(i);
        expected += std::to_string(i) + ";0,000;0;0;0;0;0,0;0;0;0;0;0;0;0,0;0;0;0;0;0;0\r\n";
    }
    EXPECT_EQ(trainingCsv(samples), expected);
}

TEST(TrainingCsv, TenthsAreRoundedAwayToTheEvenNumber) {
    struct Row {
        std::int16_t tenths;
        const char* text;
    };
    const Row rows[] = {
        {-25, "-2"}, {-35, "-4"}, {-15, "-2"}, {-5, "-0"}, {-4, "-0"}, {-1, "-0"}, {0, "0"},
        {4, "0"},    {5, "0"},    {6, "1"},    {15, "2"},  {25, "2"},  {26, "3"},  {995, "100"},
    };
    for (const Row& row : rows) {
        const std::string text = row.text;
        const TrainingSample sample = {
            .slope = row.tenths, .torque = row.tenths, .rpm = row.tenths};
        std::string expected = trainingHeader;
        expected.append("0;0,000;0;").append(text).append(";").append(text).append(";");
        expected.append(text).append(";0,0;0;0;0;0;0;0;0,0;0;0;0;0;0;0\r\n");
        EXPECT_EQ(trainingCsv(std::vector{sample}), expected) << row.tenths;
    }
}

TEST(TrainingCsv, IntegersReachTheirLimits) {
    constexpr auto wordMin = std::numeric_limits<std::int16_t>::min();
    constexpr auto wordMax = std::numeric_limits<std::int16_t>::max();
    const TrainingSample lowest = {.elapsedTime = std::numeric_limits<std::int32_t>::min(),
                                   .slope = wordMin,
                                   .torque = wordMin,
                                   .rpm = wordMin,
                                   .speed = wordMin,
                                   .watt = wordMin,
                                   .gear = -128,
                                   .deviceActive = -128,
                                   .pulse = wordMin,
                                   .pulseTime1 = wordMin,
                                   .pulseTime6 = wordMin,
                                   .trainingType = -128,
                                   .pulseType = -1};
    const TrainingSample highest = {.elapsedTime = std::numeric_limits<std::int32_t>::max(),
                                    .slope = wordMax,
                                    .torque = wordMax,
                                    .rpm = wordMax,
                                    .speed = wordMax,
                                    .watt = wordMax,
                                    .gear = 127,
                                    .deviceActive = 127,
                                    .pulse = wordMax,
                                    .pulseTime2 = wordMax,
                                    .pulseTime5 = wordMax,
                                    .trainingType = 127,
                                    .pulseType = 1};
    EXPECT_EQ(trainingCsv(std::vector{lowest, highest}),
              trainingHeader +
                  "-2147483648;0,000;0;-3277;-3277;-3277;-3276,8;-32768;-128;-128;-32768;-1;-128;"
                  "0,0;-32768;0;0;0;0;-32768\r\n"
                  "2147483647;0,000;0;3277;3277;3277;3276,7;32767;127;127;32767;1;127;0,0;0;32767;"
                  "0;0;32767;0\r\n");
}

TEST(TrainingCsv, FloatsReachTheirLimits) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float largest = std::numeric_limits<float>::max();
    struct Row {
        float value;
        const char* distance;
        const char* kJoule;
        const char* trainingValue;
    };
    const Row rows[] = {
        {notANumber, "NaN", "0", "NaN"},
        {infinity, "+Infinity", "0", "+Infinity"},
        {-infinity, "-Infinity", "0", "-Infinity"},
        {-0.0F, "-0,000", "0", "-0,0"},
        {-0.25F, "-0,000", "0", "-0,2"},
        {2.5F, "0,002", "2", "2,5"},
        {0.75F, "0,001", "1", "0,8"},
        {15234.0F, "15,234", "15234", "15234,0"},
        {largest, "340282343469402359241130679742758912,000", "0",
         "340282346638528859811704183484516925440,0"},
    };
    for (const Row& row : rows) {
        const TrainingSample sample = {
            .distance = row.value, .kJoule = row.value, .trainingValue = row.value};
        const std::string expected = trainingHeader + "0;" + row.distance + ";" + row.kJoule +
                                     ";0;0;0;0,0;0;0;0;0;0;0;" + row.trainingValue +
                                     ";0;0;0;0;0;0\r\n";
        EXPECT_EQ(trainingCsv(std::vector{sample}), expected);
    }
}

TEST(TrainingCsv, PiecesMakeTheWholeText) {
    for (const std::size_t count : {0U, 1U, 8191U, 8192U, 8193U, 20'000U}) {
        std::vector<device::TrainingSample> samples(count);
        for (std::size_t i = 0; i < count; ++i)
            samples[i].elapsedTime = static_cast<std::int32_t>(i);
        std::string joined;
        int pieces = 0;
        exporting::writeTrainingCsv(samples, [&](services::TextView piece) {
            EXPECT_FALSE(piece.empty());
            joined += piece;
            ++pieces;
            return true;
        });
        EXPECT_TRUE(joined == exporting::trainingCsv(samples)) << count;
        EXPECT_EQ(pieces, static_cast<int>(count / 8192 + (count % 8192 > 0 || count == 0 ? 1 : 0)))
            << count;
    }
}

TEST(TrainingCsv, NoPieceFollowsOneThatIsNotTaken) {
    const std::vector<device::TrainingSample> samples(20'000);
    int pieces = 0;
    exporting::writeTrainingCsv(samples, [&](services::TextView) { return ++pieces < 2; });
    EXPECT_EQ(pieces, 2);
}

TEST(IndexCsv, PiecesMakeTheWholeTextOfWhatIsSelected) {
    std::vector<device::DictionaryRecord> records(20'000);
    for (std::size_t i = 0; i < 100; ++i)
        records[i * 190].selected = 1;
    std::string joined;
    exporting::writeIndexCsv(records, [&](services::TextView piece) {
        joined += piece;
        return true;
    });
    EXPECT_TRUE(joined == exporting::indexCsv(records));
}

}  // namespace
