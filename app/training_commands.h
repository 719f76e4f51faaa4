// The menu commands that begin with the list of all trainings. Each first makes sure that there is
// a device tree, asking for one if need be, and reads its index anew; without a tree it does
// nothing.
#pragma once

namespace app {

void editTrainingFiles();

// Chooses trainings for the overview and shows it, whatever the list was left with.
void openTrainings();

// Chooses one training and shows its chart, whatever the list was left with.
void openTraining();

void exportTrainings();
void exportTraining();

}  // namespace app
