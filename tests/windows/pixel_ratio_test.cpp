// Windows on screens of every density. The build runs all window tests under several of them.
#include <QBackingStore>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <random>

#include "tests/windows/window_test.h"

namespace {

using services::EventKind;
using services::Surface;

class PixelRatio : public WindowTest {
  protected:
    static constexpr int image = 1;

    void open(int width, int height, const std::string& menu) {
        openMainWindow(width, height);
        services::createImageControl(services::mainWindow, image, "Diagramm");
        const services::MenuRow rows[] = {{services::MenuRowKind::title, 0, menu}};
        if (!menu.empty()) services::buildMenuBar(services::mainWindow, rows);
        services::showWindow(services::mainWindow);
        takeWaitingEvents();
    }

    static Surface noise() {
        Surface surface;
        services::resizeSurface(surface, services::windowWidth(services::mainWindow),
                                services::windowHeight(services::mainWindow),
                                services::windowPixelRatio(services::mainWindow));
        std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same picture on every run
        for (std::uint32_t& pixel : surface.pixels)
            pixel = 0xFF000000U | (random() & 0xFFFFFFU);
        return surface;
    }

    // How many pixels of the picture are not where they belong in what the window shows. Where both
    // the bar and the picture end in half a pixel, the last row hangs out of the window.
    static int misplacedPixels(const Surface& surface, const QImage& window) {
        const QPoint corner = imageWidget()->mapTo(widget(), QPoint(0, 0));
        const int left = qRound(corner.x() * surface.pixelRatio);
        const int top = qRound(corner.y() * surface.pixelRatio);
        EXPECT_LE(left + surface.deviceWidth, window.width());
        EXPECT_LE(top + surface.deviceHeight, window.height() + 1);
        const int rows = std::min(surface.deviceHeight, window.height() - top);
        int misplaced = 0;
        const std::uint32_t* expected = surface.pixels.data();
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < surface.deviceWidth; ++x) {
                if (window.pixel(left + x, top + y) != *expected++) ++misplaced;
            }
        }
        return misplaced;
    }

    // What the window hands to the screen, device pixel by device pixel.
    static QImage screenshot() {
        const QPaintDevice* const device = widget()->backingStore()->paintDevice();
        EXPECT_EQ(QInternal::Image, device->devType());
        return *static_cast<const QImage*>(device);
    }
};

TEST_F(PixelRatio, IsToldByTheWindow) {
    open(640, 480, "Programm");
    EXPECT_EQ(scaleFactor(), services::windowPixelRatio(services::mainWindow));
}

TEST_F(PixelRatio, APictureIsShownPixelForPixelBelowTheMenuBar) {
    struct Row {
        const char* name;
        int width;
        int height;
        const char* menu;
    };
    const Row rows[] = {
        {"even", 640, 480, "Programm"},
        {"odd", 643, 481, "Programm"},
        {"without a menu bar", 643, 481, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        open(row.width, row.height, row.menu);
        const Surface surface = noise();
        ASSERT_EQ(static_cast<int>(std::floor(row.width * scaleFactor() + 0.5)),
                  surface.deviceWidth);
        services::showImage(services::mainWindow, image, surface);
        takeWaitingEvents();
        EXPECT_EQ(0, misplacedPixels(surface, screenshot()));
        EXPECT_EQ(0, misplacedPixels(surface, widget()->grab().toImage()));
        services::closeWindow(services::mainWindow);
    }
}

TEST_F(PixelRatio, APictureIsPaintedAsItIs) {
    open(300, 300, "Programm");
    Surface surface = noise();
    services::showImage(services::mainWindow, image, surface);
    takeWaitingEvents();
    services::fillSurface(surface, services::rgb(10, 20, 30));
    EXPECT_EQ(0, misplacedPixels(surface, widget()->grab().toImage()));
    services::resizeSurface(surface, 0, 0, 1);
    services::resizeSurface(surface, 100, 100, scaleFactor());
    EXPECT_EQ(0xFFFFFFFFU, imageWidget()->grab().toImage().pixel(0, 0));
    services::resizeSurface(surface, 0, 0, 1);
    EXPECT_EQ(0xFFFFFFFFU, imageWidget()->grab().toImage().pixel(0, 0));
    services::closeWindow(services::mainWindow);
}

TEST_F(PixelRatio, AnotherScreenIsReportedAsANewSizeAndTellsItsOwnRatio) {
    ASSERT_EQ(2, QGuiApplication::screens().size());
    QScreen* const second = QGuiApplication::screens().back();
    open(300, 300, "Programm");
    widget()->move(second->geometry().topLeft() + QPoint(30, 30));
    const std::vector<services::Event> events = takeWaitingEvents();
    EXPECT_EQ(1, count(events, EventKind::resize));
    EXPECT_EQ(2 * scaleFactor(), services::windowPixelRatio(services::mainWindow));
    EXPECT_EQ(300, services::windowWidth(services::mainWindow));
}

TEST_F(PixelRatio, AnotherScreenOfTheSameRatioIsNoNewSize) {
    open(300, 300, "Programm");
    QEvent change(QEvent::ScreenChangeInternal);
    QCoreApplication::sendEvent(imageWidget()->parentWidget(), &change);
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::resize));
}

// As when the user gives the desktop another scale; the Qt that tells of it may be newer than this
// one.
TEST_F(PixelRatio, ANewRatioOfTheSameScreenIsReportedAsANewSize) {
    open(300, 300, "Programm");
    QEvent change(static_cast<QEvent::Type>(222));
    QCoreApplication::sendEvent(imageWidget()->parentWidget(), &change);
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::resize));
}

}  // namespace
