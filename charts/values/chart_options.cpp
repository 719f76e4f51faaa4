#include "charts/values/chart_options.h"

#include <cstddef>

#include "services/menus.h"

namespace charts {
namespace {

using services::operator""_l1;

constexpr std::array<services::TextView, lastOption> optionTexts = {
    "Balken"_l1,     "Linie"_l1, "Kreise"_l1,     "Quadrate"_l1, "Punktewolke"_l1,
    "Mittelwert"_l1, "Trend"_l1, "Grenzwerte"_l1, "Farbe"_l1,
};

template <typename Act>
void forEachItem(ChartKind kind, int lastWanted, Act act) {
    const ValueRange range = valueRange(kind);
    for (int value = range.first; value < range.end; ++value) {
        for (int option = firstMarkOption; option <= lastWanted; ++option) {
            act(optionItem(value, static_cast<Option>(option)));
        }
    }
}

}  // namespace

std::optional<OptionItem> optionOfItem(int item) {
    const int option = item / 100;
    const int value = item % 100;
    if (option < firstMarkOption || option > lastOption) return std::nullopt;
    for (const ChartKind kind : {ChartKind::overview, ChartKind::training}) {
        const ValueRange range = valueRange(kind);
        if (value >= range.first && value < range.end) {
            return OptionItem{kind, value, static_cast<Option>(option)};
        }
    }
    return std::nullopt;
}

services::TextView optionText(Option option) {
    return optionTexts[static_cast<std::size_t>(option) - 1];
}

MarkedOptions readMarkedOptions() {
    MarkedOptions marks;
    for (int value = 0; value < valueNumberLimit; ++value) {
        unsigned bits = 0;
        for (int option = firstMarkOption; option <= lastMarkOption; ++option) {
            if (services::itemMark(optionItem(value, static_cast<Option>(option)))) {
                bits |= 1U << static_cast<unsigned>(option);
            }
        }
        marks.bits[static_cast<std::size_t>(value)] = static_cast<std::uint8_t>(bits);
    }
    return marks;
}

void toggleOption(int item) {
    const std::optional<OptionItem> found = optionOfItem(item);
    if (!found || static_cast<int>(found->option) > lastMarkOption) return;
    services::setItemMark(item, !services::itemMark(item));
}

void clearOptions(ChartKind kind) {
    forEachItem(kind, lastMarkOption, [](int item) { services::setItemMark(item, false); });
}

void enableOptions(ChartKind kind, bool enabled) {
    forEachItem(kind, lastOption, [enabled](int item) { services::setItemEnabled(item, enabled); });
}

}  // namespace charts
