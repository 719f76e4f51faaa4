// The one loop of the program.
#pragma once

#include "services/events.h"

namespace app {

void dispatchEvent(const services::Event& event);

// Waits for events and dispatches them until the window is closed, Escape is pressed or Quit comes.
void runEventLoop();

}  // namespace app
