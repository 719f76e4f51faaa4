// Trainings and marks to draw: the program's own tables, filled as a user would find them.
#pragma once

#include <initializer_list>

#include "charts/values/chart_options.h"
#include "charts/values/value_catalogue.h"

namespace benchmarks {

enum class Course {
    ridden,  // as the demo card's rider rides: intervals, drifting pulse, little noise
    noise,   // every sample of every value independent of the one before
};

// Replaces the loaded training by one of so many samples; every value has data.
void loadTraining(int samples, Course course);

// Replaces the index by one of so many trainings, all selected; every value has data.
void loadOverview(int trainings);

// The menus with all items, nothing marked. Needs the toolkit.
void openMenus();

// Marks these options of the first so many values that charts show (power, pulse, cadence, speed
// and distance first), and nothing else. Returns the number of marked items.
int markOptions(charts::ChartKind kind, int values, std::initializer_list<charts::Option> options);

// All seven of them.
int markEverything(charts::ChartKind kind, int values);

}  // namespace benchmarks
