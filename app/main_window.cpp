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

int atLeastSmallest(int size) {
    return std::max(size, smallestWindowSize);
}

// On the screen that the window is on now.
bool imageFitsWindow() {
    const services::Surface& image = state.chartImage;
    return image.width == atLeastSmallest(services::windowWidth(services::mainWindow)) &&
           image.height == atLeastSmallest(services::windowHeight(services::mainWindow)) &&
           image.pixelRatio == services::windowPixelRatio(services::mainWindow);
}

// Since the picture was drawn.
bool hasWindowChanged() {
    return state.chartImage.width != services::windowWidth(services::mainWindow) ||
           state.chartImage.height != services::windowHeight(services::mainWindow) ||
           !imageFitsWindow();
}

// Keeps the size in range and remembers it for the start settings.
void takeWindowSize() {
    const int width = services::windowWidth(services::mainWindow);
    const int height = services::windowHeight(services::mainWindow);
    settings::state.windowWidth = atLeastSmallest(width);
    settings::state.windowHeight = atLeastSmallest(height);
    if (settings::state.windowWidth != width || settings::state.windowHeight != height) {
        services::resizeWindow(services::mainWindow, settings::state.windowWidth,
                               settings::state.windowHeight);
    }
}

// The picture becomes white.
void fitImageToWindow() {
    services::resizeSurface(state.chartImage,
                            atLeastSmallest(services::windowWidth(services::mainWindow)),
                            atLeastSmallest(services::windowHeight(services::mainWindow)),
                            services::windowPixelRatio(services::mainWindow));
    describePicture(charts::describeEmptyPicture());
}

// Whether drawing the chart would give the picture that there is, its size aside.
bool isPictureOfNow() {
    bool isSame = false;
    static_cast<void>(services::withinMemory(
        [&isSame] { isSame = state.drawnDigest == charts::digestOfChart(state.currentChart); }));
    return isSame;
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
    if (!imageFitsWindow()) fitImageToWindow();
    state.drawnDigest.reset();
    const bool complete = services::withinMemory([] {
        charts::ShownChart shown;
        const bool isDrawn = charts::drawChart(state.currentChart, state.chartImage, &shown);
        state.drawnDigest = shown.digest;
        if (!isDrawn) return;
        describePicture(services::concatenate(charts::describeChart(shown), ". "_l1, keysOfBand));
    });
    if (!complete) {
        // No picture rather than a part of one.
        services::fillSurface(state.chartImage, services::white);
        state.drawnDigest.reset();
    }
    showChartImage();
    if (!complete) describePicture(charts::describeEmptyPicture());
}

void followWindow() {
    takeWindowSize();
    // A window that only moved keeps its picture, unless that shows what is no more.
    if (!imageFitsWindow() || !isPictureOfNow()) redraw();
}

void rememberWindow() {
    if (hasWindowChanged()) takeWindowSize();
}

void catchUpWithWindow() {
    if (hasWindowChanged()) followWindow();
}

void fitUnchangedChart() {
    if (!imageFitsWindow() && isPictureOfNow()) redraw();
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
