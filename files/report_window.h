// The window in which a long command tells line by line what it did.
#pragma once

#include "services/text/latin1.h"

namespace files {

inline constexpr int reportText = 1;  // the control

struct ReportWindow {
    services::TextView title;
    int width = 0;
    int textWidth = 0;
    int mainHeight = 0;  // of the main window, which the report's height follows
};

// False when it could not be opened.
bool openReport(const ReportWindow& report);

// Shows the line at once. It ends with a carriage return alone.
void addReportLine(services::TextView line);

// Lets the user read the report until the window is closed or Escape is pressed, then closes it.
// What the user did while the report grew is forgotten: it was meant for nothing here.
void waitUntilReportIsRead(const ReportWindow& report);

}  // namespace files
