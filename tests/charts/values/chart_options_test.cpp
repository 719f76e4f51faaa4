#include "charts/values/chart_options.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "tests/charts/chart_test.h"

namespace {

using chart_tests::mark;
using charts::ChartKind;
using charts::Option;
using ChartOptions = chart_tests::ChartTest;

TEST_F(ChartOptions, ItemNumbersJoinValueAndOption) {
    EXPECT_EQ(charts::optionItem(1, Option::line), 201);
    EXPECT_EQ(charts::optionItem(50, Option::bars), 150);
    EXPECT_EQ(charts::optionItem(71, Option::colour), 971);
}

TEST_F(ChartOptions, ItemNumbersTellChartValueAndOption) {
    for (const ChartKind kind : {ChartKind::overview, ChartKind::training}) {
        const charts::ValueRange range = charts::valueRange(kind);
        for (int value = range.first; value < range.end; ++value) {
            for (int option = 1; option <= charts::lastOption; ++option) {
                SCOPED_TRACE(value + 100 * option);
                const auto found = charts::optionOfItem(value + 100 * option);
                ASSERT_TRUE(found.has_value());
                EXPECT_EQ(found->kind, kind);
                EXPECT_EQ(found->valueNumber, value);
                EXPECT_EQ(found->option, static_cast<Option>(option));
            }
        }
    }
    for (const int item : {0, 3, 99, 120, 149, 172, 199, 972, 1000, 1003, -1, -203,
                           std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(item);
        EXPECT_FALSE(charts::optionOfItem(item).has_value());
    }
}

TEST_F(ChartOptions, OptionsHaveTheirMenuTexts) {
    const std::string_view expected[] = {"Balken",   "Linie",       "Kreise",
                                         "Quadrate", "Punktewolke", "Mittelwert",
                                         "Trend",    "Grenzwerte",  "Farbe"};
    for (int option = 1; option <= charts::lastOption; ++option) {
        EXPECT_EQ(charts::optionText(static_cast<Option>(option)), expected[option - 1]);
    }
}

TEST_F(ChartOptions, MarksOfEveryValueAndOptionAreRead) {
    for (const int value : {0, 19, 50, 71}) {
        for (int option = charts::firstMarkOption; option <= charts::lastMarkOption; ++option) {
            SCOPED_TRACE(value + 100 * option);
            mark(value, static_cast<Option>(option));
            const charts::MarkedOptions marks = charts::readMarkedOptions();
            int found = 0;
            for (int other = 0; other < charts::valueNumberLimit; ++other) {
                for (int k = 1; k <= charts::lastOption; ++k) {
                    if (marks.has(other, static_cast<Option>(k))) ++found;
                }
            }
            EXPECT_EQ(found, 1);
            EXPECT_TRUE(marks.has(value, static_cast<Option>(option)));
            services::setItemMark(value + 100 * option, false);
        }
    }
}

TEST_F(ChartOptions, MarksOfCommandsAreNotRead) {
    mark(3, Option::limits);
    mark(3, Option::colour);
    EXPECT_EQ(charts::readMarkedOptions().bits[3], 0);
}

TEST_F(ChartOptions, ToggleTurnsAMarkOver) {
    charts::toggleOption(203);
    EXPECT_TRUE(services::itemMark(203));
    charts::toggleOption(203);
    EXPECT_FALSE(services::itemMark(203));
}

TEST_F(ChartOptions, ToggleIgnoresItemsThatCarryNoMark) {
    for (const int item : {803, 903, 3, 0, -203, 99, 1000, std::numeric_limits<int>::min(),
                           std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(item);
        charts::toggleOption(item);
        EXPECT_FALSE(services::itemMark(item));
    }
}

TEST_F(ChartOptions, ClearRemovesEveryMarkOfOneChartOnly) {
    for (int value = 0; value < charts::valueNumberLimit; ++value) {
        for (int option = 1; option <= charts::lastMarkOption; ++option) {
            mark(value, static_cast<Option>(option));
        }
    }
    charts::state.limits[3] = {1, 2};
    charts::clearOptions(ChartKind::overview);
    charts::MarkedOptions marks = charts::readMarkedOptions();
    for (std::size_t value = 0; value < 20; ++value)
        EXPECT_EQ(marks.bits[value], 0) << value;
    for (std::size_t value = 50; value < 72; ++value)
        EXPECT_EQ(marks.bits[value], 0xFE) << value;
    EXPECT_EQ(charts::state.limits[3].lower, 1);

    mark(3, Option::cloud);
    charts::clearOptions(ChartKind::training);
    marks = charts::readMarkedOptions();
    for (std::size_t value = 50; value < 72; ++value)
        EXPECT_EQ(marks.bits[value], 0) << value;
    EXPECT_TRUE(marks.has(3, Option::cloud));
}

TEST_F(ChartOptions, EnablingReachesEveryItemOfOneChartOnly) {
    charts::enableOptions(ChartKind::training, false);
    for (int option = 1; option <= charts::lastOption; ++option) {
        for (int value = 0; value < 20; ++value) {
            EXPECT_TRUE(services::itemEnabled(value + 100 * option));
        }
        for (int value = 50; value < 72; ++value) {
            EXPECT_FALSE(services::itemEnabled(value + 100 * option));
        }
    }
    charts::enableOptions(ChartKind::training, true);
    for (int option = 1; option <= charts::lastOption; ++option) {
        for (int value = 50; value < 72; ++value) {
            EXPECT_TRUE(services::itemEnabled(value + 100 * option));
        }
    }
}

}  // namespace
