// One column of a strip as runs of equal rows: half-transparent boxes that lie over each other are
// blended once for each run instead of once for each row.
//
// Rows are device pixels. Use: beginRuns, breakAt for every row where something begins or ends,
// gatherRuns, blendRuns for each stack of boxes in their order, spreadRuns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace services {

struct ColumnRuns {
    std::vector<std::uint64_t> breaks;     // a bit for each row that begins a run
    std::vector<std::uint16_t> runOfRow;   // of those rows only
    std::vector<std::uint16_t> firstRows;  // by run, and the height behind the last
    std::vector<std::uint32_t> pixels;     // by run, and room behind the last
    std::size_t count = 0;
};

// The rows where every column of the strip may change; room for row `height` as well.
std::vector<std::uint64_t> noBreaks(int height);
inline void addBreak(std::vector<std::uint64_t>& breaks, int row) {
    breaks[static_cast<std::size_t>(row) / 64] |= std::uint64_t{1}
                                                  << (static_cast<unsigned>(row) % 64);
}

// The column has `height` rows, at least one and at most 32,767.
void beginRuns(ColumnRuns& runs, int height, const std::vector<std::uint64_t>& breaks);
// A row from 0 up to and including the height.
inline void breakAt(ColumnRuns& runs, int row) {
    addBreak(runs.breaks, row);
}
// Each run takes the colour of its first row.
void gatherRuns(ColumnRuns& runs, const std::uint32_t* rows);

// More blends with one colour change nothing any more.
inline constexpr int mostBlends = 8;

// `count` boxes, up to mostBlends, that begin at these rows, in ascending order and above `end`,
// and end before that row. All of them are breaks. `halfPixel` is halfPixelOf the colour.
void blendRuns(ColumnRuns& runs, const std::int16_t* tops, int count, int end,
               std::uint32_t halfPixel);

// Writes up to stripRoom pixels more than the height.
void spreadRuns(const ColumnRuns& runs, std::uint32_t* rows);

}  // namespace services
