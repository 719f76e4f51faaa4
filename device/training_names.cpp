#include "device/training_names.h"

#include <algorithm>

#include "services/text/text.h"

namespace device {
namespace {

// Long enough to be nobody else's: files with this ending are removed.
constexpr services::PathView unfinishedEnding = ".kurbelbuch-kopie";

bool isHexadecimalDigit(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

}  // namespace

bool isTrainingName(services::TextView name) {
    return name.size() == 16 && std::all_of(name.begin(), name.end(), isHexadecimalDigit);
}

services::Path unfinishedName(services::PathView trainingName) {
    return services::concatenate(trainingName, unfinishedEnding);
}

bool isUnfinishedName(services::PathView name) {
    return name.ends_with(unfinishedEnding) && isTrainingName(finishedName(name));
}

services::PathView finishedName(services::PathView unfinishedName) {
    return unfinishedName.substr(0, unfinishedName.size() - unfinishedEnding.size());
}

}  // namespace device
