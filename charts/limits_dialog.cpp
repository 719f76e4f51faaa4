#include "charts/limits_dialog.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "charts/chart_drawing.h"
#include "charts/chart_state.h"
#include "charts/limits_input.h"
#include "services/controls.h"
#include "services/disk/memory.h"
#include "services/events.h"
#include "services/windows.h"

namespace charts {
namespace {

using services::Box;
using services::EventKind;
using services::limitsWindow;
using services::TextView;
using services::operator""_l1;

constexpr TextView lowerCaptionText = "Min:"_l1;
constexpr TextView upperCaptionText = "Max:"_l1;
constexpr TextView applyText = "Übernehmen"_l1;
constexpr TextView cancelText = "Abbruch"_l1;
constexpr TextView resetText = "Reset"_l1;

// Two rows of a caption and a field, and below them a row of three buttons of one width.
struct Layout {
    int width = 0;
    int height = 0;
    Box lowerCaption, lowerField;
    Box upperCaption, upperField;
    Box applyButton, cancelButton, resetButton;
};

int widestOf(std::initializer_list<TextView> texts) {
    int width = 0;
    for (const TextView text : texts)
        width = std::max(width, services::controlTextWidth(text));
    return width;
}

// Everything follows from the texts' own sizes, so that no font and no figure is cut off.
Layout layOut(const LimitsInput& input) {
    const int unit = services::controlTextWidth("_"_l1);
    const int margin = services::controlTextHeight();
    const int rowHeight = 2 * margin;
    const int frameOfField = 3 * unit;
    const int frameOfButton = 4 * unit;

    const int captionWidth = widestOf({lowerCaptionText, upperCaptionText}) + unit;
    const int buttonWidth = widestOf({applyText, cancelText, resetText}) + frameOfButton;
    const int rowWidth =
        std::max(3 * buttonWidth + 2 * unit,
                 captionWidth + widestOf({input.lowerText, input.upperText}) + frameOfField);

    const auto captionBox = [&](int y) { return Box{margin, y, captionWidth, rowHeight}; };
    const auto fieldBox = [&](int y) {
        return Box{margin + captionWidth, y, rowWidth - captionWidth, rowHeight};
    };
    const auto buttonBox = [&](int place, int y) {
        return Box{margin + place * (buttonWidth + unit), y, buttonWidth, rowHeight};
    };

    const int lowerY = margin;
    const int upperY = lowerY + rowHeight + margin / 2;
    const int buttonsY = upperY + rowHeight + margin;
    return {
        .width = rowWidth + 2 * margin,
        .height = buttonsY + rowHeight + margin,
        .lowerCaption = captionBox(lowerY),
        .lowerField = fieldBox(lowerY),
        .upperCaption = captionBox(upperY),
        .upperField = fieldBox(upperY),
        .applyButton = buttonBox(0, buttonsY),
        .cancelButton = buttonBox(1, buttonsY),
        .resetButton = buttonBox(2, buttonsY),
    };
}

bool openDialog(const LimitsInput& input) {
    const Layout layout = layOut(input);
    const int offset = 4 * services::controlTextHeight();
    const services::WindowRow row = {
        .number = limitsWindow,
        .x = offset,
        .y = offset,
        .width = layout.width,
        .height = layout.height,
        .minimumWidth = layout.width,
        .minimumHeight = layout.height,
        .title = "Grenzwerte"_l1,
        .owner = services::mainWindow,
        .fromOwner = true,
        .modal = true,
    };
    if (!services::openWindow(row)) return false;

    // In the order in which Tab goes through them.
    services::createLabel(limitsWindow, lowerCaption, layout.lowerCaption, lowerCaptionText);
    services::createTextField(limitsWindow, lowerField, layout.lowerField, input.lowerText,
                              lowerCaptionText, "Eingabe des minimalen Wertes > 0"_l1);
    services::createLabel(limitsWindow, upperCaption, layout.upperCaption, upperCaptionText);
    services::createTextField(limitsWindow, upperField, layout.upperField, input.upperText,
                              upperCaptionText, "Eingabe des maximalen Wertes"_l1);
    services::createButton(limitsWindow, applyButton, layout.applyButton, applyText,
                           "Eingaben anwenden"_l1);
    services::createButton(limitsWindow, cancelButton, layout.cancelButton, cancelText,
                           "Eingabe ohne Änderung verlassen"_l1);
    services::createButton(limitsWindow, resetButton, layout.resetButton, resetText,
                           "Grenzwerte der Datei setzen"_l1);
    services::keyboardShortcut(limitsWindow, services::returnKey, applyLimitsItem);
    services::keyboardShortcut(limitsWindow, services::escapeKey, cancelLimitsItem);
    services::showWindow(limitsWindow);
    services::focusControl(limitsWindow, lowerField);
    return true;
}

Limits& limitsOf(int valueNumber) {
    return state.limits[static_cast<std::size_t>(valueNumber)];
}

LimitsInput inputOfSeries(ChartKind kind, int valueNumber) {
    ValueSeries series;
    computeSeries(kind, valueNumber, series);
    return inputOf(series.minimum, series.maximum);
}

// The figures that the data have without limits. The stored limits stay: only accepting changes
// them.
void takeInputWithoutLimits(ChartKind kind, int valueNumber, LimitsInput& input) {
    const Limits stored = std::exchange(limitsOf(valueNumber), Limits{});
    static_cast<void>(services::withinMemory([&] { input = inputOfSeries(kind, valueNumber); }));
    limitsOf(valueNumber) = stored;
}

enum class Outcome { open, accepted, cancelled };

Outcome handleControl(const services::Event& event, ChartKind kind, int valueNumber,
                      LimitsInput& input) {
    switch (event.control) {
        case lowerField:
            readLowerField(input, services::controlText(limitsWindow, lowerField));
            return Outcome::open;
        case upperField:
            readUpperField(input, services::controlText(limitsWindow, upperField));
            return Outcome::open;
        case applyButton:
            return Outcome::accepted;
        case cancelButton:
            return Outcome::cancelled;
        case resetButton:
            takeInputWithoutLimits(kind, valueNumber, input);
            services::setControlText(limitsWindow, lowerField, input.lowerText);
            services::setControlText(limitsWindow, upperField, input.upperText);
            return Outcome::open;
        default:
            return Outcome::open;
    }
}

Outcome handleEvent(const services::Event& event, ChartKind kind, int valueNumber,
                    LimitsInput& input) {
    switch (event.kind) {
        case EventKind::close:
            return Outcome::cancelled;
        case EventKind::menu:
            if (event.item == applyLimitsItem) return Outcome::accepted;
            return event.item == cancelLimitsItem ? Outcome::cancelled : Outcome::open;
        case EventKind::control:
            if (event.window != limitsWindow) return Outcome::open;
            return handleControl(event, kind, valueNumber, input);
        case EventKind::none:
        case EventKind::move:
        case EventKind::resize:
        case EventKind::zoom:
        case EventKind::click:
        case EventKind::timer:
        case EventKind::key:
            break;
    }
    return Outcome::open;
}

}  // namespace

void editLimits(ChartKind kind, int valueNumber) {
    const ValueRange range = valueRange(kind);
    if (valueNumber < range.first || valueNumber >= range.end) return;
    LimitsInput input = inputOfSeries(kind, valueNumber);
    if (!openDialog(input)) return;

    Outcome outcome = Outcome::open;
    while (outcome == Outcome::open)
        outcome = handleEvent(services::waitEvent(), kind, valueNumber, input);
    if (outcome == Outcome::accepted) limitsOf(valueNumber) = acceptedLimits(input);
    services::closeWindow(limitsWindow);
}

}  // namespace charts
