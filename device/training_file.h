// The training file of the chosen training and the sample table it fills.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "device/device_state.h"

namespace device {

// The samples of an open training file that was `length` bytes long when it was opened: one pass, a
// trailing partial sample ignored. Nothing when the length holds no sample, when fewer whole
// samples arrive than the length promised, or when memory can't hold them.
std::optional<std::vector<TrainingSample>> readTrainingSamples(int file, std::int64_t length);

// Replaces the sample table with the training of the first selected record, in table order. Leaves
// the table empty without a word when none is selected, with a message when its file can't be read.
void loadTraining();

}  // namespace device
