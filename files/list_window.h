// The window of all trainings: to choose those that charts and exports use, and to run the commands
// on their files.
#pragma once

#include "files/selection.h"

namespace files {

// Runs until the user leaves the window; the `selected` flags of all records are set then. Width
// and height are those of the main window, which may change while the list is open. When the window
// can't be opened nothing changes.
ListResult openTrainingList(ListMode mode, int mainWidth, int mainHeight);

// The window's controls: the list, and its buttons numbered from the left.
inline constexpr int trainingListControl = 1;
inline constexpr int firstButtonControl = 2;

// The items of its keyboard shortcuts.
enum ListShortcut : int {
    escapeShortcut = 1,
    returnShortcut = 2,
    upShortcut = 3,
    downShortcut = 4,
};

}  // namespace files
