#include "app/pointer_band.h"

#include <algorithm>

#include "app/app_state.h"
#include "app/main_window.h"
#include "charts/chart_state.h"
#include "charts/range_band.h"
#include "services/windows.h"

namespace app {

namespace {

// The timer runs exactly as long as the flag is set.
void setTracking(bool on) {
    state.tracking = on;
    if (on) {
        services::startWindowTimer(services::mainWindow, bandTimer, bandTimerPeriod);
    } else {
        services::stopWindowTimer(services::mainWindow, bandTimer);
    }
}

void takeStep(int position) {
    const charts::ChartFrame frame =
        charts::chartFrame(state.chartImage.width, state.chartImage.height);
    const charts::BandStep step =
        charts::stepBand(position, state.lastMenuItem, state.tracking, state.currentChart, frame);
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
    setTracking(true);
}

void endBand() {
    setTracking(false);
    takeStep(charts::finishBand);
}

void removeLimits() {
    takeStep(charts::resetBand);
    setTracking(false);
}

}  // namespace

void clickChart(int button) {
    if (state.lastMenuItem > lastItemForClicks) return;
    if (button == rightButton) removeLimits();
    if (button != leftButton) return;
    if (state.tracking)
        endBand();
    else
        beginBand();
}

void followPointer(int timer) {
    // A tick may still have waited when the timer stopped; it would begin a band.
    if (timer != bandTimer || !state.tracking) return;
    // At or above the image's edge: 0 and below mean something else.
    takeStep(std::max(1, services::pointerY(services::mainWindow)));
}

}  // namespace app
