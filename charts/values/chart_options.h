// The options of a value's submenu. What is marked there is the chart's configuration.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "charts/values/value_numbers.h"
#include "services/text/latin1.h"

namespace charts {

// Item number = value number + 100 * option.
enum class Option {
    bars = 1,
    line = 2,
    circles = 3,
    squares = 4,
    cloud = 5,
    mean = 6,
    trend = 7,
    limits = 8,  // opens a dialog; carries no mark
    colour = 9,  // opens a requester; carries no mark
};

inline constexpr int firstMarkOption = 1;
inline constexpr int lastMarkOption = 7;
inline constexpr int lastOption = 9;

constexpr int optionItem(int valueNumber, Option option) {
    return valueNumber + 100 * static_cast<int>(option);
}

// What an option's item number says.
struct OptionItem {
    ChartKind kind;
    int valueNumber;
    Option option;
};

// Nothing for a number that is no option of a value.
std::optional<OptionItem> optionOfItem(int item);

// The option's text in the menus.
services::TextView optionText(Option option);

// Which options of which values are marked, read from the menus once per drawing.
struct MarkedOptions {
    std::array<std::uint8_t, valueNumberLimit> bits = {};  // bit k: option k

    bool has(int valueNumber, Option option) const {
        const unsigned marked = bits[static_cast<std::size_t>(valueNumber)];
        return ((marked >> static_cast<unsigned>(option)) & 1U) != 0;
    }
};

MarkedOptions readMarkedOptions();

// Turns an option's mark over. Numbers that can carry no mark are ignored.
void toggleOption(int item);

// Removes the marks of every option of one chart.
void clearOptions(ChartKind kind);

// Enables or disables every option item of one chart, dialogs and requesters included.
void enableOptions(ChartKind kind, bool enabled);

}  // namespace charts
