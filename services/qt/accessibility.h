// What our own widgets are to those who don't see them.
#pragma once

namespace services::qt {

// Between the two, windows tell that they are windows or dialogs, and an image that it is a chart;
// the toolkit would call them all mere surfaces. Needs the application.
void installAccessibility();
void removeAccessibility();

}  // namespace services::qt
