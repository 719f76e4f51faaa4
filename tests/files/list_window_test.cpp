#include "files/list_window.h"

#include <string>
#include <utility>
#include <vector>

#include "tests/files/list_window_fixture.h"

namespace {

using namespace files_tests;
using files::ListMode;
using files::ListResult;
using services::Event;
using services::EventKind;
using services::listWindow;
using stand_ins::world;

TEST_F(TrainingList, ShowsTheNewestTrainingAtTheTop) {
    useCard({recordOf(2, 2), recordOf(3, 3), recordOf(1, 1)});
    open(ListMode::edit, {button(0)}, [](int) {
        EXPECT_EQ(rows(), "3 2 1");
        EXPECT_EQ(list().cell(2, 0), "02.01.2013 00:00:00");
        EXPECT_TRUE(list().chosen.empty());
        EXPECT_TRUE(world.windows.at(listWindow).shown);
        EXPECT_EQ(world.windows.at(listWindow).focus, files::trainingListControl);
    });
    EXPECT_TRUE(world.windows.empty());
}

TEST_F(TrainingList, HasATitleButtonsAndAKindOfChoiceForEachMode) {
    useTrainings(3);
    const struct {
        ListMode mode;
        const char* title;
        std::vector<std::string> buttons;
        bool severalRows;
    } modes[] = {{ListMode::edit,
                  "Trainingsdateien bearbeiten",
                  {"Fertig", "Sicherheitskopie", "Löschen", "Nummerieren", "Sortieren"},
                  true},
                 {ListMode::chooseMany,
                  "Wähle die Trainingsdatei",
                  {"Alle", "Abbruch", "Jahresfrist", "Monatsfrist", "Sortieren"},
                  true},
                 {ListMode::chooseOne,
                  "Wähle die Trainingsdatei",
                  {"Auswahl", "Abbruch", "Sortieren"},
                  false}};
    for (const auto& row : modes) {
        open(row.mode, {button(0)}, [&](int) {
            const auto& window = world.windows.at(listWindow);
            EXPECT_EQ(services::latin1ToUtf8(window.title), row.title);
            EXPECT_EQ(window.row.owner, services::mainWindow);
            ASSERT_EQ(window.controls.size(), row.buttons.size() + 1);
            for (std::size_t i = 0; i < row.buttons.size(); ++i)
                EXPECT_EQ(buttonText(static_cast<int>(i)), row.buttons[i]);
            EXPECT_EQ(list().severalRows, row.severalRows);
            EXPECT_EQ(list().columns.size(), 13U);
            EXPECT_EQ(list().columnWidths[0], 178);
        });
    }
}

TEST_F(TrainingList, HasItsSizesAndFollowsItsWindow) {
    useTrainings(3);
    open(ListMode::chooseOne, {{.kind = EventKind::resize, .window = listWindow}, button(0)},
         [](int call) {
             const auto& controls = world.windows.at(listWindow).controls;
             if (call == 0) {
                 EXPECT_EQ(services::windowWidth(listWindow), 1192);
                 EXPECT_EQ(services::windowHeight(listWindow), 792);
                 EXPECT_EQ(list().box, (services::Box{10, 10, 1178, 747}));
                 EXPECT_EQ(controls.at(files::firstButtonControl).box,
                           (services::Box{7, 764, 119, 26}));
                 services::resizeWindow(listWindow, 1000, 600);
             } else {
                 EXPECT_EQ(list().box, (services::Box{10, 10, 986, 555}));
                 EXPECT_EQ(controls.at(files::firstButtonControl + 2).box,
                           (services::Box{874, 572, 119, 26}));
             }
         });
}

TEST_F(TrainingList, ASmallMainWindowStillGivesRoomForAllButtons) {
    useTrainings(3);
    world.events = {button(0)};
    world.beforeEvent = [](int) {
        const auto& window = world.windows.at(listWindow);
        EXPECT_EQ(window.width, window.row.minimumWidth);
        const services::Box last = window.controls.at(files::firstButtonControl + 4).box;
        EXPECT_LE(last.x + last.width, window.width);
    };
    files::openTrainingList(ListMode::edit, 256, 256);
}

TEST_F(TrainingList, WithoutAWindowNothingChanges) {
    useTrainings(3);
    device::state.dictionary[1].selected = 0;
    world.windowsOpen = false;
    EXPECT_EQ(open(ListMode::chooseMany, {}), ListResult::notOpened);
    EXPECT_EQ(flags(), "101");
}

TEST_F(TrainingList, TheFirstClickMakesAllAChoiceAndItStaysOne) {
    useTrainings(3);
    const char* texts[] = {"Alle", "Auswahl", "Auswahl", "Auswahl"};
    open(ListMode::chooseMany,
         {onList(services::clicked, 0), button(4), onList(services::clicked, 1), button(0)},
         [&](int call) { EXPECT_EQ(buttonText(0), texts[call]); });
    open(ListMode::edit, {onList(services::clicked, 0), button(0)},
         [](int) { EXPECT_EQ(buttonText(0), "Fertig"); });
}

TEST_F(TrainingList, SortingGoesBackAndForth) {
    auto first = recordOf(1, 1);
    auto second = recordOf(2, 2);
    auto third = recordOf(3, 3);
    first.description = "Alpen";
    second.description = "Zug";
    third.description = "alpen";
    useCard({first, second, third});
    const char* expected[] = {"3 2 1", "3 1 2", "3 2 1"};
    const auto look = [&](int call) {
        EXPECT_EQ(rows(), expected[call]);
        chooseRows({0});
    };
    open(ListMode::edit, {button(4), button(4), key(files::escapeShortcut)}, look);
    // The next window begins by date again, whatever order the table has.
    open(ListMode::edit, {button(4), key(files::escapeShortcut)}, look);
    open(ListMode::edit, {key(files::escapeShortcut)}, look);
}

TEST_F(TrainingList, AfterSortingRowsStillMeanTheirRecords) {
    auto first = recordOf(1, 1);
    auto second = recordOf(2, 2);
    first.description = "a";
    second.description = "b";
    auto third = recordOf(3, 3);
    third.description = "a";
    useCard({first, second, third});
    open(ListMode::chooseMany, {button(4), button(0)}, [](int call) {
        if (call == 0) return;
        EXPECT_EQ(rows(), "3 1 2");
        EXPECT_TRUE(list().chosen.empty());
        chooseRows({1});
    });
    std::string chosen;
    for (const auto& record : device::state.dictionary) {
        if (record.selected != 0) chosen += record.fileName;
    }
    EXPECT_EQ(chosen, nameOf(1));
}

TEST_F(TrainingList, OtherWindowsEventsAreDropped) {
    useTrainings(3);
    Event foreignButton = button(0);
    foreignButton.window = services::mainWindow;
    open(ListMode::edit, {closeEvent(services::mainWindow),
                          shortcutEvent(services::mainWindow, 1),
                          shortcutEvent(services::mainWindow, -1),
                          foreignButton,
                          {.kind = EventKind::resize, .window = services::mainWindow},
                          button(99),
                          button(0)});
    EXPECT_EQ(world.eventsWaitedFor, 7);
    EXPECT_TRUE(world.windows.empty());
}

TEST_F(TrainingList, CellsOutsideTheTableAreEmpty) {
    useTrainings(3);
    open(ListMode::edit, {button(0)}, [](int) {
        const services::ListCell cell = list().cell;
        EXPECT_EQ(cell(3, 12), "");
        EXPECT_EQ(cell(-1, 12), "");
        EXPECT_EQ(cell(0, 13), "");
        device::state.dictionary.clear();
        EXPECT_EQ(cell(0, 12), "");
    });
}

TEST_F(TrainingList, SortierenIsTheLastButtonOfEveryMode) {
    auto first = recordOf(1, 1);
    auto second = recordOf(2, 2);
    auto third = recordOf(3, 3);
    first.description = third.description = "Alpen";
    second.description = "Zug";
    useCard({first, second, third});
    const char* expected[] = {"3 2 1", "3 1 2", "3 2 1"};
    for (const auto& [mode, sort] :
         {std::pair(ListMode::edit, button(4)), std::pair(ListMode::chooseMany, button(4)),
          std::pair(ListMode::chooseOne, button(2))}) {
        SCOPED_TRACE(static_cast<int>(mode));
        device::loadDictionary();
        open(mode, {sort, sort, key(files::escapeShortcut)},
             [&](int call) { EXPECT_EQ(rows(), expected[call]); });
    }
}

}  // namespace
