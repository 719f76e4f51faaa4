// The decimal digits of the numbers below 1000, ready to be copied: most fields of a training are
// that small.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace exporting {

struct ShortNumber {
    std::array<char, 3> padded = {};  // "007"
    char length = 0;                  // without the leading zeros; 1 for zero
    std::array<char, 4> digits = {};  // without them, from the left
};

using DigitTable = std::array<ShortNumber, 1000>;

consteval DigitTable makeDigitTable() {
    DigitTable table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        ShortNumber& number = table[i];
        number.padded = {static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                         static_cast<char>('0' + i % 10)};
        const std::size_t length = i >= 100 ? 3 : i >= 10 ? 2 : 1;
        number.length = static_cast<char>(length);
        for (std::size_t k = 0; k < length; ++k)
            number.digits[k] = number.padded[3 - length + k];
    }
    return table;
}

inline constexpr DigitTable digitTable = makeDigitTable();

}  // namespace exporting
