#include "charts/chart_description.h"

namespace charts {
namespace {

using services::operator""_l1;
using services::Text;

Text markedOptionTexts(const MarkedOptions& marks, int valueNumber) {
    Text joined;
    for (int number = firstMarkOption; number <= lastMarkOption; ++number) {
        const auto option = static_cast<Option>(number);
        if (!marks.has(valueNumber, option)) continue;
        if (!joined.empty()) joined += ", "_l1;
        joined += optionText(option);
    }
    return joined;
}

}  // namespace

Text describeChart(ChartKind kind, const MarkedOptions& marks) {
    const ValueRange range = valueRange(kind);
    Text values;
    for (int value = range.first; value < range.end; ++value) {
        const Text options = markedOptionTexts(marks, value);
        const auto texts = valueTexts(value);
        if (options.empty() || !texts) continue;
        if (!values.empty()) values += ", "_l1;
        values += texts->menuText;
        values += " ("_l1;
        values += options;
        values += ')';
    }
    Text description(kind == ChartKind::overview ? "Übersicht: "_l1 : "Training: "_l1);
    description += values.empty() ? "nichts gewählt"_l1 : services::TextView(values);
    return description;
}

}  // namespace charts
