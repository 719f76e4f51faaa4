#include "files/list_layout.h"

#include <algorithm>

#include "services/numbers.h"

namespace files {
namespace {

using services::roundToInt32;

// Somewhat less than the main window, in steps of a hundred pixels.
int slightlyLess(int mainSize) {
    return mainSize / 100 * 99;
}

}  // namespace

ListWindowSize listWindowSize(const FontMeasures& font, int mainWidth, int mainHeight) {
    const int width = roundToInt32(font.characterWidth * 131 * 1.3);
    return {.width = width > mainWidth ? slightlyLess(mainWidth) : width,
            .height = slightlyLess(mainHeight)};
}

int listButtonWidth(const FontMeasures& font, int widestText) {
    return std::max(font.characterWidth * 17, widestText + 2 * font.characterWidth);
}

ListWindowSize smallestListWindow(const FontMeasures& font, int buttons, int buttonWidth) {
    return {.width = buttons * buttonWidth + (buttons + 1) * font.characterWidth,
            .height = font.textHeight * 10};
}

ListLayout layOutList(const FontMeasures& font, const ListWindowSize& window, int buttons,
                      int buttonWidth) {
    ListLayout layout;
    layout.list = {.x = 10,
                   .y = 10,
                   .width = std::max(0, window.width - 2 * font.characterWidth),
                   .height = std::max(0, window.height - 3 * font.textHeight)};

    const int y = roundToInt32(window.height - font.textHeight * 1.9);
    const int height = roundToInt32(font.textHeight * 1.7);
    // The last button ends as far from the right edge as the first begins from the left one.
    const double lastX = window.width - font.characterWidth - buttonWidth;
    const double step = buttons > 1 ? (lastX - font.characterWidth) / (buttons - 1) : 0;
    for (int i = 0; i < buttons; ++i) {
        layout.buttons.push_back({.x = roundToInt32(font.characterWidth + i * step),
                                  .y = y,
                                  .width = buttonWidth,
                                  .height = height});
    }
    return layout;
}

}  // namespace files
