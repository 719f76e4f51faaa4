#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "export/csv_text.h"
#include "tests/export/export_fixture.h"

namespace {

using device::DictionaryRecord;
using export_tests::indexHeader;
using export_tests::plainRecord;
using export_tests::plainRecordLine;
using exporting::indexCsv;

TEST(IndexCsv, EveryFieldHasItsColumnAndFormat) {
    EXPECT_EQ(indexCsv(std::vector{plainRecord()}), indexHeader + plainRecordLine);
}

TEST(IndexCsv, NoRecordsGiveTheHeaderAlone) {
    EXPECT_EQ(indexCsv({}), indexHeader);
}

TEST(IndexCsv, OnlySelectedRecordsAreWrittenInTheirOrder) {
    std::vector<DictionaryRecord> records(4);
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].trainingType = static_cast<std::int32_t>(i);
        records[i].selected = i == 1 || i == 3 ? 0 : 1;
    }
    records[2].selected = -1;  // any value but 0 selects
    const std::string rest =
        ";;01.01.1970 00:00:00;01.01.1970 00:00:00;0;0;0;0;0,00;0,00;0:00:00;0.00;0,00;0;0;0;0;0;0;"
        "0;0\r\n";
    EXPECT_EQ(indexCsv(records), indexHeader + "0" + rest + "2" + rest);

    for (DictionaryRecord& record : records)
        record.selected = 0;
    EXPECT_EQ(indexCsv(records), indexHeader);
}

TEST(IndexCsv, DescriptionsAreNeitherQuotedNorChanged) {
    const std::string descriptions[] = {
        "Berg; \"steil\"; 10%",
        "\"",
        ";;;",
        " vorn und hinten ",
        "\xFC"
        "ber Stra\xDF"
        "e\t\x01\x80",
        "Zehn Prozent, 1.5 km",
        std::string(5000, 'x'),
    };
    for (const std::string& description : descriptions) {
        DictionaryRecord record = plainRecord();
        record.description = description;
        std::string expected = plainRecordLine;
        expected.replace(2, 4, description);
        EXPECT_EQ(indexCsv(std::vector{record, plainRecord()}),
                  indexHeader + expected + plainRecordLine);
    }
}

TEST(IndexCsv, NegativeFiguresKeepTheirSigns) {
    const DictionaryRecord record = {.trainingType = -1,
                                     .description = "-",
                                     .startDate = -1,
                                     .endDate = -86400,
                                     .watt = -2.5F,
                                     .unknown1 = -2.5F,
                                     .pulse = -0.3F,
                                     .rpm = -3.0F,
                                     .speed = -0.01F,
                                     .kJoulePerMinute = -0.375F,
                                     .rideTime = -3725,
                                     .distance = -15234.0F,
                                     .maxSpeed = -0.0F,
                                     .unknown2 = -2,
                                     .maxRpm = -0.5F,
                                     .unknown3 = -3.5F,
                                     .maxKJoulePerMinute = -1.5F,
                                     .kJoule = -99.75F,
                                     .unknown4 = -0.0F,
                                     .unknown5 = -5,
                                     .unknown6 = -6,
                                     .selected = 1};
    EXPECT_EQ(indexCsv(std::vector{record}),
              indexHeader +
                  "-1;-;31.12.1969 23:59:59;31.12.1969 00:00:00;-2;-2;0;-0;-0,00;-0,38;-1:02:05;"
                  "-152.34;-0,00;-2;-0;-4;-2;-100;-0;-5;-6\r\n");
}

TEST(IndexCsv, WhatIsNotANumberIsAWordOrARoundedZero) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
    const DictionaryRecord record = {.watt = notANumber,
                                     .unknown1 = notANumber,
                                     .pulse = infinity,
                                     .rpm = infinity,
                                     .speed = -infinity,
                                     .kJoulePerMinute = notANumber,
                                     .distance = infinity,
                                     .maxSpeed = infinity,
                                     .maxRpm = -infinity,
                                     .unknown3 = -infinity,
                                     .maxKJoulePerMinute = notANumber,
                                     .kJoule = infinity,
                                     .unknown4 = -infinity,
                                     .selected = 1};
    EXPECT_EQ(indexCsv(std::vector{record}),
              indexHeader +
                  "0;;01.01.1970 00:00:00;01.01.1970 00:00:00;0;NaN;0;+Infinity;-Infinity;NaN;"
                  "0:00:00;+Infinity;+Infinity;0;-Infinity;0;NaN;+Infinity;-Infinity;0;0\r\n");
}

TEST(IndexCsv, ExtremesAreWrittenWhole) {
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr float largest = std::numeric_limits<float>::max();
    const DictionaryRecord record = {.trainingType = lowest,
                                     .startDate = highest,
                                     .endDate = lowest,
                                     .watt = largest,
                                     .unknown1 = largest,
                                     .rideTime = lowest,
                                     .maxSpeed = -largest,
                                     .unknown2 = highest,
                                     .unknown5 = lowest,
                                     .unknown6 = highest,
                                     .selected = 1};
    EXPECT_EQ(indexCsv(std::vector{record}),
              indexHeader +
                  "-2147483648;;19.01.2038 03:14:07;13.12.1901 20:45:52;0;"
                  "340282346638528859811704183484516925440;0;0;0,00;0,00;-596523:14:08;0.00;"
                  "-340282346638528859811704183484516925440,00;2147483647;0;0;0;0;0;-2147483648;"
                  "2147483647\r\n");
}

TEST(IndexCsv, LongRidesHaveTheirHoursInFull) {
    DictionaryRecord record = plainRecord();
    record.rideTime = 360'000 + 59;
    EXPECT_NE(indexCsv(std::vector{record}).find(";100:00:59;"), std::string::npos);
}

}  // namespace
