#include "services/qt/key_repeats.h"

namespace services::qt {

bool KeyRepeats::isRepeat(const QKeyEvent& press) const {
    if (markIsReliable && press.isAutoRepeat()) return true;
    // Presses that no keyboard made have no time (0).
    const auto release = releaseTimes.find(press.key());
    return press.timestamp() != 0 && release != releaseTimes.end() &&
           release->second == press.timestamp();
}

bool KeyRepeats::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:  // comes before the shortcut; KeyPress only without one
            repeats = isRepeat(*static_cast<QKeyEvent*>(event));
            break;
        case QEvent::KeyRelease: {
            const auto* release = static_cast<QKeyEvent*>(event);
            releaseTimes[release->key()] = release->timestamp();
            break;
        }
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace services::qt
