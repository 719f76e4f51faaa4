#include "files/selection.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using device::DictionaryRecord;
using files::ListMode;
using files::ListResult;
using services::makeDate;

std::vector<DictionaryRecord> recordsOf(const std::vector<services::DateValue>& dates,
                                        int selected = 1) {
    std::vector<DictionaryRecord> records;
    for (const services::DateValue date : dates) {
        DictionaryRecord record;
        record.startDate = static_cast<std::int32_t>(date);
        record.selected = selected;
        records.push_back(record);
    }
    return records;
}

std::string flags(const std::vector<DictionaryRecord>& records) {
    std::string text;
    for (const DictionaryRecord& record : records)
        text += record.selected != 0 ? '1' : '0';
    return text;
}

TEST(Selection, TheTopRowIsTheLastRecord) {
    EXPECT_EQ(files::recordOfRow(0, 3), 2U);
    EXPECT_EQ(files::recordOfRow(2, 3), 0U);
    EXPECT_EQ(files::recordOfRow(0, 1), 0U);
    EXPECT_EQ(files::recordOfRow(3, 3), std::nullopt);
    EXPECT_EQ(files::recordOfRow(-1, 3), std::nullopt);
    EXPECT_EQ(files::recordOfRow(0, 0), std::nullopt);
}

TEST(Selection, RowsSetTheFlagsOfTheirRecordsAndClearAllOthers) {
    auto records = recordsOf({1, 2, 3, 4});
    files::selectRows(records, std::vector{0, 2});
    EXPECT_EQ(flags(records), "0101");
    files::selectRows(records, std::vector<int>{});
    EXPECT_EQ(flags(records), "0000");
    files::selectRows(records, std::vector{-1, 4, 3, std::numeric_limits<int>::max()});
    EXPECT_EQ(flags(records), "1000");
}

TEST(Selection, LeavingWithoutAChoiceTakesEveryTraining) {
    auto records = recordsOf({1, 2, 3}, 0);
    files::applyResult(records, ListResult::all, ListMode::chooseMany, 0);
    EXPECT_EQ(flags(records), "111");
}

TEST(Selection, AChoiceStays) {
    auto records = recordsOf({1, 2, 3});
    records[1].selected = 0;
    files::applyResult(records, ListResult::chosen, ListMode::chooseMany, 0);
    EXPECT_EQ(flags(records), "101");
}

TEST(Selection, CancellingClearsEveryFlag) {
    for (const ListMode mode : {ListMode::edit, ListMode::chooseOne}) {
        auto records = recordsOf({1, 2, 3});
        files::applyResult(records, ListResult::cancelled, mode, 0);
        EXPECT_EQ(flags(records), "000");
    }
}

TEST(Selection, CancellingTheOverviewsChoiceCutsTheTableToItsFirstRecord) {
    auto records = recordsOf({11, 12, 13});
    files::applyResult(records, ListResult::cancelled, ListMode::chooseMany, 0);
    EXPECT_EQ(flags(records), "0");
    EXPECT_EQ(records[0].startDate, 11);

    auto one = recordsOf({11});
    files::applyResult(one, ListResult::cancelled, ListMode::chooseMany, 0);
    EXPECT_EQ(flags(one), "0");

    std::vector<DictionaryRecord> none;
    files::applyResult(none, ListResult::cancelled, ListMode::chooseMany, 0);
    EXPECT_EQ(flags(none), "0");
    EXPECT_EQ(none[0].fileName, "");
}

TEST(Selection, TheMonthIs31DaysBackFromThePresentSecond) {
    EXPECT_EQ(files::monthAgo(makeDate(2013, 3, 31, 12, 0, 0)), makeDate(2013, 2, 28, 12, 0, 0));
    EXPECT_EQ(files::monthAgo(makeDate(2012, 3, 31, 12, 0, 0)), makeDate(2012, 2, 29, 12, 0, 0));

    auto records = recordsOf({makeDate(2013, 2, 28, 11, 59, 59), makeDate(2013, 2, 28, 12, 0, 0),
                              makeDate(2013, 2, 28, 12, 0, 1), makeDate(2030, 1, 1, 0, 0, 0)},
                             0);
    records[0].selected = 1;
    files::applyResult(records, ListResult::month, ListMode::chooseMany,
                       makeDate(2013, 3, 31, 12, 0, 0));
    EXPECT_EQ(flags(records), "0011");
}

TEST(Selection, TheYearBeginsAtMidnightOfTheSameDay) {
    EXPECT_EQ(files::yearAgo(makeDate(2013, 3, 31, 12, 34, 56)), makeDate(2012, 3, 31, 0, 0, 0));
    EXPECT_EQ(files::yearAgo(makeDate(2013, 1, 1, 0, 0, 0)), makeDate(2012, 1, 1, 0, 0, 0));

    auto records = recordsOf({makeDate(2012, 3, 30, 23, 59, 59), makeDate(2012, 3, 31, 0, 0, 0),
                              makeDate(2012, 3, 31, 0, 0, 1)},
                             0);
    records[0].selected = 1;
    files::applyResult(records, ListResult::year, ListMode::chooseMany,
                       makeDate(2013, 3, 31, 12, 34, 56));
    EXPECT_EQ(flags(records), "001");
}

TEST(Selection, TheYearBeforeALeapDayBeginsOnThe28th) {
    EXPECT_EQ(files::yearAgo(makeDate(2012, 2, 29, 8, 0, 0)), makeDate(2011, 2, 28, 0, 0, 0));
    EXPECT_EQ(files::yearAgo(makeDate(2013, 2, 28, 8, 0, 0)), makeDate(2012, 2, 28, 0, 0, 0));
}

}  // namespace
