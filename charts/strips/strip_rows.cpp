#include "charts/strips/strip_rows.h"

#include "charts/strips/mark_rows.h"

namespace charts {
namespace {

void computeRows(const RowRule& rule, const std::vector<double>& along, std::vector<int>& rows) {
    rows.resize(along.size());
    computeRows(rule, along.data(), along.size(), rows.data());
}

}  // namespace

void computeStripRows(const ValueLayer& layer, const Plot& plot, const Slots& slots,
                      SlotRange samples, StripRows& rows) {
    rows.first = samples.first;
    rows.along.resize(samples.end - samples.first);
    computeAlong(Scale(*layer.series), plot.height, layer.series->values.data() + samples.first,
                 rows.along.size(), rows.along.data());
    if (layer.has(Option::bars) || layer.has(Option::line)) {
        computeRows(lineRule(plot), rows.along, rows.line);
    }
    if (layer.has(Option::bars)) computeRows(heightRule(), rows.along, rows.height);
    if (layer.has(Option::circles)) computeRows(circleRule(plot, slots), rows.along, rows.circle);
    if (layer.has(Option::squares)) computeRows(squareRule(plot, slots), rows.along, rows.square);
}

}  // namespace charts
