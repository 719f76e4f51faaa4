// The band that the pointer draws over the chart: clicks and ticks of the real toolkit.
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "app/event_loop.h"
#include "app/pointer_band.h"
#include "tests/windows/program_windows.h"

namespace {

using services::Event;
using services::EventKind;

class PointerBandWindow : public ProgramWindows {
  protected:
    static QPoint place() { return imageWidget()->mapTo(widget(), imageWidget()->rect().center()); }

    // The program takes what the toolkit has reported.
    static void dispatchWaitingEvents() {
        for (const Event& event : takeWaitingEvents())
            app::dispatchEvent(event);
    }

    static std::vector<int> periods() {
        std::vector<int> found;
        for (const QTimer* timer : widget()->findChildren<QTimer*>()) {
            if (timer->isActive()) found.push_back(timer->interval());
        }
        return found;
    }
};

TEST_F(PointerBandWindow, TicksEvery20MillisecondsFromOneClickToTheNext) {
    EXPECT_EQ(std::vector<int>{}, periods());
    QTest::mouseClick(widget()->windowHandle(), Qt::LeftButton, {}, place());
    dispatchWaitingEvents();
    EXPECT_TRUE(app::state.tracking);
    EXPECT_EQ(std::vector<int>{20}, periods());

    // Never more often, however late one of them may come.
    QElapsedTimer clock;
    constexpr int ticks = 5;
    for (int tick = 0; tick <= ticks;) {
        const Event event = services::waitEvent();
        if (event.kind != EventKind::timer) continue;
        EXPECT_EQ(app::bandTimer, event.item);
        if (tick++ == 0) clock.start();
    }
    // The first may have come late by almost a period, and clocks differ by a millisecond.
    EXPECT_GE(clock.elapsed(), (ticks - 1) * 20 - 1);

    QTest::mouseClick(widget()->windowHandle(), Qt::LeftButton, {}, place());
    dispatchWaitingEvents();
    EXPECT_FALSE(app::state.tracking);
    EXPECT_EQ(std::vector<int>{}, periods());
}

TEST_F(PointerBandWindow, AFastDoubleClickIsTwoClicks) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        QTest::mouseDClick(widget()->windowHandle(), button, {}, place());
        std::vector<int> clicks;
        for (const Event& event : takeWaitingEvents()) {
            if (event.kind == EventKind::click) clicks.push_back(event.data);
        }
        const int data = button == Qt::LeftButton ? 0 : 1;
        EXPECT_EQ((std::vector<int>{data, data}), clicks);
    }
}

// The second one ends what the first began.
TEST_F(PointerBandWindow, AFastDoubleClickLeavesNoBand) {
    QTest::mouseDClick(widget()->windowHandle(), Qt::LeftButton, {}, place());
    dispatchWaitingEvents();
    EXPECT_FALSE(app::state.tracking);
    EXPECT_EQ(std::vector<int>{}, periods());
}

}  // namespace
