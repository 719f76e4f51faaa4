#include "charts/chart_description.h"

#include <limits>
#include <string>

#include "charts/chart_drawing.h"
#include "services/text/dates.h"
#include "tests/charts/chart_test.h"

namespace {

using charts::ChartKind;
using charts::MarkedOptions;
using charts::Option;
using charts::ShownChart;

MarkedOptions marksOf(std::initializer_list<std::pair<int, Option>> marked) {
    MarkedOptions marks;
    for (const auto& [value, option] : marked) {
        auto& bits = marks.bits[static_cast<std::size_t>(value)];
        bits = static_cast<std::uint8_t>(bits | (1U << static_cast<unsigned>(option)));
    }
    return marks;
}

std::string described(const ShownChart& shown) {
    return services::latin1ToUtf8(charts::describeChart(shown));
}

TEST(ChartDescription, OfAnOverviewTellsDatesOptionsAndTheEndsOfEveryValue) {
    const ShownChart shown = {
        .kind = ChartKind::overview,
        .marks = marksOf({{1, Option::trend}, {1, Option::line}, {5, Option::bars}}),
        .values = {{1, 1.234F, 2.5F}, {5, 98, 145.6F}},
        .trainings = 12,
        .firstDate = services::makeDate(2012, 3, 5, 0, 0, 0),
        .lastDate = services::makeDate(2013, 3, 4, 23, 59, 59),
    };
    EXPECT_EQ(described(shown),
              "Übersicht, 12 Trainings vom 05.03.2012 bis 04.03.2013: Watt / Puls (Linie, Trend) "
              "von 1,23 bis 2,50; Puls (Balken) von 98 bis 146");
}

TEST(ChartDescription, OfATrainingTellsItsNameAndItsTimes) {
    ShownChart shown = {
        .kind = ChartKind::training,
        .marks = marksOf({{61, Option::cloud}}),
        .values = {{61, 1, 2}},
        .training = "H\xFCgel",
        .startDate = services::makeDate(2013, 3, 5, 18, 0, 7),
        .endDate = services::makeDate(2013, 3, 5, 19, 0, 0),
    };
    EXPECT_EQ(described(shown),
              "Training Hügel, 05.03.2013 18:00:07 bis 05.03.2013 19:00:00: Gerät (Punktewolke) "
              "von 1 bis 2");
    shown.training = {};
    EXPECT_EQ(described(shown),
              "Training, 05.03.2013 18:00:07 bis 05.03.2013 19:00:00: Gerät (Punktewolke) von 1 "
              "bis 2");
    shown.startDate = shown.endDate = 0;
    EXPECT_EQ(described(shown), "Training: Gerät (Punktewolke) von 1 bis 2");
}

TEST(ChartDescription, SaysWhenNothingIsMarked) {
    EXPECT_EQ(described({.kind = ChartKind::overview}), "Übersicht: nichts gewählt");
    EXPECT_EQ(described({.kind = ChartKind::training}), "Training: nichts gewählt");
}

TEST(ChartDescription, NamesEveryOption) {
    ShownChart shown;
    shown.marks.bits[19] = 0xFE;
    shown.values = {{19, 3, 3}};
    shown.trainings = 1;
    EXPECT_EQ(described(shown),
              "Übersicht, 1 Training vom 01.01.1970 bis 01.01.1970: Unbekannt 6 (Balken, Linie, "
              "Kreise, Quadrate, Punktewolke, Mittelwert, Trend) von 3,00 bis 3,00");
}

TEST(ChartDescription, TakesAnyNumbers) {
    const float infinite = std::numeric_limits<float>::infinity();
    const float none = std::numeric_limits<float>::quiet_NaN();
    const ShownChart shown = {
        .marks = marksOf({{1, Option::line}, {3, Option::line}}),
        .values = {{1, -infinite, infinite}, {3, none, none}, {-1, 0, 0}, {99, 0, 0}},
        .firstDate = std::numeric_limits<std::int64_t>::min(),
        .lastDate = std::numeric_limits<std::int64_t>::max()};
    EXPECT_NE(described(shown).find("Watt / Puls (Linie) von -Infinity bis +Infinity"),
              std::string::npos);
}

class DrawnChart : public chart_tests::ChartTest {
  protected:
    static ShownChart draw(ChartKind kind) {
        services::Surface surface;
        services::resizeSurface(surface, 400, 300, 1);
        ShownChart shown;
        EXPECT_TRUE(charts::drawChart(kind, surface, &shown));
        return shown;
    }
};

TEST_F(DrawnChart, IsDescribedByItsOwnSeriesAndLimits) {
    device::state.dictionary = chart_tests::recordsOfWatt({100, 150, 300});
    device::state.dictionary[0].startDate = 86400 * 10;
    device::state.dictionary[1].startDate = 86400 * 11;
    device::state.dictionary[2].selected = 0;
    charts::state.limits[3] = {.lower = 0, .upper = 140};
    chart_tests::mark(3, Option::line);
    EXPECT_EQ(described(draw(ChartKind::overview)),
              "Übersicht, 2 Trainings vom 11.01.1970 bis 12.01.1970: Watt (Linie) von 100 bis 140");
}

TEST_F(DrawnChart, DoesNotSpeakOfAValueWithoutData) {
    device::state.dictionary = chart_tests::recordsOfWatt({100, 150});
    chart_tests::mark(3, Option::line);
    chart_tests::mark(7, Option::line);
    stand_ins::expectMessage("Fehler", "Das Men\xFC 'km/h' enth\xE4lt keine Daten!");
    EXPECT_EQ(described(draw(ChartKind::overview)).find("km/h"), std::string::npos);
}

TEST_F(DrawnChart, OfSamplesTellsTheOpenedTraining) {
    device::state.dictionary = chart_tests::recordsOfWatt({100, 150});
    device::state.dictionary[0].selected = 0;
    device::state.dictionary[1].description = "Berg";
    device::state.dictionary[1].startDate = 60;
    device::state.dictionary[1].endDate = 120;
    device::state.samples = chart_tests::samplesOfWatt({90, 120});
    chart_tests::mark(59, Option::bars);
    EXPECT_EQ(described(draw(ChartKind::training)),
              "Training Berg, 01.01.1970 00:01:00 bis 01.01.1970 00:02:00: Watt (Balken) von 90 "
              "bis 120");
}

TEST_F(DrawnChart, WithTooFewTrainingsTellsNothing) {
    services::Surface surface;
    services::resizeSurface(surface, 400, 300, 1);
    ShownChart shown = {.trainings = 77};
    EXPECT_FALSE(charts::drawChart(ChartKind::overview, surface, &shown));
    EXPECT_EQ(77, shown.trainings);
}

}  // namespace
