// A chart painted item by item and mark by mark, in the order of the items, with nothing kept and
// nothing joined: what the charts' own painter, which works quite differently, has to come to.
#pragma once

#include "charts/values/value_catalogue.h"
#include "services/raster/colours.h"
#include "services/raster/raster.h"

namespace plain_chart {

// The procedures of services/raster/raster.h or others that follow the same rules.
struct Painter {
    void (*fillSurface)(services::Surface&, services::Colour);
    void (*fillBox)(services::Surface&, int, int, int, int, services::Colour);
    void (*blendBox)(services::Surface&, int, int, int, int, services::Colour);
    void (*drawFrame)(services::Surface&, int, int, int, int, services::Colour);
    void (*drawHorizontalRule)(services::Surface&, int, int, int, services::Colour);
    void (*drawVerticalRule)(services::Surface&, int, int, int, services::Colour);
    void (*drawLine)(services::Surface&, int, int, int, int, services::Colour);
    void (*fillCircle)(services::Surface&, int, int, int, services::Colour);
};

// Quick, and slow but obviously right.
extern const Painter raster;
extern const Painter reference;

// As charts::drawChart, from the same tables and marks, but for the messages about missing data.
bool drawChart(charts::ChartKind kind, services::Surface& surface, const Painter& painter);

}  // namespace plain_chart
