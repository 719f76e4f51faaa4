#include "files/list_layout.h"

#include <algorithm>
#include <numeric>

#include "services/text/numbers.h"

namespace files {
namespace {

using services::roundToInt32;

// Somewhat less than the main window, in steps of a hundred pixels.
int slightlyLess(int mainSize) {
    return mainSize / 100 * 99;
}

std::vector<int> narrowWidths(const FontMeasures& font, const ButtonTexts& texts) {
    std::vector<int> widths;
    for (const int text : texts)
        widths.push_back(text + 2 * font.characterWidth);
    return widths;
}

std::vector<int> equalWidths(const FontMeasures& font, const ButtonTexts& texts) {
    int widest = font.characterWidth * 17;
    for (const int width : narrowWidths(font, texts))
        widest = std::max(widest, width);
    return std::vector<int>(texts.size(), widest);
}

// With a character's room at both ends and between the buttons.
int rowWidth(const FontMeasures& font, const std::vector<int>& widths) {
    return std::accumulate(widths.begin(), widths.end(),
                           font.characterWidth * (static_cast<int>(widths.size()) + 1));
}

}  // namespace

ListWindowSize listWindowSize(const FontMeasures& font, int mainWidth, int mainHeight) {
    const int width = roundToInt32(font.characterWidth * 131 * 1.3);
    return {.width = width > mainWidth ? slightlyLess(mainWidth) : width,
            .height = slightlyLess(mainHeight)};
}

ListWindowSize smallestListWindow(const FontMeasures& font, const ButtonTexts& texts) {
    return {.width = rowWidth(font, narrowWidths(font, texts)), .height = font.textHeight * 10};
}

ListLayout layOutList(const FontMeasures& font, const ListWindowSize& window,
                      const ButtonTexts& texts) {
    ListLayout layout;
    layout.list = {.x = 10,
                   .y = 10,
                   .width = std::max(0, window.width - 2 * font.characterWidth),
                   .height = std::max(0, window.height - 3 * font.textHeight)};

    std::vector<int> widths = equalWidths(font, texts);
    if (rowWidth(font, widths) > window.width) widths = narrowWidths(font, texts);
    const int y = roundToInt32(window.height - font.textHeight * 1.9);
    const int height = roundToInt32(font.textHeight * 1.7);
    // The last button ends as far from the right edge as the first begins from the left one.
    const double room =
        window.width - 2 * font.characterWidth - std::accumulate(widths.begin(), widths.end(), 0);
    const double gap = widths.size() > 1 ? room / static_cast<double>(widths.size() - 1) : 0;
    double x = font.characterWidth;
    for (const int width : widths) {
        layout.buttons.push_back({.x = roundToInt32(x), .y = y, .width = width, .height = height});
        x += width + gap;
    }
    return layout;
}

}  // namespace files
