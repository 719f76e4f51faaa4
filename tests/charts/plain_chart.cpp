#include "tests/charts/plain_chart.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "charts/chart_drawing.h"
#include "charts/chart_state.h"
#include "charts/marks/chart_frame.h"
#include "charts/marks/chart_texts.h"
#include "charts/marks/mark_geometry.h"
#include "charts/marks/mark_painting.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "services/text_drawing.h"
#include "tests/services/raster/reference_painter.h"

namespace plain_chart {

using charts::ChartFrame;
using charts::ChartKind;
using charts::Option;
using charts::ValueSeries;
using services::Colour;
using services::Surface;

const Painter raster = {services::fillSurface,        services::fillBox,
                        services::blendBox,           services::drawFrame,
                        services::drawHorizontalRule, services::drawVerticalRule,
                        services::drawLine,           services::fillCircle};

const Painter reference = {
    reference_painter::fillSurface,        reference_painter::fillBox,
    reference_painter::blendBox,           reference_painter::drawFrame,
    reference_painter::drawHorizontalRule, reference_painter::drawVerticalRule,
    reference_painter::drawLine,           reference_painter::fillCircle};

namespace {

void draw(Surface& surface, const charts::PlacedText& text) {
    services::drawText(surface, text.x, text.y, text.text, text.colour);
}

void drawGrid(Surface& surface, const Painter& painter, const ChartFrame& frame,
              const charts::MarkedOptions& marks) {
    for (const charts::GridRule& rule : charts::gridRules(frame, charts::gridKind(marks))) {
        const Colour colour = rule.border ? services::black : charts::gridColour;
        (rule.vertical ? painter.drawVerticalRule : painter.drawHorizontalRule)(
            surface, rule.x, rule.y, rule.length, colour);
    }
}

void drawBars(Surface& surface, const Painter& painter, const ChartFrame& frame,
              const ValueSeries& series, Colour colour) {
    charts::BarMarks marks;
    charts::computeBars(frame, series, marks);
    for (const charts::BarMark& bar : marks.bars) {
        painter.blendBox(surface, bar.x, bar.y, marks.width, bar.height, colour);
    }
}

void drawLine(Surface& surface, const Painter& painter, const ChartFrame& frame,
              const ValueSeries& series, Colour colour) {
    std::vector<charts::LineMark> marks;
    charts::computeLine(frame, series, marks);
    for (const charts::LineMark& mark : marks) {
        painter.drawLine(surface, mark.x1, mark.y1, mark.x2, mark.y2, colour);
        painter.drawLine(surface, mark.shiftedX1, mark.y1, mark.shiftedX2, mark.y2, colour);
    }
}

void drawCircles(Surface& surface, const Painter& painter, const charts::PointMarks& marks,
                 Colour colour) {
    for (const charts::PointMark& point : marks.points) {
        painter.fillCircle(surface, point.x, point.y, marks.size, colour);
    }
}

void drawSquares(Surface& surface, const Painter& painter, const charts::PointMarks& marks,
                 Colour colour) {
    for (const charts::PointMark& point : marks.points) {
        painter.fillBox(surface, point.x, point.y, marks.size, marks.size, colour);
    }
}

void drawOption(Surface& surface, const Painter& painter, const ChartFrame& frame, int value,
                Option option, const ValueSeries& series, charts::CloudTextPlace& place) {
    const Colour colour = charts::state.colours[static_cast<std::size_t>(value)];
    charts::PointMarks points;
    switch (option) {
        case Option::bars:
            drawBars(surface, painter, frame, series, colour);
            break;
        case Option::line:
            drawLine(surface, painter, frame, series, colour);
            break;
        case Option::circles:
            charts::computeCircles(frame, series, points);
            drawCircles(surface, painter, points, colour);
            break;
        case Option::squares:
            charts::computeSquares(frame, series, points);
            drawSquares(surface, painter, points, colour);
            break;
        case Option::cloud:
            ++place.count;
            if (!series.hasData) break;
            charts::computeCloud(frame, series, points);
            drawCircles(surface, painter, points, colour);
            draw(surface, charts::cloudText(frame, value, series, colour, place));
            break;
        case Option::mean:
            if (const auto mark = charts::computeMean(frame, series)) {
                painter.drawHorizontalRule(surface, frame.left, mark->y, frame.width - 2, colour);
                draw(surface, charts::meanText(frame, value, series, *mark, colour));
            }
            break;
        case Option::trend:
            if (const auto mark = charts::computeTrend(frame, series)) {
                painter.drawLine(surface, mark->x1, mark->y1, mark->x2, mark->y2,
                                 charts::trendColour);
                draw(surface, charts::trendText(frame, *mark, colour));
            }
            break;
        case Option::limits:
        case Option::colour:
            break;
    }
}

void drawBottomLine(Surface& surface, ChartKind kind, const ChartFrame& frame,
                    const ValueSeries& series) {
    if (kind == ChartKind::overview) {
        for (const charts::PlacedText& text : charts::overviewBottomLine(frame, series))
            draw(surface, text);
        return;
    }
    for (const auto& record : device::state.dictionary) {
        if (record.selected == 0) continue;
        for (const charts::PlacedText& text : charts::trainingBottomLine(frame, record))
            draw(surface, text);
        return;
    }
}

// Calls act(value, option, series) for every marked option from the first to the last.
template <typename Act>
void forEachMarked(ChartKind kind, const charts::MarkedOptions& marks, int first, int last,
                   Act act) {
    const charts::ValueRange range = charts::valueRange(kind);
    for (int value = range.first; value < range.end; ++value) {
        for (int number = first; number <= last; ++number) {
            const auto option = static_cast<Option>(number);
            if (!marks.has(value, option)) continue;
            ValueSeries series;
            charts::computeSeries(kind, value, series);
            act(value, option, series);
        }
    }
}

}  // namespace

bool drawChart(ChartKind kind, Surface& surface, const Painter& painter) {
    const std::size_t available = kind == ChartKind::overview ? device::state.dictionary.size()
                                                              : device::state.samples.size();
    if (available < 2) return false;
    const charts::MarkedOptions marks = charts::readMarkedOptions();
    const ChartFrame frame = charts::chartFrame(surface.width, surface.height);
    painter.fillSurface(surface, services::white);
    drawGrid(surface, painter, frame, marks);

    charts::CloudTextPlace cloudPlace;
    const auto drawMarked = [&](int value, Option option, const ValueSeries& series) {
        drawOption(surface, painter, frame, value, option, series, cloudPlace);
    };
    forEachMarked(kind, marks, 1, 1, drawMarked);
    forEachMarked(kind, marks, 2, charts::lastMarkOption, drawMarked);

    charts::ItemTextPlace textPlace;
    const auto drawTexts = [&](int value, Option, const ValueSeries& series) {
        const bool isFirst = textPlace.count == 0;
        for (const charts::PlacedText& text :
             charts::itemTexts(frame, value, series,
                               charts::state.colours[static_cast<std::size_t>(value)], textPlace)) {
            draw(surface, text);
        }
        if (series.hasData && isFirst) drawBottomLine(surface, kind, frame, series);
    };
    forEachMarked(kind, marks, 1, charts::lastMarkOption, drawTexts);
    painter.drawFrame(surface, frame.left - 1, frame.top - 2, frame.width + 2, frame.height + 3,
                      services::black);
    return true;
}

}  // namespace plain_chart
