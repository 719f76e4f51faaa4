#include "charts/marks/chart_texts.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "charts/values/value_catalogue.h"
#include "services/text/dates.h"
#include "services/text/numbers.h"
#include "services/text/text.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

using services::operator""_l1;
using services::Text;
using services::TextView;

TextView labelOf(int valueNumber) {
    const std::optional<ValueTexts> texts = valueTexts(valueNumber);
    return texts ? texts->label : TextView();
}

int leftOfPlot(const ChartFrame& frame, TextView text) {
    return frame.left - services::textWidth(text);
}

std::array<PlacedText, 3> bottomLine(const ChartFrame& frame, Text left, Text middle, Text right) {
    // All texts of a font have one height; that of any figure will do.
    const int y = services::roundToInt32(frame.height + 1.5 * services::textHeight("0"_l1));
    const int middleX = frame.left + frame.width / 2 - services::textWidth(middle) / 2;
    const int rightX = frame.left + frame.width - services::textWidth(right);
    return {{{frame.left, y, std::move(left), services::black},
             {middleX, y, std::move(middle), services::black},
             {rightX, y, std::move(right), services::black}}};
}

}  // namespace

std::vector<PlacedText> itemTexts(const ChartFrame& frame, int valueNumber,
                                  const ValueSeries& series, services::Colour colour,
                                  ItemTextPlace& place) {
    place.labelOffset += services::textWidth("_"_l1);
    if (!series.hasData) return {};

    const TextView label = labelOf(valueNumber);
    Text minimum = valueText(valueNumber, series.minimum);
    Text maximum = valueText(valueNumber, series.maximum);
    const Text wholeMinimum =
        services::integerToText(services::roundToInt64(static_cast<double>(series.minimum)));
    const int height = services::textHeight(wholeMinimum);
    const int minimumX = leftOfPlot(frame, minimum);
    const int maximumX = leftOfPlot(frame, maximum);
    const int labelY = services::roundToInt32(frame.top - 1.1 * height);
    const int minimumY = services::roundToInt32(frame.height + height / 2.0 -
                                                static_cast<double>(height) * place.count);
    const int maximumY = frame.top + height * place.count;

    std::vector<PlacedText> texts;
    texts.push_back({frame.left + place.labelOffset, labelY, Text(label), colour});
    texts.push_back({minimumX, minimumY, std::move(minimum), colour});
    texts.push_back({maximumX, maximumY, std::move(maximum), colour});
    ++place.count;
    place.labelOffset += services::textWidth(label);
    return texts;
}

std::array<PlacedText, 3> overviewBottomLine(const ChartFrame& frame, const ValueSeries& series) {
    const auto total = static_cast<double>(series.totalRideTime);
    const auto number = static_cast<double>(series.values.size());
    // A mean of no trainings is not a number, which rounds to 0.
    const std::int64_t average = services::roundToInt64(total / number);
    const auto day = [](float date) {
        return services::dayText(services::roundToInt64(static_cast<double>(date)));
    };
    return bottomLine(frame, day(series.firstDate),
                      services::concatenate(
                          services::durationText(services::roundToInt64(total)), " / "_l1,
                          services::integerToText(static_cast<std::int64_t>(series.values.size())),
                          " = "_l1, services::durationText(average)),
                      day(series.lastDate));
}

std::array<PlacedText, 3> trainingBottomLine(const ChartFrame& frame,
                                             const device::DictionaryRecord& record) {
    const std::int64_t duration =
        static_cast<std::int64_t>(record.endDate) - static_cast<std::int64_t>(record.startDate);
    return bottomLine(frame, services::dateAndTimeText(record.startDate), record.description,
                      services::durationText(duration));
}

PlacedText meanText(const ChartFrame& frame, int valueNumber, const ValueSeries& series,
                    const MeanMark& mark, services::Colour colour) {
    Text text = valueText(valueNumber, series.mean);
    const int x = leftOfPlot(frame, text);
    const int y = services::roundToInt32(mark.exactY - services::textHeight(text) / 2.0);
    return {x, y, std::move(text), colour};
}

PlacedText trendText(const ChartFrame& frame, const TrendMark& mark, services::Colour colour) {
    Text text =
        services::withDecimalComma(services::floatToText(static_cast<float>(mark.percent), 2));
    text += '%';
    const int x = frame.left + frame.width - 2 + services::textWidth(" "_l1);
    const int y = services::roundToInt32(mark.exactY2 - services::textHeight(text) / 2.0);
    return {x, y, std::move(text), colour};
}

PlacedText cloudText(const ChartFrame& frame, int valueNumber, const ValueSeries& series,
                     services::Colour colour, const CloudTextPlace& place) {
    Text text = services::withDecimalComma(valueText(valueNumber, series.maximum));
    const int side = std::min(frame.width, frame.height);
    int x = frame.left + side + 2 + services::textWidth(" "_l1);
    if (frame.width < frame.height) {
        // Right of the plot, where the marks of later values don't reach. Its room there is the
        // left margin's, and a text that fills it stands close to the frame rather than being cut
        // off.
        const int last = frame.left + frame.width + frame.left - services::textWidth(text);
        x = std::max(frame.left + frame.width + 1, std::min(x, last));
    }
    const int y = frame.top + (place.count - 1) * services::textHeight(text);
    return {x, y, std::move(text), colour};
}

}  // namespace charts
