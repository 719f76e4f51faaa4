// The charts themselves: what is marked in the menus, drawn from the tables, limits and colours.
#pragma once

#include <cstdint>

#include "charts/chart_description.h"
#include "charts/values/value_numbers.h"
#include "charts/values/value_series.h"
#include "services/raster/raster.h"

namespace charts {

// The series that a chart of this kind draws of the value, from the tables and limits as they
// stand.
void computeSeries(ChartKind kind, int valueNumber, ValueSeries& series);

// Draws over the whole surface. Every marked item without data gives a message, and its mark is
// removed. False, with the surface left as it was, when there are less than two trainings
// (overview; selected or not) or two samples. `shown`, where given, tells what was drawn.
bool drawChart(ChartKind kind, services::Surface& surface, ShownChart* shown = nullptr);

// Tells whether a drawing would look other than an earlier one in an image of the same size: of the
// records, samples, limits, colours and marks as they stand, as far as they are drawn. 0 where
// drawChart would draw nothing. Marks whose messages remove them are still among what was drawn.
std::uint64_t digestOfChart(ChartKind kind);

}  // namespace charts
