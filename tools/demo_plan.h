// When a demonstration card's owner trains and what: days, kinds and the course of the wanted
// power.
#pragma once

#include <cstdint>
#include <vector>

#include "services/text/dates.h"
#include "services/text/latin1.h"
#include "tools/demo_random.h"

namespace tools {

// A stretch of a training in which the wanted power goes evenly from one share of the rider's
// threshold power to another.
struct Stretch {
    int seconds;
    double from;
    double to;
    double slope;  // per cent, of the simulated road
};

struct PlannedTraining {
    std::int32_t startDate = 0;  // seconds since 1970, wall clock
    double thresholdPower = 0;   // W, what the rider can hold for an hour on that day
    bool withPulseBelt = true;
    int sampleSeconds = 1;  // between two samples
    int trainingType = 0;
    double cadence = 0;              // preferred, per minute
    services::Text description;      // Latin-1, at most 63 bytes
    std::vector<Stretch> stretches;  // 20 to 90 minutes in all
};

// What the training takes, in seconds.
int lengthOf(const PlannedTraining& training);

// `count` trainings by start date: about three a week, fewer in summer, none in the holidays. The
// last one is on the day of `until`, whatever the season, and is over by then: shortly after
// midnight it began the day before.
std::vector<PlannedTraining> planTrainings(int count, services::DateValue until, Random& random);

}  // namespace tools
