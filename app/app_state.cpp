#include "app/app_state.h"

namespace app {

AppState state;

}  // namespace app
