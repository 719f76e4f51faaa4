#include "services/qt/accessibility.h"

#include <QAccessibleWidget>

#include "services/qt/toolkit_state.h"

namespace services::qt {

namespace {

// Our classes have no names of their own in the toolkit's object system. Nothing means: ask the
// toolkit's own factory.
QAccessibleInterface* interfaceOf(const QString& className, QObject* object) {
    if (className != QLatin1String("QWidget")) return nullptr;
    if (auto* image = dynamic_cast<ImageControl*>(object)) {
        return new QAccessibleWidget(image, QAccessible::Chart);
    }
    if (auto* window = dynamic_cast<ToolkitWindow*>(object)) {
        const bool isOwned = window->parentWidget() != nullptr;
        return new QAccessibleWidget(window, isOwned ? QAccessible::Dialog : QAccessible::Window);
    }
    return nullptr;
}

}  // namespace

void installAccessibility() {
    QAccessible::installFactory(interfaceOf);
}

void removeAccessibility() {
    QAccessible::removeFactory(interfaceOf);
}

}  // namespace services::qt
