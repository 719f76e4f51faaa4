// Where the values of a chart stand along x, in columns of the image: the same for all values.
#pragma once

#include <cstddef>
#include <vector>

#include "charts/marks/mark_scale.h"

namespace charts {

// Neighbouring values whose marks begin in the same column.
struct SlotGroup {
    int x;
    int shiftedX;  // of a line's second stroke
    std::size_t first;
    std::size_t end;
};

struct SlotRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

// Empty where no value of the chart has the style.
struct SlotColumns {
    std::vector<SlotRange> bars;  // by column of the image: whose bars cover it
    std::vector<SlotGroup> line;
    std::vector<SlotGroup> circles;
    std::vector<SlotGroup> squares;
};

struct WantedColumns {
    bool bars = false;
    bool line = false;
    bool circles = false;
    bool squares = false;
};

// `count` values. Positions along x must grow from slot to slot: a plot with a width.
SlotColumns slotColumns(const WantedColumns& wanted, const Plot& plot, const Slots& slots,
                        std::size_t count, int imageWidth);

// The slots whose marks may touch some columns: of the styles with groups, as ranges of these, and
// of all styles.
struct SlotsInColumns {
    SlotRange line;
    SlotRange circles;
    SlotRange squares;
    SlotRange all;
};

SlotsInColumns slotsInColumns(const SlotColumns& columns, const Slots& slots, int firstColumn,
                              int endColumn);

}  // namespace charts
