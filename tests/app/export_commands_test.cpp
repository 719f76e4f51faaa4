// Both exports from the menu: the list first, and what the chart shows meanwhile and after.
#include <string>
#include <vector>

#include "app/main_window.h"
#include "charts/values/chart_options.h"
#include "files/list_window.h"
#include "tests/app/training_commands_fixture.h"

namespace {

using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

TEST_F(TrainingCommands, AnExportDrawsNothingThatTheChartDoesNotShowAlready) {
    choose(203);
    const services::Surface before = picture();
    resizeMainWhileTheListIsOpen(500, 400);
    chooseTwoRows();
    exportAndCancel(22, {press(0)});
    EXPECT_EQ((std::vector<int>{1, 0, 1}), selection());
    EXPECT_EQ(before.pixels, picture().pixels);
    EXPECT_EQ(500, settings::state.windowWidth);
    // As soon as something is drawn, it has the new size.
    choose(303);
    EXPECT_EQ(500, picture().width);
    EXPECT_EQ(400, picture().height);
}

TEST_F(TrainingCommands, AnExportOfAllDrawsTheSameChartAtTheWindowsNewSize) {
    choose(203);
    resizeMainWhileTheListIsOpen(500, 400);
    exportAndCancel(22, {press(0)});
    EXPECT_EQ(500, picture().width);
    EXPECT_TRUE(services::itemMark(203));
    // Nor is a chart drawn again that has its size.
    const int shown = world.windows[services::mainWindow].imagesShown;
    exportAndCancel(22, {press(0)});
    EXPECT_EQ(shown, world.windows[services::mainWindow].imagesShown);
}

TEST_F(TrainingCommands, AMovedWindowShowsWhatAnExportHasChosen) {
    choose(203);
    chooseTwoRows();
    exportAndCancel(22, {press(0)});
    const auto move = [] {
        world.texts.clear();
        app::dispatchEvent({.kind = EventKind::move});
    };
    for (const EventKind kind : {EventKind::move, EventKind::zoom, EventKind::resize}) {
        device::state.dictionary.back().selected = kind == EventKind::zoom ? 0 : 1;
        world.texts.clear();
        app::dispatchEvent({.kind = kind});
        EXPECT_TRUE(
            drawn(kind == EventKind::zoom ? "1:00:00 / 1 = 1:00:00" : "2:00:00 / 2 = 1:00:00"));
    }
    move();
    EXPECT_TRUE(world.texts.empty());
    charts::state.limits[3].lower = 102;
    move();
    EXPECT_FALSE(world.texts.empty());
    move();
    EXPECT_TRUE(world.texts.empty());
}

TEST_F(TrainingCommands, BothExportsAskInTheListFirst) {
    const std::string csv = (directory / "aus.csv").string();
    world.events = {press(0)};
    world.saveFileAnswers.push_back(
        {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", "Dicitonary.csv", csv});
    stand_ins::expectMessage("Info", "Die Datei '" + csv + "' wurde gespeichert!");
    choose(22);
    EXPECT_TRUE(std::filesystem::exists(csv));

    world.events = {doubleClick(0)};
    world.saveFileAnswers.push_back({services::Text("Name und Ort der CSV-Datei wählen"_l1), "",
                                     "0003  04_01_2013 00_00_00   60min   25,0km  Training 3.csv",
                                     ""});
    choose(32);
    EXPECT_EQ(3U, device::state.samples.size());
    // An export does not turn to the other chart.
    expectOptionsOf(charts::ChartKind::overview);
}

TEST_F(TrainingCommands, AnExportShowsNoNewPicture) {
    choose(203);
    const auto before = picture().pixels;
    const int shown = world.windows[services::mainWindow].imagesShown;
    // Two of the three: a new picture would be another one.
    chooseRowsOnce({0, 2});
    world.events = {press(0)};
    world.saveFileAnswers.push_back(
        {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", "Dicitonary.csv", ""});
    choose(22);
    EXPECT_EQ((std::vector<int>{1, 0, 1}), selection());
    EXPECT_EQ(shown, world.windows[services::mainWindow].imagesShown);

    world.events = {doubleClick(0)};
    world.saveFileAnswers.push_back({services::Text("Name und Ort der CSV-Datei wählen"_l1), "",
                                     "0003  04_01_2013 00_00_00   60min   25,0km  Training 3.csv",
                                     ""});
    choose(32);
    EXPECT_EQ(shown, world.windows[services::mainWindow].imagesShown);
    EXPECT_EQ(before, picture().pixels);
}

TEST_F(TrainingCommands, EditingAndExportingLeaveTheCurrentChartAndItsOptions) {
    for (const charts::ChartKind kind :
         {charts::ChartKind::training, charts::ChartKind::overview}) {
        world.events = {key(files::escapeShortcut)};
        choose(kind == charts::ChartKind::training ? 31 : 21);
        expectOptionsOf(kind);
        for (const int item : {3, 22, 32}) {
            SCOPED_TRACE(item);
            world.events = {key(files::escapeShortcut)};
            choose(item);
            expectOptionsOf(kind);
        }
    }
}

}  // namespace
