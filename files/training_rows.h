// The columns of the training list and the cells of a training's row.
#pragma once

#include <span>

#include "device/dictionary_record.h"
#include "services/text/latin1.h"

namespace files {

struct TrainingColumn {
    services::TextView title;
    double characters;  // the column is `characters` times `factor` "_" of the font wide
    double factor;
    bool rightAligned;
    services::TextView sample;  // the column is never narrower than this needs; empty: it gives way
    services::Text (*cell)(const device::DictionaryRecord&);
};

inline constexpr int trainingColumnCount = 13;

std::span<const TrainingColumn, trainingColumnCount> trainingColumns();

// In pixels, for a font whose "_" is `characterWidth` pixels wide.
int columnWidth(const TrainingColumn& column, int characterWidth);

// Empty for a column that does not exist.
services::Text trainingCell(const device::DictionaryRecord& record, int column);

}  // namespace files
