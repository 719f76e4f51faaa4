// Paints grid and marks of a chart: in strips where that pays, else mark by mark.
#pragma once

#include "charts/marks/chart_layers.h"
#include "services/raster/raster.h"

namespace charts {

// Over the whole surface. The pixels are the same whichever way it takes.
void paintLayers(services::Surface& surface, const ChartLayers& layers);

}  // namespace charts
