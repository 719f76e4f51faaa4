// Text on a chart, in the drawing surface's font: the desktop's default font, made smaller where
// its lines are higher than 20 logical pixels. That is the room below a plot, whatever the font,
// and a higher line of dates would be cut off there.
#pragma once

#include "services/raster/colours.h"
#include "services/raster/raster.h"
#include "services/text/latin1.h"

namespace services {

// Logical pixels, 0 or more.
int textWidth(TextView text);
int textHeight(TextView text);

// The text's box has its top left corner at (x, y); its background stays as it is.
void drawText(Surface& surface, int x, int y, TextView text, Colour colour);

}  // namespace services
