#include "files/training_order.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using device::DictionaryRecord;
using files::SortMode;

struct Ride {
    std::string description;
    std::int32_t date;
    std::string name;  // tells rides of the same key apart
};

// "name name name" in the sorted order.
std::string sorted(const std::vector<Ride>& rides, SortMode mode) {
    std::vector<DictionaryRecord> records;
    for (const Ride& ride : rides) {
        DictionaryRecord record;
        record.description = ride.description;
        record.startDate = ride.date;
        record.fileName = ride.name;
        records.push_back(record);
    }
    files::sortTrainings(records, mode);
    std::string names;
    for (const DictionaryRecord& record : records)
        names += (names.empty() ? "" : " ") + record.fileName;
    return names;
}

TEST(TrainingOrder, ByDateIsAscendingAndKeepsTheOrderOfEqualDates) {
    EXPECT_EQ(sorted({{"c", 30, "late"},
                      {"a", -10, "before1970"},
                      {"b", 20, "firstOfTwo"},
                      {"a", 20, "secondOfTwo"}},
                     SortMode::byDate),
              "before1970 firstOfTwo secondOfTwo late");
}

TEST(TrainingOrder, EmptyAndSingleTablesStayAsTheyAre) {
    for (const SortMode mode : {SortMode::byDate, SortMode::byDescription}) {
        EXPECT_EQ(sorted({}, mode), "");
        EXPECT_EQ(sorted({{"a", 1, "one"}}, mode), "one");
    }
}

TEST(TrainingOrder, EqualDescriptionsStandTogetherInDateOrder) {
    EXPECT_EQ(sorted({{"Berg", 3, "berg3"},
                      {"Tal", 4, "tal4"},
                      {"Berg", 1, "berg1"},
                      {"Tal", 2, "tal2"},
                      {"Berg", 2, "berg2"}},
                     SortMode::byDescription),
              "tal2 tal4 berg1 berg2 berg3");
}

TEST(TrainingOrder, LetterCaseDoesNotCount) {
    EXPECT_EQ(sorted({{"berg", 1, "b"}, {"TAL", 2, "T"}, {"anfang", 3, "a"}, {"anfang", 4, "a2"}},
                     SortMode::byDescription),
              "T b a a2");
    // Umlauts: "\xDC" is a capital "\xFC", which stands behind all of A to Z.
    EXPECT_EQ(sorted({{"\xDC"
                       "ben",
                       1, "U"},
                      {"\xFC"
                       "ber",
                       2, "u"},
                      {"zug", 3, "z"},
                      {"zug", 4, "z2"}},
                     SortMode::byDescription),
              "u U z z2");
}

TEST(TrainingOrder, DescriptionsThatDifferOnlyInCaseAreGroupsOfTheirOwn) {
    EXPECT_EQ(sorted({{"Rad", 3, "Rad3"},
                      {"RAD", 4, "RAD4"},
                      {"rad", 2, "rad2"},
                      {"RAD", 1, "RAD1"},
                      {"Rad", 5, "Rad5"},
                      {"rad", 0, "rad0"},
                      {"aus", 9, "x"},
                      {"aus", 10, "y"}},
                     SortMode::byDescription),
              "Rad3 Rad5 RAD1 RAD4 rad0 rad2 x y");
}

TEST(TrainingOrder, ALastRecordOfItsOwnIsSortedIntoTheGroupBeforeIt) {
    EXPECT_EQ(sorted({{"Tal", 1, "tal1"}, {"Tal", 9, "tal9"}, {"Berg", 5, "berg5"}},
                     SortMode::byDescription),
              "tal1 berg5 tal9");
    EXPECT_EQ(sorted({{"Tal", 7, "tal7"}, {"Berg", 5, "berg5"}}, SortMode::byDescription),
              "berg5 tal7");
}

TEST(TrainingOrder, OnlyTheLastRunIsClosedTogetherWithTheLastRecord) {
    EXPECT_EQ(
        sorted(
            {{"Wald", 8, "wald8"}, {"Tal", 9, "tal9"}, {"Berg", 5, "berg5"}, {"Berg", 4, "berg4"}},
            SortMode::byDescription),
        "wald8 tal9 berg4 berg5");
}

TEST(TrainingOrder, LettersFoldByteForByte) {
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<unsigned char>(code);
        const bool isCapital =
            (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
        const std::string expected(1, static_cast<char>(isCapital ? byte + 0x20 : byte));
        EXPECT_EQ(files::foldLetterCase(std::string(1, static_cast<char>(byte))), expected) << code;
    }
}

}  // namespace
