// Paints the marks that mark_geometry.h has placed, and the frame and grid around them.
#pragma once

#include <span>
#include <vector>

#include "charts/marks/chart_frame.h"
#include "charts/marks/mark_geometry.h"
#include "services/raster/colours.h"
#include "services/raster/raster.h"

namespace charts {

inline constexpr services::Colour gridColour = services::rgb(200, 200, 200);
inline constexpr services::Colour trendColour = services::rgb(255, 0, 0);

// Where a rule of the grid and a mean line stand on a surface of this ratio.
services::DeviceBox rulePixels(double pixelRatio, const GridRule& rule);
services::DeviceBox meanPixels(double pixelRatio, const ChartFrame& frame, const MeanMark& mark);

services::Colour ruleColour(const GridRule& rule);

void paintGrid(services::Surface& surface, std::span<const GridRule> rules);
void paintBars(services::Surface& surface, const BarMarks& marks, services::Colour colour);
void paintLine(services::Surface& surface, std::span<const LineMark> marks,
               services::Colour colour);

// Circles and point clouds.
void paintCircles(services::Surface& surface, const PointMarks& marks, services::Colour colour);

void paintSquares(services::Surface& surface, const PointMarks& marks, services::Colour colour);
void paintMean(services::Surface& surface, const ChartFrame& frame, const MeanMark& mark,
               services::Colour colour);
void paintTrend(services::Surface& surface, const TrendMark& mark);
void paintFrame(services::Surface& surface, const ChartFrame& frame);

}  // namespace charts
