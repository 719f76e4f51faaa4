// Places, titles, owners and events of windows.
#include "services/windows.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QTest>

#include "services/controls.h"
#include "tests/windows/window_test.h"

namespace {

using services::Event;
using services::EventKind;

class Windows : public WindowTest {
  protected:
    static constexpr int image = 1;

    void TearDown() override {
        for (const int number : {services::listWindow, services::limitsWindow,
                                 services::reportWindow, services::infoWindow})
            services::closeWindow(number);
        WindowTest::TearDown();
    }

    void show() {
        openMainWindow();
        services::createImageControl(services::mainWindow, image, "Diagramm");
        const services::MenuRow rows[] = {{services::MenuRowKind::title, 0, "Programm"}};
        services::buildMenuBar(services::mainWindow, rows);
        services::showWindow(services::mainWindow);
        takeWaitingEvents();
    }

    static QWidget* titled(const QString& title) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == title) return window;
        }
        return nullptr;
    }

    static void openOwned(int number, int owner, const char* title) {
        ASSERT_TRUE(services::openWindow(
            {.number = number, .width = 90, .height = 50, .title = title, .owner = owner}));
        services::showWindow(number);
    }

    // As many as have come to this widget since.
    class PaintCounter : public QObject {
      public:
        explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
        int paints = 0;

      protected:
        bool eventFilter(QObject* watched, QEvent* event) override {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return QObject::eventFilter(watched, event);
        }
    };

    static void clickLater() {
        const QPointF centre = imageWidget()->rect().center();
        QCoreApplication::postEvent(
            imageWidget(),
            new QMouseEvent(QEvent::MouseButtonPress, centre, imageWidget()->mapToGlobal(centre),
                            Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    }
};

TEST_F(Windows, OpenAtTheTopLeftCornerOfTheMainScreen) {
    show();
    EXPECT_EQ(QPoint(1, 1), widget()->pos());
}

TEST_F(Windows, OpenWhereTheirRowSays) {
    ASSERT_TRUE(services::openWindow({.number = services::listWindow,
                                      .x = 31,
                                      .y = 47,
                                      .width = 90,
                                      .height = 50,
                                      .title = "Gr\xF6\xDF"
                                               "e <b> & mehr"}));
    services::showWindow(services::listWindow);
    QWidget* const opened = titled(QStringLiteral("Größe <b> & mehr"));
    ASSERT_NE(nullptr, opened);
    EXPECT_EQ(QPoint(31, 47), opened->pos());
    EXPECT_EQ(90, services::windowWidth(services::listWindow));
    EXPECT_EQ(50, services::windowHeight(services::listWindow));
}

TEST_F(Windows, ReportThatTheyWereMovedOnceTheyAreVisible) {
    openMainWindow();
    widget()->move(90, 80);
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::move));
    services::showWindow(services::mainWindow);
    takeWaitingEvents();
    widget()->move(200, 150);
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::move));
    EXPECT_EQ(services::mainWindow, events.back().window);
}

TEST_F(Windows, ReportThatTheyWereMinimizedAndRestored) {
    show();
    openOwned(services::infoWindow, services::mainWindow, "Programminfo");
    takeWaitingEvents();
    for (const auto& [title, number] :
         {std::pair("Kurbelbuch", services::mainWindow), {"Programminfo", services::infoWindow}}) {
        QWidget* const window = titled(QLatin1String(title));
        for (const auto change : {&QWidget::showMinimized, &QWidget::showNormal}) {
            (window->*change)();
            std::vector<int> zoomed;
            for (const Event& event : takeWaitingEvents()) {
                if (event.kind == EventKind::zoom) zoomed.push_back(event.window);
            }
            EXPECT_EQ(std::vector<int>{number}, zoomed);
        }
    }
}

TEST_F(Windows, DoNotReportWhereTheyAreShown) {
    show();
    widget()->hide();
    takeWaitingEvents();
    widget()->move(300, 200);
    widget()->show();
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::move));
}

TEST_F(Windows, ReportTheirNewSizeWhenMaximized) {
    show();
    widget()->showMaximized();
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::resize));
    EXPECT_GT(services::windowWidth(services::mainWindow), 640);
}

TEST_F(Windows, OwnedOnesAreDialogsOfTheirOwner) {
    show();
    openOwned(services::infoWindow, services::mainWindow, "Programminfo");
    const QWidget* const owned = titled(QStringLiteral("Programminfo"));
    ASSERT_NE(nullptr, owned);
    EXPECT_EQ(widget(), owned->parentWidget());
    EXPECT_EQ(Qt::Dialog, owned->windowType());
    EXPECT_TRUE(owned->isWindow());
    EXPECT_FALSE(owned->isModal());
    EXPECT_EQ(widget()->windowHandle(), owned->windowHandle()->transientParent());
    EXPECT_EQ(Qt::Window, widget()->windowType());
    EXPECT_EQ(nullptr, widget()->parentWidget());
    EXPECT_EQ(QPoint(1, 1), owned->pos());
}

TEST_F(Windows, OwnedOnesCloseBeforeTheirOwner) {
    // Owners with smaller and with larger numbers than what they own, two deep.
    ASSERT_TRUE(services::openWindow({.number = services::limitsWindow, .title = "Besitzer"}));
    openOwned(services::listWindow, services::limitsWindow, "Liste");
    openOwned(services::reportWindow, services::listWindow, "Bericht");
    openOwned(services::infoWindow, services::limitsWindow, "Programminfo");
    openMainWindow();
    const QPointer<QWidget> report = titled(QStringLiteral("Bericht"));
    ASSERT_FALSE(report.isNull());
    services::closeWindow(services::limitsWindow);
    EXPECT_TRUE(report.isNull());
    for (const int number : {services::limitsWindow, services::listWindow, services::reportWindow,
                             services::infoWindow}) {
        EXPECT_EQ(0, services::windowWidth(number)) << number;
        services::closeWindow(number);
    }
    EXPECT_EQ(640, services::windowWidth(services::mainWindow));
}

TEST_F(Windows, ASecondOneOfTheSameNumberReplacesTheFirst) {
    openMainWindow();
    openOwned(services::listWindow, services::mainWindow, "Liste");
    const QPointer<QWidget> first = widget();
    openMainWindow(300, 310);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(300, services::windowWidth(services::mainWindow));
    EXPECT_EQ(0, services::windowWidth(services::listWindow));
}

TEST_F(Windows, EachTellsItsOwnEvents) {
    show();
    openOwned(services::infoWindow, services::mainWindow, "Programminfo");
    takeWaitingEvents();
    titled(QStringLiteral("Programminfo"))->close();
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::close));
    EXPECT_EQ(services::infoWindow, events.back().window);
}

TEST_F(Windows, ThePointerIsMeasuredInTheContentArea) {
    show();
    const QPoint content = imageWidget()->mapToGlobal(QPoint(0, 0));
    ASSERT_GT(content.y(), widget()->mapToGlobal(QPoint(0, 0)).y());
    for (const int y : {0, 100, 200, -10}) {
        QCursor::setPos(content + QPoint(50, y));
        // The pointer stands on whole device pixels.
        EXPECT_NEAR(y, services::pointerY(services::mainWindow), scaleFactor() == 1.0 ? 0 : 1);
    }
}

TEST_F(Windows, CountAndMeasureTheScreens) {
    const QScreen* const main = QGuiApplication::primaryScreen();
    ASSERT_EQ(2, services::desktopCount());
    EXPECT_EQ(QStringLiteral("Hauptbildschirm"), main->name());
    EXPECT_EQ(main->geometry().width(), services::desktopWidth(0));
    EXPECT_EQ(main->geometry().height(), services::desktopHeight(0));
    const QScreen* const other = QGuiApplication::screens().back();
    ASSERT_NE(main->geometry().size(), other->geometry().size());
    EXPECT_EQ(other->geometry().width(), services::desktopWidth(1));
    EXPECT_EQ(other->geometry().height(), services::desktopHeight(1));
    EXPECT_EQ(0, services::desktopWidth(2));
    EXPECT_EQ(0, services::desktopHeight(2));
    EXPECT_EQ(0, services::desktopWidth(-1));
}

TEST_F(Windows, RepaintInTheMiddleOfALongAction) {
    show();
    PaintCounter counter(imageWidget());
    services::Surface surface;
    services::resizeSurface(surface, 640, 480, 1.0);
    services::showImage(services::mainWindow, image, surface);
    EXPECT_EQ(0, counter.paints);
    QTest::qSleep(25);  // the last repaint may have been just now
    clickLater();
    services::letWindowsRepaint();
    EXPECT_EQ(1, counter.paints);
    // What the user did meanwhile is not lost.
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::click));
}

TEST_F(Windows, RepaintNoOftenerThanAnEyeCanFollow) {
    show();
    PaintCounter counter(imageWidget());
    services::Surface surface;
    services::resizeSurface(surface, 640, 480, 1.0);
    constexpr int calls = 1000;
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < calls; ++i) {
        services::showImage(services::mainWindow, image, surface);
        services::letWindowsRepaint();
    }
    EXPECT_LE(counter.paints, 1 + time.elapsed() / 20);
    QTest::qSleep(25);
    const int before = counter.paints;
    services::showImage(services::mainWindow, image, surface);
    services::letWindowsRepaint();
    EXPECT_EQ(before + 1, counter.paints);
}

TEST_F(Windows, ForgetWhatTheUserDidMeanwhile) {
    show();
    QTest::mouseClick(imageWidget(), Qt::LeftButton);
    clickLater();  // not an event of the program yet
    services::dropWaitingEvents();
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::click));
    clickLater();
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::click));
}

TEST_F(Windows, ShowPicturesInImageControlsAlone) {
    show();
    services::Surface surface;
    services::resizeSurface(surface, 10, 10, 1.0);
    services::showImage(services::mainWindow, 3, surface);
    services::showImage(services::listWindow, image, surface);
    ASSERT_TRUE(services::openWindow({.number = services::listWindow, .title = "Liste"}));
    services::createButton(services::listWindow, 7, {0, 0, 50, 20}, "Knopf");
    services::showImage(services::listWindow, 7, surface);
    EXPECT_EQ("Knopf", services::controlText(services::listWindow, 7));
}

}  // namespace
