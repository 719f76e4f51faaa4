#include "app/training_commands.h"

#include <fstream>

#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "charts/values/chart_options.h"
#include "export/export_state.h"
#include "files/list_window.h"
#include "services/text/dates.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::Event;
using services::EventKind;
using services::operator""_l1;
using stand_ins::world;

// The program on a card of three trainings with three samples each; what happens in the list window
// is put into the queue of events.
class TrainingCommands : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        exporting::state = {};
        std::vector<device::DictionaryRecord> records;
        for (std::uint64_t number = 1; number <= 3; ++number) {
            records.push_back(builders::makeRecord(number));
        }
        builders::writeCard(directory, records, 3);
        ASSERT_TRUE(app::startUp({}));
    }

    static Event press(int button) {
        return {.kind = EventKind::control,
                .window = services::listWindow,
                .control = files::firstButtonControl + button,
                .data = services::pressed};
    }

    static Event doubleClick(int row) {
        return {.kind = EventKind::control,
                .window = services::listWindow,
                .control = files::trainingListControl,
                .item = row,
                .data = services::doubleClicked};
    }

    static Event key(int item) {
        return {.kind = EventKind::menu, .window = services::listWindow, .item = item};
    }

    static void choose(int item) { app::dispatchEvent({.kind = EventKind::menu, .item = item}); }

    static void expectOptionsOf(charts::ChartKind kind) {
        const bool overview = kind == charts::ChartKind::overview;
        for (int base = 100; base <= 900; base += 100) {
            EXPECT_EQ(overview, services::itemEnabled(base)) << base;
            EXPECT_EQ(overview, services::itemEnabled(base + 19)) << base;
            EXPECT_EQ(!overview, services::itemEnabled(base + 50)) << base;
            EXPECT_EQ(!overview, services::itemEnabled(base + 71)) << base;
        }
        EXPECT_EQ(kind, app::state.currentChart);
    }

    static std::vector<int> selection() {
        std::vector<int> flags;
        for (const device::DictionaryRecord& record : device::state.dictionary) {
            flags.push_back(record.selected);
        }
        return flags;
    }

    static const services::Surface& picture() {
        return world.windows[services::mainWindow].images[app::chartImageControl];
    }

    static void resizeMainWhileTheListIsOpen(int width, int height) {
        world.beforeEvent = [width, height](int) {
            services::resizeWindow(services::mainWindow, width, height);
        };
    }

    // The newest and the oldest, besides whatever else happens while the list is open.
    static void chooseTwoRows() {
        world.beforeEvent = [before = world.beforeEvent](int call) {
            if (before) before(call);
            auto& list =
                world.windows.at(services::listWindow).controls.at(files::trainingListControl);
            list.chosen = {0, 2};
        };
    }

    static void exportAndCancel(int item, std::initializer_list<Event> events) {
        world.events = events;
        world.saveFileAnswers.push_back(
            {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", "Dicitonary.csv", ""});
        choose(item);
        world.beforeEvent = {};
    }

    // What the user does to the list before its first event.
    static void chooseRowsOnce(const std::vector<int>& rows) {
        world.eventsWaitedFor = 0;
        world.beforeEvent = [rows](int call) {
            if (call != 0) return;
            world.windows.at(services::listWindow).controls.at(files::trainingListControl).chosen =
                rows;
        };
    }

    static bool drawn(const std::string& text) {
        for (const stand_ins::TextCall& call : world.texts) {
            if (services::latin1ToUtf8(call.text) == text) return true;
        }
        return false;
    }
};

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

TEST_F(TrainingCommands, TrainingsdateienBearbeitenOpensTheEditMode) {
    world.events = {press(0)};
    choose(3);
    const stand_ins::WindowRecord& list = world.closedWindows[services::listWindow];
    EXPECT_EQ("Trainingsdateien bearbeiten", list.title);
    EXPECT_EQ("Fertig", list.controls.at(files::firstButtonControl).text);
    expectOptionsOf(charts::ChartKind::overview);
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
    const struct {
        int item;
        services::Text title;
        const char* firstButton;
        std::size_t controls;  // the list and its buttons
        bool severalRows;
    } rows[] = {{3, services::Text("Trainingsdateien bearbeiten"_l1), "Fertig", 6, true},
                {21, services::Text("Wähle die Trainingsdatei"_l1), "Alle", 6, true},
                {22, services::Text("Wähle die Trainingsdatei"_l1), "Alle", 6, true},
                {31, services::Text("Wähle die Trainingsdatei"_l1), "Auswahl", 4, false},
                {32, services::Text("Wähle die Trainingsdatei"_l1), "Auswahl", 4, false}};
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
