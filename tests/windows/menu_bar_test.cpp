#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolTip>
#include <map>
#include <string>

#include "app/menu_tree.h"
#include "services/text/latin1.h"
#include "tests/windows/window_test.h"

namespace {

using services::EventKind;
using services::MenuRow;
using services::MenuRowKind;

class MenuBar : public WindowTest {
  protected:
    void build(const std::vector<MenuRow>& rows) {
        openMainWindow();
        services::buildMenuBar(services::mainWindow, rows);
        services::showWindow(services::mainWindow);
        takeWaitingEvents();
    }

    // What the user can read, one line an entry, indented by its depth.
    static std::vector<std::string> shownOutline() {
        std::vector<std::string> lines;
        const auto bars = widget()->findChildren<QMenuBar*>();
        if (bars.size() == 1) addActions(lines, bars.front()->actions(), 0);
        return lines;
    }

    static std::vector<std::string> outlineOf(const std::vector<MenuRow>& rows) {
        std::vector<std::string> lines;
        std::size_t depth = 0;
        for (const MenuRow& row : rows) {
            const std::string text = services::latin1ToUtf8(row.text);
            switch (row.kind) {
                case MenuRowKind::title:
                    lines.push_back("menu " + text);
                    depth = 1;
                    break;
                case MenuRowKind::submenuStart:
                    lines.push_back(line(depth++, "menu " + text));
                    break;
                case MenuRowKind::submenuEnd:
                    --depth;
                    break;
                case MenuRowKind::separator:
                    lines.push_back(line(depth, "---"));
                    break;
                case MenuRowKind::item:
                    lines.push_back(line(depth, text));
                    break;
                case MenuRowKind::checkItem:
                    lines.push_back(line(depth, "[ ] " + text));
                    break;
            }
        }
        return lines;
    }

    // The items in the order of the menus, submenus included.
    static std::vector<QAction*> items(const QList<QAction*>& actions) {
        std::vector<QAction*> found;
        for (QAction* action : actions) {
            if (action->menu() != nullptr) {
                const std::vector<QAction*> below = items(action->menu()->actions());
                found.insert(found.end(), below.begin(), below.end());
            } else if (!action->isSeparator()) {
                found.push_back(action);
            }
        }
        return found;
    }

    static std::vector<QAction*> items() {
        return items(widget()->findChild<QMenuBar*>()->actions());
    }

  private:
    static std::string line(std::size_t depth, const std::string& text) {
        return std::string(2 * depth, ' ') + text;
    }

    // The text as the user sees it: a lone ampersand would be a mnemonic.
    static std::string shownText(QString text) {
        text.replace(QLatin1String("&&"), QString(QChar(1)));
        text.replace(QLatin1Char('&'), QLatin1String("MNEMONIC"));
        text.replace(QChar(1), QLatin1Char('&'));
        return text.toStdString();
    }

    static void addActions(std::vector<std::string>& lines, const QList<QAction*>& actions,
                           std::size_t depth) {
        for (const QAction* action : actions) {
            if (action->isSeparator()) {
                lines.push_back(line(depth, "---"));
            } else if (action->menu() != nullptr) {
                lines.push_back(line(depth, "menu " + shownText(action->text())));
                addActions(lines, action->menu()->actions(), depth + 1);
            } else {
                const std::string mark = action->isCheckable() ? "[ ] " : "";
                lines.push_back(line(depth, mark + shownText(action->text())));
            }
        }
    }
};

TEST_F(MenuBar, ShowsTheProgramsMenusRowForRow) {
    build(app::menuRows());
    const std::vector<std::string> expected = outlineOf(app::menuRows());
    EXPECT_GT(expected.size(), 500U);
    EXPECT_EQ(expected, shownOutline());
}

TEST_F(MenuBar, EveryItemOfTheProgramSendsItsOwnNumber) {
    build(app::menuRows());
    std::vector<int> expected;
    for (const MenuRow& row : app::menuRows()) {
        if (row.kind == MenuRowKind::item || row.kind == MenuRowKind::checkItem)
            expected.push_back(row.number);
    }
    std::vector<int> sent;
    for (QAction* item : items()) {
        item->trigger();
        for (const services::Event& event : takeWaitingEvents()) {
            if (event.kind == EventKind::menu && event.window == services::mainWindow)
                sent.push_back(event.item);
        }
        EXPECT_FALSE(item->isChecked());
    }
    EXPECT_EQ(expected, sent);
}

TEST_F(MenuBar, NoItemIsMovedBecauseOfItsText) {
    build({{MenuRowKind::title, 0, "Programm"},
           {MenuRowKind::item, 1, "Einstellungen"},
           {MenuRowKind::submenuStart, 0, "Mehr"},
           {MenuRowKind::item, 2, "Quit"}});
    ASSERT_EQ(2U, items().size());
    for (const QAction* item : items())
        EXPECT_EQ(QAction::NoRole, item->menuRole());
}

TEST_F(MenuBar, ATitleEndsTheOpenMenuAndSubmenu) {
    build({{MenuRowKind::title, 0, "A"},
           {MenuRowKind::submenuStart, 0, "Eins"},
           {MenuRowKind::item, 1, "x"},
           {MenuRowKind::submenuEnd, 0, ""},
           {MenuRowKind::item, 2, "y"},
           {MenuRowKind::submenuStart, 0, "Zwei & mehr"},
           {MenuRowKind::checkItem, 3, "z & <b>"},
           {MenuRowKind::title, 0, "B & C"},
           {MenuRowKind::item, 4, "u"},
           {MenuRowKind::separator, 0, ""},
           {MenuRowKind::item, 5, "v"}});
    const std::vector<std::string> expected = {
        "menu A",          "  menu Eins", "    x", "  y",   "  menu Zwei & mehr",
        "    [ ] z & <b>", "menu B & C",  "  u",   "  ---", "  v",
    };
    EXPECT_EQ(expected, shownOutline());
}

TEST_F(MenuBar, SubmenusStandSideBySideInTheirMenu) {
    build({{MenuRowKind::title, 0, "A"},
           {MenuRowKind::submenuStart, 0, "Eins"},
           {MenuRowKind::separator, 0, ""},
           {MenuRowKind::item, 1, "x"},
           {MenuRowKind::submenuStart, 0, "Zwei"},
           {MenuRowKind::item, 2, "y"},
           {MenuRowKind::submenuEnd, 0, ""},
           {MenuRowKind::item, 3, "z"}});
    const std::vector<std::string> expected = {"menu A",      "  menu Eins", "    ---", "    x",
                                               "  menu Zwei", "    y",       "  z"};
    EXPECT_EQ(expected, shownOutline());
}

TEST_F(MenuBar, RowsWithoutAMenuAndNumbersOutOfRangeAreLeftOut) {
    build({{MenuRowKind::item, 1, "before"},
           {MenuRowKind::separator, 0, ""},
           {MenuRowKind::title, 0, "A"},
           {MenuRowKind::item, -1, "below"},
           {MenuRowKind::item, services::menuItemLimit, "above"},
           {MenuRowKind::item, services::menuItemLimit - 1, "last"}});
    EXPECT_EQ((std::vector<std::string>{"menu A", "  last"}), shownOutline());
}

TEST_F(MenuBar, MarksAndEnablingAreThoseOfTheItemAlone) {
    build({{MenuRowKind::title, 0, "A"},
           {MenuRowKind::checkItem, 1, "x"},
           {MenuRowKind::checkItem, 2, "y"}});
    services::setItemMark(2, true);
    services::setItemEnabled(1, false);
    EXPECT_FALSE(items()[0]->isChecked());
    EXPECT_TRUE(items()[1]->isChecked());
    EXPECT_FALSE(items()[0]->isEnabled());
    EXPECT_TRUE(items()[1]->isEnabled());
    services::setItemMark(2, false);
    services::setItemEnabled(1, true);
    EXPECT_FALSE(items()[1]->isChecked());
    EXPECT_TRUE(items()[0]->isEnabled());
}

TEST_F(MenuBar, ADisabledItemTellsWhatToDoFirst) {
    build({{MenuRowKind::title, 0, "A"},
           {MenuRowKind::submenuStart, 0, "Watt"},
           {MenuRowKind::checkItem, 1, "x", "Zuerst w\xE4hlen."},
           {MenuRowKind::item, 2, "y"}});
    QMenu* const menu =
        widget()->findChild<QMenuBar*>()->actions()[0]->menu()->actions()[0]->menu();
    menu->popup(QPoint(50, 50));
    const auto tooltipOf = [menu](const QAction* item) {
        QToolTip::hideText();
        EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
        const QPoint place = menu->actionGeometry(const_cast<QAction*>(item)).center();
        QHelpEvent event(QEvent::ToolTip, place, menu->mapToGlobal(place));
        QApplication::sendEvent(menu, &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    EXPECT_EQ(QString(), tooltipOf(items()[0]));
    services::setItemEnabled(1, false);
    services::setItemEnabled(2, false);
    EXPECT_EQ(QStringLiteral("Zuerst wählen."), tooltipOf(items()[0]));
    EXPECT_EQ(QString(), tooltipOf(items()[1]));
    services::setItemEnabled(1, true);
    EXPECT_EQ(QString(), tooltipOf(items()[0]));
    QToolTip::hideText();
    menu->close();
}

TEST_F(MenuBar, TheStateOfAnItemOutlivesItsWindow) {
    build({{MenuRowKind::title, 0, "A"}, {MenuRowKind::checkItem, 1, "x"}});
    services::closeWindow(services::mainWindow);
    services::setItemMark(1, true);
    services::setItemEnabled(1, false);
    EXPECT_TRUE(services::itemMark(1));
    EXPECT_FALSE(services::itemEnabled(1));
}

// Escape alone is a shortcut; F10 opens a menu and chooses nothing.
TEST_F(MenuBar, NoOtherKeyThanEscapeRunsACommand) {
    build(app::menuRows());
    services::keyboardShortcut(services::mainWindow, services::escapeKey, app::escapeItem);
    for (const QAction* item : items())
        EXPECT_TRUE(item->shortcuts().isEmpty()) << item->text().toStdString();
    widget()->activateWindow();
    takeWaitingEvents();

    std::vector<Qt::Key> keys = {
        Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_Home,
        Qt::Key_End,    Qt::Key_PageUp, Qt::Key_PageDown,  Qt::Key_Up,     Qt::Key_Down,
        Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Delete,    Qt::Key_Space,  Qt::Key_Plus,
        Qt::Key_Minus,  Qt::Key_Help,   Qt::Key_Print,     Qt::Key_Pause,  Qt::Key_Menu,
        Qt::Key_Save,   Qt::Key_Reload, Qt::Key_Open,      Qt::Key_Close};
    for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key)
        keys.push_back(static_cast<Qt::Key>(key));
    for (int key = Qt::Key_0; key <= Qt::Key_9; ++key)
        keys.push_back(static_cast<Qt::Key>(key));
    for (int key = Qt::Key_F1; key <= Qt::Key_F12; ++key)
        keys.push_back(static_cast<Qt::Key>(key));
    const Qt::KeyboardModifiers modifiers[] = {
        Qt::NoModifier,      Qt::ShiftModifier,
        Qt::ControlModifier, Qt::ControlModifier | Qt::ShiftModifier,
        Qt::AltModifier,     Qt::ControlModifier | Qt::AltModifier,
        Qt::MetaModifier};
    for (const Qt::KeyboardModifiers modifier : modifiers) {
        for (const Qt::Key key : keys) {
            // Without a text: not every key has one.
            QTest::sendKeyEvent(QTest::Click, widget(), key, QString(), modifier);
            for (const services::Event& event : takeWaitingEvents()) {
                EXPECT_NE(EventKind::menu, event.kind) << event.item << " by " << key;
                EXPECT_NE(EventKind::close, event.kind) << key;
            }
            if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
        }
    }
    QTest::keyClick(widget(), Qt::Key_Escape);
    std::vector<int> chosen;
    for (const services::Event& event : takeWaitingEvents())
        chosen.push_back(event.item);
    EXPECT_EQ(std::vector<int>{app::escapeItem}, chosen);
}

}  // namespace
