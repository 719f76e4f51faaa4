// The program for those who don't see it or have no pointer: the tree of every window as a screen
// reader walks it, and every control by keyboard.
#include <QAccessible>
#include <QPushButton>
#include <QTest>
#include <set>

#include "services/qt/toolkit_state.h"
#include "tests/windows/program_windows.h"

namespace {

class Accessibility : public ProgramWindows {};

using Visit = std::function<void(QAccessibleInterface& node)>;

void visitAll(QAccessibleInterface* node, const Visit& visit) {
    ASSERT_NE(nullptr, node);
    visit(*node);
    for (int i = 0; i < node->childCount(); ++i)
        visitAll(node->child(i), visit);
}

std::string nameOf(const QAccessibleInterface& node) {
    return node.text(QAccessible::Name).toStdString();
}

// What only holds or adorns others.
bool isStructure(const QAccessibleInterface& node) {
    const std::set<QAccessible::Role> structure = {QAccessible::Client, QAccessible::Separator,
                                                   QAccessible::ScrollBar};
    return structure.contains(node.role());
}

TEST_F(Accessibility, EveryControlHasANameAndARole) {
    lookAtAll([](QWidget& window) {
        int controls = 0;
        visitAll(QAccessible::queryAccessibleInterface(&window), [&](QAccessibleInterface& node) {
            if (isStructure(node)) {
                EXPECT_FALSE(node.state().focusable)
                    << "something without a role takes the keyboard";
                return;
            }
            ++controls;
            EXPECT_NE(QAccessible::NoRole, node.role());
            EXPECT_FALSE(nameOf(node).empty()) << qAccessibleRoleString(node.role());
        });
        EXPECT_GE(controls, 2);
    });
}

TEST_F(Accessibility, WindowsAreWindowsOrDialogs) {
    int windows = 0;
    lookAtAll([&](QWidget& window) {
        ++windows;
        const QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(&window);
        EXPECT_EQ(&window == widget() ? QAccessible::Window : QAccessible::Dialog, node->role());
        EXPECT_EQ(window.windowTitle().toStdString(), nameOf(*node));
    });
    EXPECT_EQ(8, windows);
}

TEST_F(Accessibility, TheChartIsOneAndTellsWhatItShows) {
    const QAccessibleInterface* const chart = QAccessible::queryAccessibleInterface(imageWidget());
    EXPECT_EQ(QAccessible::Chart, chart->role());
    EXPECT_TRUE(chart->state().focusable);
    EXPECT_TRUE(chart->text(QAccessible::Description)
                    .startsWith(QStringLiteral("Übersicht, 5 Trainings vom 24.12.2013 bis "
                                               "28.12.2013: Watt (Linie) von 289 bis 293.")))
        << chart->text(QAccessible::Description).toStdString();
}

TEST_F(Accessibility, MenuItemsTellTheirMarksAndWhetherTheyAreDisabled) {
    int marked = 0;
    int markable = 0;
    int disabled = 0;
    visitAll(QAccessible::queryAccessibleInterface(widget()), [&](QAccessibleInterface& node) {
        if (node.role() != QAccessible::MenuItem) return;
        marked += node.state().checked ? 1 : 0;
        markable += node.state().checkable ? 1 : 0;
        disabled += node.state().disabled ? 1 : 0;
    });
    EXPECT_EQ(1, marked);
    EXPECT_EQ(42 * 7, markable);
    EXPECT_EQ(22 * 9, disabled);
}

TEST_F(Accessibility, AFieldIsNamedByItsCaptionAndExplained) {
    lookAt(
        "Grenzwerte",
        [](QWidget& window) {
            std::vector<std::string> fields;
            visitAll(QAccessible::queryAccessibleInterface(&window),
                     [&](QAccessibleInterface& node) {
                         if (node.role() != QAccessible::EditableText) return;
                         fields.push_back(nameOf(node));
                         EXPECT_FALSE(node.text(QAccessible::Description).isEmpty());
                         EXPECT_EQ(1U, node.relations(QAccessible::Label).size());
                     });
            EXPECT_EQ((std::vector<std::string>{"Min:", "Max:"}), fields);
        },
        [] { charts::editLimits(charts::ChartKind::overview, 3); });
}

// From left to right in a row, and row by row.
bool readsBefore(const QWidget& first, const QWidget& second) {
    const QRect a(first.mapTo(first.window(), QPoint(0, 0)), first.size());
    const QRect b(second.mapTo(second.window(), QPoint(0, 0)), second.size());
    if (a.bottom() < b.top()) return true;
    return a.top() <= b.bottom() && a.left() < b.left();
}

TEST_F(Accessibility, TabReachesEveryControlInReadingOrderAndComesRound) {
    lookAtAll([](QWidget& window) {
        std::set<QWidget*> wanted;
        for (QWidget* control : window.findChildren<QWidget*>()) {
            const bool takesTab = (control->focusPolicy() & Qt::TabFocus) != 0;
            const QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(control);
            if (takesTab && node != nullptr && !isStructure(*node)) wanted.insert(control);
        }
        QWidget* const first = window.focusWidget();
        ASSERT_NE(nullptr, first) << "nothing has the keyboard";
        std::set<QWidget*> reached;
        for (QWidget* now = first; reached.insert(now).second;) {
            QTest::keyClick(now, Qt::Key_Tab);
            QWidget* const next = window.focusWidget();
            ASSERT_NE(nullptr, next);
            EXPECT_TRUE(next == first || readsBefore(*now, *next));
            now = next;
        }
        EXPECT_EQ(wanted, reached);
    });
}

TEST_F(Accessibility, EveryButtonIsPressedBySpace) {
    lookAtAll([](QWidget& window) {
        for (auto* button : window.findChildren<QPushButton*>()) {
            int presses = 0;
            QObject::connect(button, &QPushButton::clicked, &window, [&presses] { ++presses; });
            button->setFocus();
            QTest::keyClick(button, Qt::Key_Space);
            EXPECT_EQ(1, presses) << button->text().toStdString();
            services::qt::toolkit.queue = {};  // what the button does is another matter
        }
    });
}

TEST_F(Accessibility, F10OpensTheFirstMenu) {
    const auto* const bar = widget()->findChild<QMenuBar*>();
    QTest::keyClick(imageWidget(), Qt::Key_F10);
    ASSERT_NE(nullptr, bar->activeAction());
    EXPECT_EQ(QStringLiteral("Programm"), bar->activeAction()->text());
    ASSERT_NE(nullptr, QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    EXPECT_EQ(nullptr, QApplication::activePopupWidget());
    EXPECT_TRUE(takeWaitingEvents().empty());  // that Escape was the menu's
}

TEST_F(Accessibility, EveryMenuItemIsReachedByTheArrows) {
    const auto* const bar = widget()->findChild<QMenuBar*>();
    QTest::keyClick(imageWidget(), Qt::Key_F10);
    for (const QAction* title : bar->actions()) {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(nullptr, menu);
        EXPECT_EQ(title->menu(), menu);
        std::set<QAction*> wanted;
        for (QAction* item : menu->actions()) {
            if (!item->isSeparator()) wanted.insert(item);
        }
        std::set<QAction*> reached;
        for (int i = 0; i <= menu->actions().size(); ++i) {
            reached.insert(menu->activeAction());
            QTest::keyClick(menu, Qt::Key_Down);
        }
        reached.erase(nullptr);
        EXPECT_EQ(wanted, reached) << title->text().toStdString();
        // Not through a submenu that would open to the right.
        while (menu->activeAction() != menu->actions().first())
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Right);
    }
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
}

}  // namespace
