#include "app/main_window.h"

#include <algorithm>
#include <array>
#include <vector>

#include "app/app_state.h"
#include "charts/chart_description.h"
#include "charts/chart_drawing.h"
#include "services/controls.h"
#include "services/disk/memory.h"
#include "services/text/text.h"
#include "services/windows.h"
#include "settings/settings_state.h"

namespace app {

using services::operator""_l1;

namespace {

// Who can't use the pointer learns the keys where the picture is told.
constexpr services::TextView keysOfBand =
    "Grenzwerte mit der Tastatur: Umschalt oder Strg und Pfeil auf oder ab bewegt eine Marke, die "
    "Leertaste beginnt und beendet den Bereich, Entf entfernt die Grenzwerte."_l1;

void describePicture(services::TextView description) {
    services::describeControl(services::mainWindow, chartImageControl, description);
}

// The picture becomes white.
void fitImageToWindow() {
    services::resizeSurface(state.chartImage, settings::state.windowWidth,
                            settings::state.windowHeight,
                            services::windowPixelRatio(services::mainWindow));
    describePicture(charts::describeEmptyPicture());
}

// On the screen that the window is on now.
bool imageHasSize(int width, int height) {
    return state.chartImage.width == width && state.chartImage.height == height &&
           state.chartImage.pixelRatio == services::windowPixelRatio(services::mainWindow);
}

// The chart without a band.
void showChartImage() {
    services::showImage(services::mainWindow, chartImageControl, state.chartImage);
    state.bandImage = {};
}

std::array<services::DeviceBox, 4> edgesOf(const charts::BandBox& band) {
    return services::framePixels(state.chartImage.pixelRatio, band.x, band.y, band.width,
                                 band.height);
}

}  // namespace

bool openMainWindow() {
    const services::WindowRow row = {
        .number = services::mainWindow,
        .x = 1,
        .y = 1,
        .width = settings::state.windowWidth,
        .height = settings::state.windowHeight,
        .minimumWidth = smallestWindowSize,
        .minimumHeight = smallestWindowSize,
        .title = "Kurbelbuch"_l1,
    };
    if (!services::openWindow(row)) return false;
    services::createImageControl(services::mainWindow, chartImageControl, "Diagramm"_l1);
    services::focusControl(services::mainWindow, chartImageControl);
    fitImageToWindow();
    showChartImage();
    return true;
}

void redraw() {
    const bool complete = services::withinMemory([] {
        charts::ShownChart shown;
        if (!charts::drawChart(state.currentChart, state.chartImage, &shown)) return;
        describePicture(services::concatenate(charts::describeChart(shown), ". "_l1, keysOfBand));
    });
    // No picture rather than a part of one.
    if (!complete) services::fillSurface(state.chartImage, services::white);
    showChartImage();
    if (!complete) describePicture(charts::describeEmptyPicture());
}

void followWindow() {
    const int width = services::windowWidth(services::mainWindow);
    const int height = services::windowHeight(services::mainWindow);
    settings::state.windowWidth = std::max(width, smallestWindowSize);
    settings::state.windowHeight = std::max(height, smallestWindowSize);
    if (settings::state.windowWidth != width || settings::state.windowHeight != height) {
        services::resizeWindow(services::mainWindow, settings::state.windowWidth,
                               settings::state.windowHeight);
    }
    // A window that only moved keeps its picture.
    if (imageHasSize(settings::state.windowWidth, settings::state.windowHeight)) return;
    fitImageToWindow();
    redraw();
}

void catchUpWithWindow() {
    if (imageHasSize(services::windowWidth(services::mainWindow),
                     services::windowHeight(services::mainWindow))) {
        return;
    }
    followWindow();
}

// Only the band's edges change: what the last one covered comes back, then the new one is drawn.
void showBand(const charts::BandBox& box) {
    services::Surface& image = state.bandImage;
    std::vector<services::DeviceBox> changed;
    if (image.pixels.empty()) {
        image = state.chartImage;
    } else {
        for (const services::DeviceBox& edge : edgesOf(state.shownBand)) {
            services::copyBox(image, state.chartImage, edge);
            changed.push_back(edge);
        }
    }
    services::drawFrame(image, box.x, box.y, box.width, box.height, services::black);
    state.shownBand = box;
    for (const services::DeviceBox& edge : edgesOf(box))
        changed.push_back(edge);
    services::showImageParts(services::mainWindow, chartImageControl, image, changed);
}

}  // namespace app
