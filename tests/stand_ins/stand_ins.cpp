#include "tests/stand_ins/stand_ins.h"

#include <algorithm>
#include <cstdlib>

namespace stand_ins {

World world;

namespace {

template <typename Answer>
bool takeAnswer(std::deque<Answer>& answers, Answer& answer, const char* what) {
    if (answers.empty()) {
        ADD_FAILURE() << "nobody expected " << what;
        return false;
    }
    answer = answers.front();
    answers.pop_front();
    return true;
}

// The open window that owns no other.
int innermostWindow() {
    int innermost = services::mainWindow;
    for (const auto& [number, window] : world.windows) {
        const auto isOwned = [owner = number](const auto& other) {
            return other.second.row.owner == owner;
        };
        if (std::ranges::none_of(world.windows, isOwned)) innermost = number;
    }
    return innermost;
}

}  // namespace

void StandInTest::SetUp() {
    world = {};
    services::menuState = {};
    previousDirectory = std::filesystem::current_path();
    std::string pattern =
        (std::filesystem::temp_directory_path() / "kurbelbuch-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory = pattern;
    std::filesystem::current_path(directory);
}

void StandInTest::TearDown() {
    EXPECT_TRUE(world.expectedMessages.empty()) << "a message was not shown";
    EXPECT_TRUE(world.questionAnswers.empty()) << "a question was not asked";
    EXPECT_TRUE(world.directoryAnswers.empty()) << "a directory was not asked for";
    EXPECT_TRUE(world.saveFileAnswers.empty()) << "a file was not asked for";
    EXPECT_TRUE(world.colourAnswers.empty()) << "a colour was not asked for";
    EXPECT_TRUE(world.events.empty()) << "an event was not read";
    std::filesystem::current_path(previousDirectory);
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

void expectMessage(services::TextView title, services::TextView text) {
    world.expectedMessages.push_back({services::Text(title), services::Text(text)});
}

}  // namespace stand_ins

namespace services {

using stand_ins::world;

void showMessage(TextView title, TextView text) {
    if (world.beforeMessage) world.beforeMessage(title);
    if (world.anyMessageIsFine) return;
    stand_ins::MessageCall expected;
    if (!stand_ins::takeAnswer(world.expectedMessages, expected, "a message")) {
        ADD_FAILURE() << latin1ToUtf8(title) << ": " << latin1ToUtf8(text);
        return;
    }
    EXPECT_EQ(latin1ToUtf8(expected.title), latin1ToUtf8(title));
    EXPECT_EQ(latin1ToUtf8(expected.text), latin1ToUtf8(text));
}

bool askYesNo(TextView title, TextView text) {
    if (world.beforeMessage) world.beforeMessage(title);
    stand_ins::QuestionAnswer expected;
    if (!stand_ins::takeAnswer(world.questionAnswers, expected, "a question")) {
        ADD_FAILURE() << latin1ToUtf8(title) << ": " << latin1ToUtf8(text);
        return false;
    }
    EXPECT_EQ(latin1ToUtf8(expected.title), latin1ToUtf8(title));
    EXPECT_EQ(latin1ToUtf8(expected.text), latin1ToUtf8(text));
    return expected.yes;
}

Path chooseDirectory(TextView title, PathView start, PathView fileOnDrive) {
    world.filesOnDrives.emplace_back(fileOnDrive);
    stand_ins::DirectoryAnswer expected;
    if (!stand_ins::takeAnswer(world.directoryAnswers, expected, "a directory requester"))
        return {};
    EXPECT_EQ(latin1ToUtf8(expected.title), latin1ToUtf8(title));
    EXPECT_EQ(expected.start, start);
    return expected.chosen;
}

Path chooseSaveFile(TextView title, PathView directory, TextView name, TextView pattern) {
    stand_ins::SaveFileAnswer expected;
    if (!stand_ins::takeAnswer(world.saveFileAnswers, expected, "a save-file requester")) return {};
    EXPECT_EQ(latin1ToUtf8(expected.title), latin1ToUtf8(title));
    EXPECT_EQ(expected.directory, directory);
    EXPECT_EQ(latin1ToUtf8(expected.name), latin1ToUtf8(name));
    EXPECT_EQ("*.csv", pattern);
    return expected.chosen;
}

Colour chooseColour(Colour current) {
    stand_ins::ColourAnswer expected;
    if (!stand_ins::takeAnswer(world.colourAnswers, expected, "a colour requester")) return current;
    EXPECT_EQ(expected.opened, current);
    return expected.chosen;
}

DateValue now() {
    return world.now;
}

int textWidth(TextView text) {
    return stand_ins::characterWidth * static_cast<int>(text.size());
}

int textHeight(TextView) {
    return stand_ins::characterHeight;
}

int controlTextWidth(TextView text) {
    return stand_ins::characterWidth * static_cast<int>(text.size());
}

int controlTextHeight() {
    return stand_ins::characterHeight;
}

void drawText(Surface& surface, int x, int y, TextView text, Colour colour) {
    if (world.beforeText) world.beforeText(surface);
    world.texts.push_back({x, y, Text(text), colour});
    if (world.paintText) world.paintText(surface, world.texts.back());
}

void dropWaitingEvents() {
    for (; world.happenedEvents > 0 && !world.events.empty(); --world.happenedEvents)
        world.events.pop_front();
}

Event waitEvent() {
    if (world.beforeEvent) world.beforeEvent(world.eventsWaitedFor);
    ++world.eventsWaitedFor;
    Event event;
    if (!stand_ins::takeAnswer(world.events, event, "a wait for events")) {
        // Ends whatever loop waits, so that the failure is shown instead of a hang.
        return {.kind = EventKind::close, .window = stand_ins::innermostWindow()};
    }
    return event;
}

int desktopCount() {
    return 1;
}
int desktopWidth(int screen) {
    return screen == 0 ? world.desktopWidth : 0;
}
int desktopHeight(int screen) {
    return screen == 0 ? world.desktopHeight : 0;
}

bool openWindow(const WindowRow& row) {
    if (!world.windowsOpen) return false;
    stand_ins::WindowRecord& record = world.windows[row.number];
    record = {};
    record.row = row;
    record.title = Text(row.title);
    record.row.title = {};
    record.width = row.width;
    record.height = row.height;
    return true;
}

void showWindow(int window) {
    world.windows[window].shown = true;
}

void closeWindow(int window) {
    const auto found = world.windows.find(window);
    if (found == world.windows.end()) return;
    // Moved as it is: closing a window must work without any memory.
    world.closedWindows.erase(window);
    world.closedWindows.insert(world.windows.extract(found));
}

void letWindowsRepaint() {
    const int call = world.repaints++;
    if (world.whileRepainting) world.whileRepainting(call);
}

int windowWidth(int window) {
    const auto found = world.windows.find(window);
    return found == world.windows.end() ? 0 : found->second.width;
}

int windowHeight(int window) {
    const auto found = world.windows.find(window);
    return found == world.windows.end() ? 0 : found->second.height;
}

double windowPixelRatio(int) {
    return world.pixelRatio;
}

void resizeWindow(int window, int width, int height) {
    world.windows[window].width = width;
    world.windows[window].height = height;
}

void keyboardShortcut(int window, int key, int item) {
    world.windows[window].shortcuts[key] = item;
}

void createImageControl(int window, int control, TextView accessibleName) {
    world.windows[window].controlNames[control] = Text(accessibleName);
}

void showImage(int window, int control, const Surface& surface) {
    world.windows[window].images[control] = surface;
    ++world.windows[window].imagesShown;
}

// Takes over no more than the boxes, so that a change outside of them is missed as on a screen.
void showImageParts(int window, int control, const Surface& surface,
                    std::span<const DeviceBox> changed) {
    Surface& shown = world.windows[window].images[control];
    if (shown.pixels.size() != surface.pixels.size()) {
        shown = surface;
    } else {
        for (const DeviceBox& box : changed)
            copyBox(shown, surface, box);
    }
    ++world.windows[window].imagesShown;
}

void describeControl(int window, int control, TextView accessibleDescription) {
    world.windows[window].controlDescriptions[control] = Text(accessibleDescription);
}

void startWindowTimer(int window, int timer, int milliseconds) {
    world.windows[window].timers[timer] = milliseconds;
}

void stopWindowTimer(int window, int timer) {
    world.windows[window].timers.erase(timer);
}

int pointerY(int) {
    return world.pointerY;
}

namespace {

stand_ins::ControlRecord* findControl(int window, int control) {
    const auto found = world.windows.find(window);
    if (found == world.windows.end()) return nullptr;
    const auto foundControl = found->second.controls.find(control);
    return foundControl == found->second.controls.end() ? nullptr : &foundControl->second;
}

stand_ins::ControlRecord& newControl(int window, int control, const Box& box) {
    stand_ins::ControlRecord& record = world.windows[window].controls[control];
    record = {};
    record.box = box;
    return record;
}

}  // namespace

void createButton(int window, int control, const Box& box, TextView text, TextView tooltip) {
    stand_ins::ControlRecord& record = newControl(window, control, box);
    record.text = record.name = Text(text);
    record.tooltip = Text(tooltip);
}

void createLabel(int window, int control, const Box& box, TextView text) {
    newControl(window, control, box).text = Text(text);
}

void createTextField(int window, int control, const Box& box, TextView text,
                     TextView accessibleName, TextView tooltip) {
    stand_ins::ControlRecord& record = newControl(window, control, box);
    record.text = Text(text);
    record.name = Text(accessibleName);
    record.tooltip = Text(tooltip);
}

void createTextView(int window, int control, const Box& box, TextView accessibleName,
                    TextExtent wanted) {
    stand_ins::ControlRecord& record = newControl(window, control, box);
    record.name = Text(accessibleName);
    record.wanted = wanted;
}

void createList(int window, int control, const Box& box, std::span<const ListColumn> columns,
                bool severalRows, TextView accessibleName) {
    stand_ins::ControlRecord& record = newControl(window, control, box);
    for (const ListColumn& column : columns) {
        record.columns.emplace_back(column.title);
        record.columnWidths.push_back(column.width);
    }
    record.severalRows = severalRows;
    record.name = Text(accessibleName);
}

void fillList(int window, int control, int rows, ListCell cell) {
    stand_ins::ControlRecord* record = findControl(window, control);
    if (record == nullptr) return;
    record->rows = rows;
    record->cell = std::move(cell);
    record->chosen.clear();
    record->highlighted = -1;
}

std::vector<int> chosenRows(int window, int control) {
    const stand_ins::ControlRecord* record = findControl(window, control);
    return record == nullptr ? std::vector<int>() : record->chosen;
}

int highlightedRow(int window, int control) {
    const stand_ins::ControlRecord* record = findControl(window, control);
    return record == nullptr ? -1 : record->highlighted;
}

void highlightRow(int window, int control, int row) {
    stand_ins::ControlRecord* record = findControl(window, control);
    if (record == nullptr || row < 0 || row >= record->rows) return;
    record->chosen = {row};
    record->highlighted = row;
}

void placeControl(int window, int control, const Box& box) {
    if (stand_ins::ControlRecord* record = findControl(window, control)) record->box = box;
}

Text controlText(int window, int control) {
    const stand_ins::ControlRecord* record = findControl(window, control);
    return record == nullptr ? Text() : record->text;
}

void setControlText(int window, int control, TextView text) {
    if (stand_ins::ControlRecord* record = findControl(window, control)) record->text = Text(text);
}

void appendControlText(int window, int control, TextView text) {
    if (stand_ins::ControlRecord* record = findControl(window, control)) record->text += text;
}

void focusControl(int window, int control) {
    world.windows[window].focus = control;
}

void showMenuBar(int, std::span<const MenuRow> rows) {
    world.menuRows.assign(rows.begin(), rows.end());
}

void showItemState(int) {}

}  // namespace services
