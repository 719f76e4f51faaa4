// The pixels of a few neighbouring device columns, which then go to the surface.
//
// A strip is narrow, so that its pixels stay in the processor's nearest caches. Columns lie one
// after the other in memory, so that the rows of a bar or of a steep line are neighbours. Positions
// are device pixels of the whole surface; what lies outside the strip is cut off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "services/raster/colours.h"
#include "services/raster/raster.h"

namespace services {

struct CoverMask;

// Device columns from `first` up to but not including `end`, all rows.
struct StripArea {
    int first = 0;
    int end = 0;
    int height = 0;

    int columns() const { return end - first; }
};

// The pixels of a strip, column after column.
struct StripPixels {
    StripArea area;
    std::size_t stride = 0;  // pixels from one column to the next
    std::vector<std::uint32_t> pixels;

    std::uint32_t* column(int index) {
        return pixels.data() + static_cast<std::size_t>(index) * stride;
    }
    const std::uint32_t* column(int index) const {
        return pixels.data() + static_cast<std::size_t>(index) * stride;
    }
};

// So many pixels behind the last row of a column belong to it and to nobody: those who write
// several pixels at once may write there.
inline constexpr int stripRoom = 8;

// All of one colour.
void fillStrip(StripPixels& strip, const StripArea& area, Colour colour);

void fillStripBox(StripPixels& strip, const DeviceBox& box, Colour colour);
void fillCovered(StripPixels& strip, const CoverMask& mask, Colour colour);

// Only what `covered` leaves, and covers it: for marks that come one behind the other.
void fillUncovered(StripPixels& strip, const CoverMask& mask, CoverMask& covered, Colour colour);
void fillUncoveredBox(StripPixels& strip, const DeviceBox& box, CoverMask& covered, Colour colour);

// Between the strip and the surface: the rows from `top` up to but not including `bottom`.
void storeStrip(Surface& surface, const StripPixels& strip, int top, int bottom);
void loadStrip(StripPixels& strip, const Surface& surface, int top, int bottom);

}  // namespace services
