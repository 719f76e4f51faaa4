#include "files/list_window.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "services/text/dates.h"
#include "tests/files/files_test.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using files::ListMode;
using files::ListResult;
using services::Event;
using services::EventKind;
using services::listWindow;
using services::operator""_l1;
using stand_ins::world;

Event key(files::ListShortcut shortcut) {
    return shortcutEvent(listWindow, shortcut);
}

// The button of that place, counted from 0.
Event button(int place) {
    return {.kind = EventKind::control,
            .window = listWindow,
            .control = files::firstButtonControl + place,
            .data = services::pressed};
}

Event onList(services::ControlAction action, int row) {
    return {.kind = EventKind::control,
            .window = listWindow,
            .control = files::trainingListControl,
            .item = row,
            .data = action};
}

class TrainingList : public FilesTest {
  protected:
    // Runs the window over these events. `look` sees it before each of them, with its number.
    ListResult open(ListMode mode, const std::vector<Event>& events,
                    const std::function<void(int)>& look = {}) {
        world.events.assign(events.begin(), events.end());
        world.eventsWaitedFor = 0;
        world.beforeEvent = look;
        return files::openTrainingList(mode, 1400, 800);
    }

    static stand_ins::ControlRecord& list() {
        return world.windows.at(listWindow).controls.at(files::trainingListControl);
    }

    static std::string buttonText(int place) {
        return services::latin1ToUtf8(
            world.windows.at(listWindow).controls.at(files::firstButtonControl + place).text);
    }

    // The numbers of the trainings from the top row to the bottom one.
    static std::string rows() {
        std::string text;
        for (int row = 0; row < list().rows; ++row) {
            const std::string name = list().cell(row, 12);
            text += (text.empty() ? "" : " ") + name.substr(name.find_first_not_of('0'));
        }
        return text;
    }

    static void chooseRows(const std::vector<int>& chosen) {
        list().chosen = chosen;
        list().highlighted = chosen.empty() ? -1 : chosen.back();
    }

    static std::string flags() {
        std::string text;
        for (const auto& record : device::state.dictionary)
            text += record.selected != 0 ? '1' : '0';
        return text;
    }

    void useThreeTrainings() { useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)}); }
};

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
    useThreeTrainings();
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
    useThreeTrainings();
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
    useThreeTrainings();
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
    useThreeTrainings();
    device::state.dictionary[1].selected = 0;
    world.windowsOpen = false;
    EXPECT_EQ(open(ListMode::chooseMany, {}), ListResult::notOpened);
    EXPECT_EQ(flags(), "101");
}

TEST_F(TrainingList, ConfirmingWithoutAChosenRowTakesEveryTraining) {
    useThreeTrainings();
    for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
        device::state.dictionary[1].selected = 0;
        EXPECT_EQ(open(mode, {button(0)}), ListResult::all);
        EXPECT_EQ(flags(), "111");
    }
}

TEST_F(TrainingList, ConfirmingTakesTheChosenRows) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseMany, {button(0)},
                   [](int) {
                       chooseRows({0, 2});
                   }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "101");
    EXPECT_EQ(open(ListMode::chooseMany, {button(0)}, [](int) { chooseRows({0}); }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "001");
}

TEST_F(TrainingList, OnlyConfirmingResetsTheLimits) {
    useThreeTrainings();
    const auto limit = [] {
        charts::state.limits[3] = {.lower = 50.0F, .upper = 200.0F};
        charts::state.limits[71] = {.lower = 1.0F, .upper = 2.0F};
    };
    limit();
    open(ListMode::chooseMany, {button(2)});
    open(ListMode::chooseOne, {key(files::escapeShortcut)});
    open(ListMode::chooseOne, {onList(services::doubleClicked, 0)});
    EXPECT_EQ(charts::state.limits[3].lower, 50.0F);
    for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
        limit();
        open(mode, {button(0)});
        for (const charts::Limits& limits : charts::state.limits) {
            EXPECT_EQ(limits.lower, 0.0F);
            EXPECT_EQ(limits.upper, 0.0F);
        }
    }
}

TEST_F(TrainingList, ReturnTakesTheHighlightedRowAlone) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseMany, {key(files::returnShortcut)},
                   [](int) {
                       chooseRows({0, 1});
                   }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "010");
}

TEST_F(TrainingList, ReturnWithoutAHighlightedRowDoesNothing) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseOne, {key(files::returnShortcut), button(0)}), ListResult::all);
    EXPECT_EQ(world.eventsWaitedFor, 2);
}

TEST_F(TrainingList, ADoubleClickTakesItsRowAlone) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseOne, {onList(services::doubleClicked, 2)}), ListResult::chosen);
    EXPECT_EQ(flags(), "100");
}

TEST_F(TrainingList, ADoubleClickBesideTheRowsDoesNothing) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseOne, {onList(services::doubleClicked, -1),
                                         onList(services::doubleClicked, 3), button(1)}),
              ListResult::cancelled);
    EXPECT_EQ(world.eventsWaitedFor, 3);
}

TEST_F(TrainingList, UpAndDownGoAroundTheEnds) {
    useThreeTrainings();
    const std::vector<Event> keys = {key(files::upShortcut),   key(files::upShortcut),
                                     key(files::upShortcut),   key(files::upShortcut),
                                     key(files::downShortcut), key(files::downShortcut),
                                     key(files::downShortcut), button(0)};
    const int expected[] = {-1, 2, 1, 0, 2, 0, 1, 2};
    open(ListMode::chooseMany, keys,
         [&](int call) { EXPECT_EQ(list().highlighted, expected[call]) << call; });
    EXPECT_EQ(flags(), "100");
}

TEST_F(TrainingList, DownBeginsAtTheTop) {
    useThreeTrainings();
    open(ListMode::chooseMany, {key(files::downShortcut), button(0)},
         [&](int call) { EXPECT_EQ(list().highlighted, call == 0 ? -1 : 0); });
    EXPECT_EQ(flags(), "001");
}

TEST_F(TrainingList, ASingleTrainingStaysHighlighted) {
    useCard({recordOf(1, 1)});
    open(ListMode::chooseMany,
         {key(files::upShortcut), key(files::upShortcut), key(files::downShortcut),
          key(files::returnShortcut)},
         [](int call) {
             EXPECT_EQ(list().rows, 1);
             EXPECT_EQ(list().highlighted, call == 0 ? -1 : 0);
         });
    EXPECT_EQ(flags(), "1");
}

TEST_F(TrainingList, AnEmptyTableIgnoresTheKeys) {
    EXPECT_EQ(open(ListMode::chooseMany,
                   {key(files::upShortcut), key(files::downShortcut), key(files::returnShortcut),
                    onList(services::doubleClicked, 0), key(files::escapeShortcut)}),
              ListResult::cancelled);
    EXPECT_EQ(world.eventsWaitedFor, 5);
    EXPECT_EQ(flags(), "0");
}

TEST_F(TrainingList, CancellingClearsTheFlags) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::edit, {key(files::escapeShortcut)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
    EXPECT_EQ(open(ListMode::chooseOne, {button(1)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
}

TEST_F(TrainingList, CancellingTheOverviewsChoiceLeavesOneRecord) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::chooseMany, {button(1)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "0");
    EXPECT_EQ(device::state.dictionary[0].fileName, nameOf(1));
}

TEST_F(TrainingList, ClosingTheWindowIsFinishingOrCancelling) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::edit, {closeEvent(listWindow)}, [](int) { chooseRows({0}); }),
              ListResult::all);
    EXPECT_EQ(flags(), "111");
    EXPECT_EQ(open(ListMode::chooseOne, {closeEvent(listWindow)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
    EXPECT_EQ(open(ListMode::chooseMany, {closeEvent(listWindow)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "0");
}

TEST_F(TrainingList, TheDeadlinesChooseByDate) {
    useThreeTrainings();  // started on the 2nd to 4th of January 2013
    world.now = services::makeDate(2014, 1, 3, 12, 0, 0);
    EXPECT_EQ(open(ListMode::chooseMany, {button(2)}), ListResult::year);
    EXPECT_EQ(flags(), "001");
    world.now = services::makeDate(2013, 2, 2, 23, 59, 59);
    EXPECT_EQ(open(ListMode::chooseMany, {button(3)}), ListResult::month);
    EXPECT_EQ(flags(), "011");
}

TEST_F(TrainingList, TheFirstClickMakesAllAChoiceAndItStaysOne) {
    useThreeTrainings();
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
    useThreeTrainings();
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
    useThreeTrainings();
    open(ListMode::edit, {button(0)}, [](int) {
        const services::ListCell cell = list().cell;
        EXPECT_EQ(cell(3, 12), "");
        EXPECT_EQ(cell(-1, 12), "");
        EXPECT_EQ(cell(0, 13), "");
        device::state.dictionary.clear();
        EXPECT_EQ(cell(0, 12), "");
    });
}

TEST_F(TrainingList, DeletesTheChosenRowsAndFillsItselfAgain) {
    useThreeTrainings();
    world.questionAnswers.push_back(
        {services::Text("Lösche Datei"_l1),
         services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), true});
    open(ListMode::edit, {button(2), button(0)}, [](int call) {
        if (call == 0) {
            chooseRows({0, 1});
            return;
        }
        EXPECT_EQ(rows(), "1");
        EXPECT_TRUE(list().chosen.empty());
    });
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", nameOf(1)}));
}

TEST_F(TrainingList, DeletingWithoutAChosenRowLeavesEverything) {
    useThreeTrainings();
    const std::string index = bytesOf("dictionary.2");
    world.questionAnswers.push_back(
        {services::Text("Lösche Datei"_l1),
         services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), true});
    stand_ins::expectMessage("Lösche Datei"_l1,
                             "Es wurden keine Dateien zum Löschen ausgewählt!"_l1);
    open(ListMode::edit, {button(2), button(0)});
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_EQ(namesIn(".").size(), 4U);
}

TEST_F(TrainingList, RenumbersAndFillsItselfAgainInItsOrder) {
    auto first = recordOf(4, 1);
    auto second = recordOf(7, 2);
    auto third = recordOf(9, 3);
    first.description = third.description = "Alpen";
    second.description = "Zug";
    useCard({first, second, third});
    device::state.renumberingEnabled = true;
    world.questionAnswers.push_back({"Dateinamen neu durchnummerieren",
                                     "Sollen die Dateinamen neu durchnummeriert werden?", true});
    stand_ins::expectMessage("Dateinamen", "Die Dateinamen wurden neu durchnummeriert!");
    open(ListMode::edit, {button(4), button(3), closeEvent(services::reportWindow), button(0)},
         [](int call) {
             if (call == 1) {
                 EXPECT_EQ(rows(), "9 4 7");
             }
             // Already while the report is being read.
             if (call >= 2) {
                 EXPECT_EQ(rows(), "6 4 5");
             }
         });
}

TEST_F(TrainingList, BacksUpAndFillsItselfAgainInItsOrder) {
    auto first = recordOf(1, 1);
    auto second = recordOf(2, 2);
    auto third = recordOf(3, 3);
    first.description = third.description = "Alpen";
    second.description = "Zug";
    second.pulse = 1.0F;
    useCard({first, second, third});
    fs::create_directory(directory / "stick");
    device::state.backupDirectory = (directory / "stick").string() + "/";
    open(ListMode::edit,
         {button(4), button(1), closeEvent(services::reportWindow), key(files::escapeShortcut)},
         [](int call) {
             if (call >= 1) {
                 EXPECT_EQ(rows(), "3 1 2");
                 EXPECT_EQ(list().cell(2, 6), "001.0");
             }
         });
    EXPECT_EQ(numbersInIndex(directory / "stick" / "dictionary.2"),
              (std::vector<std::uint64_t>{1, 2, 3}));
}

TEST_F(TrainingList, ReportsAreAsHighAsTheMainWindowIsWhenTheyOpen) {
    auto first = recordOf(4, 1);
    auto second = recordOf(7, 2);
    useCard({first, second});
    fs::create_directory(directory / "stick");
    device::state.backupDirectory = (directory / "stick").string() + "/";
    device::state.renumberingEnabled = 1;
    world.questionAnswers.push_back({"Dateinamen neu durchnummerieren",
                                     "Sollen die Dateinamen neu durchnummeriert werden?", true});
    stand_ins::expectMessage("Dateinamen", "Die Dateinamen wurden neu durchnummeriert!");
    services::openWindow(
        {.number = services::mainWindow, .width = 1400, .height = 800, .title = "Kurbelbuch"});
    const auto mainBecomes = [](int height) {
        services::resizeWindow(services::mainWindow, 1400, height);
    };
    const auto reportHeight = [] { return services::windowHeight(services::reportWindow); };
    open(ListMode::edit,
         {button(1), closeEvent(services::reportWindow), button(3),
          closeEvent(services::reportWindow), button(1), closeEvent(services::reportWindow),
          button(0)},
         [&](int call) {
             if (call == 0) mainBecomes(599);
             if (call == 1) {
                 EXPECT_EQ(reportHeight(), 490);
             }
             if (call == 2) mainBecomes(1200);
             if (call == 3) {
                 EXPECT_EQ(reportHeight(), 1176);
             }
             if (call == 4) mainBecomes(100);
             if (call == 5) {
                 EXPECT_EQ(reportHeight(), 196);
             }
         });
}

TEST_F(TrainingList, FollowsItsWindowAfterACommandThatForgotItsEvents) {
    useThreeTrainings();
    fs::create_directory(directory / "stick");
    device::state.backupDirectory = (directory / "stick").string() + "/";
    open(ListMode::edit, {button(1), closeEvent(services::reportWindow), button(0)}, [](int call) {
        if (call == 1) services::resizeWindow(listWindow, 1000, 600);
        if (call == 2) {
            EXPECT_EQ(list().box, (services::Box{10, 10, 986, 555}));
        }
    });
}

TEST_F(TrainingList, FertigAndAuswahlTakeTheChosenRows) {
    useThreeTrainings();
    EXPECT_EQ(open(ListMode::edit, {button(0)},
                   [](int) {
                       chooseRows({0, 2});
                   }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "101");
    EXPECT_EQ(open(ListMode::chooseOne, {button(0)}, [](int) { chooseRows({1}); }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "010");
}

TEST_F(TrainingList, ReturnAndADoubleClickLeaveEveryMode) {
    useThreeTrainings();
    for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
        SCOPED_TRACE(static_cast<int>(mode));
        EXPECT_EQ(open(mode, {key(files::returnShortcut)}, [](int) { chooseRows({1}); }),
                  ListResult::chosen);
        EXPECT_EQ(flags(), "010");
        EXPECT_EQ(open(mode, {onList(services::doubleClicked, 0)}), ListResult::chosen);
        EXPECT_EQ(flags(), "001");
        EXPECT_TRUE(world.windows.empty());
    }
}

TEST_F(TrainingList, UpAndDownMoveInEveryMode) {
    useThreeTrainings();
    const int expected[] = {-1, 2, 1, 2, 0};
    for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
        SCOPED_TRACE(static_cast<int>(mode));
        open(mode,
             {key(files::upShortcut), key(files::upShortcut), key(files::downShortcut),
              key(files::downShortcut), key(files::returnShortcut)},
             [&](int call) { EXPECT_EQ(list().highlighted, expected[call]) << call; });
        EXPECT_EQ(flags(), "001");
    }
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

// Also when nothing was deleted: the rows are new ones, of which none is chosen.
TEST_F(TrainingList, FillsItselfAgainInItsOrderAfterDeletingOrNot) {
    auto first = recordOf(1, 1);
    auto second = recordOf(2, 2);
    auto third = recordOf(3, 3);
    auto fourth = recordOf(4, 4);
    first.description = third.description = "Alpen";
    second.description = fourth.description = "Zug";
    useCard({first, second, third, fourth});
    for (const bool yes : {false, true}) {
        world.questionAnswers.push_back(
            {services::Text("Lösche Datei"_l1),
             services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), yes});
    }
    open(ListMode::edit, {button(4), button(2), button(2), key(files::escapeShortcut)},
         [](int call) {
             const char* expected[] = {"4 3 2 1", "3 1 4 2", "3 1 4 2", "3 1 2"};
             EXPECT_EQ(rows(), expected[call]);
             EXPECT_TRUE(list().chosen.empty()) << call;
             if (call == 1 || call == 2) chooseRows({2});
         });
    EXPECT_FALSE(fs::exists(nameOf(4)));
}

}  // namespace
