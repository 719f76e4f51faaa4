// What each menu item does.
#pragma once

namespace app {

// Item numbers without a meaning do nothing.
void dispatchMenuItem(int item);

}  // namespace app
