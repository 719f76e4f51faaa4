// From the start of the process to the first chart.
#pragma once

#include "services/text/paths.h"

namespace app {

// The directory to work in: that of the executable when it holds the settings, an index or a tree,
// so that a program lying on a card finds its card however it is started; else the current one.
services::Path workingDirectoryAtStart(services::PathView current, services::PathView executable);

// Reads the start settings, opens the main window, finds or asks for the device tree and draws the
// overview. False when the window can't be opened. `executable` is the directory of the executable.
bool startUp(services::PathView executable);

}  // namespace app
