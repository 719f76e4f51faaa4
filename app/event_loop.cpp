#include "app/event_loop.h"

#include "app/app_state.h"
#include "app/main_window.h"
#include "app/menu_dispatch.h"
#include "app/pointer_band.h"
#include "device/index_recovery.h"
#include "services/disk/memory.h"
#include "services/windows.h"

namespace app {

using services::EventKind;

namespace {

void actOn(const services::Event& event) {
    switch (event.kind) {
        case EventKind::close:
            state.quit = true;
            break;
        case EventKind::move:
        case EventKind::resize:
        case EventKind::zoom:
            followWindow();
            break;
        case EventKind::menu:
            state.lastMenuItem = event.item;
            dispatchMenuItem(event.item);
            break;
        case EventKind::click:
            clickChart(event.data);
            break;
        case EventKind::key:
            pressKeyOnChart(event.item, event.data);
            break;
        case EventKind::timer:
            followPointer(event.item);
            break;
        case EventKind::none:
        case EventKind::control:
            break;
    }
}

}  // namespace

void giveUpAction() {
    device::leaveTree();
    for (const int window : {services::reportWindow, services::listWindow, services::limitsWindow,
                             services::infoWindow}) {
        services::closeWindow(window);
    }
}

void dispatchEvent(const services::Event& event) {
    // What a window that is closed by now has left in the queue, such as a second press of Escape,
    // must not end the program.
    if (event.window != services::mainWindow) return;
    if (!services::withinMemory([&event] { actOn(event); })) giveUpAction();
}

void runEventLoop() {
    while (!state.quit) {
        services::Event event;
        if (services::withinMemory([&event] { event = services::waitEvent(); }))
            dispatchEvent(event);
    }
}

}  // namespace app
