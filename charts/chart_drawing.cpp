#include "charts/chart_drawing.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "charts/chart_state.h"
#include "charts/marks/chart_frame.h"
#include "charts/marks/chart_layers.h"
#include "charts/marks/chart_texts.h"
#include "charts/marks/mark_geometry.h"
#include "charts/marks/mark_painting.h"
#include "charts/strips/layer_painting.h"
#include "charts/values/chart_options.h"
#include "charts/values/value_catalogue.h"
#include "device/device_state.h"
#include "services/disk/whole_files.h"
#include "services/menus.h"
#include "services/requesters.h"
#include "services/text/numbers.h"
#include "services/text/text.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

using services::operator""_l1;

// What one drawing reads, gathered once.
struct Drawing {
    ChartKind kind;
    ValueRange range;
    MarkedOptions marks;
    ChartFrame frame = {};
    std::vector<ValueSeries>
        series;  // by value number - range.first; only marked values are filled
};

bool hasMarks(const MarkedOptions& marks, int valueNumber) {
    return marks.bits[static_cast<std::size_t>(valueNumber)] != 0;
}

const ValueSeries& seriesOf(const Drawing& drawing, int valueNumber) {
    return drawing.series[static_cast<std::size_t>(valueNumber - drawing.range.first)];
}

services::Colour colourOf(int valueNumber) {
    return state.colours[static_cast<std::size_t>(valueNumber)];
}

bool hasEnoughData(ChartKind kind) {
    const std::size_t available = kind == ChartKind::overview ? device::state.dictionary.size()
                                                              : device::state.samples.size();
    return available >= 2;
}

// All but the frame.
Drawing gatherDrawing(ChartKind kind) {
    Drawing drawing;
    drawing.kind = kind;
    drawing.range = valueRange(kind);
    drawing.marks = readMarkedOptions();
    drawing.series.resize(static_cast<std::size_t>(drawing.range.end - drawing.range.first));
    for (int value = drawing.range.first; value < drawing.range.end; ++value) {
        if (!hasMarks(drawing.marks, value)) continue;
        computeSeries(kind, value,
                      drawing.series[static_cast<std::size_t>(value - drawing.range.first)]);
    }
    return drawing;
}

void draw(services::Surface& surface, const PlacedText& text) {
    services::drawText(surface, text.x, text.y, text.text, text.colour);
}

ValueLayer layerOf(const Drawing& drawing, int valueNumber, CloudTextPlace& place) {
    const ValueSeries& series = seriesOf(drawing, valueNumber);
    const ChartFrame& frame = drawing.frame;
    const auto has = [&](Option option) { return drawing.marks.has(valueNumber, option); };
    ValueLayer layer;
    layer.series = &series;
    layer.colour = colourOf(valueNumber);
    for (std::size_t style = firstMarkOption; style < layer.styles.size(); ++style)
        layer.styles[style] = has(static_cast<Option>(style));
    // A cloud without data keeps its place among the texts.
    if (has(Option::cloud)) ++place.count;
    if (!series.hasData) return layer;
    if (has(Option::cloud)) {
        layer.cloudText = cloudText(frame, valueNumber, series, layer.colour, place);
    }
    if (has(Option::mean)) layer.mean = computeMean(frame, series);
    if (layer.mean) {
        layer.meanText = meanText(frame, valueNumber, series, *layer.mean, layer.colour);
    }
    if (has(Option::trend)) layer.trend = computeTrend(frame, series);
    if (layer.trend) layer.trendText = trendText(frame, *layer.trend, layer.colour);
    return layer;
}

void drawMarks(services::Surface& surface, const Drawing& drawing) {
    ChartLayers layers;
    layers.frame = drawing.frame;
    layers.grid = gridRules(drawing.frame, gridKind(drawing.marks));
    CloudTextPlace place;
    for (int value = drawing.range.first; value < drawing.range.end; ++value) {
        if (!hasMarks(drawing.marks, value)) continue;
        ValueLayer layer = layerOf(drawing, value, place);
        if (layer.series->hasData) layers.values.push_back(std::move(layer));
    }
    paintLayers(surface, layers);
}

// The opened training is the selected one of the index. Nothing when none is.
const device::DictionaryRecord* openedTraining() {
    const auto& records = device::state.dictionary;
    const auto opened = std::find_if(records.begin(), records.end(),
                                     [](const auto& record) { return record.selected != 0; });
    return opened == records.end() ? nullptr : &*opened;
}

void drawBottomLine(services::Surface& surface, const Drawing& drawing, const ValueSeries& series) {
    if (drawing.kind == ChartKind::overview) {
        for (const PlacedText& text : overviewBottomLine(drawing.frame, series))
            draw(surface, text);
        return;
    }
    const device::DictionaryRecord* opened = openedTraining();
    if (opened == nullptr) return;
    for (const PlacedText& text : trainingBottomLine(drawing.frame, *opened))
        draw(surface, text);
}

void reportNoData(int valueNumber, Option option) {
    const auto texts = valueTexts(valueNumber);
    services::showMessage("Fehler"_l1,
                          services::concatenate("Das Menü '"_l1, texts ? texts->label : ""_l1,
                                                "' enthält keine Daten!"_l1));
    services::setItemMark(optionItem(valueNumber, option), false);
}

void drawTexts(services::Surface& surface, const Drawing& drawing) {
    ItemTextPlace place;
    for (int value = drawing.range.first; value < drawing.range.end; ++value) {
        for (int number = firstMarkOption; number <= lastMarkOption; ++number) {
            const auto option = static_cast<Option>(number);
            if (!drawing.marks.has(value, option)) continue;
            const ValueSeries& series = seriesOf(drawing, value);
            const bool isFirst = place.count == 0;
            for (const PlacedText& text :
                 itemTexts(drawing.frame, value, series, colourOf(value), place)) {
                draw(surface, text);
            }
            // The line below the plot is the same for every item; drawn over itself its letters
            // would thicken.
            if (series.hasData && isFirst) drawBottomLine(surface, drawing, series);
            if (!series.hasData) reportNoData(value, option);
        }
    }
}

// Multiplied by an odd number and folded, so that each bit of what came before moves on.
void addToDigest(std::uint64_t& digest, std::uint64_t number) {
    digest = (digest ^ number) * 0x9E3779B97F4A7C15U;
    digest ^= digest >> 32U;
}

void addToDigest(std::uint64_t& digest, float one, float other) {
    addToDigest(digest, std::uint64_t{std::bit_cast<std::uint32_t>(one)} << 32U |
                            std::bit_cast<std::uint32_t>(other));
}

void addToDigest(std::uint64_t& digest, const ValueSeries& series) {
    addToDigest(digest, series.hasData ? 1 : 0);
    addToDigest(digest, series.minimum, series.maximum);
    addToDigest(digest, series.mean, series.totalRideTime);
    addToDigest(digest, series.firstDate, series.lastDate);
    const std::vector<float>& values = series.values;
    addToDigest(digest, values.size());
    for (std::size_t i = 0; i + 1 < values.size(); i += 2)
        addToDigest(digest, values[i], values[i + 1]);
    if (values.size() % 2 != 0) addToDigest(digest, values.back(), 0);
}

std::uint64_t digestOf(const Drawing& drawing) {
    std::uint64_t digest = services::emptyHash;
    addToDigest(digest, static_cast<std::uint64_t>(drawing.kind));
    // Those of the other chart have a say in the grid.
    for (const std::uint8_t bits : drawing.marks.bits)
        addToDigest(digest, bits);
    for (int value = drawing.range.first; value < drawing.range.end; ++value) {
        if (!hasMarks(drawing.marks, value)) continue;
        addToDigest(digest, static_cast<std::uint32_t>(colourOf(value)));
        addToDigest(digest, seriesOf(drawing, value));
    }
    if (drawing.kind == ChartKind::overview) return digest;
    if (const device::DictionaryRecord* opened = openedTraining()) {
        addToDigest(digest, services::hashOf(opened->description));
        addToDigest(digest, static_cast<std::uint32_t>(opened->startDate));
        addToDigest(digest, static_cast<std::uint32_t>(opened->endDate));
    }
    return digest;
}

// The dates of the overview are the series' own, as the bottom line shows them.
ShownChart tellShown(const Drawing& drawing) {
    ShownChart shown{.kind = drawing.kind, .marks = drawing.marks};
    for (int value = drawing.range.first; value < drawing.range.end; ++value) {
        if (!hasMarks(drawing.marks, value)) continue;
        const ValueSeries& series = seriesOf(drawing, value);
        if (!series.hasData) continue;
        shown.values.push_back({value, series.minimum, series.maximum});
        if (drawing.kind != ChartKind::overview) continue;
        shown.trainings = static_cast<std::int64_t>(series.values.size());
        shown.firstDate = services::roundToInt64(static_cast<double>(series.firstDate));
        shown.lastDate = services::roundToInt64(static_cast<double>(series.lastDate));
    }
    if (const device::DictionaryRecord* opened = openedTraining();
        opened != nullptr && drawing.kind == ChartKind::training) {
        shown.training = opened->description;
        shown.startDate = opened->startDate;
        shown.endDate = opened->endDate;
    }
    return shown;
}

}  // namespace

void computeSeries(ChartKind kind, int valueNumber, ValueSeries& series) {
    if (valueNumber < 0 || valueNumber >= valueNumberLimit) {
        series = {};
        return;
    }
    const Limits& limits = state.limits[static_cast<std::size_t>(valueNumber)];
    if (kind == ChartKind::overview) {
        computeOverviewSeries(valueNumber, device::state.dictionary, limits, series);
    } else {
        computeTrainingSeries(valueNumber, device::state.samples, limits, series);
    }
}

bool drawChart(ChartKind kind, services::Surface& surface, ShownChart* shown) {
    if (!hasEnoughData(kind)) return false;

    Drawing drawing = gatherDrawing(kind);
    drawing.frame = chartFrame(surface.width, surface.height);
    // Before a message lets anything else happen.
    const std::uint64_t digest = shown == nullptr ? 0 : digestOf(drawing);
    drawMarks(surface, drawing);
    drawTexts(surface, drawing);
    paintFrame(surface, drawing.frame);
    if (shown != nullptr) {
        *shown = tellShown(drawing);
        shown->digest = digest;
    }
    return true;
}

std::uint64_t digestOfChart(ChartKind kind) {
    return hasEnoughData(kind) ? digestOf(gatherDrawing(kind)) : 0;
}

}  // namespace charts
