// What one value's line covers of a strip: its two strokes.
#pragma once

#include "charts/strips/slot_columns.h"
#include "charts/strips/strip_rows.h"
#include "services/raster/cover_mask.h"

namespace charts {

void coverStripLine(services::CoverMask& mask, const SlotColumns& columns, SlotRange groups,
                    const StripRows& rows, double ratio);

}  // namespace charts
