// Windows, their controls and timers. Numbers are chosen by the program.
//
// Positions and sizes are whole logical pixels; a window's size is that of its content area, below
// a menu bar. Closing requests, size changes, clicks and timer ticks arrive as events.
#pragma once

#include <span>

#include "services/raster/raster.h"
#include "services/text/latin1.h"

namespace services {

inline constexpr int noWindow = -1;
inline constexpr int mainWindow = 0;
inline constexpr int listWindow = 1;  // the training files
inline constexpr int limitsWindow = 2;
inline constexpr int reportWindow = 3;  // of a backup copy or a renumbering
inline constexpr int infoWindow = 4;    // version or help

// Keys for keyboardShortcut and key events.
inline constexpr int returnKey = 13;  // Return and Enter
inline constexpr int escapeKey = 27;
inline constexpr int spaceKey = 32;
inline constexpr int upKey = 38;
inline constexpr int downKey = 40;
inline constexpr int deleteKey = 46;

// The modifier of a key event.
enum KeyModifier : int { noModifier = 0, shiftModifier = 1, controlModifier = 2 };

// A screen's size in whole pixels, cut; 0 for an unknown screen. Screen 0 is the main one.
int desktopCount();
int desktopWidth(int screen);
int desktopHeight(int screen);

struct WindowRow {
    int number = mainWindow;
    int x = 1;
    int y = 1;
    int width = 0;
    int height = 0;
    int minimumWidth = 0;
    int minimumHeight = 0;
    TextView title;
    int owner = noWindow;    // the window this one belongs to and stays above
    bool fromOwner = false;  // x and y count from the owner's top left corner, not the screen's
    // While it is shown the windows that were there before take neither clicks nor keys, close
    // requests included, and their menus don't open. They can still be moved and resized.
    bool modal = false;
};

// False when the window could not be opened. It stays invisible until showWindow, so that it
// appears at once with its menus and controls. A window of the same number is closed before.
bool openWindow(const WindowRow& row);
void showWindow(int window);

// Destroys the window with its controls, its timers and the windows that it owns. A number that is
// not open is ignored.
void closeWindow(int window);

// 0 for a window that is not open.
int windowWidth(int window);
int windowHeight(int window);

// Device pixels per logical pixel of the screen the window is on; 1 for one that is not open.
double windowPixelRatio(int window);

void resizeWindow(int window, int width, int height);

// The key, without modifiers, sends a menu event with this item number while the window is active,
// whichever of its controls has the focus. Up and Down repeat while they are held; Return and
// Escape count once, and not at all while still held from another window that they closed.
void keyboardShortcut(int window, int key, int item);

// An image that fills the window's content area. Clicks on it arrive as click events. With the
// focus it sends key events (item: the key, data: a KeyModifier) for Up and Down with Shift or
// Ctrl, which repeat while they are held, and for Space and Delete alone, which don't.
void createImageControl(int window, int control, TextView accessibleName);

// The surface itself is shown, not a copy, and painted as it is whenever the window is: it has to
// live until the control shows another or its window is closed.
void showImage(int window, int control, const Surface& surface);

// As showImage, when the picture differs from the one shown last in these boxes at most: in a time
// that goes by their size.
void showImageParts(int window, int control, const Surface& surface,
                    std::span<const DeviceBox> changed);
void describeControl(int window, int control, TextView accessibleDescription);

// Lets the windows repaint in the middle of a long action, some 50 times a second however often it
// is called; what the user does meanwhile waits as events.
void letWindowsRepaint();

void startWindowTimer(int window, int timer, int milliseconds);
void stopWindowTimer(int window, int timer);

// The pointer's vertical position in the content area (negative above it); 0 when not open.
int pointerY(int window);

}  // namespace services
