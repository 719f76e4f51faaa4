// The world as tests see it: a second implementation of the services that touch a user, a screen or
// a clock. Answers wait in queues, calls are logged. A call that nobody expected and an answer that
// nobody took fail the test.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "services/clock.h"
#include "services/controls.h"
#include "services/events.h"
#include "services/menus.h"
#include "services/requesters.h"
#include "services/text_drawing.h"
#include "services/windows.h"

namespace stand_ins {

// The test font: every byte is this wide and every text this high.
inline constexpr int characterWidth = 7;
inline constexpr int characterHeight = 15;

struct MessageCall {
    services::Text title;
    services::Text text;
    bool operator==(const MessageCall&) const = default;
};

struct QuestionAnswer {
    services::Text title;
    services::Text text;
    bool yes = false;
};

struct DirectoryAnswer {
    services::Text title;
    services::Path start;
    services::Path chosen;  // empty: cancelled
};

struct SaveFileAnswer {
    services::Text title;
    services::Path directory;
    services::Text name;
    services::Path chosen;  // empty: cancelled
};

struct ColourAnswer {
    services::Colour opened = 0;
    services::Colour chosen = 0;
};

struct TextCall {
    int x = 0;
    int y = 0;
    services::Text text;
    services::Colour colour = 0;
    bool operator==(const TextCall&) const = default;
};

struct ControlRecord {
    services::Box box;
    services::Text text;
    services::Text name;  // accessible name
    services::Text tooltip;
    std::vector<services::Text> columns;  // lists: titles
    std::vector<int> columnWidths;
    bool severalRows = false;
    services::TextExtent wanted;  // text views
    int rows = 0;
    services::ListCell cell;
    std::vector<int> chosen;  // ascending; a test chooses rows by assigning this
    int highlighted = -1;     // and this
};

struct WindowRecord {
    services::WindowRow row;
    services::Text title;  // a copy: row.title only views the caller's text
    int width = 0;
    int height = 0;
    std::map<int, int> shortcuts;                       // key to item
    std::map<int, int> timers;                          // number to period, running ones only
    std::map<int, ControlRecord> controls;              // all but images
    int focus = -1;                                     // the control that was given the keyboard
    std::map<int, services::Text> controlNames;         // accessible names
    std::map<int, services::Text> controlDescriptions;  // accessible descriptions
    std::map<int, services::Surface> images;            // as last shown
    int imagesShown = 0;
    bool shown = false;
};

struct World {
    std::deque<MessageCall> expectedMessages;
    bool anyMessageIsFine = false;  // for tests in which the system fails
    // Sees the world as it is when a message is shown or a question is asked.
    std::function<void(services::TextView title)> beforeMessage;
    std::deque<QuestionAnswer> questionAnswers;
    std::deque<DirectoryAnswer> directoryAnswers;
    std::vector<services::Path> filesOnDrives;  // what each directory requester looked for
    std::deque<SaveFileAnswer> saveFileAnswers;
    std::deque<ColourAnswer> colourAnswers;
    // What waitEvent gives, in order. `beforeEvent` runs first, with the number of the call counted
    // from 0: the place to look at an open window or to choose its rows.
    std::deque<services::Event> events;
    // So many of them, counted from the front, have happened already: dropWaitingEvents drops them.
    std::size_t happenedEvents = 0;
    std::function<void(int call)> beforeEvent;
    int eventsWaitedFor = 0;
    int repaints = 0;
    std::function<void(int call)> whileRepainting;  // counted from 0: what happens meanwhile
    std::map<int, WindowRecord> closedWindows;      // as they were when they closed

    std::vector<TextCall> texts;                               // drawn since the test began
    std::function<void(const services::Surface&)> beforeText;  // sees the picture as it is then
    // Paints each text, of which nothing is seen without it.
    std::function<void(services::Surface&, const TextCall&)> paintText;
    std::map<int, WindowRecord> windows;
    std::vector<services::MenuRow> menuRows;  // as built
    services::DateValue now = 0;
    int desktopWidth = 1000;
    int desktopHeight = 800;
    double pixelRatio = 1.0;
    int pointerY = 0;
    bool windowsOpen = true;  // false: openWindow fails
};

extern World world;

// Every queue of the world is empty before and after the test; the program's states are fresh, and
// the working directory is an empty directory of its own that is removed afterwards.
class StandInTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    std::filesystem::path directory;  // the test's own directory, absolute

  private:
    std::filesystem::path previousDirectory;
};

void expectMessage(services::TextView title, services::TextView text);

}  // namespace stand_ins
