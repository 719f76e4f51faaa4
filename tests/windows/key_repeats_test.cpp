#include "services/qt/key_repeats.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "services/qt/toolkit_state.h"
#include "services/requesters.h"
#include "tests/windows/window_test.h"

namespace {

using services::Event;
using services::EventKind;

constexpr bool marked = true;  // by the toolkit, as a repeat

// Events as the platform sends them; keys of QTest carry neither times nor repeats.
void press(QWidget* widget, int key, quint64 time, bool isMarked = false) {
    if (qt_sendShortcutOverrideEvent(widget, time, key, Qt::NoModifier, {}, isMarked)) return;
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, isMarked);
    event.setTimestamp(time);
    QCoreApplication::sendEvent(widget, &event);
}

void release(QWidget* widget, int key, quint64 time, bool isMarked = false) {
    QKeyEvent event(QEvent::KeyRelease, key, Qt::NoModifier, {}, isMarked);
    event.setTimestamp(time);
    QCoreApplication::sendEvent(widget, &event);
}

class HeldKeys : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        openMainWindow();
        services::keyboardShortcut(services::mainWindow, services::returnKey, 13);
        services::keyboardShortcut(services::mainWindow, services::escapeKey, 27);
        services::keyboardShortcut(services::mainWindow, services::upKey, 38);
        services::keyboardShortcut(services::mainWindow, services::downKey, 40);
        services::showWindow(services::mainWindow);
        widget()->activateWindow();
        takeWaitingEvents();
    }

    void TearDown() override {
        useX11(false);
        WindowTest::TearDown();
    }

    static void useX11(bool onX11) {
        using services::qt::toolkit;
        toolkit.keyRepeats = std::make_unique<services::qt::KeyRepeats>(onX11);
        qApp->installEventFilter(toolkit.keyRepeats.get());
    }

    static int presses(int item) {
        int result = 0;
        for (const Event& event : takeWaitingEvents())
            result += event.kind == EventKind::menu && event.item == item ? 1 : 0;
        return result;
    }
};

TEST_F(HeldKeys, OnlyUpAndDownRepeat) {
    struct Row {
        const char* name;
        int key;
        int item;
        int expected;
    };
    const Row rows[] = {
        {"Return", Qt::Key_Return, 13, 1}, {"Enter", Qt::Key_Enter, 13, 1},
        {"Escape", Qt::Key_Escape, 27, 1}, {"Up", Qt::Key_Up, 38, 3},
        {"Down", Qt::Key_Down, 40, 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        press(widget(), row.key, 1000);
        for (const quint64 time : {1600U, 1630U}) {
            release(widget(), row.key, time, marked);
            press(widget(), row.key, time, marked);
        }
        EXPECT_EQ(row.expected, presses(row.item));
        release(widget(), row.key, 1650);
    }
}

TEST_F(HeldKeys, ARepeatWithoutItsMarkIsStillARepeat) {
    for (const bool onX11 : {true, false}) {
        SCOPED_TRACE(onX11);
        useX11(onX11);
        // The press itself went to a box that is closed by now.
        release(widget(), Qt::Key_Escape, 1600);
        press(widget(), Qt::Key_Escape, 1600);
        EXPECT_EQ(0, presses(27));
        release(widget(), Qt::Key_Escape, 1650);
        press(widget(), Qt::Key_Escape, 1651);
        EXPECT_EQ(1, presses(27));
    }
}

TEST_F(HeldKeys, OnX11AMarkThatStaysOnDoesNotHideAFreshPress) {
    useX11(true);
    release(widget(), Qt::Key_Escape, 1600, marked);
    press(widget(), Qt::Key_Escape, 1600, marked);
    EXPECT_EQ(0, presses(27));
    // Let go over another program's window, and pressed again in this one.
    press(widget(), Qt::Key_Escape, 9000, marked);
    EXPECT_EQ(1, presses(27));
}

TEST_F(HeldKeys, ElsewhereTheMarkTells) {
    useX11(false);
    press(widget(), Qt::Key_Escape, 9000, marked);
    EXPECT_EQ(0, presses(27));
    press(widget(), Qt::Key_Escape, 9500);
    EXPECT_EQ(1, presses(27));
}

TEST_F(HeldKeys, KeysDoNotTakeEachOthersReleases) {
    useX11(true);
    release(widget(), Qt::Key_A, 1600);
    press(widget(), Qt::Key_Escape, 1600);
    EXPECT_EQ(1, presses(27));
}

TEST_F(HeldKeys, PressesWithoutATimeAreFresh) {
    useX11(true);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(widget(), Qt::Key_Escape);
    EXPECT_EQ(3, presses(27));
}

TEST_F(HeldKeys, TheEscapeThatClosesAMessageDoesNotReachTheWindowBelow) {
    useX11(true);
    QTimer::singleShot(0, qApp, [] {
        QWidget* const box = QApplication::activeModalWidget();
        ASSERT_NE(nullptr, box);
        press(box, Qt::Key_Escape, 1000);
    });
    services::showMessage("Fehler", "Nichts da");
    widget()->activateWindow();
    takeWaitingEvents();
    for (quint64 time = 1600; time < 2200; time += 30) {
        const bool isMarked = time % 60 == 0;
        release(widget(), Qt::Key_Escape, time, isMarked);
        press(widget(), Qt::Key_Escape, time, isMarked);
    }
    EXPECT_EQ(0, presses(27));
    release(widget(), Qt::Key_Escape, 2210);
    press(widget(), Qt::Key_Escape, 2400);
    EXPECT_EQ(1, presses(27));
}

}  // namespace
