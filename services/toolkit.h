// The toolkit's beginning and end. Nothing of windows.h, menus.h, requesters.h, text_drawing.h and
// waitEvent works outside of these two calls.
#pragma once

namespace services {

// Prepares the toolkit in German whatever the locale. `programName` is the name it was started by.
// The process ends with exit code 1 and one German line on the error output when there is no
// display.
void startToolkit(char* programName);

// Closes every window and frees the toolkit.
void stopToolkit();

}  // namespace services
