// The course of a planned training as a bike would record it, and what an index says of it.
#pragma once

#include <vector>

#include "device/dictionary_record.h"
#include "device/training_sample.h"
#include "services/text/latin1.h"
#include "tools/demo_plan.h"
#include "tools/demo_random.h"

namespace tools {

// The first sample is at 0 s, the others `sampleSeconds` apart. Power follows the plan within
// seconds, speed follows power, the pulse follows within a minute and drifts up over the training.
// Work and distance are the sums of what the samples themselves say: each sample adds its power and
// speed times the seconds since the one before.
std::vector<device::TrainingSample> rideTraining(const PlannedTraining& training, Random& random);

// The index record: everything but date, type and text follows from the samples. Means are the
// plain means over all samples, in the index's units; the riding time, distance and work are those
// of the last sample; the work rates are the mean and the highest power times 0.06. A training
// without pulse belt has a pulse of 0.0. The meaning of the unknown fields is not known; so that
// their charts show something, they hold the mean torque, the highest power, the highest pulse, the
// work in kilocalories, the highest gear and the seconds between two samples.
device::DictionaryRecord summarize(const PlannedTraining& training,
                                   const std::vector<device::TrainingSample>& samples,
                                   services::TextView fileName);

// The samples as a training file holds them.
services::Text encodeSamples(const std::vector<device::TrainingSample>& samples);

}  // namespace tools
