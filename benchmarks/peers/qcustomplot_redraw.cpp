// The chart as QCustomPlot draws it: bars, graphs and scatter points, not smoothed.
#include <qcustomplot.h>

#include <QApplication>

#include "benchmarks/peers/peer.h"

namespace {

void addGraph(QCustomPlot& plot, const QVector<double>& x, const QVector<double>& y,
              const QColor& colour, QCPScatterStyle::ScatterShape shape, double size) {
    QCPGraph* graph = plot.addGraph();
    graph->setData(x, y, true);
    graph->setAdaptiveSampling(false);  // every sample is drawn, as in the chart
    graph->setPen(QPen(colour, size == 0 ? 2 : 1));
    if (size > 0) {
        graph->setLineStyle(QCPGraph::lsNone);
        graph->setScatterStyle(QCPScatterStyle(shape, colour, colour, size));
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    const peer::Task task = peer::readTask(argumentCount, arguments);
    QCustomPlot plot;
    plot.setNotAntialiasedElements(QCP::aeAll);
    plot.resize(1920, 1080);
    for (std::size_t v = 0; v < task.series.size(); ++v) {
        const QColor colour = QColor::fromHsv(static_cast<int>(v * 47 % 360), 200, 180);
        QVector<double> x;
        QVector<double> y;
        QVector<double> before;
        for (const float value : task.series[v]) {
            x.append(static_cast<double>(x.size()));
            before.append(y.isEmpty() ? static_cast<double>(value) : y.last());
            y.append(static_cast<double>(value));
        }
        const auto count = static_cast<double>(x.size());
        if (task.has('b')) {
            auto* bars = new QCPBars(plot.xAxis, plot.yAxis);
            bars->setWidth(1 / 1.2);
            QColor half = colour;
            half.setAlpha(128);
            bars->setPen(Qt::NoPen);
            bars->setBrush(half);
            bars->setData(x, y, true);
        }
        if (task.has('l')) addGraph(plot, x, y, colour, QCPScatterStyle::ssNone, 0);
        if (task.has('c')) addGraph(plot, x, y, colour, QCPScatterStyle::ssDisc, 8);
        if (task.has('s')) addGraph(plot, x, y, colour, QCPScatterStyle::ssSquare, 6);
        if (task.has('p')) {
            auto* cloud = new QCPCurve(plot.xAxis, plot.yAxis);
            QVector<double> across;
            for (const double value : y)
                across.append(value * count * 0.56);
            cloud->setData(x, across, before, true);
            cloud->setLineStyle(QCPCurve::lsNone);
            cloud->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, colour, colour, 4));
        }
        if (task.has('m')) {
            const auto mean = static_cast<double>(peer::meanOf(task.series[v]));
            addGraph(plot, {0, count}, {mean, mean}, colour, QCPScatterStyle::ssNone, 0);
        }
        if (task.has('t')) {
            addGraph(plot, {0, count}, {0.4, 0.6}, Qt::red, QCPScatterStyle::ssNone, 0);
        }
    }
    plot.xAxis->setRange(0, static_cast<double>(task.series[0].size()));
    plot.yAxis->setRange(0, 1);
    peer::time(task, [&plot] { plot.toPixmap(1920, 1080); });
    return 0;
}
