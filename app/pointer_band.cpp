#include "app/pointer_band.h"

#include <algorithm>

#include "app/app_state.h"
#include "app/main_window.h"
#include "charts/chart_state.h"
#include "charts/range_band.h"
#include "services/windows.h"

namespace app {

namespace {

// The timer runs exactly as long as the pointer draws a band.
void startTracking() {
    state.tracking = true;
    services::startWindowTimer(services::mainWindow, bandTimer, bandTimerPeriod);
}

void stopTracking() {
    state.tracking = false;
    state.bandByKeys = false;
    state.keyPosition = 0;
    services::stopWindowTimer(services::mainWindow, bandTimer);
}

charts::ChartFrame currentFrame() {
    return charts::chartFrame(state.chartImage.width, state.chartImage.height);
}

void takeStep(int position) {
    const charts::BandStep step = charts::stepBand(position, state.lastMenuItem, state.tracking,
                                                   state.currentChart, currentFrame());
    switch (step.action) {
        case charts::BandAction::nothing:
            break;
        case charts::BandAction::redraw:
            redraw();
            break;
        case charts::BandAction::showBand:
            showBand(step.box);
            break;
    }
}

void beginBand() {
    // A band whose value lost its mark half way was never finished.
    charts::state.bandStart = 0;
    startTracking();
}

void endBand() {
    stopTracking();
    takeStep(charts::finishBand);
}

void removeLimits() {
    takeStep(charts::resetBand);
    stopTracking();
}

// A line where the keys are, as long as there is no band to see.
void showMark() {
    const int item = charts::bandItem(state.lastMenuItem, charts::readMarkedOptions());
    if (item == 0) return;
    showBand(charts::bandBox(currentFrame(), item, state.keyPosition, state.keyPosition + 1));
}

void beginBandByKeys() {
    const charts::ChartFrame frame = currentFrame();
    if (state.keyPosition == 0 || frame.height < 1) return;
    // The window may have become lower since.
    state.keyPosition = charts::clampToPlot(frame, state.keyPosition);
    charts::state.bandStart = 0;
    state.tracking = true;
    state.bandByKeys = true;
    takeStep(state.keyPosition);
    showMark();
}

// The first step puts the mark at the edge of the plot that the key comes from.
int movedPosition(const charts::ChartFrame& frame, int key, int step) {
    const int bottom = frame.top + frame.height;
    if (state.keyPosition == 0) return key == services::upKey ? bottom : frame.top;
    const int moved = state.keyPosition + (key == services::upKey ? -step : step);
    return std::clamp(moved, frame.top, bottom);
}

void moveMark(int key, int modifier) {
    const charts::ChartFrame frame = currentFrame();
    if (state.tracking && !state.bandByKeys) return;  // the pointer is drawing
    if (frame.height < 1) return;
    state.keyPosition = movedPosition(frame, key, modifier == services::controlModifier ? 10 : 1);
    if (state.bandByKeys) takeStep(state.keyPosition);
    if (!state.bandByKeys || charts::state.bandStart == state.keyPosition) showMark();
}

}  // namespace

void clickChart(int button) {
    if (state.lastMenuItem >= firstItemWithoutClicks) return;
    if (button == rightButton) removeLimits();
    if (button != leftButton) return;
    if (state.tracking)
        endBand();
    else
        beginBand();
}

void pressKeyOnChart(int key, int modifier) {
    if (state.lastMenuItem >= firstItemWithoutClicks) return;
    switch (key) {
        case services::upKey:
        case services::downKey:
            moveMark(key, modifier);
            break;
        case services::spaceKey:
            if (state.tracking)
                endBand();
            else
                beginBandByKeys();
            break;
        case services::deleteKey:
            removeLimits();
            break;
        default:
            break;
    }
}

void followPointer(int timer) {
    // A tick may still have waited when the timer stopped; it would begin a band.
    if (timer != bandTimer || !state.tracking || state.bandByKeys) return;
    // At or above the image's edge: 0 and below mean something else.
    takeStep(std::max(1, services::pointerY(services::mainWindow)));
}

}  // namespace app
