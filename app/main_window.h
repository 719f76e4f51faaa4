// The main window: the chart's image below the menu bar.
#pragma once

#include "charts/range_band.h"

namespace app {

inline constexpr int chartImageControl = 1;

// The content area never becomes smaller than this in either direction.
inline constexpr int smallestWindowSize = 256;

// Opens it with the size of the start settings, still invisible. False when that fails.
bool openMainWindow();

// Draws the current chart anew and shows it. With too little data for a chart the image stays as it
// is.
void redraw();

// After the window moved, changed its size or its screen: keeps the size in range, remembers it for
// the start settings and draws the chart at the new size.
void followWindow();

// The same after another window's loop, which drops what it doesn't understand; does nothing when
// the size is still that of the image.
void catchUpWithWindow();

// Shows the finished chart with this rectangle over it.
void showBand(const charts::BandBox& box);

}  // namespace app
