// Points of one column whose marks leave no gap, joined to one mark.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace charts {

// Calls act(first row, last row) for each chain of rows that are at most `joint` apart, as far as
// they come one after the other.
template <typename Act>
class RowChain {
  public:
    RowChain(int jointDistance, Act action) : joint(jointDistance), act(action) {}

    void add(int firstRow, int lastRow) {
        if (open && firstRow <= last + joint && lastRow >= first - joint) {
            first = std::min(first, firstRow);
            last = std::max(last, lastRow);
            return;
        }
        finish();
        open = true;
        first = firstRow;
        last = lastRow;
    }
    void finish() {
        if (open) act(first, last);
        open = false;
    }

  private:
    int joint;
    Act act;
    bool open = false;
    int first = 0;
    int last = 0;
};

// The set bits of the column's word of this number as rows, counted from `top`, from the top down.
template <typename Chain>
void addBits(Chain& chain, std::uint64_t bits, std::size_t word, int top) {
    while (bits != 0) {
        const int start = std::countr_zero(bits);
        const int length = std::countr_one(bits >> start);
        const int row = top + static_cast<int>(word * 64) + start;
        chain.add(row, row + length - 1);
        if (start + length == 64) break;
        bits &= ~std::uint64_t{0} << (start + length);
    }
}

}  // namespace charts
