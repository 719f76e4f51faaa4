// How a field of a CSV file is written. A format is a type with
//   longest(value): writing this value touches at most that many bytes,
//   write(to, value): writes the text to `to` and returns its end.
// A training of a day has 1.7 million fields, so numbers go straight into the caller's buffer.
// Their texts are those of services/text/numbers.h.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "export/digit_table.h"
#include "services/text/dates.h"
#include "services/text/latin1.h"
#include "services/text/numbers.h"

namespace exporting {

// A sign, 39 digits, a point and 3 decimals are the longest number.
inline constexpr std::size_t longestNumber = 48;

inline char* writeText(char* to, services::TextView text) {
    return to + text.copy(to, text.size());
}

// The digits of a number that is not negative. Up to four bytes are copied where fewer are needed.
inline char* writeDigits(char* to, std::int64_t number) {
    const auto magnitude = static_cast<std::uint64_t>(number);
    if (magnitude >= 1'000'000) return std::to_chars(to, to + longestNumber, magnitude).ptr;
    const auto rest = static_cast<std::uint32_t>(magnitude);
    if (rest >= 1000) {
        const ShortNumber& thousands = digitTable[rest / 1000];
        std::memcpy(to, thousands.digits.data(), thousands.digits.size());
        to += thousands.length;
        std::memcpy(to, digitTable[rest % 1000].padded.data(), 3);
        return to + 3;
    }
    const ShortNumber& units = digitTable[rest];
    std::memcpy(to, units.digits.data(), units.digits.size());
    return to + units.length;
}

struct Integer {
    static std::size_t longest(std::int64_t) { return longestNumber; }
    static char* write(char* to, std::int64_t value) {
        if (value < 0) return std::to_chars(to, to + longestNumber, value).ptr;
        return writeDigits(to, value);
    }
};

// To the nearest whole number, halves to the even one.
struct RoundedInteger {
    static std::size_t longest(float) { return longestNumber; }
    static char* write(char* to, float value) {
        return Integer::write(to, services::roundToInt64(static_cast<double>(value)));
    }
};

// Any float, however large, infinite or not a number.
char* writeAnyFixed(char* to, float value, int decimals, char point);

// The value divided by `divisor`, in single precision, with exactly `decimals` digits behind
// `point`.
template <int decimals, char point, int divisor = 1>
struct Fixed {
    // 10 to the power of `decimals`.
    static constexpr std::int64_t scale = decimals == 0   ? 1
                                          : decimals == 1 ? 10
                                          : decimals == 2 ? 100
                                                          : 1000;
    static_assert(decimals >= 0 && decimals <= 3);

    static std::size_t longest(float) { return longestNumber; }

    static char* write(char* to, float value) {
        const float quotient = value / static_cast<float>(divisor);
        // The product of 24 bits and the scale's 10 fits a double's 53: it is exact, and so is the
        // rounding. The comparison is false for NaN.
        const double scaled = std::fabs(static_cast<double>(quotient)) * static_cast<double>(scale);
        constexpr double exactWholeNumbers = 9007199254740992.0;  // 2 to the power of 53
        if (!(scaled < exactWholeNumbers)) return writeAnyFixed(to, quotient, decimals, point);

        auto digits = static_cast<std::int64_t>(scaled);
        const double rest = scaled - static_cast<double>(digits);
        const bool odd = (digits & 1) != 0;
        if (rest > 0.5 || (rest == 0.5 && odd)) ++digits;

        // Also what rounds to zero keeps its sign: "-0".
        if (std::signbit(quotient)) *to++ = '-';
        to = writeDigits(to, digits / scale);
        if constexpr (decimals > 0) {
            *to++ = point;
            const auto fraction = static_cast<std::size_t>(digits % scale);
            std::memcpy(to, digitTable[fraction].padded.data() + (3 - decimals), decimals);
            to += decimals;
        }
        return to;
    }
};

// Seconds since 1970 as "07.05.2013 18:04:09".
struct DateAndTime {
    static std::size_t longest(std::int32_t) { return longestNumber; }
    static char* write(char* to, std::int32_t value) {
        return writeText(to, services::dateAndTimeText(value));
    }
};

// Seconds as "1:02:05".
struct Duration {
    static std::size_t longest(std::int32_t) { return longestNumber; }
    static char* write(char* to, std::int32_t value) {
        return writeText(to, services::durationText(value));
    }
};

// The bytes alone, neither quoted nor changed.
struct AsStored {
    static std::size_t longest(services::TextView value) { return value.size(); }
    static char* write(char* to, services::TextView value) { return writeText(to, value); }
};

}  // namespace exporting
