// Where the training list and its buttons stand. Pixels of the window's content area.
#pragma once

#include <vector>

#include "services/controls.h"

namespace files {

// The measures of the user interface font.
struct FontMeasures {
    int characterWidth = 0;  // of "_"
    int textHeight = 0;
};

struct ListWindowSize {
    int width = 0;
    int height = 0;
    bool operator==(const ListWindowSize&) const = default;
};

// The list window's size as it opens, for a main window of this size.
ListWindowSize listWindowSize(const FontMeasures& font, int mainWidth, int mainHeight);

// The widths of the buttons' texts, from left to right.
using ButtonTexts = std::vector<int>;

// The window never becomes smaller than this, so that every button can be reached.
ListWindowSize smallestListWindow(const FontMeasures& font, const ButtonTexts& texts);

struct ListLayout {
    services::Box list;
    std::vector<services::Box> buttons;  // from left to right
};

// All buttons are of one width where the window has room for that; in a narrower one each is as
// wide as its own text needs.
ListLayout layOutList(const FontMeasures& font, const ListWindowSize& window,
                      const ButtonTexts& texts);

}  // namespace files
