// The start settings file "Einstellungen.dat" in the program directory.
#pragma once

#include "services/text/paths.h"

namespace settings {

inline constexpr services::PathView fileName = "Einstellungen.dat";

// The file in the program directory, in full: no other file of that name is touched when that
// directory is gone and can't be entered.
services::Path settingsPath();

// No stored window size below this is used.
inline constexpr int smallestStoredSize = 256;

// Reads the file into the states of settings, charts and device; what it lacks gets its default, a
// missing file gives nothing but defaults. The first call fixes the program directory; later ones
// make it the working directory. A stored device directory that still holds a tree becomes the
// working directory.
void loadStartSettings();

// Makes the stored window size fit: nine tenths of the screen's width and seven of its height.
void useDesktopSize();

// Marks the option items of both charts as the loaded settings say.
void applyMenuPreselection();

}  // namespace settings
