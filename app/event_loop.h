// The one loop of the program.
#pragma once

#include "services/events.h"

namespace app {

// What is left of an action that memory did not last for goes: its windows, and its hold on the
// tree.
void giveUpAction();

// Acts on an event of the main window. An action that memory does not last for ends there.
void dispatchEvent(const services::Event& event);

// Waits for events and dispatches them until the window is closed, Escape is pressed or Quit comes.
void runEventLoop();

}  // namespace app
