// Numbers to text and back, and reals to whole numbers. Nothing here looks at the locale.
#pragma once

#include <cstdint>

#include "services/text/latin1.h"

namespace services {

// Decimal digits, "-" in front of negatives, no grouping, no padding.
Text integerToText(std::int64_t value);

// Exactly `decimals` digits after a decimal point (clamped to 0..512; 0 gives no point), correctly
// rounded on the exact binary value, an exact tie going to the even digit. A small negative value
// keeps its sign ("-0.00"). Gives "+Infinity", "-Infinity" or "NaN" for what is not finite.
Text floatToText(float value, int decimals);

// As above with 10 decimals, then without trailing zeros, and without the point when nothing is
// left behind it.
Text floatToText(float value);

// Leading blanks skipped, one optional sign, then decimal digits up to the first other byte; "$" in
// front of hexadecimal digits (either letter case), "%" in front of binary digits. No digits give
// 0. Digits beyond 64 bits wrap.
std::int64_t textToInteger(TextView text);

// Leading blanks skipped, optional sign, digits, optional point with fraction, optional exponent,
// up to the first byte that does not fit; "+Infinity", "-Infinity", "NaN" in any letter case.
// Nothing else: "0x10", "inf" and "1,5" give 0, 0 and 1. No number gives 0. Beyond the range: an
// infinity.
float textToFloat(TextView text);

// The number in `text` as hexadecimal digits of either case, up to the first other byte; digits
// beyond 64 bits wrap. No digits give 0.
std::uint64_t hexadecimalToNumber(TextView text);

// 16 lower-case hexadecimal digits, padded with "0": the name of a training file.
Text numberToHexadecimal16(std::uint64_t number);

// Toward zero; NaN, infinities and what 32 bits cannot hold give 0.
std::int32_t truncate(double value);

// To the nearest whole number, halves to the even neighbour; NaN, infinities and what the result
// type cannot hold give 0.
std::int32_t roundToInt32(double value);
std::int64_t roundToInt64(double value);

// The text with every "." replaced by ",".
Text withDecimalComma(TextView text);

}  // namespace services
