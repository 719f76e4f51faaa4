#include "app/info_window.h"

#include "app/event_loop.h"
#include "app/help_text.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

namespace {

using services::Event;
using services::EventKind;
using services::infoWindow;
using stand_ins::characterHeight;
using stand_ins::characterWidth;
using stand_ins::world;

constexpr Event closing = {.kind = EventKind::close, .window = infoWindow};
constexpr Event escape = {.kind = EventKind::menu, .window = infoWindow, .item = 99};

class InfoWindow : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        settings::state.windowWidth = 1000;
        settings::state.windowHeight = 750;
    }

    // Runs the window on these events and keeps what it was while the last of them came.
    static stand_ins::WindowRecord run(void (*show)(), std::deque<Event> events) {
        stand_ins::WindowRecord seen;
        world.events = std::move(events);
        world.beforeEvent = [&](int) { seen = world.windows.at(infoWindow); };
        show();
        world.beforeEvent = {};
        EXPECT_FALSE(world.windows.contains(infoWindow));
        return seen;
    }
};

TEST_F(InfoWindow, OfTheVersionHasItsPlaceSizeAndText) {
    const stand_ins::WindowRecord box = run(app::showInfoBox, {closing});
    EXPECT_EQ("Programminfo", box.title);
    EXPECT_EQ(services::mainWindow, box.row.owner);
    EXPECT_EQ(1, box.row.x);
    EXPECT_EQ(1, box.row.y);
    EXPECT_EQ(38 * characterWidth, box.width);
    EXPECT_EQ(9 * characterHeight, box.height);
    EXPECT_TRUE(box.shown);
    EXPECT_EQ((std::map<int, int>{{services::escapeKey, 99}}), box.shortcuts);
    ASSERT_EQ(1U, box.controls.size());
    const stand_ins::ControlRecord& text = box.controls.at(app::infoTextControl);
    EXPECT_EQ(
        (services::Box{characterWidth, characterHeight, 36 * characterWidth, 7 * characterHeight}),
        text.box);
    EXPECT_EQ(
        "Kurbelbuch\r\n\r\nVersion: 20130531\r\nAutor: Kurbelbuch-Team\r\n"
        "Web: kurbelbuch.example\r\nMail: post@rad.example\r\n"
        "Mastodon: @kb@rad.example",
        text.text);
    EXPECT_EQ(36, text.wanted.columns);
    EXPECT_EQ(7, text.wanted.lines);
    EXPECT_EQ(app::infoTextControl, box.focus);
}

TEST_F(InfoWindow, OfTheHelpShowsTheHelpText) {
    const stand_ins::WindowRecord help = run(app::showHelpWindow, {closing});
    EXPECT_EQ("Programminfo", help.title);
    EXPECT_EQ(services::mainWindow, help.row.owner);
    EXPECT_EQ(1, help.row.x);
    EXPECT_EQ(1, help.row.y);
    EXPECT_EQ((std::map<int, int>{{services::escapeKey, 99}}), help.shortcuts);
    EXPECT_EQ(app::helpText(), help.controls.at(app::infoTextControl).text);
    EXPECT_EQ(93, help.controls.at(app::infoTextControl).wanted.columns);
}

TEST_F(InfoWindow, OfTheHelpFollowsTheRulesOfItsSize) {
    struct Row {
        const char* name;
        int settingsWidth, settingsHeight, width, height;
    };
    constexpr int widest = 95 * characterWidth;  // 665
    for (const Row& row : {
             Row{"95 characters fit", 1000, 750, widest, 693},
             Row{"they just fit", 665, 800, widest, 792},
             Row{"they don't fit", 664, 700, 594, 693},
             Row{"smallest", 256, 256, 198, 198},
             Row{"low", 1000, 99, widest, 0},
             Row{"nothing", 0, 0, 0, 0},
         }) {
        SCOPED_TRACE(row.name);
        settings::state.windowWidth = row.settingsWidth;
        settings::state.windowHeight = row.settingsHeight;
        const stand_ins::WindowRecord help = run(app::showHelpWindow, {closing});
        EXPECT_EQ(row.width, help.width);
        EXPECT_EQ(row.height, help.height);
        EXPECT_EQ((services::Box{characterWidth, characterHeight, row.width - 2 * characterWidth,
                                 row.height - 2 * characterHeight}),
                  help.controls.at(app::infoTextControl).box);
    }
}

TEST_F(InfoWindow, TakesAnySizeOfTheSettings) {
    for (const int size : {2147483647, -2147483647 - 1, -1}) {
        settings::state.windowWidth = size;
        settings::state.windowHeight = size;
        run(app::showHelpWindow, {closing});
        run(app::showInfoBox, {closing});
    }
}

TEST_F(InfoWindow, IsClosedByEscapeAndByAnyCloseRequest) {
    for (const auto show : {app::showInfoBox, app::showHelpWindow}) {
        run(show, {escape});
        run(show, {closing});
        run(show, {{.kind = EventKind::close, .window = services::mainWindow}});
        run(show, {{.kind = EventKind::menu, .window = services::mainWindow, .item = 99}});
    }
}

TEST_F(InfoWindow, DropsEveryOtherEvent) {
    for (const auto show : {app::showInfoBox, app::showHelpWindow}) {
        run(show, {{.kind = EventKind::menu, .item = 203},
                   {.kind = EventKind::menu, .item = -1},
                   {.kind = EventKind::menu, .item = 19},
                   {.kind = EventKind::timer, .item = 1},
                   {.kind = EventKind::timer, .item = 99},
                   {.kind = EventKind::resize},
                   {.kind = EventKind::click, .item = 99},
                   {.kind = EventKind::control, .window = infoWindow, .item = 99},
                   {},
                   escape});
    }
}

TEST_F(InfoWindow, ThatCannotBeOpenedIsSkippedSilently) {
    world.windowsOpen = false;
    app::showInfoBox();
    app::showHelpWindow();
    EXPECT_EQ(0, world.eventsWaitedFor);
}

TEST_F(InfoWindow, TheTextFollowsTheWindowsSize) {
    world.events = {{.kind = EventKind::resize, .window = infoWindow}, closing};
    world.beforeEvent = [](int call) {
        stand_ins::WindowRecord& window = world.windows.at(infoWindow);
        if (call == 0) window.width = 700;
        if (call == 0) window.height = 500;
        if (call == 1) {
            EXPECT_EQ((services::Box{7, 15, 700 - 14, 500 - 30}),
                      window.controls.at(app::infoTextControl).box);
        }
    };
    app::showInfoBox();
}

}  // namespace
