// The keys of the chart's image.
#include <QTest>

#include "tests/windows/window_test.h"

namespace {

using services::Event;
using services::EventKind;

class ImageKeys : public WindowTest {
  protected:
    static constexpr int image = 1;

    void SetUp() override {
        WindowTest::SetUp();
        openMainWindow();
        services::createImageControl(services::mainWindow, image, "Diagramm");
        services::keyboardShortcut(services::mainWindow, services::escapeKey, 99);
        services::showWindow(services::mainWindow);
        widget()->activateWindow();
        takeWaitingEvents();
        imageWidget()->setFocus();
    }

    static std::vector<Event> press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(imageWidget(), key, modifiers);
        return takeWaitingEvents();
    }
};

TEST_F(ImageKeys, ArriveWithTheirModifier) {
    struct Row {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int item;
        int data;
    };
    const Row rows[] = {
        {Qt::Key_Up, Qt::ShiftModifier, services::upKey, services::shiftModifier},
        {Qt::Key_Down, Qt::ShiftModifier, services::downKey, services::shiftModifier},
        {Qt::Key_Up, Qt::ControlModifier, services::upKey, services::controlModifier},
        {Qt::Key_Down, Qt::ControlModifier | Qt::KeypadModifier, services::downKey,
         services::controlModifier},
        {Qt::Key_Space, {}, services::spaceKey, services::noModifier},
        {Qt::Key_Delete, {}, services::deleteKey, services::noModifier},
    };
    for (const Row& row : rows) {
        const std::vector<Event> events = press(row.key, row.modifiers);
        ASSERT_EQ(1U, events.size()) << row.key;
        EXPECT_EQ(EventKind::key, events.front().kind);
        EXPECT_EQ(services::mainWindow, events.front().window);
        EXPECT_EQ(image, events.front().control);
        EXPECT_EQ(row.item, events.front().item);
        EXPECT_EQ(row.data, events.front().data);
    }
}

TEST_F(ImageKeys, OthersAreNoneOfItsBusiness) {
    EXPECT_TRUE(press(Qt::Key_Up).empty());
    EXPECT_TRUE(press(Qt::Key_Down, Qt::AltModifier).empty());
    EXPECT_TRUE(press(Qt::Key_Up, Qt::ShiftModifier | Qt::ControlModifier).empty());
    EXPECT_TRUE(press(Qt::Key_Space, Qt::ControlModifier).empty());
    EXPECT_TRUE(press(Qt::Key_Delete, Qt::ShiftModifier).empty());
    EXPECT_TRUE(press(Qt::Key_A).empty());
    const std::vector<Event> events = press(Qt::Key_Escape);
    ASSERT_EQ(1U, events.size());
    EXPECT_EQ(EventKind::menu, events.front().kind);
    EXPECT_EQ(99, events.front().item);
}

TEST_F(ImageKeys, ArrowsRepeatWhileHeldButSpaceAndDeleteDoNot) {
    const auto hold = [](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        for (const bool repeats : {false, true, true}) {
            // As the window system would deliver it: the override asks for shortcuts first.
            QKeyEvent override(QEvent::ShortcutOverride, key, modifiers, QString(), repeats);
            QApplication::sendEvent(imageWidget(), &override);
            QKeyEvent press(QEvent::KeyPress, key, modifiers, QString(), repeats);
            QApplication::sendEvent(imageWidget(), &press);
        }
        return takeWaitingEvents().size();
    };
    EXPECT_EQ(3U, hold(Qt::Key_Up, Qt::ShiftModifier));
    EXPECT_EQ(1U, hold(Qt::Key_Space, Qt::NoModifier));
    EXPECT_EQ(1U, hold(Qt::Key_Delete, Qt::NoModifier));
}

TEST_F(ImageKeys, TheImageTakesTheFocusByTabAndByClick) {
    EXPECT_EQ(Qt::StrongFocus, imageWidget()->focusPolicy());
}

}  // namespace
