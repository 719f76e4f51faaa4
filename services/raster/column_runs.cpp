#include "services/raster/column_runs.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "services/raster/raster_strip.h"
#include "services/raster/wide_loops.h"

namespace services {
namespace {

constexpr unsigned wordBits = 64;

using EightPixels = std::uint32_t __attribute__((vector_size(32)));
constexpr std::size_t eight = 8;
static_assert(stripRoom == eight);

}  // namespace

std::vector<std::uint64_t> noBreaks(int height) {
    std::vector<std::uint64_t> breaks(static_cast<std::size_t>(height) / wordBits + 1);
    addBreak(breaks, 0);
    addBreak(breaks, height);
    return breaks;
}

void beginRuns(ColumnRuns& runs, int height, const std::vector<std::uint64_t>& breaks) {
    runs.breaks = breaks;
    runs.count = 0;
    // A run for each row, and the height.
    const std::size_t most = static_cast<std::size_t>(height) + 1;
    if (runs.firstRows.size() >= most) return;
    runs.runOfRow.resize(most);
    runs.firstRows.resize(most);
    runs.pixels.resize(most + eight);
}

void gatherRuns(ColumnRuns& runs, const std::uint32_t* rows) {
    std::size_t count = 0;
    std::uint16_t* const firstRows = runs.firstRows.data();
    std::uint16_t* const runOfRow = runs.runOfRow.data();
    for (std::size_t word = 0; word < runs.breaks.size(); ++word) {
        for (std::uint64_t bits = runs.breaks[word]; bits != 0; bits &= bits - 1) {
            const std::size_t row =
                word * wordBits + static_cast<std::size_t>(std::countr_zero(bits));
            firstRows[count] = static_cast<std::uint16_t>(row);
            runOfRow[row] = static_cast<std::uint16_t>(count);
            ++count;
        }
    }
    runs.count = count - 1;  // the height begins none
    for (std::size_t run = 0; run < runs.count; ++run)
        runs.pixels[run] = rows[firstRows[run]];
}

// c blends make floor((d + s * (2^(c + 1) - 2)) / 2^c) of a channel d, where s is the colour's
// half: nested divisions by two with cut remainders are one division. With c up to 8 the dividend
// has 16 bits, two channels fit in a word, and what one of them shifts into the other is masked
// away.
SERVICES_WIDE_LOOP
void blendRuns(ColumnRuns& runs, const std::int16_t* tops, int count, int end,
               std::uint32_t halfPixel) {
    if (count <= 0) return;
    constexpr std::uint32_t channels = 0x00FF00FFU;
    std::uint32_t* const pixels = runs.pixels.data();
    const std::size_t endRun = runs.runOfRow[static_cast<std::size_t>(end)];
    for (int k = 0; k < count; ++k) {
        const std::size_t first = runs.runOfRow[static_cast<std::size_t>(tops[k])];
        const std::size_t last =
            k + 1 < count ? runs.runOfRow[static_cast<std::size_t>(tops[k + 1])] : endRun;
        if (first == last) continue;
        // What is written too far is put right again.
        EightPixels next;
        std::memcpy(&next, pixels + last, sizeof(next));
        const auto shift = static_cast<unsigned>(k + 1);
        const std::uint32_t factor = (2U << shift) - 2;
        const std::uint32_t addedEven = (halfPixel & channels) * factor;
        const std::uint32_t addedOdd = ((halfPixel >> 8) & channels) * factor;
        for (std::size_t run = first; run < last; run += eight) {
            EightPixels old;
            std::memcpy(&old, pixels + run, sizeof(old));
            const EightPixels even = ((old & channels) + addedEven) >> shift;
            const EightPixels odd = (((old >> 8) & channels) + addedOdd) >> shift;
            const EightPixels blended = (even & channels) | ((odd & channels) << 8);
            std::memcpy(pixels + run, &blended, sizeof(blended));
        }
        std::memcpy(pixels + last, &next, sizeof(next));
    }
}

SERVICES_WIDE_LOOP
void spreadRuns(const ColumnRuns& runs, std::uint32_t* rows) {
    for (std::size_t run = 0; run < runs.count; ++run) {
        const EightPixels pixels = EightPixels{} + runs.pixels[run];
        const std::size_t end = runs.firstRows[run + 1];
        // From the top down, so that what is written too far is written over by the next run.
        for (std::size_t row = runs.firstRows[run]; row < end; row += eight)
            std::memcpy(rows + row, &pixels, sizeof(pixels));
    }
}

}  // namespace services
