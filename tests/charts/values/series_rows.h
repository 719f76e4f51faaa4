// Rows of data, limits and the series that must come of them: one value's rules, whatever its
// chart.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "charts/values/value_series.h"

namespace chart_tests {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

struct SeriesRow {
    const char* name;
    std::vector<float> data;
    charts::Limits limits;
    bool hasData;
    float minimum;
    float maximum;
    float mean;
    std::vector<float> values;
};

// Equal, or both not a number.
inline bool same(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

inline void expectSeries(const charts::ValueSeries& series, const SeriesRow& row) {
    EXPECT_EQ(series.hasData, row.hasData);
    EXPECT_TRUE(same(series.minimum, row.minimum)) << series.minimum;
    EXPECT_TRUE(same(series.maximum, row.maximum)) << series.maximum;
    EXPECT_TRUE(same(series.mean, row.mean)) << series.mean;
    ASSERT_EQ(series.values.size(), row.values.size());
    for (std::size_t i = 0; i < row.values.size(); ++i)
        EXPECT_TRUE(same(series.values[i], row.values[i])) << i << ": " << series.values[i];
}

}  // namespace chart_tests
