#include "device/device_state.h"

namespace device {

DeviceState state;

}  // namespace device
