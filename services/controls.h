// What stands in windows: buttons, labels, text fields, texts and lists, by number within their
// window. Boxes are logical pixels in the window's content area. Numbers that name no control are
// ignored and read as nothing.
//
// What the user does arrives as events of kind control: `control` is the number, `data` a
// ControlAction, `item` the row of a list.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "services/text/latin1.h"

namespace services {

enum ControlAction : int {
    pressed = 0,        // a button
    edited = 1,         // a text field's text changed, by the user or by setControlText
    clicked = 2,        // a row of a list, as the button goes down (headers and the room beside the
                        // rows report nothing)
    doubleClicked = 3,  // a row of a list
};

struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Box&) const = default;
};

// The size of a text in the user interface's font, in which controls are labelled. Logical pixels,
// 0 or more.
int controlTextWidth(TextView text);
int controlTextHeight();

void createButton(int window, int control, const Box& box, TextView text, TextView tooltip = {});

// The caption of the control that is created next; its text is that control's accessible name.
void createLabel(int window, int control, const Box& box, TextView text);

// One line to edit. The tooltip is its accessible description as well.
void createTextField(int window, int control, const Box& box, TextView text,
                     TextView accessibleName, TextView tooltip);

// Several lines to read, select, copy and scroll, in the user's font of fixed width and never in a
// smaller one. CR, LF and CR LF each end a line. The letters grow, to twice their size at most, as
// long as the box holds so many characters and lines; Ctrl with the wheel, with Plus or with Minus
// makes them larger and back again. 0 for both asks for nothing: then a line that is too long for
// the box is wrapped, and no digit of it is ever out of sight.
struct TextExtent {
    int columns = 0;
    int lines = 0;
};
void createTextView(int window, int control, const Box& box, TextView accessibleName,
                    TextExtent wanted = {});

struct ListColumn {
    TextView title;
    int width = 0;
    bool rightAligned = false;
    // The column becomes wide enough to show this whole, whatever the font. A column without a
    // sample gives way, to half its width at most, where the list is too narrow for all, and takes
    // what is left where it is wider; where that is not enough, the others give way as far as their
    // samples allow.
    TextView sample = {};
};

// Rows of cells, sorted by nobody but the caller, in the user interface's font. Left-aligned
// figures, those of a column whose sample begins with one, stand below each other in any font:
// where the user interface's has none of one width, these columns take the fixed font.
void createList(int window, int control, const Box& box, std::span<const ListColumn> columns,
                bool severalRows, TextView accessibleName);

// The text of a cell, both counted from 0. Called when the cell comes into view, any number of
// times; it must stay valid until the list is filled again or its window closed.
using ListCell = std::function<Text(int row, int column)>;

// Replaces all rows. No row is chosen afterwards; the scroll position stays.
void fillList(int window, int control, int rows, ListCell cell);

// The chosen (highlighted) rows, ascending.
std::vector<int> chosenRows(int window, int control);

// The row that the keyboard acts on: the chosen one that was touched last, -1 when none is chosen.
int highlightedRow(int window, int control);

// Chooses this row alone and brings it into view.
void highlightRow(int window, int control, int row);

// Moves and resizes a control.
void placeControl(int window, int control, const Box& box);

// The text of a button, label, text field or text view; empty for others.
Text controlText(int window, int control);
void setControlText(int window, int control, TextView text);

// Adds to the end of a text view and scrolls there, at a cost that does not grow with its text.
void appendControlText(int window, int control, TextView text);

// Gives the control the keyboard; a text field's text becomes selected.
void focusControl(int window, int control);

}  // namespace services
