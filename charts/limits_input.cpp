#include "charts/limits_input.h"

#include <utility>

#include "services/text/numbers.h"
#include "services/text/text.h"

namespace charts {
namespace {

services::Text fieldText(float value) {
    return services::withDecimalComma(services::floatToText(value, 2));
}

void readField(float& value, services::Text& known, services::TextView text) {
    if (text == known) return;
    known = text;
    value = services::textToFloat(services::replace(text, ",", "."));
}

}  // namespace

LimitsInput inputOf(float lower, float upper) {
    return {.lower = lower,
            .upper = upper,
            .lowerText = fieldText(lower),
            .upperText = fieldText(upper)};
}

void readLowerField(LimitsInput& input, services::TextView text) {
    readField(input.lower, input.lowerText, text);
}

void readUpperField(LimitsInput& input, services::TextView text) {
    readField(input.upper, input.upperText, text);
}

Limits acceptedLimits(const LimitsInput& input) {
    Limits limits = {.lower = input.lower, .upper = input.upper};
    if (limits.upper < limits.lower) std::swap(limits.lower, limits.upper);
    return limits;
}

}  // namespace charts
