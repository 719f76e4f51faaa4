#include "services/menus.h"

#include <QMenu>

#include "services/qt/toolkit_state.h"

namespace services {

namespace {

QAction* addItem(QMenu& menu, int window, const MenuRow& row) {
    QAction* action = menu.addAction(qt::toPlainLabel(row.text));
    // Without this, some platforms move items whose texts look like preferences or Quit.
    action->setMenuRole(QAction::NoRole);
    action->setCheckable(row.kind == MenuRowKind::checkItem);
    action->setData(qt::toQString(row.hint));
    const int number = row.number;
    QObject::connect(action, &QAction::triggered, action, [window, number] {
        showItemState(number);  // choosing changes no mark by itself
        qt::post({.kind = EventKind::menu, .window = window, .item = number});
    });
    return action;
}

#ifdef Q_OS_MACOS
// The application menu of this platform takes its About and Quit from actions with these roles.
void addApplicationMenuItem(QMenu& menu, int window, int number, QAction::MenuRole role) {
    QAction* action = menu.addAction(QString());
    action->setMenuRole(role);
    QObject::connect(action, &QAction::triggered, action, [window, number] {
        qt::post({.kind = EventKind::menu, .window = window, .item = number});
    });
}
#endif

}  // namespace

void showMenuBar(int window, std::span<const MenuRow> rows) {
    qt::ToolkitWindow* owner = qt::findWindow(window);
    if (owner == nullptr) return;
    auto bar = std::make_unique<QMenuBar>();
    bar->setAccessibleName(QStringLiteral("Menüleiste"));
    QMenu* title = nullptr;
    QMenu* menu = nullptr;  // the title's menu or the open submenu of it
    for (const MenuRow& row : rows) {
        if (row.kind == MenuRowKind::title) {
            title = menu = bar->addMenu(qt::toPlainLabel(row.text));
            menu->setAccessibleName(qt::toQString(row.text));
            continue;
        }
        if (menu == nullptr) continue;
        switch (row.kind) {
            case MenuRowKind::title:
                break;
            case MenuRowKind::submenuStart:
                menu = title->addMenu(qt::toPlainLabel(row.text));
                menu->setToolTipsVisible(true);
                menu->setAccessibleName(qt::toQString(row.text));
                break;
            case MenuRowKind::submenuEnd:
                menu = title;
                break;
            case MenuRowKind::separator:
                menu->addSeparator();
                break;
            case MenuRowKind::item:
            case MenuRowKind::checkItem:
                if (row.number >= 0 && row.number < menuItemLimit) {
                    qt::toolkit.actions[static_cast<std::size_t>(row.number)] =
                        addItem(*menu, window, row);
                }
                break;
        }
    }
#ifdef Q_OS_MACOS
    if (title != nullptr) {
        addApplicationMenuItem(*title, window, aboutItem, QAction::AboutRole);
        addApplicationMenuItem(*title, window, quitItem, QAction::QuitRole);
    }
#endif
    owner->setMenuBar(std::move(bar));
}

void showItemState(int number) {
    if (number < 0 || number >= menuItemLimit) return;
    const QPointer<QAction>& action = qt::toolkit.actions[static_cast<std::size_t>(number)];
    if (action.isNull()) return;
    action->setChecked(itemMark(number));
    action->setEnabled(itemEnabled(number));
    action->setToolTip(itemEnabled(number) ? QString() : action->data().toString());
}

}  // namespace services
