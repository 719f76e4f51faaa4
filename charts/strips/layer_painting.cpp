#include "charts/strips/layer_painting.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "charts/marks/mark_painting.h"
#include "charts/strips/mark_strips.h"
#include "services/text_drawing.h"

namespace charts {
namespace {

// So few opaque marks are painted sooner than a strip is turned into rows of the surface.
bool hasFewMarks(const ChartLayers& layers) {
    constexpr std::size_t few = 2000;
    std::size_t marks = 0;
    for (const ValueLayer& layer : layers.values) {
        if (layer.has(Option::bars)) return false;
        const auto styles = std::count(layer.styles.begin(), layer.styles.end(), true);
        marks += layer.series->values.size() * static_cast<std::size_t>(styles);
    }
    return marks <= few;
}

void paintPlainText(services::Surface& surface, const std::optional<PlacedText>& text) {
    if (text) services::drawText(surface, text->x, text->y, text->text, text->colour);
}

void paintPlainly(services::Surface& surface, const ChartLayers& layers) {
    const ChartFrame& frame = layers.frame;
    services::fillSurface(surface, services::white);
    paintGrid(surface, layers.grid);
    BarMarks bars;
    for (const ValueLayer& layer : layers.values) {
        if (!layer.has(Option::bars)) continue;
        computeBars(frame, *layer.series, bars);
        paintBars(surface, bars, layer.colour);
    }
    std::vector<LineMark> line;
    PointMarks points;
    for (const ValueLayer& layer : layers.values) {
        if (layer.has(Option::line)) {
            computeLine(frame, *layer.series, line);
            paintLine(surface, line, layer.colour);
        }
        if (layer.has(Option::circles)) {
            computeCircles(frame, *layer.series, points);
            paintCircles(surface, points, layer.colour);
        }
        if (layer.has(Option::squares)) {
            computeSquares(frame, *layer.series, points);
            paintSquares(surface, points, layer.colour);
        }
        if (layer.has(Option::cloud)) {
            computeCloud(frame, *layer.series, points);
            paintCircles(surface, points, layer.colour);
        }
        paintPlainText(surface, layer.cloudText);
        if (layer.mean) paintMean(surface, frame, *layer.mean, layer.colour);
        paintPlainText(surface, layer.meanText);
        if (layer.trend) paintTrend(surface, *layer.trend);
        paintPlainText(surface, layer.trendText);
    }
}

}  // namespace

void paintLayers(services::Surface& surface, const ChartLayers& layers) {
    if (canPaintStrips(surface, layers) && !hasFewMarks(layers)) {
        paintStrips(surface, layers);
    } else {
        paintPlainly(surface, layers);
    }
}

}  // namespace charts
