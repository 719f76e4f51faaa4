// What a chart shows, in words, for those who don't see it.
#pragma once

#include <cstdint>
#include <vector>

#include "charts/values/chart_options.h"
#include "charts/values/value_numbers.h"
#include "services/text/latin1.h"

namespace charts {

// One value as drawn: its marked options and the ends of its scale, limits applied.
struct ShownValue {
    int number = 0;
    float minimum = 0;
    float maximum = 0;
};

// What the last drawing put into the picture.
struct ShownChart {
    ChartKind kind = ChartKind::overview;
    MarkedOptions marks = {};
    std::vector<ShownValue> values = {};  // those with data, ascending

    // The overview's trainings, and when the first and the last of them began; with values only.
    std::int64_t trainings = 0;
    std::int64_t firstDate = 0;  // seconds since 1970
    std::int64_t lastDate = 0;

    // The training chart's training; both dates are 0 without one.
    services::Text training = {};
    std::int64_t startDate = 0;
    std::int64_t endDate = 0;

    std::uint64_t digest = 0;  // digestOfChart (charts/chart_drawing.h), of what it was drawn from
};

// "Übersicht, 12 Trainings vom 05.03.2012 bis 04.03.2013: Watt / Puls (Linie, Trend) von 1,23 bis
// 2,45; Puls (Balken) von 98 bis 145": the chart, its dates, and each value with its marked
// options by their menu texts, its minimum and its maximum; or "Übersicht: nichts gewählt".
services::Text describeChart(const ShownChart& shown);

// Of a picture without a chart.
services::Text describeEmptyPicture();

}  // namespace charts
