// The pixel rules of services/raster/raster.h in the slowest and plainest way: every device pixel
// of the surface is asked whether the mark covers it, every step of a line where it stands. The
// procedures are those of services/raster/raster.h; coordinates may be anything, as there.
#pragma once

#include "services/raster/raster.h"

namespace reference_painter {

void fillSurface(services::Surface& surface, services::Colour colour);
void fillBox(services::Surface& surface, int x, int y, int width, int height,
             services::Colour colour);
void blendBox(services::Surface& surface, int x, int y, int width, int height,
              services::Colour colour);
void drawFrame(services::Surface& surface, int x, int y, int width, int height,
               services::Colour colour);
void drawHorizontalRule(services::Surface& surface, int x, int y, int length,
                        services::Colour colour);
void drawVerticalRule(services::Surface& surface, int x, int y, int length,
                      services::Colour colour);
void drawLine(services::Surface& surface, int x1, int y1, int x2, int y2, services::Colour colour);
void fillCircle(services::Surface& surface, int centreX, int centreY, int radius,
                services::Colour colour);

}  // namespace reference_painter
