// Which trainings the list's user takes: by rows, keys, double clicks and deadlines.
#include <vector>

#include "charts/chart_state.h"
#include "services/text/dates.h"
#include "tests/files/list_window_fixture.h"

namespace {

using namespace files_tests;
using files::ListMode;
using files::ListResult;
using services::Event;
using services::listWindow;
using stand_ins::world;

TEST_F(TrainingList, ConfirmingWithoutAChosenRowTakesEveryTraining) {
    useTrainings(3);
    for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
        device::state.dictionary[1].selected = 0;
        EXPECT_EQ(open(mode, {button(0)}), ListResult::all);
        EXPECT_EQ(flags(), "111");
    }
}

TEST_F(TrainingList, ConfirmingTakesTheChosenRows) {
    useTrainings(3);
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
    useTrainings(3);
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
    useTrainings(3);
    EXPECT_EQ(open(ListMode::chooseMany, {key(files::returnShortcut)},
                   [](int) {
                       chooseRows({0, 1});
                   }),
              ListResult::chosen);
    EXPECT_EQ(flags(), "010");
}

TEST_F(TrainingList, ReturnWithoutAHighlightedRowDoesNothing) {
    useTrainings(3);
    EXPECT_EQ(open(ListMode::chooseOne, {key(files::returnShortcut), button(0)}), ListResult::all);
    EXPECT_EQ(world.eventsWaitedFor, 2);
}

TEST_F(TrainingList, ADoubleClickTakesItsRowAlone) {
    useTrainings(3);
    EXPECT_EQ(open(ListMode::chooseOne, {onList(services::doubleClicked, 2)}), ListResult::chosen);
    EXPECT_EQ(flags(), "100");
}

TEST_F(TrainingList, ADoubleClickBesideTheRowsDoesNothing) {
    useTrainings(3);
    EXPECT_EQ(open(ListMode::chooseOne, {onList(services::doubleClicked, -1),
                                         onList(services::doubleClicked, 3), button(1)}),
              ListResult::cancelled);
    EXPECT_EQ(world.eventsWaitedFor, 3);
}

TEST_F(TrainingList, UpAndDownGoAroundTheEnds) {
    useTrainings(3);
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
    useTrainings(3);
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
    useTrainings(3);
    EXPECT_EQ(open(ListMode::edit, {key(files::escapeShortcut)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
    EXPECT_EQ(open(ListMode::chooseOne, {button(1)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
}

TEST_F(TrainingList, CancellingTheOverviewsChoiceLeavesOneRecord) {
    useTrainings(3);
    EXPECT_EQ(open(ListMode::chooseMany, {button(1)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "0");
    EXPECT_EQ(device::state.dictionary[0].fileName, nameOf(1));
}

TEST_F(TrainingList, ClosingTheWindowIsFinishingOrCancelling) {
    useTrainings(3);
    EXPECT_EQ(open(ListMode::edit, {closeEvent(listWindow)}, [](int) { chooseRows({0}); }),
              ListResult::all);
    EXPECT_EQ(flags(), "111");
    EXPECT_EQ(open(ListMode::chooseOne, {closeEvent(listWindow)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "000");
    EXPECT_EQ(open(ListMode::chooseMany, {closeEvent(listWindow)}), ListResult::cancelled);
    EXPECT_EQ(flags(), "0");
}

TEST_F(TrainingList, TheDeadlinesChooseByDate) {
    useTrainings(3);  // started on the 2nd to 4th of January 2013
    world.now = services::makeDate(2014, 1, 3, 12, 0, 0);
    EXPECT_EQ(open(ListMode::chooseMany, {button(2)}), ListResult::year);
    EXPECT_EQ(flags(), "001");
    world.now = services::makeDate(2013, 2, 2, 23, 59, 59);
    EXPECT_EQ(open(ListMode::chooseMany, {button(3)}), ListResult::month);
    EXPECT_EQ(flags(), "011");
}

TEST_F(TrainingList, FertigAndAuswahlTakeTheChosenRows) {
    useTrainings(3);
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
    useTrainings(3);
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
    useTrainings(3);
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

}  // namespace
