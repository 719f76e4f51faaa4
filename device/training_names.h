// The names of training files: 16 hexadecimal digits.
#pragma once

#include "services/text/latin1.h"

namespace device {

// Digits of either case: the device may write upper case. Such a name can be no path and needs no
// conversion to become one.
bool isTrainingName(services::TextView name);

}  // namespace device
