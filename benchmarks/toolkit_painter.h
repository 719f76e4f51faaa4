// The same chart by the toolkit's own painter, mark by mark in the same order: what drawing it
// costs a program that leaves painting to the toolkit.
#pragma once

#include <QImage>

#include "charts/values/value_catalogue.h"

namespace benchmarks {

// From the loaded tables and the marks, as charts::drawChart.
void paintWithToolkit(QImage& image, charts::ChartKind kind);

}  // namespace benchmarks
