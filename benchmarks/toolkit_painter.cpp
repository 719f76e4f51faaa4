#include "benchmarks/toolkit_painter.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <cstddef>
#include <vector>

#include "charts/chart_drawing.h"
#include "charts/chart_state.h"
#include "charts/marks/chart_frame.h"
#include "charts/marks/chart_texts.h"
#include "charts/marks/mark_geometry.h"
#include "charts/marks/mark_painting.h"
#include "charts/values/chart_options.h"

namespace benchmarks {

using charts::ChartFrame;
using charts::Option;
using charts::ValueSeries;

namespace {

QColor toQColor(services::Colour colour, int alpha = 255) {
    return {services::red(colour), services::green(colour), services::blue(colour), alpha};
}

void draw(QPainter& painter, const charts::PlacedText& text) {
    painter.setPen(toQColor(text.colour));
    painter.drawText(
        QPointF(text.x, text.y + painter.fontMetrics().ascent()),
        QString::fromLatin1(text.text.data(), static_cast<qsizetype>(text.text.size())));
}

void drawCircles(QPainter& painter, const charts::PointMarks& marks, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const charts::PointMark& point : marks.points) {
        painter.drawEllipse(point.x - marks.size, point.y - marks.size, 2 * marks.size + 1,
                            2 * marks.size + 1);
    }
}

void drawStyle(QPainter& painter, const ChartFrame& frame, int value, Option option,
               const ValueSeries& series, charts::CloudTextPlace& place) {
    const services::Colour colour = charts::state.colours[static_cast<std::size_t>(value)];
    charts::BarMarks bars;
    std::vector<charts::LineMark> line;
    charts::PointMarks points;
    switch (option) {
        case Option::bars:
            charts::computeBars(frame, series, bars);
            for (const charts::BarMark& bar : bars.bars) {
                painter.fillRect(bar.x, bar.y, bars.width, bar.height, toQColor(colour, 128));
            }
            break;
        case Option::line:
            charts::computeLine(frame, series, line);
            painter.setPen(toQColor(colour));
            for (const charts::LineMark& mark : line) {
                painter.drawLine(mark.x1, mark.y1, mark.x2, mark.y2);
                painter.drawLine(mark.shiftedX1, mark.y1, mark.shiftedX2, mark.y2);
            }
            break;
        case Option::circles:
            charts::computeCircles(frame, series, points);
            drawCircles(painter, points, toQColor(colour));
            break;
        case Option::squares:
            charts::computeSquares(frame, series, points);
            for (const charts::PointMark& point : points.points) {
                painter.fillRect(point.x, point.y, points.size, points.size, toQColor(colour));
            }
            break;
        case Option::cloud:
            ++place.count;
            charts::computeCloud(frame, series, points);
            drawCircles(painter, points, toQColor(colour));
            draw(painter, charts::cloudText(frame, value, series, colour, place));
            break;
        case Option::mean:
            if (const auto mark = charts::computeMean(frame, series)) {
                painter.fillRect(frame.left, mark->y, frame.width - 2, 1, toQColor(colour));
                draw(painter, charts::meanText(frame, value, series, *mark, colour));
            }
            break;
        case Option::trend:
            if (const auto mark = charts::computeTrend(frame, series)) {
                painter.setPen(toQColor(charts::trendColour));
                painter.drawLine(mark->x1, mark->y1, mark->x2, mark->y2);
                draw(painter, charts::trendText(frame, *mark, colour));
            }
            break;
        case Option::limits:
        case Option::colour:
            break;
    }
}

}  // namespace

void paintWithToolkit(QImage& image, charts::ChartKind kind) {
    const charts::MarkedOptions marks = charts::readMarkedOptions();
    const ChartFrame frame = charts::chartFrame(image.width(), image.height());
    const charts::ValueRange range = charts::valueRange(kind);
    QPainter painter(&image);
    painter.setFont(QGuiApplication::font());
    painter.fillRect(image.rect(), Qt::white);
    for (const charts::GridRule& rule : charts::gridRules(frame, charts::gridKind(marks))) {
        painter.fillRect(rule.x, rule.y, rule.vertical ? 1 : rule.length,
                         rule.vertical ? rule.length : 1, toQColor(charts::ruleColour(rule)));
    }
    // Each value's series once, as in the program.
    std::vector<ValueSeries> series(static_cast<std::size_t>(range.end - range.first));
    const auto forEachMarked = [&](int first, int last, auto act) {
        for (int value = range.first; value < range.end; ++value) {
            ValueSeries& own = series[static_cast<std::size_t>(value - range.first)];
            for (int option = first; option <= last; ++option) {
                if (!marks.has(value, static_cast<Option>(option))) continue;
                if (own.values.empty()) charts::computeSeries(kind, value, own);
                if (own.hasData) act(value, static_cast<Option>(option), own);
            }
        }
    };
    charts::CloudTextPlace cloudPlace;
    const auto drawMarked = [&](int value, Option option, const ValueSeries& own) {
        drawStyle(painter, frame, value, option, own, cloudPlace);
    };
    forEachMarked(1, 1, drawMarked);
    forEachMarked(2, charts::lastMarkOption, drawMarked);
    charts::ItemTextPlace textPlace;
    forEachMarked(1, charts::lastMarkOption, [&](int value, Option, const ValueSeries& own) {
        const services::Colour colour = charts::state.colours[static_cast<std::size_t>(value)];
        for (const charts::PlacedText& text :
             charts::itemTexts(frame, value, own, colour, textPlace)) {
            draw(painter, text);
        }
    });
    painter.setPen(Qt::black);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.left - 1, frame.top - 2, frame.width + 1, frame.height + 2);
}

}  // namespace benchmarks
