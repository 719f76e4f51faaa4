#include "services/events.h"

#include "services/qt/toolkit_state.h"

namespace services {

void dropWaitingEvents() {
    QCoreApplication::processEvents();  // what the user did may not have become events yet
    qt::toolkit.queue.events.clear();
}

Event waitEvent() {
    using qt::toolkit;
    while (toolkit.queue.events.empty()) {
        QEventLoop loop;
        toolkit.waiting = &loop;
        loop.exec();
        toolkit.waiting = nullptr;
    }
    return takeEvent(toolkit.queue);
}

}  // namespace services
