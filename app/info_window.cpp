#include "app/info_window.h"

#include "app/help_text.h"
#include "app/menu_tree.h"
#include "services/controls.h"
#include "services/events.h"
#include "services/text_drawing.h"
#include "services/windows.h"
#include "settings/settings_state.h"

namespace app {

using services::EventKind;
using services::infoWindow;
using services::TextView;
using services::operator""_l1;

namespace {

// What the windows are measured in.
int characterWidth() {
    return services::textWidth("_"_l1);
}
int lineHeight() {
    return services::textHeight("Ag"_l1);
}

// A margin of one character and one line around the text. Very low windows give a text of negative
// height, which shows nothing.
services::Box textBox(int width, int height) {
    return {characterWidth(), lineHeight(), width - 2 * characterWidth(),
            height - 2 * lineHeight()};
}

void waitUntilClosed() {
    for (;;) {
        const services::Event event = services::waitEvent();
        if (event.kind == EventKind::close) return;
        if (event.kind == EventKind::menu && event.item == escapeItem) return;
        if (event.kind == EventKind::resize && event.window == infoWindow) {
            services::placeControl(
                infoWindow, infoTextControl,
                textBox(services::windowWidth(infoWindow), services::windowHeight(infoWindow)));
        }
    }
}

void showText(int width, int height, services::TextExtent extent, TextView text) {
    const services::WindowRow row = {
        .number = infoWindow,
        .x = 1,
        .y = 1,
        .width = width,
        .height = height,
        .title = "Programminfo"_l1,
        .owner = services::mainWindow,
    };
    if (!services::openWindow(row)) return;
    services::createTextView(infoWindow, infoTextControl, textBox(width, height), "Programminfo"_l1,
                             extent);
    services::setControlText(infoWindow, infoTextControl, text);
    services::keyboardShortcut(infoWindow, services::escapeKey, escapeItem);
    services::showWindow(infoWindow);
    services::focusControl(infoWindow, infoTextControl);
    waitUntilClosed();
    services::closeWindow(infoWindow);
}

// A little less than the main window, in whole hundreds of pixels.
int withinWindow(int size) {
    return size / 100 * 99;
}

}  // namespace

// Lines short enough to be read whole in a fixed font, in a box that is measured in "_" of another.
TextView infoText() {
    return "Kurbelbuch\r\n"
           "\r\n"
           "Version: 20130531\r\n"
           "Autor: Kurbelbuch-Team\r\n"
           "Web: kurbelbuch.example\r\n"
           "Mail: post@rad.example\r\n"
           "Mastodon: @kb@rad.example"_l1;
}

void showInfoBox() {
    showText(38 * characterWidth(), 9 * lineHeight(), {.columns = 36, .lines = 7}, infoText());
}

void showHelpWindow() {
    int width = 95 * characterWidth();
    if (width > settings::state.windowWidth) width = withinWindow(settings::state.windowWidth);
    showText(width, withinWindow(settings::state.windowHeight), {.columns = 93}, helpText());
}

}  // namespace app
