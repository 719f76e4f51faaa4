// What a chart shows, in words, for those who don't see it.
#pragma once

#include "charts/chart_options.h"
#include "charts/value_catalogue.h"
#include "services/latin1.h"

namespace charts {

// "Übersicht: Watt / Puls (Linie, Trend), Puls (Balken)": the chart and the marked options of its
// values by their menu texts, or "Übersicht: nichts gewählt".
services::Text describeChart(ChartKind kind, const MarkedOptions& marks);

}  // namespace charts
