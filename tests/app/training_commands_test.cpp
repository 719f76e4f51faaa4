#include "app/training_commands.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/main_window.h"
#include "charts/values/chart_options.h"
#include "files/list_window.h"
#include "services/text/dates.h"
#include "tests/app/training_commands_fixture.h"

namespace {

using services::Event;
using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

TEST_F(TrainingCommands, DateiOeffnenShowsTheChosenTrainingWithItsBottomLine) {
    services::setItemMark(153, true);
    world.events = {doubleClick(1)};  // the newest is on top: row 1 is the second of three
    world.texts.clear();
    stand_ins::expectMessage("Fehler", "Das Menü 'Gefahrene km' enthält keine Daten!"_l1);
    choose(31);
    EXPECT_EQ("Wähle die Trainingsdatei"_l1, world.closedWindows[services::listWindow].title);
    EXPECT_EQ((std::vector<int>{0, 1, 0}), selection());
    EXPECT_EQ(3U, device::state.samples.size());
    expectOptionsOf(charts::ChartKind::training);
}

TEST_F(TrainingCommands, TheOpenedTrainingsStartDescriptionAndDurationStandBelowTheChart) {
    for (std::size_t i = 0; i < 3; ++i) {
        std::string bytes(3 * device::trainingSampleSize, '\0');
        bytes[20] = static_cast<char>(100);  // watt of the first sample
        bytes[20 + device::trainingSampleSize] = static_cast<char>(110);
        std::ofstream(device::state.dictionary[i].fileName) << bytes;
    }
    services::setItemMark(259, true);
    world.events = {doubleClick(0)};
    choose(31);
    EXPECT_TRUE(drawn("04.01.2013 00:00:00"));
    EXPECT_TRUE(drawn("Training 3"));
    EXPECT_TRUE(drawn("1:00:00"));
}

TEST_F(TrainingCommands, DateiOeffnenAlsoTurnsToTheTrainingChartWhenItIsCancelled) {
    world.events = {key(files::escapeShortcut)};
    choose(31);
    EXPECT_TRUE(device::state.samples.empty());
    EXPECT_EQ((std::vector<int>{0, 0, 0}), selection());
    expectOptionsOf(charts::ChartKind::training);
}

TEST_F(TrainingCommands, NothingHappensWhenTheListCannotBeOpened) {
    world.windowsOpen = false;
    const int shown = world.windows[services::mainWindow].imagesShown;
    for (const int item : {3, 21, 22, 31, 32})
        choose(item);
    EXPECT_EQ(charts::ChartKind::overview, app::state.currentChart);
    EXPECT_EQ((std::vector<int>{1, 1, 1}), selection());
    EXPECT_EQ(shown, world.windows[services::mainWindow].imagesShown);
}

TEST_F(TrainingCommands, AFileThatVanishedIsReported) {
    world.events = {doubleClick(2)};
    world.beforeEvent = [](int) { std::filesystem::remove("0000000000000001"); };
    stand_ins::expectMessage("Dateifehler",
                             "Die Datei 'data\\result\\ergo_bike\\0000000000000001' ist leer oder "
                             "wurde nicht gefunden!");
    choose(31);
    EXPECT_TRUE(device::state.samples.empty());
    expectOptionsOf(charts::ChartKind::training);
}

TEST_F(TrainingCommands, DateienOeffnenShowsTheChosenTrainingsInTheOverview) {
    choose(153);
    services::setItemMark(153, false);
    world.beforeEvent = [](int) {
        auto& list = world.windows.at(services::listWindow).controls.at(files::trainingListControl);
        list.chosen = {0, 2};
    };
    world.events = {press(0)};
    choose(21);
    EXPECT_EQ((std::vector<int>{1, 0, 1}), selection());
    expectOptionsOf(charts::ChartKind::overview);
}

TEST_F(TrainingCommands, ACancelledDateienOeffnenLeavesOneRecordUntilTheIndexIsReadAgain) {
    world.events = {press(1)};
    choose(21);
    EXPECT_EQ((std::vector<int>{0}), selection());
    expectOptionsOf(charts::ChartKind::overview);
    world.events = {press(0)};
    choose(21);
    EXPECT_EQ((std::vector<int>{1, 1, 1}), selection());
}

TEST_F(TrainingCommands, MainWindowEventsAreDroppedWhileTheListIsOpen) {
    world.events = {{.kind = EventKind::menu, .window = services::mainWindow, .item = 99},
                    {.kind = EventKind::menu, .window = services::mainWindow, .item = 103},
                    {.kind = EventKind::close, .window = services::mainWindow},
                    press(0)};
    choose(21);
    EXPECT_FALSE(app::state.quit);
    EXPECT_FALSE(services::itemMark(103));
}

TEST_F(TrainingCommands, AWindowResizedWhileTheListWasOpenIsDrawnAtItsNewSize) {
    world.beforeEvent = [](int) {
        world.windows.at(services::mainWindow).width = 500;
        world.windows.at(services::mainWindow).height = 400;
    };
    world.events = {press(0)};
    choose(21);
    EXPECT_EQ(500, app::state.chartImage.width);
    EXPECT_EQ(400, settings::state.windowHeight);
}

// The list's choice is nothing that the chart of before has to show.
TEST_F(TrainingCommands, AWindowResizedAboveACancelledListKeepsTheTicksOfTheOtherChart) {
    choose(203);
    choose(603);
    for (const int item : {32, 31}) {
        SCOPED_TRACE(item);
        resizeMainWhileTheListIsOpen(500 + item, 400);
        world.events = {key(files::escapeShortcut)};
        world.texts.clear();
        choose(item);
        EXPECT_TRUE(services::itemMark(203));
        EXPECT_TRUE(services::itemMark(603));
        EXPECT_TRUE(world.texts.empty());
        EXPECT_EQ(500 + item, settings::state.windowWidth);
        EXPECT_EQ(400, settings::state.windowHeight);
    }
}

TEST_F(TrainingCommands, TrainingsdateienBearbeitenOpensTheEditMode) {
    world.events = {press(0)};
    choose(3);
    const stand_ins::WindowRecord& list = world.closedWindows[services::listWindow];
    EXPECT_EQ("Trainingsdateien bearbeiten", list.title);
    EXPECT_EQ("Fertig", list.controls.at(files::firstButtonControl).text);
    expectOptionsOf(charts::ChartKind::overview);
}

TEST_F(TrainingCommands, WithoutATreeACommandAsksForOneAndElseDoesNothing) {
    std::filesystem::remove("dictionary.2");
    for (const int item : {3, 21, 22, 31, 32}) {
        SCOPED_TRACE(item);
        world.directoryAnswers.push_back(
            {services::Text("Wähle die SD-Karte bzw. das Daum-Verzeichnis"_l1),
             directory.string() + "/", ""});
        choose(item);
        expectOptionsOf(charts::ChartKind::overview);
    }
}

TEST_F(TrainingCommands, EachItemOpensTheListInItsMode) {
    const services::TextView editing = "Trainingsdateien bearbeiten"_l1;
    const services::TextView choosing = "Wähle die Trainingsdatei"_l1;
    const struct {
        int item;
        services::TextView title;
        const char* firstButton;
        std::size_t controls;  // the list and its buttons
        bool severalRows;
    } rows[] = {{3, editing, "Fertig", 6, true},
                {21, choosing, "Alle", 6, true},
                {22, choosing, "Alle", 6, true},
                {31, choosing, "Auswahl", 4, false},
                {32, choosing, "Auswahl", 4, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.item);
        world.events = {key(files::escapeShortcut)};
        choose(row.item);
        const stand_ins::WindowRecord& list = world.closedWindows[services::listWindow];
        EXPECT_EQ(row.title, list.title);
        EXPECT_EQ(row.firstButton, list.controls.at(files::firstButtonControl).text);
        EXPECT_EQ(row.controls, list.controls.size());
        EXPECT_EQ(row.severalRows, list.controls.at(files::trainingListControl).severalRows);
        world.closedWindows.clear();
    }
}

// The width is that of the main window and the height is its height, not what the settings say.
TEST_F(TrainingCommands, TheListTakesItsSizeFromTheMainWindow) {
    for (const int item : {3, 21, 22, 31, 32}) {
        SCOPED_TRACE(item);
        world.windows.at(services::mainWindow).width = 1000;
        world.windows.at(services::mainWindow).height = 650;
        settings::state.windowWidth = 900;
        settings::state.windowHeight = 500;
        world.events = {key(files::escapeShortcut)};
        choose(item);
        const stand_ins::WindowRecord& list = world.closedWindows[services::listWindow];
        EXPECT_EQ(990, list.row.width);
        EXPECT_EQ(594, list.row.height);
        world.closedWindows.clear();
    }
}

TEST_F(TrainingCommands, TheListsReportsTakeTheirHeightFromTheMainWindow) {
    world.windows.at(services::mainWindow).width = 1000;
    world.windows.at(services::mainWindow).height = 650;
    settings::state.windowHeight = 800;
    device::state.renumberingEnabled = true;
    world.questionAnswers.push_back({"Dateinamen neu durchnummerieren",
                                     "Sollen die Dateinamen neu durchnummeriert werden?", true});
    stand_ins::expectMessage("Dateinamen", "Die Dateinamen wurden neu durchnummeriert!");
    std::filesystem::create_directory(directory / "stick");
    device::state.backupDirectory = (directory / "stick").string() + "/";
    std::vector<int> heights;
    world.beforeEvent = [&](int) {
        const auto report = world.windows.find(services::reportWindow);
        if (report != world.windows.end()) heights.push_back(report->second.height);
    };
    const Event closing = {.kind = EventKind::close, .window = services::reportWindow};
    world.events = {press(3), closing, press(1), closing, key(files::escapeShortcut)};
    choose(3);
    EXPECT_EQ((std::vector<int>{588, 588}), heights);
}

TEST_F(TrainingCommands, TrainingsdateienBearbeitenShowsTheChosenTrainingsAtOnce) {
    choose(203);
    const auto all = picture().pixels;
    chooseRowsOnce({0, 2});
    world.events = {press(0)};
    choose(3);
    EXPECT_EQ((std::vector<int>{1, 0, 1}), selection());
    EXPECT_NE(all, picture().pixels);
}

}  // namespace
