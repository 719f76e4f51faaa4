// Paints all marks of a chart at once, strip by strip: the same pixels as painting them one after
// the other with mark_painting.h, in a time that hardly depends on how many there are.
#pragma once

#include "charts/marks/chart_layers.h"
#include "services/raster/raster.h"

namespace charts {

// Strips need a plot with room, so that positions along x grow from slot to slot and stay small,
// and values that all have equally many samples, none of them too far above the image.
bool canPaintStrips(const services::Surface& surface, const ChartLayers& layers);

// Over the whole surface.
void paintStrips(services::Surface& surface, const ChartLayers& layers);

}  // namespace charts
