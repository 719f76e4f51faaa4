// The chart as Qwt draws it: a bar chart and curves with symbols, not smoothed.
#include <qwt_column_symbol.h>
#include <qwt_plot.h>
#include <qwt_plot_barchart.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_symbol.h>

#include <QApplication>
#include <QPixmap>
#include <QVector>

#include "benchmarks/peers/peer.h"

namespace {

QwtPlotCurve* addCurve(QwtPlot& plot, const QVector<QPointF>& points, const QColor& colour) {
    auto* curve = new QwtPlotCurve();
    curve->setPaintAttribute(QwtPlotCurve::FilterPoints, false);
    curve->setPen(colour, 2);
    curve->setSamples(points);
    curve->attach(&plot);
    return curve;
}

void addSymbols(QwtPlot& plot, const QVector<QPointF>& points, const QColor& colour,
                QwtSymbol::Style style, int size) {
    QwtPlotCurve* curve = addCurve(plot, points, colour);
    curve->setStyle(QwtPlotCurve::NoCurve);
    curve->setSymbol(new QwtSymbol(style, colour, QPen(colour), QSize(size, size)));
}

}  // namespace

int main(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    const peer::Task task = peer::readTask(argumentCount, arguments);
    QwtPlot plot;
    plot.resize(1920, 1080);
    auto* canvas = new QwtPlotCanvas();
    canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
    plot.setCanvas(canvas);
    for (std::size_t v = 0; v < task.series.size(); ++v) {
        const QColor colour = QColor::fromHsv(static_cast<int>(v * 47 % 360), 200, 180);
        QVector<QPointF> points;
        QVector<QPointF> cloud;
        for (const float value : task.series[v]) {
            const auto y = static_cast<double>(value);
            const auto count = static_cast<double>(task.series[v].size());
            if (!points.isEmpty()) cloud.append(QPointF(y * count * 0.56, points.last().y()));
            points.append(QPointF(static_cast<double>(points.size()), y));
        }
        const auto count = static_cast<double>(points.size());
        if (task.has('b')) {
            auto* bars = new QwtPlotBarChart();
            QColor half = colour;
            half.setAlpha(128);
            auto* symbol = new QwtColumnSymbol(QwtColumnSymbol::Box);
            symbol->setFrameStyle(QwtColumnSymbol::NoFrame);
            symbol->setPalette(QPalette(half));
            bars->setSymbol(symbol);
            bars->setLayoutPolicy(QwtPlotBarChart::ScaleSamplesToAxes);
            bars->setLayoutHint(1 / 1.2);
            bars->setSamples(points);
            bars->attach(&plot);
        }
        if (task.has('l')) addCurve(plot, points, colour);
        if (task.has('c')) addSymbols(plot, points, colour, QwtSymbol::Ellipse, 8);
        if (task.has('s')) addSymbols(plot, points, colour, QwtSymbol::Rect, 6);
        if (task.has('p')) addSymbols(plot, cloud, colour, QwtSymbol::Ellipse, 4);
        if (task.has('m')) {
            const auto mean = static_cast<double>(peer::meanOf(task.series[v]));
            addCurve(plot, {QPointF(0, mean), QPointF(count, mean)}, colour);
        }
        if (task.has('t')) addCurve(plot, {QPointF(0, 0.4), QPointF(count, 0.6)}, Qt::red);
    }
    plot.setAxisScale(QwtPlot::xBottom, 0, static_cast<double>(task.series[0].size()));
    plot.setAxisScale(QwtPlot::yLeft, 0, 1);
    plot.replot();
    peer::time(task, [&plot] { plot.grab(); });
    return 0;
}
