// What the user types into the limits dialog.
#pragma once

#include "charts/values/value_series.h"
#include "services/text/latin1.h"

namespace charts {

struct LimitsInput {
    // The figures to accept: unrounded until the user edits their field.
    float lower = 0;
    float upper = 0;

    // The texts of the two fields as last seen, with a decimal comma.
    services::Text lowerText;
    services::Text upperText;
};

// Both figures with the texts that show them: two decimals and a decimal comma.
LimitsInput inputOf(float lower, float upper);

// Takes over a field's text. One that is the same as before is no edit and keeps the unrounded
// figure: fields also report the texts that the program itself puts there. A comma counts as a
// point, and what is no number as 0, which stands for no limit.
void readLowerField(LimitsInput& input, services::TextView text);
void readUpperField(LimitsInput& input, services::TextView text);

// The limits to store: turned round when the upper one is below the lower.
Limits acceptedLimits(const LimitsInput& input);

}  // namespace charts
