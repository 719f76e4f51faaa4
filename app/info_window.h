// The windows of the menu "Info": the program's version, and its description.
//
// Each returns when its window is closed or Escape is pressed. Until then it reads every event of
// the program: a request to close any window, the main one included, closes it alone, and all else
// is dropped. A window that can't be opened is skipped without a word.
#pragma once

#include "services/text/latin1.h"

namespace app {

// The only control of either window.
inline constexpr int infoTextControl = 1;

// Name, version and contact; lines joined by CR LF.
services::TextView infoText();

void showInfoBox();
void showHelpWindow();

}  // namespace app
