// From a directory to trainings.
#pragma once

namespace app {

// Looks for the device tree and asks for it when there is none. False when there is still none.
bool ensureDeviceTree();

// Reads the index of the working directory and offers the overview: its options become choosable,
// those of the training chart do not.
void loadTrainings();

}  // namespace app
