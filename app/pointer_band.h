// The band over the chart that chooses the limits of a value: clicks, and the timer that follows
// the pointer while a band is drawn; and keys that do the same for those who have no pointer.
#pragma once

namespace app {

inline constexpr int bandTimer = 1;
inline constexpr int bandTimerPeriod = 20;  // ms

// Clicks act as long as the item chosen last is below this: after all items but "Grenzwerte" and
// "Farbe" of any value and those of the menu "Info".
inline constexpr int firstItemWithoutClicks = 800;

enum MouseButton : int { leftButton = 0, rightButton = 1 };

// Left: begins a band or ends it, which makes its range the value's limits. Right: removes the
// value's limits.
void clickChart(int button);

// A key on the chart (services/windows.h), as long as clicks act. Up and Down move a mark, by a
// pixel with Shift and by ten with Ctrl; Space begins a band there and ends it where the mark is
// then; Delete removes the value's limits. What the keys began a click ends, and the other way
// round.
void pressKeyOnChart(int key, int modifier);

// A tick of a window timer.
void followPointer(int timer);

}  // namespace app
