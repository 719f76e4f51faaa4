#include <algorithm>

#include "services/events.h"
#include "services/menus.h"

namespace services {

namespace {

bool concernsFrame(EventKind kind) {
    return kind == EventKind::move || kind == EventKind::resize || kind == EventKind::zoom;
}

// Closing and quitting must not get lost however slow the loop is.
bool isKept(const Event& event) {
    return event.kind == EventKind::close ||
           (event.kind == EventKind::menu && event.item == quitItem);
}

bool mergeFrameEvent(EventQueue& queue, const Event& event) {
    const auto last =
        std::find_if(queue.events.rbegin(), queue.events.rend(),
                     [&](const Event& waiting) { return waiting.window == event.window; });
    if (last == queue.events.rend() || !concernsFrame(last->kind)) return false;
    // A size change that waits must not turn into a mere move.
    const bool sizeChanges = last->kind == EventKind::resize || event.kind == EventKind::resize;
    const bool zooms = last->kind == EventKind::zoom || event.kind == EventKind::zoom;
    *last = event;
    if (zooms) last->kind = EventKind::zoom;
    if (sizeChanges) last->kind = EventKind::resize;
    return true;
}

bool waitsTick(const EventQueue& queue, const Event& tick) {
    return std::any_of(queue.events.begin(), queue.events.end(), [&](const Event& waiting) {
        return waiting.kind == EventKind::timer && waiting.window == tick.window &&
               waiting.item == tick.item;
    });
}

}  // namespace

void postEvent(EventQueue& queue, const Event& event) {
    if (concernsFrame(event.kind) && mergeFrameEvent(queue, event)) return;
    if (event.kind == EventKind::timer && waitsTick(queue, event)) return;
    if (queue.events.size() >= eventQueueLimit) {
        if (!isKept(event)) return;
        const auto newest = std::find_if_not(queue.events.rbegin(), queue.events.rend(), isKept);
        if (newest == queue.events.rend()) return;
        queue.events.erase(std::next(newest).base());
    }
    queue.events.push_back(event);
}

Event takeEvent(EventQueue& queue) {
    if (queue.events.empty()) return {};
    const Event event = queue.events.front();
    queue.events.pop_front();
    return event;
}

}  // namespace services
