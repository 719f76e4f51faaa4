#include "services/clock.h"

#include <QDateTime>

namespace services {

DateValue now() {
    const QDateTime wallClock = QDateTime::currentDateTime();
    const QDate date = wallClock.date();
    const QTime time = wallClock.time();
    return makeDate(date.year(), date.month(), date.day(), time.hour(), time.minute(),
                    time.second());
}

}  // namespace services
