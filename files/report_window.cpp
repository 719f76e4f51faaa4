#include "files/report_window.h"

#include "services/controls.h"
#include "services/events.h"
#include "services/text/text.h"
#include "services/windows.h"

namespace files {
namespace {

using services::Event;
using services::EventKind;

constexpr int margin = 8;
constexpr int escapeItem = 1;

int hundreds(int height) {
    return height / 100;
}

int windowHeight(const ReportWindow& report) {
    return hundreds(report.mainHeight) * 98;
}

int textHeight(const ReportWindow& report) {
    return hundreds(report.mainHeight) * 96;
}

// Keeps the text's distance from the right and lower edges when the window changes its size.
void followSize(const ReportWindow& report) {
    const int wider = services::windowWidth(services::reportWindow) - report.width;
    const int higher = services::windowHeight(services::reportWindow) - windowHeight(report);
    services::placeControl(services::reportWindow, reportText,
                           {.x = margin,
                            .y = margin,
                            .width = report.textWidth + wider,
                            .height = textHeight(report) + higher});
}

}  // namespace

bool openReport(const ReportWindow& report) {
    if (!services::openWindow({.number = services::reportWindow,
                               .width = report.width,
                               .height = windowHeight(report),
                               .title = report.title,
                               .owner = services::listWindow,
                               .modal = true})) {
        return false;
    }
    services::createTextView(
        services::reportWindow, reportText,
        {.x = margin, .y = margin, .width = report.textWidth, .height = textHeight(report)},
        report.title);
    services::focusControl(services::reportWindow, reportText);
    services::showWindow(services::reportWindow);
    services::letWindowsRepaint();
    return true;
}

void addReportLine(services::TextView line) {
    services::appendControlText(services::reportWindow, reportText,
                                services::concatenate(line, '\r'));
    services::letWindowsRepaint();
}

void waitUntilReportIsRead(const ReportWindow& report) {
    services::dropWaitingEvents();
    followSize(report);  // a change of size may be among what was dropped
    services::keyboardShortcut(services::reportWindow, services::escapeKey, escapeItem);
    for (;;) {
        const Event event = services::waitEvent();
        if (event.window != services::reportWindow) continue;
        if (event.kind == EventKind::resize) followSize(report);
        if (event.kind == EventKind::close) break;
        if (event.kind == EventKind::menu && event.item == escapeItem) break;
    }
    services::closeWindow(services::reportWindow);
}

}  // namespace files
