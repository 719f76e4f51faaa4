// The dialog "Grenzwerte": a lower and an upper limit for one value.
#pragma once

#include "charts/values/value_numbers.h"

namespace charts {

enum LimitsControl : int {
    lowerCaption = 300,
    lowerField = 301,
    upperCaption = 302,
    upperField = 303,
    applyButton = 304,
    cancelButton = 305,
    resetButton = 306,
};

// What the dialog's keys send.
inline constexpr int applyLimitsItem = 98;   // Return
inline constexpr int cancelLimitsItem = 99;  // Escape

// Returns when the dialog is left: with new limits in the table, or with the old ones when it was
// cancelled, closed or could not be opened. Until then it reads every event of the program; what
// other windows have to say is dropped, but for a request to close one, which closes the dialog.
// Ignores a number that is no value of this kind of chart.
void editLimits(ChartKind kind, int valueNumber);

}  // namespace charts
