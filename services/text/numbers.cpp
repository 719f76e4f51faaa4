#include "services/text/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "services/text/text.h"

namespace services {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// The digit's value, or 16 for any other byte.
unsigned digitValue(char character) {
    if (isDigit(character)) return static_cast<unsigned>(character - '0');
    if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a') + 10;
    if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A') + 10;
    return 16;
}

std::uint64_t leadingNumber(TextView text, unsigned base) {
    std::uint64_t number = 0;
    for (const char character : text) {
        const unsigned digit = digitValue(character);
        if (digit >= base) break;
        number = number * base + digit;
    }
    return number;
}

// True for a sign, which is then taken off the front of `text`.
bool takeSign(TextView& text, bool& negative) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) return false;
    negative = text.front() == '-';
    text.remove_prefix(1);
    return true;
}

TextView withoutLeadingBlanks(TextView text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

// More digits than any two neighbouring floats need to be told from the number between them (113
// suffice); what follows them matters only as "zero" or "not zero".
constexpr std::size_t significantDigits = 160;

// A decimal number as its significant digits, d.ddd times ten to the power of `magnitude`.
struct Decimal {
    bool found = false;
    Text digits;  // no leading zeros; empty for zero
    bool more = false;
    std::int64_t magnitude = 0;
};

void addDigit(Decimal& decimal, char digit) {
    if (decimal.digits.size() < significantDigits)
        decimal.digits += digit;
    else if (digit != '0')
        decimal.more = true;
}

// The exponent behind the digits; 0 when the text has none there.
std::int64_t scanExponent(TextView text) {
    if (text.empty() || (text.front() != 'e' && text.front() != 'E')) return 0;
    text.remove_prefix(1);
    bool negative = false;
    takeSign(text, negative);
    // Far beyond what the digits of any text could bring back into range.
    constexpr std::int64_t enough = 1'000'000'000'000'000;
    std::int64_t exponent = 0;
    for (const char character : text) {
        if (!isDigit(character)) break;
        if (exponent < enough) exponent = exponent * 10 + (character - '0');
    }
    return negative ? -exponent : exponent;
}

Decimal scanDecimal(TextView text) {
    Decimal decimal;
    std::size_t at = 0;
    std::int64_t wholeDigits = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        decimal.found = true;
        if (decimal.digits.empty() && text[at] == '0') continue;
        ++wholeDigits;
        addDigit(decimal, text[at]);
    }
    decimal.magnitude = wholeDigits - 1;
    if (at < text.size() && text[at] == '.') {
        for (++at; at < text.size() && isDigit(text[at]); ++at) {
            decimal.found = true;
            if (decimal.digits.empty() && text[at] == '0') {
                --decimal.magnitude;
                continue;
            }
            addDigit(decimal, text[at]);
        }
    }
    if (decimal.found) decimal.magnitude += scanExponent(text.substr(at));
    return decimal;
}

// The nearest float of a positive number, rounded once.
float nearestFloat(const Decimal& decimal) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (decimal.digits.empty() || decimal.magnitude < -60) return 0.0F;
    if (decimal.magnitude > 40) return infinity;

    Text canonical =
        concatenate(TextView(decimal.digits).substr(0, 1), '.', TextView(decimal.digits).substr(1),
                    decimal.more ? "1e" : "0e", integerToText(decimal.magnitude));
    float value = 0.0F;
    const char* const begin = canonical.data();
    const std::from_chars_result result = std::from_chars(begin, begin + canonical.size(), value);
    if (result.ec == std::errc::result_out_of_range) return decimal.magnitude > 0 ? infinity : 0.0F;
    return value;
}

// Half to even, whatever the rounding mode of the processor: the whole part and the difference are
// exact.
double roundHalfToEven(double value) {
    const double magnitude = std::fabs(value);
    double whole = std::floor(magnitude);
    const double rest = magnitude - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0.0)) whole += 1.0;
    return std::copysign(whole, value);
}

// Whole numbers only; NaN fails both comparisons.
std::int32_t toInt32(double whole) {
    return whole >= -2147483648.0 && whole <= 2147483647.0 ? static_cast<std::int32_t>(whole) : 0;
}

}  // namespace

Text integerToText(std::int64_t value) {
    std::array<char, 24> digits{};
    const std::to_chars_result result =
        std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return Text(digits.data(), result.ptr);
}

Text floatToText(float value, int decimals) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0.0F ? "+Infinity" : "-Infinity";
    // A sign, 39 digits, a point and 512 decimals at most.
    std::array<char, 600> digits{};
    const std::to_chars_result result =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<double>(value),
                      std::chars_format::fixed, std::clamp(decimals, 0, 512));
    return Text(digits.data(), result.ptr);
}

Text floatToText(float value) {
    Text text = floatToText(value, 10);
    if (text.find('.') == Text::npos) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

std::int64_t textToInteger(TextView text) {
    text = withoutLeadingBlanks(text);
    bool negative = false;
    takeSign(text, negative);
    unsigned base = 10;
    if (!text.empty() && (text.front() == '$' || text.front() == '%')) {
        base = text.front() == '$' ? 16 : 2;
        text.remove_prefix(1);
    }
    const std::uint64_t number = leadingNumber(text, base);
    return static_cast<std::int64_t>(negative ? 0 - number : number);
}

float textToFloat(TextView text) {
    text = withoutLeadingBlanks(text);
    bool negative = false;
    const bool hasSign = takeSign(text, negative);
    const float sign = negative ? -1.0F : 1.0F;
    if (hasSign && lowerCase(left(text, 8)) == "infinity")
        return sign * std::numeric_limits<float>::infinity();
    if (!hasSign && lowerCase(left(text, 3)) == "nan")
        return std::numeric_limits<float>::quiet_NaN();
    const Decimal decimal = scanDecimal(text);
    return decimal.found ? sign * nearestFloat(decimal) : 0.0F;
}

std::uint64_t hexadecimalToNumber(TextView text) {
    return leadingNumber(text, 16);
}

Text numberToHexadecimal16(std::uint64_t number) {
    std::array<char, 16> digits{};
    const std::to_chars_result result =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return rightAlign(TextView(digits.data(), static_cast<std::size_t>(result.ptr - digits.data())),
                      16, '0');
}

std::int32_t truncate(double value) {
    return toInt32(std::trunc(value));
}

std::int32_t roundToInt32(double value) {
    return toInt32(roundHalfToEven(value));
}

std::int64_t roundToInt64(double value) {
    const double whole = roundHalfToEven(value);
    // 2 to the power of 63 is the first that does not fit; the number below it is not a double.
    constexpr double beyond = 9223372036854775808.0;
    return whole >= -beyond && whole < beyond ? static_cast<std::int64_t>(whole) : 0;
}

Text withDecimalComma(TextView text) {
    return replace(text, ".", ",");
}

}  // namespace services
