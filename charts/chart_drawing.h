// The charts themselves: what is marked in the menus, drawn from the tables, limits and colours.
#pragma once

#include "charts/chart_description.h"
#include "charts/values/value_catalogue.h"
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

}  // namespace charts
