#include "charts/strips/mark_strips.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "charts/marks/mark_painting.h"
#include "charts/marks/mark_scale.h"
#include "charts/strips/slot_columns.h"
#include "charts/strips/strip_bars.h"
#include "charts/strips/strip_line.h"
#include "charts/strips/strip_points.h"
#include "charts/strips/strip_rows.h"
#include "services/raster/cover_mask.h"
#include "services/raster/point_stamps.h"
#include "services/raster/raster_strip.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

using services::deviceEdge;
using services::StripArea;

// What one drawing works with.
struct Painting {
    services::Surface& surface;
    const ChartLayers& layers;
    double ratio;
    Plot plot;
    Slots slots;
    SlotColumns columns;
    BarRoom barRoom;
    StripPoints points;
    std::vector<services::PointBits> clouds = {};  // by layer

    // Of the strip being painted, in logical columns.
    int firstColumn = 0;
    int endColumn = 0;
    SlotsInColumns slotsInStrip = {};
    services::StripPixels pixels = {};
    StripRows rows = {};
    StripBars bars = {};
    services::CoverMask trend = {};
    services::CoverMask covered = {};
    std::vector<services::CoverMask> masks = {};  // by layer
};

StripArea stripArea(const Painting& painting) {
    const auto edge = [&painting](int column) {
        return static_cast<int>(std::min<std::int64_t>(deviceEdge(column, painting.ratio),
                                                       painting.surface.deviceWidth));
    };
    return {edge(painting.firstColumn), edge(painting.endColumn), painting.surface.deviceHeight};
}

bool hasOpaqueStyle(const ValueLayer& layer) {
    return layer.has(Option::line) || layer.has(Option::circles) || layer.has(Option::squares) ||
           layer.has(Option::cloud);
}

bool usesSlots(const ValueLayer& layer) {
    return layer.has(Option::bars) || layer.has(Option::line) || layer.has(Option::circles) ||
           layer.has(Option::squares);
}

// Collects the value's bars and what its other styles, which come one after the other and have one
// colour, cover.
void collectStyles(Painting& painting, std::size_t index) {
    const ValueLayer& layer = painting.layers.values[index];
    const SlotsInColumns& slots = painting.slotsInStrip;
    const StripRows& rows = painting.rows;
    if (usesSlots(layer)) {
        computeStripRows(layer, painting.plot, painting.slots, slots.all, painting.rows);
    }
    if (layer.has(Option::bars)) addBars(painting.bars, rows, layer.colour, painting.barRoom);
    if (!hasOpaqueStyle(layer)) return;
    services::CoverMask& mask = painting.masks[index];
    services::clearMask(mask, painting.pixels.area);
    if (layer.has(Option::line)) {
        coverStripLine(mask, painting.columns, slots.line, rows, painting.ratio);
    }
    if (layer.has(Option::circles)) {
        coverStripCircles(mask, painting.points, painting.columns, slots.circles, rows);
    }
    if (layer.has(Option::squares)) {
        coverStripSquares(mask, painting.points, painting.columns, slots.squares, rows);
    }
    if (layer.has(Option::cloud)) {
        coverStripCloud(mask, painting.points, painting.clouds[index], painting.firstColumn,
                        painting.endColumn);
    }
}

// Letters may reach a little beyond their box.
int textRoom(const PlacedText& text) {
    return services::textHeight(text.text);
}

// The columns of the image that the text may touch; where it stands outside, the nearest one.
SlotRange textColumns(const Painting& painting, const PlacedText& text) {
    const std::int64_t last = std::int64_t{painting.surface.width} - 1;
    const std::int64_t first = std::int64_t{text.x} - textRoom(text);
    const std::int64_t end = std::int64_t{text.x} + services::textWidth(text.text) + textRoom(text);
    const std::int64_t from = std::clamp<std::int64_t>(first, 0, last);
    return {static_cast<std::size_t>(from),
            static_cast<std::size_t>(std::clamp<std::int64_t>(end, from + 1, last + 1))};
}

bool beginsInStrip(const Painting& painting, const std::optional<PlacedText>& text) {
    if (!text) return false;
    const auto column = static_cast<int>(textColumns(painting, *text).first);
    return column >= painting.firstColumn && column < painting.endColumn;
}

bool hasTexts(const Painting& painting) {
    const auto& values = painting.layers.values;
    return std::any_of(values.begin(), values.end(), [&painting](const ValueLayer& layer) {
        return beginsInStrip(painting, layer.cloudText) ||
               beginsInStrip(painting, layer.meanText) || beginsInStrip(painting, layer.trendText);
    });
}

// The toolkit writes into the surface, over what the strip has there so far.
void paintStripText(Painting& painting, const std::optional<PlacedText>& text) {
    if (!beginsInStrip(painting, text)) return;
    const std::int64_t height = services::textHeight(text->text);
    const auto row = [&painting](std::int64_t logical) {
        return static_cast<int>(std::clamp<std::int64_t>(deviceEdge(logical, painting.ratio), 0,
                                                         painting.pixels.area.height));
    };
    const int top = row(text->y - textRoom(*text));
    const int bottom = row(text->y + height + textRoom(*text));
    services::storeStrip(painting.surface, painting.pixels, top, bottom);
    services::drawText(painting.surface, text->x, text->y, text->text, text->colour);
    services::loadStrip(painting.pixels, painting.surface, top, bottom);
}

void collectTrend(Painting& painting, const TrendMark& trend) {
    const double s = painting.ratio;
    services::clearMask(painting.trend, painting.pixels.area);
    services::coverLine(painting.trend, deviceEdge(trend.x1, s), deviceEdge(trend.y1, s),
                        deviceEdge(trend.x2, s), deviceEdge(trend.y2, s),
                        services::lineThickness(s));
}

services::DeviceBox meanBox(const Painting& painting, const MeanMark& mean) {
    return meanPixels(painting.ratio, painting.layers.frame, mean);
}

// From the lowest to the uppermost: each text is blended with what is below it.
void paintOverlaysWithTexts(Painting& painting) {
    for (std::size_t i = 0; i < painting.layers.values.size(); ++i) {
        const ValueLayer& layer = painting.layers.values[i];
        if (hasOpaqueStyle(layer)) {
            services::fillCovered(painting.pixels, painting.masks[i], layer.colour);
        }
        paintStripText(painting, layer.cloudText);
        if (layer.mean) {
            services::fillStripBox(painting.pixels, meanBox(painting, *layer.mean), layer.colour);
        }
        paintStripText(painting, layer.meanText);
        if (layer.trend) {
            collectTrend(painting, *layer.trend);
            services::fillCovered(painting.pixels, painting.trend, trendColour);
        }
        paintStripText(painting, layer.trendText);
    }
}

// From the uppermost to the lowest, each pixel once.
void paintOverlays(Painting& painting) {
    services::clearMask(painting.covered, painting.pixels.area);
    for (std::size_t i = painting.layers.values.size(); i-- > 0;) {
        const ValueLayer& layer = painting.layers.values[i];
        if (layer.trend) {
            collectTrend(painting, *layer.trend);
            services::fillUncovered(painting.pixels, painting.trend, painting.covered, trendColour);
        }
        if (layer.mean) {
            services::fillUncoveredBox(painting.pixels, meanBox(painting, *layer.mean),
                                       painting.covered, layer.colour);
        }
        if (hasOpaqueStyle(layer)) {
            services::fillUncovered(painting.pixels, painting.masks[i], painting.covered,
                                    layer.colour);
        }
    }
}

void paintStrip(Painting& painting) {
    services::fillStrip(painting.pixels, stripArea(painting), services::white);
    if (painting.pixels.area.columns() <= 0) return;
    for (const GridRule& rule : painting.layers.grid) {
        services::fillStripBox(painting.pixels, rulePixels(painting.ratio, rule), ruleColour(rule));
    }
    painting.slotsInStrip =
        slotsInColumns(painting.columns, painting.slots, painting.firstColumn, painting.endColumn);
    painting.bars.count = 0;
    for (std::size_t i = 0; i < painting.layers.values.size(); ++i)
        collectStyles(painting, i);
    paintStripBars(painting.pixels, painting.columns.bars, painting.firstColumn, painting.endColumn,
                   painting.barRoom, painting.bars);
    if (hasTexts(painting)) {
        paintOverlaysWithTexts(painting);
    } else {
        paintOverlays(painting);
    }
    services::storeStrip(painting.surface, painting.pixels, 0, painting.pixels.area.height);
}

// Whether a strip may end before each column of the image: no text stands across the end.
std::vector<bool> possibleEnds(const Painting& painting) {
    std::vector<bool> ends(static_cast<std::size_t>(painting.surface.width) + 1, true);
    for (const ValueLayer& layer : painting.layers.values) {
        for (const auto* text : {&layer.cloudText, &layer.meanText, &layer.trendText}) {
            if (!*text) continue;
            const SlotRange columns = textColumns(painting, **text);
            for (std::size_t x = columns.first + 1; x < columns.end; ++x)
                ends[x] = false;
        }
    }
    return ends;
}

void paintAllStrips(Painting& painting) {
    constexpr double deviceColumns = 64;
    const int columns = std::max(1, static_cast<int>(deviceColumns / painting.ratio));
    const std::vector<bool> ends = possibleEnds(painting);
    const int width = painting.surface.width;
    for (painting.firstColumn = 0; painting.firstColumn < width;
         painting.firstColumn = painting.endColumn) {
        painting.endColumn = std::min(painting.firstColumn + columns, width);
        while (!ends[static_cast<std::size_t>(painting.endColumn)])
            ++painting.endColumn;
        paintStrip(painting);
    }
}

WantedColumns wantedColumns(const ChartLayers& layers) {
    const auto anyHas = [&layers](Option option) {
        return std::any_of(layers.values.begin(), layers.values.end(),
                           [option](const ValueLayer& layer) { return layer.has(option); });
    };
    return {.bars = anyHas(Option::bars),
            .line = anyHas(Option::line),
            .circles = anyHas(Option::circles),
            .squares = anyHas(Option::squares)};
}

// Values below the minimum or above the maximum, of which there are hardly ever any, can stand so
// far outside that their row is the one that stands for none.
bool mayStandInStrips(const Plot& plot, const ValueSeries& series) {
    const Scale scale(series);
    return std::all_of(series.values.begin(), series.values.end(), [&](float value) {
        if (value >= series.minimum && value <= series.maximum) return true;
        return !(heightOf(plot, scale, static_cast<double>(value)) < -2147483647.0);
    });
}

}  // namespace

bool canPaintStrips(const services::Surface& surface, const ChartLayers& layers) {
    if (surface.pixels.empty() || layers.values.empty()) return false;
    const Plot plot(layers.frame);
    if (plot.width < 1 || plot.height < 1) return false;
    const std::size_t count = layers.values.front().series->values.size();
    return count > 0 &&
           std::all_of(layers.values.begin(), layers.values.end(), [&](const ValueLayer& layer) {
               return layer.series->values.size() == count && mayStandInStrips(plot, *layer.series);
           });
}

void paintStrips(services::Surface& surface, const ChartLayers& layers) {
    const Plot plot(layers.frame);
    const std::size_t count = layers.values.front().series->values.size();
    const Slots slots(plot, count);
    const double ratio = surface.pixelRatio;
    Painting painting = {
        .surface = surface,
        .layers = layers,
        .ratio = ratio,
        .plot = plot,
        .slots = slots,
        .columns = slotColumns(wantedColumns(layers), plot, slots, count, surface.width),
        .barRoom = barRoom(surface, layers, plot),
        .points = stripPoints(surface, plot, slots, count),
        .clouds = std::vector<services::PointBits>(layers.values.size()),
        .masks = std::vector<services::CoverMask>(layers.values.size()),
    };
    for (std::size_t i = 0; i < layers.values.size(); ++i) {
        if (layers.values[i].has(Option::cloud)) {
            painting.clouds[i] = collectCloud(painting.points, plot, *layers.values[i].series);
        }
    }
    paintAllStrips(painting);
}

}  // namespace charts
