#include "files/report_window.h"

#include "services/events.h"
#include "services/windows.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using services::Event;
using services::EventKind;
using services::reportWindow;
using stand_ins::StandInTest;
using stand_ins::world;

constexpr files::ReportWindow report = {
    .title = "Bericht", .width = 300, .textWidth = 284, .mainHeight = 650};

constexpr Event closing = {.kind = EventKind::close, .window = reportWindow};
constexpr Event escape = {.kind = EventKind::menu, .window = reportWindow, .item = 1};

const stand_ins::ControlRecord& text() {
    return world.windows.at(reportWindow).controls.at(files::reportText);
}

class Reports : public StandInTest {};

TEST_F(Reports, EveryLineIsShownAtOnceAndEndsWithACarriageReturn) {
    ASSERT_TRUE(files::openReport(report));
    const int opened = world.repaints;
    EXPECT_GT(opened, 0);
    files::addReportLine("+ eins");
    EXPECT_EQ(opened + 1, world.repaints);
    files::addReportLine("- zwei");
    EXPECT_EQ(opened + 2, world.repaints);
    EXPECT_EQ("+ eins\r- zwei\r", text().text);
    EXPECT_EQ(files::reportText, world.windows.at(reportWindow).focus);
    services::closeWindow(reportWindow);
}

TEST_F(Reports, WhatTheUserDidWhileTheReportGrewIsForgotten) {
    ASSERT_TRUE(files::openReport(report));
    world.events = {closing, escape, escape};
    world.happenedEvents = 2;
    files::waitUntilReportIsRead(report);
    EXPECT_EQ(1, world.eventsWaitedFor);
    EXPECT_FALSE(world.windows.contains(reportWindow));
}

TEST_F(Reports, StayUntilTheyAreClosedOrEscapeIsPressed) {
    for (const Event& last : {closing, escape}) {
        ASSERT_TRUE(files::openReport(report));
        world.eventsWaitedFor = 0;
        world.events = {
            {.kind = EventKind::close, .window = services::mainWindow},
            {.kind = EventKind::menu, .window = services::listWindow, .item = 1},
            {.kind = EventKind::menu, .window = reportWindow, .item = 2},
            {.kind = EventKind::control, .window = reportWindow, .control = files::reportText},
            last};
        files::waitUntilReportIsRead(report);
        EXPECT_EQ(5, world.eventsWaitedFor);
        EXPECT_TRUE(world.events.empty());
        EXPECT_FALSE(world.windows.contains(reportWindow));
    }
}

TEST_F(Reports, TheTextFollowsTheWindow) {
    ASSERT_TRUE(files::openReport(report));
    EXPECT_EQ(588, world.windows.at(reportWindow).height);
    EXPECT_EQ((services::Box{8, 8, 284, 576}), text().box);
    world.events = {{.kind = EventKind::resize, .window = reportWindow}, closing};
    world.beforeEvent = [](int call) {
        if (call == 0) {
            world.windows.at(reportWindow).width = 320;
            world.windows.at(reportWindow).height = 500;
        } else {
            EXPECT_EQ((services::Box{8, 8, 304, 488}), text().box);
        }
    };
    files::waitUntilReportIsRead(report);
    EXPECT_EQ(2, world.eventsWaitedFor);
}

TEST_F(Reports, AWindowThatCannotBeOpenedIsNoReport) {
    world.windowsOpen = false;
    EXPECT_FALSE(files::openReport(report));
    EXPECT_FALSE(world.windows.contains(reportWindow));
}

}  // namespace
