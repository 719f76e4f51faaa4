// The commands of the list's buttons: the list shows what they leave.
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/files/file_command_answers.h"
#include "tests/files/list_window_fixture.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using files::ListMode;
using services::listWindow;
using stand_ins::world;

TEST_F(TrainingList, DeletesTheChosenRowsAndFillsItselfAgain) {
    useTrainings(3);
    world.questionAnswers.push_back(deletionAnswer(true));
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
    useTrainings(3);
    const std::string index = bytesOf("dictionary.2");
    world.questionAnswers.push_back(deletionAnswer(true));
    expectNothingToDelete();
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
    world.questionAnswers.push_back(renumberingAnswer(true));
    expectRenumbered();
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
    useStick();
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
    useStick();
    device::state.renumberingEnabled = 1;
    world.questionAnswers.push_back(renumberingAnswer(true));
    expectRenumbered();
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
    useTrainings(3);
    useStick();
    open(ListMode::edit, {button(1), closeEvent(services::reportWindow), button(0)}, [](int call) {
        if (call == 1) services::resizeWindow(listWindow, 1000, 600);
        if (call == 2) {
            EXPECT_EQ(list().box, (services::Box{10, 10, 986, 555}));
        }
    });
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
        world.questionAnswers.push_back(deletionAnswer(yes));
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
