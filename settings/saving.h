// The menu's commands on the start settings file: save, reload, delete.
#pragma once

namespace settings {

// Writes what the program holds now: the live window's size, the device directory if the working
// directory leads to one, the colours and the marks of the menus as they stand. The limits are not
// among it. Afterwards the program directory is the working directory, also when nothing could be
// written; that goes without a message, and the old file stays.
void saveStartSettings();

// Loads the file again and marks the menus by it. The window keeps its size on screen.
void reloadStartSettings();

// Deletes the file if the user says yes and takes the defaults, but only as far as they are: the
// marks in the menus, the training chart's colours and the window's size on screen stay.
void deleteStartSettings();

}  // namespace settings
