#include "app/event_loop.h"

#include <set>
#include <tuple>

#include "app/main_window.h"
#include "app/startup.h"
#include "charts/values/chart_options.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"
#include "tests/charts/chart_test.h"

namespace {

using services::Event;
using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

// The program as it runs on a card of three trainings; events are put into its loop.
class EventLoop : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        builders::writeCard(directory, 3);
        ASSERT_TRUE(app::startUp({}));
    }

    static Event menu(int item) { return {.kind = EventKind::menu, .item = item}; }

    const stand_ins::WindowRecord& window() { return world.windows.at(services::mainWindow); }
    const services::Surface& picture() { return window().images.at(app::chartImageControl); }

    void resizeTo(int width, int height) {
        world.windows.at(services::mainWindow).width = width;
        world.windows.at(services::mainWindow).height = height;
        app::dispatchEvent({.kind = EventKind::resize});
    }
};

TEST_F(EventLoop, EndsWhenTheWindowIsClosed) {
    world.events = {{.kind = EventKind::close}};
    app::runEventLoop();
    EXPECT_TRUE(app::state.quit);
}

TEST_F(EventLoop, EndsOnEscapeQuitAndItem19WithoutAQuestionAndWithoutSaving) {
    for (const int item : {99, -1, 19}) {
        SCOPED_TRACE(item);
        app::state.quit = false;
        world.events = {menu(item)};
        app::runEventLoop();
        EXPECT_FALSE(std::filesystem::exists(directory / "Einstellungen.dat"));
    }
}

TEST_F(EventLoop, GoesOnAfterItemsWithoutAMeaning) {
    for (const int item :
         {0, 7, 98, 120, 149, 172, 199, 920, 949, 972, 999, 1002, -2, -2147483647}) {
        app::dispatchEvent(menu(item));
        EXPECT_FALSE(app::state.quit) << item;
        EXPECT_EQ(item, app::state.lastMenuItem);
    }
}

TEST_F(EventLoop, EachTickOfTheOverviewChangesThePictureAtOnce) {
    const auto empty = picture().pixels;
    app::dispatchEvent(menu(203));
    const auto line = picture().pixels;
    EXPECT_NE(empty, line);
    app::dispatchEvent(menu(305));
    EXPECT_NE(line, picture().pixels);
    app::dispatchEvent(menu(305));
    EXPECT_EQ(line, picture().pixels);
    app::dispatchEvent(menu(203));
    EXPECT_EQ(empty, picture().pixels);
}

TEST_F(EventLoop, ChoosingBalkenTwiceLeavesItUnchecked) {
    app::dispatchEvent(menu(103));
    EXPECT_TRUE(services::itemMark(103));
    app::dispatchEvent(menu(103));
    EXPECT_FALSE(services::itemMark(103));
}

TEST_F(EventLoop, StylesOfOneValueAreIndependent) {
    for (int item = 105; item <= 705; item += 100)
        app::dispatchEvent(menu(item));
    for (int item = 105; item <= 705; item += 100)
        EXPECT_TRUE(services::itemMark(item)) << item;
}

TEST_F(EventLoop, Item103IsBalkenOfWattAndItem153BalkenOfKilometresInTheOtherChart) {
    app::dispatchEvent(menu(103));
    EXPECT_TRUE(services::itemMark(103));
    EXPECT_FALSE(services::itemMark(153));
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
    app::dispatchEvent(menu(153));
    EXPECT_TRUE(services::itemMark(153));
    EXPECT_EQ(charts::ChartKind::training, app::state.currentChart);
    app::dispatchEvent(menu(503));
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
}

TEST_F(EventLoop, AusgabeLoeschenClearsTheMarksOfItsOwnChartOnly) {
    for (int i = 0; i < 20; ++i) {
        for (int base = 100; base <= 700; base += 100)
            services::setItemMark(base + i, true);
    }
    for (int i = 50; i < 72; ++i) {
        for (int base = 100; base <= 700; base += 100)
            services::setItemMark(base + i, true);
    }
    const auto full = picture().pixels;
    app::dispatchEvent(menu(20));
    EXPECT_NE(full, picture().pixels);
    for (int i = 0; i < 20; ++i) {
        for (int base = 100; base <= 700; base += 100)
            EXPECT_FALSE(services::itemMark(base + i));
    }
    for (int i = 50; i < 72; ++i) {
        for (int base = 100; base <= 700; base += 100)
            EXPECT_TRUE(services::itemMark(base + i));
    }
    app::dispatchEvent(menu(30));
    for (int i = 50; i < 72; ++i) {
        for (int base = 100; base <= 700; base += 100)
            EXPECT_FALSE(services::itemMark(base + i));
    }
}

TEST_F(EventLoop, AusgabeLoeschenDoesNotTurnToTheOtherChart) {
    app::dispatchEvent(menu(153));
    app::dispatchEvent(menu(20));
    EXPECT_EQ(charts::ChartKind::training, app::state.currentChart);
    app::dispatchEvent(menu(103));
    app::dispatchEvent(menu(30));
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
}

TEST_F(EventLoop, TheBackupDirectoryIsChosenByItem2) {
    const std::string stick = "/" + directory.filename().string() + "/data/result/ergo_bike/";
    world.directoryAnswers.push_back(
        {services::Text("Wähle das Verzeichnis der Sicherheitskopie"_l1), directory.string() + "/",
         stick});
    app::dispatchEvent(menu(2));
    EXPECT_EQ(stick, device::state.backupDirectory);
}

TEST_F(EventLoop, ANewDaumDirectoryIsReadAndOffersTheOverviewOnly) {
    const std::filesystem::path other = directory / "andere";
    builders::writeCard(other, 5);
    charts::enableOptions(charts::ChartKind::overview, false);
    charts::enableOptions(charts::ChartKind::training, true);
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", other.string() + "/"});
    const int before = window().imagesShown;
    app::dispatchEvent(menu(1));
    EXPECT_EQ(5U, device::state.dictionary.size());
    EXPECT_TRUE(services::itemEnabled(100));
    EXPECT_FALSE(services::itemEnabled(150));
    EXPECT_GT(window().imagesShown, before);
}

TEST_F(EventLoop, ACancelledDaumRequesterReadsTheOldTreeAgain) {
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", ""});
    app::dispatchEvent(menu(1));
    EXPECT_EQ(3U, device::state.dictionary.size());
}

TEST_F(EventLoop, ANewSizeIsRememberedAndDrawn) {
    resizeTo(640, 480);
    EXPECT_EQ(640, settings::state.windowWidth);
    EXPECT_EQ(480, settings::state.windowHeight);
    EXPECT_EQ(640, picture().width);
    EXPECT_EQ(480, picture().height);
    EXPECT_NE(std::vector<std::uint32_t>(picture().pixels.size(), 0xFFFFFFFFU), picture().pixels);
}

TEST_F(EventLoop, ShrinkingBelow256KeepsTheChartAt256InThatDirection) {
    resizeTo(200, 480);
    EXPECT_EQ(256, picture().width);
    EXPECT_EQ(480, picture().height);
    EXPECT_EQ(256, window().width);
    resizeTo(640, 255);
    EXPECT_EQ(640, picture().width);
    EXPECT_EQ(256, picture().height);
    EXPECT_EQ(256, window().height);
    resizeTo(256, 256);
    EXPECT_EQ(256, picture().width);
    EXPECT_EQ(256, settings::state.windowHeight);
}

TEST_F(EventLoop, AMoveThatKeepsTheSizeNeedsNoNewPicture) {
    const int before = window().imagesShown;
    app::dispatchEvent({.kind = EventKind::move});
    app::dispatchEvent({.kind = EventKind::zoom});
    EXPECT_EQ(before, window().imagesShown);
}

TEST_F(EventLoop, AZoomedWindowIsDrawnAtItsNewSize) {
    world.windows.at(services::mainWindow).width = 1000;
    world.windows.at(services::mainWindow).height = 700;
    app::dispatchEvent({.kind = EventKind::zoom});
    EXPECT_EQ(1000, picture().width);
    EXPECT_EQ(700, settings::state.windowHeight);
}

// A second press of Escape, say, that a dialog left in the queue when it closed.
TEST_F(EventLoop, WhatAClosedDialogLeftInTheQueueIsIgnored) {
    for (const EventKind kind : {EventKind::close, EventKind::menu}) {
        app::dispatchEvent({.kind = kind, .window = services::limitsWindow, .item = 99});
        EXPECT_FALSE(app::state.quit);
        EXPECT_EQ(0, app::state.lastMenuItem);
    }
}

TEST_F(EventLoop, AScreenOfAnotherDensityNeedsANewPicture) {
    world.pixelRatio = 2.0;
    app::dispatchEvent({.kind = EventKind::move});
    EXPECT_EQ(900, picture().width);
    EXPECT_EQ(1800, picture().deviceWidth);
}

TEST_F(EventLoop, AnEmptyIndexLeavesThePictureAsItIsUntilTheSizeChanges) {
    const std::filesystem::path other = directory / "leer";
    builders::writeCard(other, 0);
    const auto before = picture().pixels;
    world.directoryAnswers.push_back(
        {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
         directory.string() + "/", other.string() + "/"});
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
    app::dispatchEvent(menu(1));
    EXPECT_EQ(before, picture().pixels);
    resizeTo(640, 480);
    EXPECT_EQ(std::vector<std::uint32_t>(picture().pixels.size(), 0xFFFFFFFFU), picture().pixels);
}

TEST_F(EventLoop, TheChartTellsAScreenReaderWhatItShows) {
    app::dispatchEvent(menu(203));
    const services::Text& description = window().controlDescriptions.at(app::chartImageControl);
    EXPECT_NE(services::Text::npos, description.find("Watt (Linie) von 101 bis 103"))
        << description;
    resizeTo(700, 480);
    EXPECT_NE(services::Text::npos, description.find("Watt (Linie)")) << description;
    device::state.dictionary.clear();
    resizeTo(640, 480);
    EXPECT_EQ(services::Text::npos, description.find("Watt")) << description;
}

TEST_F(EventLoop, EveryTickTurnsToTheChartOfItsItem) {
    using charts::ChartKind;
    for (int base = 100; base <= 700; base += 100) {
        for (const auto& [item, kind, other] :
             {std::tuple(base + 3, ChartKind::overview, ChartKind::training),
              std::tuple(base + 59, ChartKind::training, ChartKind::overview)}) {
            for (int i = 0; i < 2; ++i) {  // on and off
                app::state.currentChart = other;
                app::dispatchEvent(menu(item));
                EXPECT_EQ(kind, app::state.currentChart) << item;
            }
        }
    }
}

// Of a training, so that neither looks as it does at the start.
TEST_F(EventLoop, EventsOfTheFrameLeaveTheLastItemAndTheCurrentChart) {
    device::state.samples = chart_tests::samplesOfWatt({90, 150});
    app::dispatchEvent(menu(259));
    for (const EventKind kind : {EventKind::move, EventKind::resize, EventKind::zoom}) {
        SCOPED_TRACE(static_cast<int>(kind));
        world.windows.at(services::mainWindow).width -= 50;
        app::dispatchEvent({.kind = kind});
        EXPECT_EQ(259, app::state.lastMenuItem);
        EXPECT_EQ(charts::ChartKind::training, app::state.currentChart);
        app::dispatchEvent({.kind = kind});
        EXPECT_EQ(259, app::state.lastMenuItem);
        EXPECT_EQ(charts::ChartKind::training, app::state.currentChart);
    }
}

TEST_F(EventLoop, ATrainingsChartIsDrawnAtTheNewSizeToo) {
    device::state.samples = chart_tests::samplesOfWatt({90, 150});
    app::dispatchEvent(menu(259));
    world.texts.clear();
    resizeTo(640, 480);
    EXPECT_EQ(640, picture().width);
    EXPECT_EQ(480, picture().height);
    std::set<services::Text> texts;
    for (const stand_ins::TextCall& call : world.texts)
        texts.insert(call.text);
    EXPECT_TRUE(texts.contains("90"));
    EXPECT_TRUE(texts.contains("150"));
    EXPECT_FALSE(texts.contains("103"));  // of the overview
    const auto resized = picture().pixels;
    app::redraw();
    EXPECT_EQ(resized, picture().pixels);
}

}  // namespace
