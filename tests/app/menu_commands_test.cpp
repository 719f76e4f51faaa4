// The menu's commands that open dialogs or touch the settings, through the main loop.
#include <fstream>

#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "charts/values/chart_options.h"
#include "services/disk/directories.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"
#include "tests/charts/chart_test.h"

namespace {

using services::Event;
using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

class MenuCommands : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        builders::writeCard(directory, 3);
        ASSERT_TRUE(app::startUp({}));
    }

    static void choose(int item) { app::dispatchEvent({.kind = EventKind::menu, .item = item}); }

    static stand_ins::WindowRecord& window() { return world.windows.at(services::mainWindow); }
    static const services::Surface& picture() { return window().images.at(app::chartImageControl); }

    static void expectReloadMessage() {
        stand_ins::expectMessage("Info"_l1, "Die Starteinstellungen wurden geladen!"_l1);
    }
    static void answerDeletion(bool yes) {
        world.questionAnswers.push_back(
            {services::Text("Starteinstellungen zurücksetzen"_l1),
             services::Text("Sollen die Starteinstellungen wirklich gelöscht werden?"_l1), yes});
    }
    void write(const std::string& text) const {
        std::ofstream(directory / "Einstellungen.dat", std::ios::binary) << text;
    }
};

TEST_F(MenuCommands, Item4SavesTheLiveSize) {
    window().width = 640;
    window().height = 200;
    app::dispatchEvent({.kind = EventKind::resize});
    stand_ins::expectMessage("Preferences"_l1,
                             "Die aktuellen Einstellungen der Übersicht wurden als "
                             "Starteinstellungen gespeichert!"_l1);
    choose(4);
    std::ifstream stream(directory / "Einstellungen.dat", std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)), {});
    EXPECT_EQ(0U, text.find("[Programmeinstellungen]\nWindowBreite = 640\nWindowH\xF6he = 256\n"
                            "Verzeichnis = " +
                            directory.string() + "/data/result/ergo_bike/\n"));
    EXPECT_EQ(directory.string() + "/", services::currentDirectory());
}

TEST_F(MenuCommands, Item5LoadsMarksAndDrawsButDoesNotResizeTheWindow) {
    const auto before = picture().pixels;
    write(
        "[Programmeinstellungen]\nWindowBreite = 700\nWindowH\xF6he = 300\n"
        "[Men\xFCvorwahl]\nMenu 203 = 1\n");
    expectReloadMessage();
    choose(5);
    EXPECT_TRUE(services::itemMark(203));
    EXPECT_NE(before, picture().pixels);
    EXPECT_EQ(700, settings::state.windowWidth);
    EXPECT_EQ(900, window().width);
    EXPECT_EQ(900, picture().width);
    // The next size event brings the live size back.
    app::dispatchEvent({.kind = EventKind::move});
    EXPECT_EQ(900, settings::state.windowWidth);
    EXPECT_EQ(560, settings::state.windowHeight);
}

TEST_F(MenuCommands, Item6DrawsInTheDefaultColoursAndKeepsTheMarks) {
    choose(203);
    const auto before = picture().pixels;
    charts::state.colours[3] = 255;
    app::redraw();
    ASSERT_NE(before, picture().pixels);
    answerDeletion(true);
    choose(6);
    EXPECT_TRUE(services::itemMark(203));
    EXPECT_EQ(before, picture().pixels);
}

TEST_F(MenuCommands, Item6AnsweredWithNoLeavesThePicture) {
    choose(203);
    charts::state.colours[3] = 255;
    app::redraw();
    const auto before = picture().pixels;
    answerDeletion(false);
    choose(6);
    EXPECT_EQ(before, picture().pixels);
}

TEST_F(MenuCommands, TheSizeLoadedByADeletionLastsThroughADialog) {
    window().width = 640;
    window().height = 480;
    app::dispatchEvent({.kind = EventKind::resize});
    answerDeletion(true);
    choose(6);
    EXPECT_EQ(900, settings::state.windowWidth);
    world.events = {{.kind = EventKind::close, .window = services::infoWindow}};
    choose(1000);
    EXPECT_EQ(900, settings::state.windowWidth);
    EXPECT_EQ(640, picture().width);
}

TEST_F(MenuCommands, Items800To871OpenTheLimitsOfTheirValueAndDraw) {
    choose(203);
    const auto before = picture().pixels;
    world.events = {{.kind = EventKind::control, .window = services::limitsWindow, .control = 301},
                    {.kind = EventKind::menu, .window = services::limitsWindow, .item = 98}};
    world.beforeEvent = [](int call) {
        if (call == 0) world.windows.at(services::limitsWindow).controls.at(301).text = "102,5";
    };
    choose(803);
    EXPECT_EQ(102.5F, charts::state.limits[3].lower);
    EXPECT_EQ(103.0F, charts::state.limits[3].upper);
    EXPECT_NE(before, picture().pixels);
    EXPECT_FALSE(services::itemMark(803));
    EXPECT_EQ(803, app::state.lastMenuItem);
}

TEST_F(MenuCommands, LimitsFollowTheValuesOwnChart) {
    device::state.samples = chart_tests::samplesOfWatt({90, 150});
    // The overview is shown all the while.
    world.events = {{.kind = EventKind::menu, .window = services::limitsWindow, .item = 98}};
    choose(859);
    EXPECT_EQ(90.0F, charts::state.limits[59].lower);
    EXPECT_EQ(150.0F, charts::state.limits[59].upper);
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
}

TEST_F(MenuCommands, ASizeThatChangedUnderADialogIsCaughtUpWith) {
    for (const int item : {803, 1000, 1001, -3}) {
        SCOPED_TRACE(item);
        window().width = 900;
        app::dispatchEvent({.kind = EventKind::resize});
        world.eventsWaitedFor = 0;
        world.events = {{.kind = EventKind::resize}, {.kind = EventKind::close}};
        world.beforeEvent = [](int) { window().width = 700; };
        choose(item);
        world.beforeEvent = {};
        EXPECT_EQ(700, picture().width);
        EXPECT_EQ(700, settings::state.windowWidth);
    }
}

TEST_F(MenuCommands, Items900To971StoreWhateverTheColourRequesterGives) {
    choose(203);
    const auto before = picture().pixels;
    world.colourAnswers.push_back({4210752, 255});
    choose(903);
    EXPECT_EQ(255, charts::state.colours[3]);
    EXPECT_NE(before, picture().pixels);
    // A cancelled one gives back what it was opened with, with the byte beyond blue.
    world.colourAnswers.push_back({0x0153542F, 0x0153542F});
    choose(971);
    EXPECT_EQ(0x0153542F, charts::state.colours[71]);
    // Black is a colour like any other until the program ends.
    world.colourAnswers.push_back({16711680, 0});
    choose(950);
    EXPECT_EQ(0, charts::state.colours[50]);
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
}

TEST_F(MenuCommands, AnAusgabeLoeschenKeepsLimitsAndColours) {
    choose(203);
    charts::state.limits[3] = {.lower = 101, .upper = 102};
    charts::state.colours[3] = 77;
    choose(20);
    EXPECT_EQ(101.0F, charts::state.limits[3].lower);
    EXPECT_EQ(77, charts::state.colours[3]);
}

TEST_F(MenuCommands, Item1000AndTheApplicationMenusAboutShowTheVersion) {
    for (const int item : {1000, -3}) {
        SCOPED_TRACE(item);
        services::Text seen;
        world.events = {{.kind = EventKind::menu, .window = services::infoWindow, .item = 99}};
        world.beforeEvent = [&](int) {
            seen = world.windows.at(services::infoWindow).controls.at(1).text;
        };
        choose(item);
        world.beforeEvent = {};
        EXPECT_EQ(0U, seen.find("Kurbelbuch\r\n\r\nVersion: 20130531\r\n"));
        EXPECT_FALSE(app::state.quit);
    }
}

TEST_F(MenuCommands, Item1001ShowsTheHelp) {
    services::Text seen;
    world.events = {{.kind = EventKind::close, .window = services::infoWindow}};
    world.beforeEvent = [&](int) {
        seen = world.windows.at(services::infoWindow).controls.at(1).text;
    };
    choose(1001);
    world.beforeEvent = {};
    EXPECT_EQ(0U, seen.find("(1) 'Sinn und Zweck'\r\n"));
    EXPECT_FALSE(app::state.quit);
}

TEST_F(MenuCommands, WhatAClosedDialogLeftBehindDoesNotEndTheProgram) {
    app::dispatchEvent({.kind = EventKind::close, .window = services::infoWindow});
    app::dispatchEvent({.kind = EventKind::menu, .window = services::infoWindow, .item = 99});
    EXPECT_FALSE(app::state.quit);
    EXPECT_EQ(0, app::state.lastMenuItem);
    app::dispatchEvent({.kind = EventKind::close, .window = services::mainWindow});
    EXPECT_TRUE(app::state.quit);
}

TEST_F(MenuCommands, Item1WithoutATreeDoesNothingFurther) {
    charts::enableOptions(charts::ChartKind::overview, false);
    charts::enableOptions(charts::ChartKind::training, true);
    app::state.currentChart = charts::ChartKind::training;
    device::state.dictionary[1].selected = 0;
    std::filesystem::remove("dictionary.2");
    const int shown = window().imagesShown;
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", ""});
    choose(1);
    ASSERT_EQ(3U, device::state.dictionary.size());
    EXPECT_EQ(0, device::state.dictionary[1].selected);
    EXPECT_FALSE(services::itemEnabled(103));
    EXPECT_TRUE(services::itemEnabled(153));
    EXPECT_EQ(charts::ChartKind::training, app::state.currentChart);
    EXPECT_EQ(shown, window().imagesShown);
}

TEST_F(MenuCommands, Item1LeavesTheCurrentChart) {
    builders::writeCard(directory / "andere", 5);
    for (const charts::ChartKind kind :
         {charts::ChartKind::training, charts::ChartKind::overview}) {
        app::state.currentChart = kind;
        world.directoryAnswers.push_back(
            {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
             directory.string() + "/", (directory / "andere").string() + "/"});
        choose(1);
        EXPECT_EQ(5U, device::state.dictionary.size());
        EXPECT_EQ(kind, app::state.currentChart);
    }
}

TEST_F(MenuCommands, Item1OffersTheOverviewThoughEveryRecordWasDropped) {
    const std::filesystem::path other = directory / "ohne";
    builders::writeCard(other, 2);
    for (const char* training : {"0000000000000001", "0000000000000002"})
        std::filesystem::remove(other / "data/result/ergo_bike" / training);
    charts::enableOptions(charts::ChartKind::overview, false);
    charts::enableOptions(charts::ChartKind::training, true);
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", other.string() + "/"});
    choose(1);
    EXPECT_TRUE(device::state.dictionary.empty());
    EXPECT_TRUE(services::itemEnabled(103));
    EXPECT_FALSE(services::itemEnabled(153));
}

// The card may hold other trainings by now; they are read with the next command that needs them.
TEST_F(MenuCommands, Item5DoesNotReadTheIndexAgain) {
    device::state.dictionary[1].selected = 0;
    builders::writeCard(directory, 5);
    builders::writeCard(directory / "andere", 4);
    write("[Programmeinstellungen]\nVerzeichnis = " + (directory / "andere").string() + "/\n");
    expectReloadMessage();
    choose(5);
    EXPECT_EQ((directory / "andere/data/result/ergo_bike/").string(), services::currentDirectory());
    ASSERT_EQ(3U, device::state.dictionary.size());
    EXPECT_EQ(0, device::state.dictionary[1].selected);
}

TEST_F(MenuCommands, Item30ShowsTheClearedChartAtOnce) {
    device::state.samples = chart_tests::samplesOfWatt({90, 150});
    app::state.currentChart = charts::ChartKind::training;
    app::redraw();
    const auto empty = picture().pixels;
    choose(259);
    ASSERT_NE(empty, picture().pixels);
    choose(30);
    EXPECT_EQ(empty, picture().pixels);
}

}  // namespace
