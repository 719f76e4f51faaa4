// The rows of one value's marks, for the samples whose marks may touch a strip.
#pragma once

#include <cstddef>
#include <vector>

#include "charts/marks/chart_layers.h"
#include "charts/marks/mark_scale.h"
#include "charts/strips/slot_columns.h"

namespace charts {

// From sample `first` on; noRow where a value has no row. Only of the styles that the value has.
struct StripRows {
    std::size_t first = 0;
    std::vector<double> along;  // the plot's height, exactly
    std::vector<int> line;      // also the top of the bar
    std::vector<int> height;    // of the bar
    std::vector<int> circle;
    std::vector<int> square;

    // Of a group of slots.
    const int* of(const std::vector<int>& rows, const SlotGroup& group) const {
        return rows.data() + (group.first - first);
    }
};

void computeStripRows(const ValueLayer& layer, const Plot& plot, const Slots& slots,
                      SlotRange samples, StripRows& rows);

}  // namespace charts
