#include "settings/settings_state.h"

namespace settings {

StartSettings state;

}  // namespace settings
