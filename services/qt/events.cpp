#include "services/events.h"

#include <QScopeGuard>

#include "services/disk/endings.h"
#include "services/qt/toolkit_state.h"
#include "services/windows.h"

namespace services {

void dropWaitingEvents() {
    QCoreApplication::processEvents();  // what the user did may not have become events yet
    qt::toolkit.queue.events.clear();
}

namespace {

// Whoever reads it closes that window; what waits otherwise is for windows that are to go.
Event stepOfQuitting() {
    const qt::ToolkitWindow* innermost = qt::innermostWindow();
    if (innermost != nullptr && innermost->number() != mainWindow)
        return {.kind = EventKind::close, .window = innermost->number()};
    forgetQuit();
    return {.kind = EventKind::menu, .item = quitItem};
}

}  // namespace

Event waitEvent() {
    using qt::toolkit;
    while (toolkit.queue.events.empty() && !isQuitAsked()) {
        QEventLoop loop;
        toolkit.waiting = &loop;
        // Also when what was painted meanwhile found no memory.
        const auto forget = qScopeGuard([] { toolkit.waiting = nullptr; });
        loop.exec();
    }
    if (isQuitAsked()) return stepOfQuitting();
    return takeEvent(toolkit.queue);
}

}  // namespace services
