// Any bytes as the file of the chosen training.

#include "device/device_state.h"
#include "device/training_file.h"
#include "tests/fuzzing/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::ownDirectory();
    const std::string name = "0000000000000001";
    fuzzing::writeFile(name, fuzzing::textOf(data, size));
    device::state.dictionary = {{.fileName = name, .selected = 1}};
    device::loadTraining();
    fuzzing::require(device::state.samples.size() == size / device::trainingSampleSize,
                     "every whole sample is read");
    fuzzing::useSamples(device::state.samples);
    return 0;
}
