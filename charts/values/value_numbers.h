// How the values that charts can draw are numbered. What they are stands in value_catalogue.h.
#pragma once

namespace charts {

enum class ChartKind {
    overview = 1,  // one value per training
    training = 2,  // one value per sample of the loaded training
};

// Value numbers: 0 to 19 overview, 50 to 71 training. They index the colours and limits tables, and
// item number = value number + 100 * option (chart_options.h).
inline constexpr int overviewValueCount = 20;
inline constexpr int firstTrainingValue = 50;
inline constexpr int trainingValueCount = 22;
inline constexpr int valueNumberLimit = firstTrainingValue + trainingValueCount;  // 72

// The value numbers of one chart: first and one past the last.
struct ValueRange {
    int first;
    int end;
};
ValueRange valueRange(ChartKind kind);

}  // namespace charts
