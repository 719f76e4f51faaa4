// What tells whether a chart would be drawn as it was.
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "charts/chart_drawing.h"
#include "services/raster/raster.h"
#include "tests/charts/chart_test.h"

namespace {

using charts::ChartKind;
using charts::digestOfChart;
using charts::Option;

struct Change {
    const char* name;
    std::function<void()> make;
};

class ChartDigest : public chart_tests::ChartTest {
  protected:
    void SetUp() override {
        chart_tests::ChartTest::SetUp();
        device::state.dictionary = chart_tests::recordsOfWatt({100, 110, 120, 130});
        for (std::size_t i = 0; i < device::state.dictionary.size(); ++i)
            records()[i].startDate = 1356998400 + static_cast<std::int32_t>(i) * 86400;
        records()[1].selected = 0;
        device::state.samples = chart_tests::samplesOfWatt({90, 80, 100, 95, 90});
        chart_tests::mark(3, Option::line);
        chart_tests::mark(59, Option::line);
    }

    static std::vector<device::DictionaryRecord>& records() { return device::state.dictionary; }
    static charts::Limits& limits(int value) {
        return charts::state.limits[static_cast<std::size_t>(value)];
    }
    static services::Colour& colour(int value) {
        return charts::state.colours[static_cast<std::size_t>(value)];
    }

    // Each change comes upon those before it.
    static void expectChanges(ChartKind kind, const std::vector<Change>& changes) {
        std::set<std::uint64_t> digests = {digestOfChart(kind)};
        for (const Change& change : changes) {
            change.make();
            EXPECT_TRUE(digests.insert(digestOfChart(kind)).second) << change.name;
        }
    }
    static void expectNoChange(ChartKind kind, const std::vector<Change>& changes) {
        const std::uint64_t before = digestOfChart(kind);
        for (const Change& change : changes) {
            change.make();
            EXPECT_EQ(before, digestOfChart(kind)) << change.name;
        }
    }
};

TEST_F(ChartDigest, ChangesWithEverythingThatTheOverviewShows) {
    expectChanges(
        ChartKind::overview,
        {{"value", [] { records()[0].watt = 101; }},
         {"last value", [] { records()[3].watt = 131; }},
         {"flag", [] { records()[1].selected = 1; }},
         {"order", [] { std::swap(records()[1], records()[2]); }},
         {"first date", [] { records()[0].startDate -= 86400; }},
         {"last date", [] { records()[3].startDate += 86400; }},
         {"riding time", [] { records()[2].rideTime += 60; }},
         {"lower limit", [] { limits(3).lower = 105; }},
         {"upper limit", [] { limits(3).upper = 125; }},
         {"limit beyond the data", [] { limits(3).upper = 1000; }},
         {"colour", [] { colour(3) = 1; }},
         {"style", [] { chart_tests::mark(3, Option::circles); }},
         {"value of another kind", [] { chart_tests::mark(6, Option::bars); }},
         {"the training chart's part in the grid", [] { chart_tests::mark(60, Option::cloud); }},
         {"fewer records", [] { records().pop_back(); }}});
}

TEST_F(ChartDigest, ChangesWithEverythingThatTheTrainingChartShows) {
    expectChanges(ChartKind::training,
                  {{"sample", [] { device::state.samples[1].watt = 81; }},
                   {"last sample", [] { device::state.samples[4].watt = 91; }},
                   {"one sample more",
                    [] { device::state.samples.push_back(chart_tests::sampleOfWatt(90)); }},
                   {"start", [] { records()[0].startDate += 1; }},
                   {"end", [] { records()[0].endDate += 1; }},
                   {"description", [] { records()[0].description = "Alpen"; }},
                   {"limit", [] { limits(59).lower = 85; }},
                   {"colour", [] { colour(59) = 1; }},
                   {"mark", [] { chart_tests::mark(59, Option::trend); }},
                   {"another training", [] {
                        records()[0].selected = 0;
                        records()[2].endDate = 1;
                    }}});
}

TEST_F(ChartDigest, StaysWithWhatIsNotShown) {
    expectNoChange(ChartKind::overview,
                   {{"other field", [] { records()[0].pulse = 99; }},
                    {"record without a flag", [] { records()[1].watt = 1; }},
                    {"description", [] { records()[0].description = "Alpen"; }},
                    {"sample", [] { device::state.samples[0].watt = 1; }},
                    {"other limits", [] { limits(4).lower = 5; }},
                    {"other colour", [] { colour(4) = 5; }}});
    expectNoChange(ChartKind::training,
                   {{"other field", [] { device::state.samples[0].pulse = 99; }},
                    {"record", [] { records()[2].description = "Zug"; }},
                    {"other limits", [] { limits(60).lower = 5; }}});
}

TEST_F(ChartDigest, IsNothingWithoutEnoughData) {
    EXPECT_NE(0U, digestOfChart(ChartKind::overview));
    EXPECT_NE(0U, digestOfChart(ChartKind::training));
    records().resize(1);
    device::state.samples.resize(1);
    EXPECT_EQ(0U, digestOfChart(ChartKind::overview));
    EXPECT_EQ(0U, digestOfChart(ChartKind::training));
}

// A message removes its mark, so that the next drawing is another one.
TEST_F(ChartDigest, IsToldByTheDrawingAsItWasAtItsStart) {
    chart_tests::mark(5, Option::line);
    for (device::DictionaryRecord& record : records())
        record.pulse = 0;
    services::Surface surface;
    services::resizeSurface(surface, 400, 300, 1);
    const std::uint64_t before = digestOfChart(ChartKind::overview);
    stand_ins::expectMessage("Fehler", "Das Men\xFC 'Puls' enth\xE4lt keine Daten!");
    charts::ShownChart shown;
    ASSERT_TRUE(charts::drawChart(ChartKind::overview, surface, &shown));
    EXPECT_EQ(before, shown.digest);
    EXPECT_NE(before, digestOfChart(ChartKind::overview));
    ASSERT_TRUE(charts::drawChart(ChartKind::overview, surface, &shown));
    EXPECT_EQ(digestOfChart(ChartKind::overview), shown.digest);
}

}  // namespace
