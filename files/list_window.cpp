#include "files/list_window.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "charts/chart_state.h"
#include "device/device_state.h"
#include "device/index_recovery.h"
#include "files/backup_copy.h"
#include "files/deletion.h"
#include "files/list_layout.h"
#include "files/renumbering.h"
#include "files/training_order.h"
#include "files/training_rows.h"
#include "services/clock.h"
#include "services/controls.h"
#include "services/disk/memory.h"
#include "services/events.h"
#include "services/windows.h"

namespace files {

using services::operator""_l1;

namespace {

using services::Event;
using services::EventKind;
using services::listWindow;

enum class Command { confirm, backup, remove, renumber, sort, cancel, lastYear, lastMonth };

struct ButtonRow {
    Command command;
    services::TextView text;
};

constexpr ButtonRow editButtons[] = {{Command::confirm, "Fertig"_l1},
                                     {Command::backup, "Sicherheitskopie"_l1},
                                     {Command::remove, "Löschen"_l1},
                                     {Command::renumber, "Nummerieren"_l1},
                                     {Command::sort, "Sortieren"_l1}};

constexpr ButtonRow chooseManyButtons[] = {{Command::confirm, "Alle"_l1},
                                           {Command::cancel, "Abbruch"_l1},
                                           {Command::lastYear, "Jahresfrist"_l1},
                                           {Command::lastMonth, "Monatsfrist"_l1},
                                           {Command::sort, "Sortieren"_l1}};

constexpr ButtonRow chooseOneButtons[] = {{Command::confirm, "Auswahl"_l1},
                                          {Command::cancel, "Abbruch"_l1},
                                          {Command::sort, "Sortieren"_l1}};

// The first button of a list that takes all trainings, before and after the first click.
constexpr services::TextView takesAll = "Alle"_l1;
constexpr services::TextView takesChosen = "Auswahl"_l1;

std::span<const ButtonRow> buttonsOf(ListMode mode) {
    switch (mode) {
        case ListMode::edit:
            return editButtons;
        case ListMode::chooseMany:
            return chooseManyButtons;
        case ListMode::chooseOne:
            return chooseOneButtons;
    }
    return {};
}

// One open list. Lives in openTrainingList.
struct List {
    ListMode mode = ListMode::edit;
    FontMeasures font;
    ButtonTexts buttonTexts = {};
    SortMode sortMode = SortMode::byDate;
    ListResult result = ListResult::all;
    bool left = false;
};

std::vector<device::DictionaryRecord>& trainings() {
    return device::state.dictionary;
}

// The view may ask at any moment, also while a command has changed the table and the list isn't
// filled again yet.
services::Text cellOfRow(int row, int column) {
    const auto index = recordOfRow(row, trainings().size());
    return index ? trainingCell(trainings()[*index], column) : services::Text();
}

void fill(List& list) {
    // By date needs no memory.
    if (!services::withinMemory([&list] { sortTrainings(trainings(), list.sortMode); })) {
        list.sortMode = SortMode::byDate;
        sortTrainings(trainings(), list.sortMode);
    }
    services::fillList(listWindow, trainingListControl, static_cast<int>(trainings().size()),
                       cellOfRow);
}

void leave(List& list, ListResult result) {
    list.result = result;
    list.left = true;
}

std::vector<int> copyRowStates() {
    std::vector<int> rows = services::chosenRows(listWindow, trainingListControl);
    selectRows(trainings(), rows);
    return rows;
}

// A row without a training, such as none at all, is no choice.
void takeRow(List& list, int row) {
    if (!recordOfRow(row, trainings().size())) return;
    selectRows(trainings(), std::array{row});
    leave(list, ListResult::chosen);
}

// Up or down by one, around the ends. Without a highlighted row the way begins outside the list.
void moveHighlight(int step) {
    const int rows = static_cast<int>(trainings().size());
    if (rows == 0) return;
    const int row = services::highlightedRow(listWindow, trainingListControl);
    const int outside = step > 0 ? -1 : rows;
    const int next = (row < 0 ? outside : row) + step;
    services::highlightRow(listWindow, trainingListControl, (next + rows) % rows);
}

void confirm(List& list) {
    const bool anyChosen = !copyRowStates().empty();
    charts::state.limits = {};
    leave(list, anyChosen ? ListResult::chosen : ListResult::all);
}

ListLayout currentLayout(const List& list) {
    return layOutList(
        list.font,
        {.width = services::windowWidth(listWindow), .height = services::windowHeight(listWindow)},
        list.buttonTexts);
}

void followSize(const List& list) {
    const ListLayout layout = currentLayout(list);
    services::placeControl(listWindow, trainingListControl, layout.list);
    int control = firstButtonControl;
    for (const services::Box& box : layout.buttons)
        services::placeControl(listWindow, control++, box);
}

// Reports are as high as the main window is when they open, not when the list did. That window's
// height never stays below this.
int mainHeightNow() {
    constexpr int smallest = 256;
    return std::max(smallest, services::windowHeight(services::mainWindow));
}

void runCommand(List& list, Command command) {
    const auto refill = [&list] { fill(list); };
    switch (command) {
        case Command::confirm:
            confirm(list);
            break;
        case Command::backup:
            copyToBackup(mainHeightNow(), refill);
            break;
        case Command::remove:
            copyRowStates();
            deleteChosenTrainings();
            refill();
            break;
        case Command::renumber:
            copyRowStates();
            renumberTrainings(mainHeightNow(), refill);
            refill();
            break;
        case Command::sort:
            list.sortMode =
                list.sortMode == SortMode::byDate ? SortMode::byDescription : SortMode::byDate;
            refill();
            break;
        case Command::cancel:
            leave(list, ListResult::cancelled);
            break;
        case Command::lastYear:
            leave(list, ListResult::year);
            break;
        case Command::lastMonth:
            leave(list, ListResult::month);
            break;
    }
    // The commands with a report of their own forget what happened to this window meanwhile.
    followSize(list);
}

void dispatchShortcut(List& list, int item) {
    switch (item) {
        case escapeShortcut:
            leave(list, ListResult::cancelled);
            break;
        case returnShortcut:
            takeRow(list, services::highlightedRow(listWindow, trainingListControl));
            break;
        case upShortcut:
            moveHighlight(-1);
            break;
        case downShortcut:
            moveHighlight(1);
            break;
        default:
            break;
    }
}

void dispatchControl(List& list, const Event& event) {
    if (event.control == trainingListControl) {
        if (event.data == services::doubleClicked) takeRow(list, event.item);
        if (event.data == services::clicked &&
            services::controlText(listWindow, firstButtonControl) == takesAll) {
            services::setControlText(listWindow, firstButtonControl, takesChosen);
        }
        return;
    }
    const std::span<const ButtonRow> buttons = buttonsOf(list.mode);
    const int button = event.control - firstButtonControl;
    if (event.data != services::pressed || button < 0 || button >= static_cast<int>(buttons.size()))
        return;
    const Command command = buttons[static_cast<std::size_t>(button)].command;
    if (services::withinMemory([&list, command] { runCommand(list, command); })) return;
    device::leaveTree();
    services::closeWindow(services::reportWindow);
    fill(list);
}

// Events of other windows are dropped: the list is modal.
void dispatchEvent(List& list, const Event& event) {
    if (event.window != listWindow) return;
    switch (event.kind) {
        case EventKind::menu:
            dispatchShortcut(list, event.item);
            break;
        case EventKind::control:
            dispatchControl(list, event);
            break;
        case EventKind::resize:
            followSize(list);
            break;
        case EventKind::close:
            leave(list, list.mode == ListMode::edit ? ListResult::all : ListResult::cancelled);
            break;
        default:
            break;
    }
}

bool openListWindow(const List& list, int mainWidth, int mainHeight) {
    const ListWindowSize smallest = smallestListWindow(list.font, list.buttonTexts);
    const ListWindowSize size = listWindowSize(list.font, mainWidth, mainHeight);
    return services::openWindow({.number = listWindow,
                                 .width = std::max(size.width, smallest.width),
                                 .height = std::max(size.height, smallest.height),
                                 .minimumWidth = smallest.width,
                                 .minimumHeight = smallest.height,
                                 .title = list.mode == ListMode::edit
                                              ? "Trainingsdateien bearbeiten"_l1
                                              : "Wähle die Trainingsdatei"_l1,
                                 .owner = services::mainWindow,
                                 .modal = true});
}

void createControls(const List& list) {
    const ListLayout layout = currentLayout(list);
    std::vector<services::ListColumn> columns;
    for (const TrainingColumn& column : trainingColumns()) {
        columns.push_back({.title = column.title,
                           .width = columnWidth(column, list.font.characterWidth),
                           .rightAligned = column.rightAligned,
                           .sample = column.sample});
    }
    services::createList(listWindow, trainingListControl, layout.list, columns,
                         list.mode != ListMode::chooseOne, "Trainingsdateien"_l1);

    const std::span<const ButtonRow> buttons = buttonsOf(list.mode);
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        services::createButton(listWindow, firstButtonControl + static_cast<int>(i),
                               layout.buttons[i], buttons[i].text);
    }

    services::keyboardShortcut(listWindow, services::escapeKey, escapeShortcut);
    services::keyboardShortcut(listWindow, services::returnKey, returnShortcut);
    services::keyboardShortcut(listWindow, services::upKey, upShortcut);
    services::keyboardShortcut(listWindow, services::downKey, downShortcut);
}

ButtonTexts buttonTexts(ListMode mode) {
    ButtonTexts widths;
    for (const ButtonRow& button : buttonsOf(mode)) {
        const int width = services::controlTextWidth(button.text);
        // The one becomes the other.
        widths.push_back(button.text == takesAll
                             ? std::max(width, services::controlTextWidth(takesChosen))
                             : width);
    }
    return widths;
}

}  // namespace

ListResult openTrainingList(ListMode mode, int mainWidth, int mainHeight) {
    List list = {.mode = mode,
                 .font = {.characterWidth = services::controlTextWidth("_"),
                          .textHeight = services::controlTextHeight()}};
    list.buttonTexts = buttonTexts(mode);
    if (!openListWindow(list, mainWidth, mainHeight)) return ListResult::notOpened;

    createControls(list);
    fill(list);
    services::focusControl(listWindow, trainingListControl);
    services::showWindow(listWindow);
    while (!list.left)
        dispatchEvent(list, services::waitEvent());

    applyResult(trainings(), list.result, mode, services::now());
    services::closeWindow(listWindow);
    return list.result;
}

}  // namespace files
