// The main window: the chart's image below the menu bar.
#pragma once

#include "charts/range_band.h"

namespace app {

inline constexpr int chartImageControl = 1;

// The content area never becomes smaller than this in either direction.
inline constexpr int smallestWindowSize = 256;

// Opens it with the size of the start settings, still invisible. False when that fails.
bool openMainWindow();

// Draws the current chart anew, at the window's size, and shows it. With too little data for a
// chart the image stays as it is, or becomes white when the size is another one.
void redraw();

// After the window moved, changed its size, its state or its screen: keeps the size in range and
// remembers it for the start settings. Draws the chart anew when the size is another one or the
// chart would be: a command may have changed what it shows without drawing it.
void followWindow();

// The same after another window's loop, which drops what it doesn't understand; does nothing when
// the size is still that of the image.
void catchUpWithWindow();

// The first half of that, for commands that draw when they have done their own, or not at all: what
// they leave behind half way, such as the list's choice, is nothing to be drawn.
void rememberWindow();

// The second half, for commands that don't draw: the chart gets the window's size if it would show
// what it shows already.
void fitUnchangedChart();

// Shows the finished chart with this rectangle over it.
void showBand(const charts::BandBox& box);

}  // namespace app
