// The pointer on the chart: clicks and the timer that follows it while a band is drawn.
#pragma once

namespace app {

inline constexpr int bandTimer = 1;
inline constexpr int bandTimerPeriod = 20;  // ms

// The items up to which, as the last one chosen, clicks act. The mean line's are among them, of the
// trend's only the first.
inline constexpr int lastItemForClicks = 700;

enum MouseButton : int { leftButton = 0, rightButton = 1 };

// Left: begins a band or ends it, which makes its range the value's limits. Right: removes the
// value's limits.
void clickChart(int button);

// A tick of a window timer.
void followPointer(int timer);

}  // namespace app
