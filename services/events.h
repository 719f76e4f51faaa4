// What happens to the program: one record a happening, one bounded queue, read by the main loop and
// by each dialog's own loop.
#pragma once

#include <cstddef>
#include <deque>

namespace services {

enum class EventKind {
    none,
    menu,     // item: the menu item or the number of the keyboard shortcut
    close,    // a close request for `window`; the window is still there
    move,     // `window` moved
    resize,   // `window` has a new content size or device pixel ratio
    zoom,     // `window` was maximized, minimized or restored
    click,    // on `control` of `window`; data: 0 left, 1 right (image control)
    timer,    // item: the number of the window timer
    key,      // a key on `control` of `window`, which has the focus (image control)
    control,  // the user did something to `control` of `window` (controls.h)
};

struct Event {
    EventKind kind = EventKind::none;
    int window = 0;
    int control = 0;
    int item = 0;
    int data = 0;
};

// The most events that wait at once. What comes beyond is dropped, but for close requests and the
// platform's Quit, which take the place of the newest.
inline constexpr std::size_t eventQueueLimit = 256;

struct EventQueue {
    std::deque<Event> events;
};

// Appends, with two mergers that keep a slow loop from falling behind: a move, resize or zoom of a
// window whose last waiting event is one of those three, and a tick of a timer that already waits.
void postEvent(EventQueue& queue, const Event& event);

// The oldest event, or one of kind none when nothing waits.
Event takeEvent(EventQueue& queue);

// Forgets every event that waits.
void dropWaitingEvents();

// Blocks until an event of any window is there and takes it.
Event waitEvent();

}  // namespace services
