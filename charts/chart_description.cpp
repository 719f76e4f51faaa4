#include "charts/chart_description.h"

#include "charts/values/value_catalogue.h"
#include "services/text/dates.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace charts {
namespace {

using services::concatenate;
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

Text number(int valueNumber, float value) {
    return services::withDecimalComma(valueText(valueNumber, value));
}

Text describeValue(const ShownChart& shown, const ShownValue& value) {
    const auto texts = valueTexts(value.number);
    if (!texts) return {};
    return concatenate(texts->menuText, " ("_l1, markedOptionTexts(shown.marks, value.number),
                       ") von "_l1, number(value.number, value.minimum), " bis "_l1,
                       number(value.number, value.maximum));
}

Text describeOverview(const ShownChart& shown) {
    if (shown.values.empty()) return Text("Übersicht"_l1);
    return concatenate("Übersicht, "_l1, services::integerToText(shown.trainings),
                       shown.trainings == 1 ? " Training vom "_l1 : " Trainings vom "_l1,
                       services::dayText(shown.firstDate), " bis "_l1,
                       services::dayText(shown.lastDate));
}

Text describeTraining(const ShownChart& shown) {
    if (shown.startDate == 0 && shown.endDate == 0) return Text("Training"_l1);
    return concatenate("Training"_l1, shown.training.empty() ? ""_l1 : " "_l1, shown.training,
                       ", "_l1, services::dateAndTimeText(shown.startDate), " bis "_l1,
                       services::dateAndTimeText(shown.endDate));
}

}  // namespace

Text describeChart(const ShownChart& shown) {
    Text values;
    for (const ShownValue& value : shown.values) {
        if (!values.empty()) values += "; "_l1;
        values += describeValue(shown, value);
    }
    return concatenate(
        shown.kind == ChartKind::overview ? describeOverview(shown) : describeTraining(shown),
        ": "_l1, values.empty() ? "nichts gewählt"_l1 : services::TextView(values));
}

Text describeEmptyPicture() {
    return Text("Kein Diagramm: dazu gehören mindestens zwei Trainings oder Messwerte"_l1);
}

}  // namespace charts
