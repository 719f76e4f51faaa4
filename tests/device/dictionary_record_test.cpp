#include "device/dictionary_record.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/device/card_fixture.h"

namespace {

using device::decodeDictionaryRecord;
using device::DictionaryRecord;
using device::encodeDictionaryRecord;
using device_tests::asBytes;
using device_tests::RecordBytes;

// Every field another value, negative where the sign must survive.
RecordBytes fullRecord() {
    RecordBytes bytes(152);
    bytes.put(0, 0x4A3F1CU, 8)
        .int32(8, -5)
        .text(12, "H\xFCgel")
        .int32(76, 1'367'950'000)
        .int32(80, -1)
        .real(84, 127.5F)
        .real(88, 30.25F)
        .real(92, 131.5F)
        .real(96, 88.5F)
        .real(100, 28.75F)
        .real(104, 7.5F)
        .int32(108, 3600)
        .real(112, 29000.5F)
        .real(116, 36.5F)
        .int32(120, std::numeric_limits<std::int32_t>::min())
        .real(124, 97.5F)
        .real(128, 153.5F)
        .real(132, 11.5F)
        .real(136, 466.5F)
        .real(140, 111.5F)
        .int32(144, 7)
        .int32(148, std::numeric_limits<std::int32_t>::max());
    return bytes;
}

TEST(DictionaryRecords, EveryFieldIsReadFromItsOffset) {
    const DictionaryRecord record = decodeDictionaryRecord(asBytes(fullRecord().bytes));
    EXPECT_EQ(record.fileName, "00000000004a3f1c");
    EXPECT_EQ(record.trainingType, -5);
    EXPECT_EQ(record.description, "");
    EXPECT_EQ(record.startDate, 1'367'950'000);
    EXPECT_EQ(record.endDate, -1);
    EXPECT_EQ(record.watt, 127.5F);
    EXPECT_EQ(record.unknown1, 30.25F);
    EXPECT_EQ(record.pulse, 131.5F);
    EXPECT_EQ(record.rpm, 88.5F);
    EXPECT_EQ(record.speed, 28.75F);
    EXPECT_EQ(record.kJoulePerMinute, 7.5F);
    EXPECT_EQ(record.rideTime, 3600);
    EXPECT_EQ(record.distance, 29000.5F);
    EXPECT_EQ(record.maxSpeed, 36.5F);
    EXPECT_EQ(record.unknown2, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(record.maxRpm, 97.5F);
    EXPECT_EQ(record.unknown3, 153.5F);
    EXPECT_EQ(record.maxKJoulePerMinute, 11.5F);
    EXPECT_EQ(record.kJoule, 466.5F);
    EXPECT_EQ(record.unknown4, 111.5F);
    EXPECT_EQ(record.unknown5, 7);
    EXPECT_EQ(record.unknown6, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(record.selected, 1);
    EXPECT_EQ(device::decodeRideTime(asBytes(fullRecord().bytes)), 3600);
}

TEST(DictionaryRecords, EveryFieldIsWrittenToItsOffset) {
    DictionaryRecord record = decodeDictionaryRecord(asBytes(fullRecord().bytes));
    record.description = "H\xFCgel";
    EXPECT_EQ(encodeDictionaryRecord(record), fullRecord().bytes);
}

TEST(DictionaryRecords, TheNameIsPaddedWithZerosAndParsedBackToTheSameBytes) {
    const std::uint64_t numbers[] = {0, 1, 0x4A3F1C, 0x8000000000000000U, 0xFFFFFFFFFFFFFFFFU};
    for (const std::uint64_t number : numbers) {
        const std::string bytes = device_tests::indexRecord(number).bytes;
        const DictionaryRecord record = decodeDictionaryRecord(asBytes(bytes));
        EXPECT_EQ(record.fileName, device_tests::nameOf(number));
        EXPECT_EQ(encodeDictionaryRecord(record), bytes) << number;
    }
}

TEST(DictionaryRecords, TheAllZeroRecordIsWrittenAsZeros) {
    EXPECT_EQ(encodeDictionaryRecord(DictionaryRecord{}), std::string(152, '\0'));
}

// 1.0 stands for "not measured" in memory, 0.0 on disk.
TEST(DictionaryRecords, PulseAndCadenceChangeBetweenZeroAndOneOnly) {
    struct Row {
        const char* name;
        std::uint32_t stored;
        std::uint32_t read;
        std::uint32_t written;
    };
    const Row rows[] = {
        {"zero reads as one", 0x00000000, 0x3F800000, 0x00000000},
        {"a stored one becomes zero", 0x3F800000, 0x3F800000, 0x00000000},
        {"minus zero stays", 0x80000000, 0x80000000, 0x80000000},
        {"minus one stays", 0xBF800000, 0xBF800000, 0xBF800000},
        {"the next number above one stays", 0x3F800001, 0x3F800001, 0x3F800001},
        {"the smallest denormal stays", 0x00000001, 0x00000001, 0x00000001},
        {"infinity stays", 0x7F800000, 0x7F800000, 0x7F800000},
        {"a signalling NaN keeps its payload", 0x7FA12345, 0x7FA12345, 0x7FA12345},
        {"a quiet NaN keeps its payload", 0xFFC54321, 0xFFC54321, 0xFFC54321},
    };
    for (const Row& row : rows) {
        for (const std::size_t offset : {92U, 96U}) {
            SCOPED_TRACE(testing::Message() << row.name << " at " << offset);
            RecordBytes bytes = device_tests::indexRecord(1);
            bytes.put(offset, row.stored, 4);
            const DictionaryRecord record = decodeDictionaryRecord(asBytes(bytes.bytes));
            EXPECT_EQ(std::bit_cast<std::uint32_t>(offset == 92 ? record.pulse : record.rpm),
                      row.read);
            bytes.put(offset, row.written, 4);
            EXPECT_EQ(encodeDictionaryRecord(record), bytes.bytes);
        }
    }
}

TEST(DictionaryRecords, EveryBitPatternOfTheOtherNumbersSurvives) {
    const std::uint32_t patterns[] = {0x7FA12345, 0xFFFFFFFF, 0x80000000, 0x3F800000,
                                      0x00000001, 0x7F800000, 0xFF800001};
    for (const std::uint32_t pattern : patterns) {
        RecordBytes bytes = device_tests::indexRecord(1);
        for (std::size_t offset = 76; offset < 152; offset += 4) {
            if (offset != 92 && offset != 96) bytes.put(offset, pattern, 4);
        }
        EXPECT_EQ(encodeDictionaryRecord(decodeDictionaryRecord(asBytes(bytes.bytes))),
                  bytes.bytes);
    }
}

TEST(DictionaryRecords, TheDescriptionIsPaddedWithNulsToSixtyFourBytes) {
    for (const std::size_t length : {0U, 1U, 63U, 64U}) {
        DictionaryRecord record;
        record.description = std::string(length, 'x');
        const std::string bytes = encodeDictionaryRecord(record);
        ASSERT_EQ(bytes.size(), 152U);
        EXPECT_EQ(bytes.substr(12, 64), std::string(length, 'x') + std::string(64 - length, '\0'));
    }
}

// Nothing cuts the text, although the record then is longer than the others.
TEST(DictionaryRecords, ALongerDescriptionMakesTheRecordLonger) {
    DictionaryRecord record;
    record.description = std::string(70, 'x');
    record.startDate = 0x01020304;
    const std::string bytes = encodeDictionaryRecord(record);
    ASSERT_EQ(bytes.size(), 158U);
    EXPECT_EQ(bytes.substr(12, 70), std::string(70, 'x'));
    EXPECT_EQ(bytes.substr(82, 4), "\x04\x03\x02\x01");
}

}  // namespace
