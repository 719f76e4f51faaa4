#include "charts/chart_description.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace {

using charts::ChartKind;
using charts::MarkedOptions;
using charts::Option;

MarkedOptions marksOf(std::initializer_list<std::pair<int, Option>> marked) {
    MarkedOptions marks;
    for (const auto& [value, option] : marked) {
        auto& bits = marks.bits[static_cast<std::size_t>(value)];
        bits = static_cast<std::uint8_t>(bits | (1U << static_cast<unsigned>(option)));
    }
    return marks;
}

std::string described(ChartKind kind, const MarkedOptions& marks) {
    return services::latin1ToUtf8(charts::describeChart(kind, marks));
}

TEST(ChartDescription, NamesChartValuesAndOptions) {
    const MarkedOptions marks =
        marksOf({{1, Option::trend}, {1, Option::line}, {5, Option::bars}, {61, Option::cloud}});
    EXPECT_EQ(described(ChartKind::overview, marks),
              "Übersicht: Watt / Puls (Linie, Trend), Puls (Balken)");
    EXPECT_EQ(described(ChartKind::training, marks), "Training: Gerät (Punktewolke)");
}

TEST(ChartDescription, SaysWhenNothingIsMarkedInItsOwnChart) {
    EXPECT_EQ(described(ChartKind::overview, marksOf({{50, Option::bars}})),
              "Übersicht: nichts gewählt");
    EXPECT_EQ(described(ChartKind::training, marksOf({{0, Option::bars}})),
              "Training: nichts gewählt");
}

TEST(ChartDescription, NamesEveryOption) {
    MarkedOptions marks;
    marks.bits[19] = 0xFE;
    EXPECT_EQ(described(ChartKind::overview, marks),
              "Übersicht: Unbekannt 6 (Balken, Linie, Kreise, Quadrate, Punktewolke, Mittelwert, "
              "Trend)");
}

}  // namespace
