#include "device/training_names.h"

#include <algorithm>

namespace device {
namespace {

bool isHexadecimalDigit(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

}  // namespace

bool isTrainingName(services::TextView name) {
    return name.size() == 16 && std::all_of(name.begin(), name.end(), isHexadecimalDigit);
}

}  // namespace device
