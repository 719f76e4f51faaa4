// Pictures that change in parts: what stands on the screen afterwards, not what a new painting of
// the whole window would show.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QTest>
#include <random>
#include <vector>

#include "services/raster/raster.h"
#include "services/windows.h"
#include "tests/windows/window_test.h"

namespace {

constexpr int image = 1;

class ImageParts : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        openMainWindow(400, 300);
        services::createImageControl(services::mainWindow, image, "Diagramm");
        services::showWindow(services::mainWindow);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(widget()));
        services::resizeSurface(surface, services::windowWidth(services::mainWindow),
                                services::windowHeight(services::mainWindow), scaleFactor());
        services::showImage(services::mainWindow, image, surface);
        QCoreApplication::processEvents();
    }

    // The window's pixels as they were last painted.
    QImage screen() const {
        QCoreApplication::processEvents();
        const auto* painted = dynamic_cast<QImage*>(widget()->backingStore()->paintDevice());
        return painted == nullptr ? QImage() : painted->convertToFormat(QImage::Format_RGB32);
    }

    void expectOnScreen() const {
        const QImage shown = screen();
        ASSERT_EQ(shown.width(), surface.deviceWidth);
        ASSERT_EQ(shown.height(), surface.deviceHeight);
        for (int y = 0; y < surface.deviceHeight; ++y) {
            for (int x = 0; x < surface.deviceWidth; ++x) {
                ASSERT_EQ(shown.pixel(x, y),
                          surface.pixels[static_cast<std::size_t>(y) *
                                             static_cast<std::size_t>(surface.deviceWidth) +
                                         static_cast<std::size_t>(x)])
                    << x << ", " << y;
            }
        }
    }

    services::Surface surface;
};

TEST_F(ImageParts, StandOnTheScreenAtEveryPlaceAndRatio) {
    std::mt19937 random(3);
    const auto between = [&random](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    };
    for (int i = 0; i < 40; ++i) {
        std::vector<services::DeviceBox> changed;
        for (int k = 0; k < 3; ++k) {
            const int x = between(-20, 400);
            const int y = between(-20, 300);
            const int width = between(1, 60);
            const int height = between(1, 60);
            services::fillBox(surface, x, y, width, height, between(0, 0xFFFFFF));
            changed.push_back(services::boxPixels(surface.pixelRatio, x, y, width, height));
        }
        services::showImageParts(services::mainWindow, image, surface, changed);
        ASSERT_NO_FATAL_FAILURE(expectOnScreen()) << i;
    }
}

TEST_F(ImageParts, AreAllThatChanges) {
    services::fillSurface(surface, services::black);
    const auto box = services::boxPixels(surface.pixelRatio, 10, 20, 30, 40);
    services::showImageParts(services::mainWindow, image, surface, {{box}});
    services::fillSurface(surface, services::white);
    services::fillBox(surface, 10, 20, 30, 40, services::black);
    expectOnScreen();
}

TEST_F(ImageParts, OfAPictureOfAnotherSizeAreTheWholePicture) {
    services::resizeSurface(surface, 200, 100, scaleFactor());
    services::fillSurface(surface, services::black);
    services::showImageParts(services::mainWindow, image, surface, {});
    const QImage shown = screen();
    ASSERT_FALSE(shown.isNull());
    EXPECT_EQ(shown.pixel(surface.deviceWidth - 1, surface.deviceHeight - 1), 0xFF000000U);
    EXPECT_EQ(shown.pixel(surface.deviceWidth, surface.deviceHeight), 0xFFFFFFFFU);
}

TEST_F(ImageParts, OfAnUnknownControlAreIgnored) {
    services::showImageParts(services::mainWindow, 3, surface, {});
    services::showImageParts(services::listWindow, image, surface, {});
}

}  // namespace
