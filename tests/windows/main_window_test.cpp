#include <QMouseEvent>
#include <QTest>
#include <QTimer>

#include "tests/windows/window_test.h"

namespace {

using services::Event;
using services::EventKind;

class MainWindow : public WindowTest {
  protected:
    static constexpr int image = 1;

    void openWithMenu() {
        openMainWindow();
        const std::vector<services::MenuRow> rows = {
            {services::MenuRowKind::title, 0, "Programm"},
            {services::MenuRowKind::item, 1, "Eins & Zwei"},
            {services::MenuRowKind::checkItem, 103, "Balken"},
        };
        services::createImageControl(services::mainWindow, image, "Diagramm");
        services::buildMenuBar(services::mainWindow, rows);
        services::showWindow(services::mainWindow);
    }

    static QAction* action(const QString& text) {
        for (QAction* found : widget()->findChildren<QAction*>()) {
            if (found->text() == text) return found;
        }
        return nullptr;
    }
};

TEST_F(MainWindow, HasTheWantedSizeBelowItsMenuBar) {
    openWithMenu();
    takeWaitingEvents();
    EXPECT_EQ(640, services::windowWidth(services::mainWindow));
    EXPECT_EQ(480, services::windowHeight(services::mainWindow));
    ASSERT_NE(nullptr, imageWidget());
    EXPECT_EQ(QSize(640, 480), imageWidget()->size());
    EXPECT_GT(widget()->height(), 480);
}

TEST_F(MainWindow, StaysInvisibleUntilItIsShown) {
    openMainWindow();
    EXPECT_FALSE(widget()->isVisible());
    services::showWindow(services::mainWindow);
    EXPECT_TRUE(widget()->isVisible());
}

TEST_F(MainWindow, ReportsACloseRequestAndStaysOpen) {
    openWithMenu();
    takeWaitingEvents();
    widget()->close();
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::close));
    EXPECT_TRUE(widget()->isVisible());
}

TEST_F(MainWindow, ReportsABurstOfSizeChangesOnceAndTellsTheLastSize) {
    openWithMenu();
    takeWaitingEvents();
    for (int width = 641; width <= 700; ++width) {
        services::resizeWindow(services::mainWindow, width, 500);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::resize));
    EXPECT_EQ(700, services::windowWidth(services::mainWindow));
    EXPECT_EQ(500, services::windowHeight(services::mainWindow));
}

TEST_F(MainWindow, CannotBeMadeSmallerThanItsMinimum) {
    openWithMenu();
    takeWaitingEvents();
    services::resizeWindow(services::mainWindow, 100, 100);
    takeWaitingEvents();
    EXPECT_GE(services::windowWidth(services::mainWindow), 256);
    EXPECT_GE(services::windowHeight(services::mainWindow), 256);
}

TEST_F(MainWindow, AMenuChoiceIsReportedAndChangesNoMarkByItself) {
    openWithMenu();
    takeWaitingEvents();
    ASSERT_NE(nullptr, action("Balken"));
    EXPECT_TRUE(action("Balken")->isCheckable());
    action("Balken")->trigger();
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::menu));
    EXPECT_EQ(103, events.back().item);
    EXPECT_FALSE(action("Balken")->isChecked());
    services::setItemMark(103, true);
    EXPECT_TRUE(action("Balken")->isChecked());
    action("Balken")->trigger();
    EXPECT_TRUE(action("Balken")->isChecked());
}

TEST_F(MainWindow, ADisabledItemCannotBeChosen) {
    openWithMenu();
    takeWaitingEvents();
    services::setItemEnabled(103, false);
    EXPECT_FALSE(action("Balken")->isEnabled());
    action("Balken")->trigger();
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::menu));
}

TEST_F(MainWindow, AnAmpersandInAMenuTextIsNoMnemonic) {
    openWithMenu();
    EXPECT_NE(nullptr, action("Eins && Zwei"));
}

TEST_F(MainWindow, EscapeSendsItsItem) {
    openWithMenu();
    services::keyboardShortcut(services::mainWindow, services::escapeKey, 99);
    widget()->activateWindow();
    takeWaitingEvents();
    QTest::keyClick(widget(), Qt::Key_Escape);
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::menu));
    EXPECT_EQ(99, events.back().item);
}

TEST_F(MainWindow, ClicksOnTheImageAreLeftOrRight) {
    openWithMenu();
    takeWaitingEvents();
    QTest::mouseClick(imageWidget(), Qt::LeftButton);
    QTest::mouseClick(imageWidget(), Qt::RightButton);
    QTest::mouseClick(imageWidget(), Qt::MiddleButton);
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(2, count(events, EventKind::click));
    EXPECT_EQ(0, events.front().data);
    EXPECT_EQ(1, events.back().data);
    EXPECT_EQ(image, events.back().control);
}

TEST_F(MainWindow, ShowsThePictureAndFillsWhatItDoesNotCoverWithWhite) {
    openWithMenu();
    takeWaitingEvents();
    services::Surface surface;
    services::resizeSurface(surface, 100, 50, scaleFactor());
    services::fillSurface(surface, services::rgb(10, 20, 30));
    services::showImage(services::mainWindow, image, surface);
    const QImage shown = imageWidget()->grab().toImage();
    const int right = surface.deviceWidth;
    const int bottom = surface.deviceHeight;
    EXPECT_EQ(QColor(10, 20, 30), shown.pixelColor(right - 1, bottom - 1));
    EXPECT_EQ(QColor(Qt::white), shown.pixelColor(right, bottom - 1));
    EXPECT_EQ(QColor(Qt::white), shown.pixelColor(right - 1, bottom));
}

TEST_F(MainWindow, TheImageDescribesItselfToScreenReaders) {
    openWithMenu();
    services::describeControl(services::mainWindow, image,
                              "\xDC"
                              "bersicht");
    EXPECT_EQ(QStringLiteral("Übersicht"), imageWidget()->accessibleDescription());
}

TEST_F(MainWindow, TimersTickUntilTheyAreStopped) {
    openWithMenu();
    takeWaitingEvents();
    services::startWindowTimer(services::mainWindow, 1, 5);
    Event event;
    do
        event = services::waitEvent();
    while (event.kind != EventKind::timer);
    EXPECT_EQ(1, event.item);
    services::stopWindowTimer(services::mainWindow, 1);
    takeWaitingEvents();
    QTest::qWait(30);
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::timer));
}

TEST_F(MainWindow, ThePlatformsQuitArrivesAsAnItem) {
    openWithMenu();
    takeWaitingEvents();
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::menu));
    EXPECT_EQ(services::quitItem, events.back().item);
}

TEST_F(MainWindow, AnOwnedWindowCanStandRelativeToItsOwner) {
    openWithMenu();
    widget()->move(100, 60);
    takeWaitingEvents();
    ASSERT_TRUE(services::openWindow({.number = services::limitsWindow,
                                      .x = 30,
                                      .y = 40,
                                      .width = 50,
                                      .height = 50,
                                      .title = "Grenzwerte",
                                      .owner = services::mainWindow,
                                      .fromOwner = true}));
    const QWidget* owned = nullptr;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowTitle() == QLatin1String("Grenzwerte")) owned = window;
    }
    ASSERT_NE(nullptr, owned);
    EXPECT_EQ(widget()->pos() + QPoint(30, 40), owned->pos());
    services::closeWindow(services::limitsWindow);
}

TEST_F(MainWindow, NumbersThatAreNotOpenAreIgnored) {
    EXPECT_EQ(0, services::windowWidth(7));
    EXPECT_EQ(0, services::windowHeight(7));
    EXPECT_EQ(1.0, services::windowPixelRatio(7));
    EXPECT_EQ(0, services::pointerY(7));
    services::resizeWindow(7, 1, 1);
    services::closeWindow(7);
    services::showWindow(7);
    services::describeControl(7, 1, "x");
    services::showImage(7, 1, {});
    services::stopWindowTimer(7, 1);
    EXPECT_EQ(0, services::desktopWidth(99));
    EXPECT_EQ(0, services::desktopHeight(-1));
    EXPECT_GT(services::desktopWidth(0), 0);
}

}  // namespace
