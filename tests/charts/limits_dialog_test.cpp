#include "charts/limits_dialog.h"

#include <functional>

#include "services/controls.h"
#include "services/events.h"
#include "tests/charts/chart_test.h"

namespace {

using charts::ChartKind;
using charts::Limits;
using services::Event;
using services::EventKind;
using services::limitsWindow;
using services::operator""_l1;
using stand_ins::world;

constexpr int watt = 3;

// What the user does: first something to the open window, then the event of it.
struct Step {
    std::function<void()> act;
    Event event;
};

stand_ins::WindowRecord& dialog() {
    return world.windows.at(limitsWindow);
}

const services::Text& fieldText(int field) {
    return dialog().controls.at(field).text;
}

Step press(int control) {
    return {{}, {.kind = EventKind::control, .window = limitsWindow, .control = control}};
}

Step key(int item) {
    return {{}, {.kind = EventKind::menu, .window = limitsWindow, .item = item}};
}

Step edit(int field, const char* text) {
    return {[field, text] { dialog().controls.at(field).text = text; },
            {.kind = EventKind::control,
             .window = limitsWindow,
             .control = field,
             .data = services::edited}};
}

// A field reports what the program put into it.
Step report(int field) {
    Step step = press(field);
    step.event.data = services::edited;
    return step;
}

Step look(const std::function<void()>& check) {
    return {check, {}};
}

class LimitsDialog : public chart_tests::ChartTest {
  protected:
    void SetUp() override {
        ChartTest::SetUp();
        device::state.dictionary = chart_tests::recordsOfWatt({60.126F, 70, 80.5F});
    }

    static void run(const std::vector<Step>& steps, ChartKind kind = ChartKind::overview,
                    int value = watt) {
        world.events.clear();
        world.eventsWaitedFor = 0;
        for (const Step& step : steps)
            world.events.push_back(step.event);
        world.beforeEvent = [&](int call) {
            const auto index = static_cast<std::size_t>(call);
            if (index < steps.size() && steps[index].act) steps[index].act();
        };
        charts::editLimits(kind, value);
        world.beforeEvent = {};
    }

    static Limits& limits(int value = watt) {
        return charts::state.limits[static_cast<std::size_t>(value)];
    }

    static void expectLimits(float lower, float upper) {
        EXPECT_EQ(lower, limits().lower);
        EXPECT_EQ(upper, limits().upper);
    }
};

TEST_F(LimitsDialog, HasItsTitleTextsAndTooltips) {
    run({look([] {
             EXPECT_EQ("Grenzwerte", dialog().title);
             EXPECT_EQ(services::mainWindow, dialog().row.owner);
             EXPECT_TRUE(dialog().row.fromOwner);  // it opens near the chart
             EXPECT_EQ(dialog().width, dialog().row.minimumWidth);
             EXPECT_EQ(dialog().height, dialog().row.minimumHeight);
             EXPECT_TRUE(dialog().shown);
             EXPECT_EQ(301, dialog().focus);
             EXPECT_EQ((std::map<int, int>{{services::returnKey, 98}, {services::escapeKey, 99}}),
                       dialog().shortcuts);
             struct Row {
                 int control;
                 services::TextView text;
                 services::TextView tooltip;
             };
             for (const Row& row : {
                      Row{300, "Min:"_l1, ""_l1},
                      Row{301, "60,13"_l1, "Eingabe des minimalen Wertes > 0"_l1},
                      Row{302, "Max:"_l1, ""_l1},
                      Row{303, "80,50"_l1, "Eingabe des maximalen Wertes"_l1},
                      Row{304, "Übernehmen"_l1, "Eingaben anwenden"_l1},
                      Row{305, "Abbruch"_l1, "Eingabe ohne Änderung verlassen"_l1},
                      Row{306, "Reset"_l1, "Grenzwerte der Datei setzen"_l1},
                  }) {
                 SCOPED_TRACE(row.control);
                 const stand_ins::ControlRecord& control = dialog().controls.at(row.control);
                 EXPECT_EQ(row.text, control.text);
                 EXPECT_EQ(row.tooltip, control.tooltip);
             }
             EXPECT_EQ(7U, dialog().controls.size());
         }),
         key(99)});
}

TEST_F(LimitsDialog, CutsOffNoTextAndLaysNoControlOverAnother) {
    // The longest figure a field can open with.
    device::state.dictionary = chart_tests::recordsOfWatt({60, 3.4e38F});
    run({look([] {
             const auto& controls = dialog().controls;
             for (const auto& [number, control] : controls) {
                 SCOPED_TRACE(number);
                 const services::Box& box = control.box;
                 EXPECT_GE(box.width, services::textWidth(control.text));
                 EXPECT_GE(box.height, services::textHeight(control.text));
                 EXPECT_GE(box.x, 0);
                 EXPECT_GE(box.y, 0);
                 EXPECT_LE(box.x + box.width, dialog().width);
                 EXPECT_LE(box.y + box.height, dialog().height);
                 for (const auto& [otherNumber, other] : controls) {
                     if (otherNumber == number) continue;
                     const bool apart = box.x + box.width <= other.box.x ||
                                        other.box.x + other.box.width <= box.x ||
                                        box.y + box.height <= other.box.y ||
                                        other.box.y + other.box.height <= box.y;
                     EXPECT_TRUE(apart) << otherNumber;
                 }
             }
         }),
         key(99)});
}

TEST_F(LimitsDialog, IsGoneAfterwards) {
    run({press(304)});
    EXPECT_FALSE(world.windows.contains(limitsWindow));
    run({press(305)});
    EXPECT_FALSE(world.windows.contains(limitsWindow));
}

TEST_F(LimitsDialog, OpensWithTheLimitsThatAreSet) {
    limits() = {.lower = 65, .upper = 0};
    run({look([] {
             EXPECT_EQ("65,00", fieldText(301));
             EXPECT_EQ("80,50", fieldText(303));
         }),
         key(99)});
    expectLimits(65, 0);
}

TEST_F(LimitsDialog, Typing12Comma5IntoTheLowerFieldStores12Point5) {
    run({edit(301, "12,5"), press(304)});
    expectLimits(12.5F, 80.5F);
}

TEST_F(LimitsDialog, ReturnAppliesAsTheButtonDoes) {
    run({edit(303, "75"), key(98)});
    expectLimits(60.126F, 75);
}

TEST_F(LimitsDialog, FiguresThatNobodyEditedAreStoredUnrounded) {
    run({press(304)});
    expectLimits(60.126F, 80.5F);
}

TEST_F(LimitsDialog, Lower80AndUpper60BecomeLower60AndUpper80) {
    run({edit(301, "80"), edit(303, "60"), press(304)});
    expectLimits(60, 80);
}

TEST_F(LimitsDialog, ResetAndAbbruchLeaveTheStoredLimits) {
    limits() = {.lower = 65, .upper = 75};
    run({press(306), look([] {
             EXPECT_EQ("60,13", fieldText(301));
             EXPECT_EQ("80,50", fieldText(303));
             // Also while the dialog is still open.
             expectLimits(65, 75);
         }),
         press(305)});
    expectLimits(65, 75);
}

TEST_F(LimitsDialog, ResetAndUebernehmenStoreTheDatasOwnMinimumAndMaximum) {
    limits() = {.lower = 65, .upper = 75};
    run({press(306), report(301), report(303), press(304)});
    expectLimits(60.126F, 80.5F);
}

TEST_F(LimitsDialog, ResetForgetsWhatWasTyped) {
    run({edit(301, "1"), edit(303, "2"), press(306), report(301), report(303), press(304)});
    expectLimits(60.126F, 80.5F);
}

TEST_F(LimitsDialog, TypingAfterResetCounts) {
    run({press(306), report(301), report(303), edit(303, "79,5"), press(304)});
    expectLimits(60.126F, 79.5F);
}

TEST_F(LimitsDialog, AClearedFieldRemovesThatLimit) {
    limits() = {.lower = 65, .upper = 75};
    run({edit(301, ""), press(304)});
    expectLimits(0, 75);
}

TEST_F(LimitsDialog, ATextThatIsNoNumberRemovesThatLimit) {
    limits() = {.lower = 65, .upper = 75};
    run({edit(301, "kein"), press(304)});
    expectLimits(0, 75);
}

TEST_F(LimitsDialog, AbbruchEscapeAndClosingChangeNothing) {
    limits() = {.lower = 65, .upper = 75};
    const Step close = {{}, {.kind = EventKind::close, .window = limitsWindow}};
    for (const Step& leave : {press(305), key(99), close}) {
        run({edit(301, "1"), edit(303, "2"), leave});
        expectLimits(65, 75);
    }
}

TEST_F(LimitsDialog, DropsWhatIsNotMeantForIt) {
    run({{{}, {.kind = EventKind::timer, .item = 1}},
         {{}, {.kind = EventKind::click}},
         {{}, {.kind = EventKind::menu, .item = 203}},
         {{}, {.kind = EventKind::resize}},
         {{}, {.kind = EventKind::move, .window = limitsWindow}},
         {{}, {.kind = EventKind::control, .window = services::listWindow, .control = 304}},
         {{}, {.kind = EventKind::control, .window = limitsWindow, .control = 300}},
         edit(301, "61"),
         press(304)});
    expectLimits(61, 80.5F);
}

TEST_F(LimitsDialog, ThatCannotBeOpenedIsSkippedSilently) {
    world.windowsOpen = false;
    limits() = {.lower = 65, .upper = 75};
    run({});
    expectLimits(65, 75);
    EXPECT_EQ(0, world.eventsWaitedFor);
}

TEST_F(LimitsDialog, OfATrainingValueReadsTheSamples) {
    device::state.samples = chart_tests::samplesOfWatt({0, 90, 120});
    run({look([] {
             EXPECT_EQ("90,00", fieldText(301));
             EXPECT_EQ("120,00", fieldText(303));
         }),
         edit(303, "100"), press(304)},
        ChartKind::training, 59);
    EXPECT_EQ(90.0F, limits(59).lower);
    EXPECT_EQ(100.0F, limits(59).upper);
    expectLimits(0, 0);
}

TEST_F(LimitsDialog, OfAValueWithoutDataShowsZeros) {
    device::state.dictionary.clear();
    run({look([] {
             EXPECT_EQ("0,00", fieldText(301));
             EXPECT_EQ("0,00", fieldText(303));
         }),
         press(304)});
    expectLimits(0, 0);
}

TEST_F(LimitsDialog, IsNotOpenedForNumbersThatAreNoValueOfTheChart) {
    for (const int value : {-1, 20, 49, 53, 72, 2147483647})
        run({}, ChartKind::overview, value);
    for (const int value : {-1, 3, 49, 72, -2147483647})
        run({}, ChartKind::training, value);
    EXPECT_EQ(0, world.eventsWaitedFor);
}

TEST_F(LimitsDialog, OfATrainingValueOpensWithItsLimitsAndResetsToTheSamples) {
    device::state.samples = chart_tests::samplesOfWatt({90, 120, 150});
    limits(59) = {.lower = 100, .upper = 140};
    limits(9) = {.lower = 1, .upper = 2};
    run({look([] {
             EXPECT_EQ("100,00", fieldText(301));
             EXPECT_EQ("140,00", fieldText(303));
         }),
         press(306), look([] {
             EXPECT_EQ("90,00", fieldText(301));
             EXPECT_EQ("150,00", fieldText(303));
             EXPECT_EQ(100.0F, limits(59).lower);
             EXPECT_EQ(140.0F, limits(59).upper);
         }),
         press(305)},
        ChartKind::training, 59);
    EXPECT_EQ(100.0F, limits(59).lower);
    EXPECT_EQ(140.0F, limits(59).upper);
    run({press(306), press(304)}, ChartKind::training, 59);
    EXPECT_EQ(90.0F, limits(59).lower);
    EXPECT_EQ(150.0F, limits(59).upper);
    EXPECT_EQ(1.0F, limits(9).lower);
}

}  // namespace
