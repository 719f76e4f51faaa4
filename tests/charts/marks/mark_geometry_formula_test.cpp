// Every style on many sizes against the plain formulas, written down once more without any of the
// program's shortcuts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "charts/marks/mark_geometry.h"
#include "tests/charts/chart_test.h"

namespace {

using charts::ChartFrame;
using charts::PointMarks;
using charts::ValueSeries;

constexpr double f = 1.2;

bool fits(double real) {
    const double rounded = std::nearbyint(real);
    return std::isfinite(real) && rounded >= -2147483648.0 && rounded <= 2147483647.0;
}

int rounded(double real) {
    return static_cast<int>(std::nearbyint(real));
}

struct Formulas {
    double L, P, W, H, min, max, gap, bar;
    std::vector<double> v;
    int barPx;

    Formulas(const ChartFrame& frame, const ValueSeries& series)
        : L(frame.left),
          P(frame.top),
          W(frame.width - 2),
          H(frame.height - 1),
          min(static_cast<double>(series.minimum)),
          max(static_cast<double>(series.maximum)) {
        for (const float value : series.values)
            v.push_back(static_cast<double>(value));
        const auto N = static_cast<double>(v.size());
        gap = W / N - (W / N) / f;
        bar = (W - gap) / N / f;
        barPx = bar < 1 ? 1 : rounded(bar);
    }

    double h(double value) const {
        if (max == min && value == min && std::isfinite(min)) return H / 2;
        return H * (value - min) / (max - min);
    }
    double y(double value) const { return P + H - h(value); }
    double along(double S, double value) const {
        if (max == min && value == min && std::isfinite(min)) return S / 2;
        return S * (value - min) / (max - min);
    }
};

void expectPoints(const std::vector<std::pair<double, double>>& exact, const PointMarks& marks) {
    std::size_t next = 0;
    for (const auto& [x, y] : exact) {
        if (!fits(x) || !fits(y)) continue;
        ASSERT_LT(next, marks.points.size());
        ASSERT_EQ(marks.points[next].x, rounded(x)) << next;
        ASSERT_EQ(marks.points[next].y, rounded(y)) << next;
        ++next;
    }
    ASSERT_EQ(marks.points.size(), next);
}

void expectBars(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    charts::BarMarks marks;
    charts::computeBars(frame, series, marks);
    ASSERT_EQ(marks.width, s.barPx);
    std::size_t next = 0;
    for (std::size_t i = 0; i < s.v.size(); ++i) {
        const double x = s.L + s.gap + s.bar * static_cast<double>(i) * 1.2;
        const double h = s.h(s.v[i]);
        const double y = s.P + s.H - h;
        if (!fits(x) || !fits(h) || !fits(y)) continue;
        ASSERT_LT(next, marks.bars.size());
        ASSERT_EQ(marks.bars[next].x, rounded(x)) << i;
        ASSERT_EQ(marks.bars[next].y, rounded(y)) << i;
        ASSERT_EQ(marks.bars[next].height, rounded(h)) << i;
        ++next;
    }
    ASSERT_EQ(marks.bars.size(), next);
}

void expectLine(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    std::vector<charts::LineMark> marks;
    charts::computeLine(frame, series, marks);
    std::size_t next = 0;
    for (std::size_t i = 0; i + 1 < s.v.size(); ++i) {
        const double x1 = s.L + s.bar / 1.5 + (s.gap + s.bar) * static_cast<double>(i);
        const double x2 = s.L + s.bar / 1.5 + (s.gap + s.bar) * static_cast<double>(i + 1);
        const double y1 = s.y(s.v[i]);
        const double y2 = s.y(s.v[i + 1]);
        if (!fits(x1) || !fits(x2 + 1) || !fits(y1) || !fits(y2)) continue;
        ASSERT_LT(next, marks.size());
        ASSERT_EQ(marks[next].x1, rounded(x1)) << i;
        ASSERT_EQ(marks[next].x2, rounded(x2)) << i;
        ASSERT_EQ(marks[next].shiftedX1, rounded(x1 + 1)) << i;
        ASSERT_EQ(marks[next].shiftedX2, rounded(x2 + 1)) << i;
        ASSERT_EQ(marks[next].y1, rounded(y1)) << i;
        ASSERT_EQ(marks[next].y2, rounded(y2)) << i;
        ++next;
    }
    ASSERT_EQ(marks.size(), next);
}

void expectCircles(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    const int d = std::max(s.barPx, 8);
    std::vector<std::pair<double, double>> exact;
    for (std::size_t i = 0; i < s.v.size(); ++i) {
        double cx = s.L + s.gap + s.bar * 0.5 + s.bar * static_cast<double>(i) * 1.2;
        double cy = s.y(s.v[i]);
        if (s.P > cy - d) cy = s.P + d / 2.0;
        if (cy + d > s.P + s.H) cy = s.P + s.H - d / 2.0;
        if (s.L > cx - d) cx = s.L + d / 2.0;
        if (cx + d > s.L + s.W) cx = s.L + s.W - d / 2.0;
        exact.emplace_back(cx, cy);
    }
    PointMarks marks;
    charts::computeCircles(frame, series, marks);
    ASSERT_EQ(marks.size, d / 2);
    expectPoints(exact, marks);
}

void expectSquares(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    const int d = std::max(s.barPx, 6);
    std::vector<std::pair<double, double>> exact;
    for (std::size_t i = 0; i < s.v.size(); ++i) {
        double x = s.L + s.gap + s.bar * static_cast<double>(i) * 1.2;
        double y = s.y(s.v[i]) - s.bar / 2;
        if (s.P > y - d) y = s.P;
        if (y + d > s.P + s.H) y = s.P + s.H - d;
        if (s.L > x - d) x = s.L;
        if (x + d > s.L + s.W) x = s.L + s.W - d;
        exact.emplace_back(x, y);
    }
    PointMarks marks;
    charts::computeSquares(frame, series, marks);
    ASSERT_EQ(marks.size, d);
    expectPoints(exact, marks);
}

void expectCloud(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    const double S = std::min(s.W, s.H);
    const double r = 1.5;
    std::vector<std::pair<double, double>> exact;
    for (std::size_t i = 1; i < s.v.size(); ++i) {
        double x = s.L + s.along(S, s.v[i]);
        double y = s.P + S - s.along(S, s.v[i - 1]);
        if (s.P > y - r) y = s.P + r;
        if (y + r > s.P + S) y = s.P + S - 2 * r;
        if (s.L > x - r) x = s.L + r;
        if (x + r > s.L + S) x = s.L + S - 2 * r;
        exact.emplace_back(x, y);
    }
    PointMarks marks;
    charts::computeCloud(frame, series, marks);
    ASSERT_EQ(marks.size, 2);
    expectPoints(exact, marks);
}

void expectMeanAndTrend(const ChartFrame& frame, const ValueSeries& series) {
    const Formulas s(frame, series);
    const double yMean = s.y(static_cast<double>(series.mean));
    const auto mean = charts::computeMean(frame, series);
    ASSERT_EQ(mean.has_value(), fits(yMean));
    if (mean) {
        ASSERT_EQ(mean->y, rounded(yMean));
    }

    // By slot numbers: the values lie in slots 7 to 6 + N.
    const double slot0 = 6.0 + static_cast<double>(s.v.size());
    const double m = (slot0 + 7) / 2;
    double sum1 = 0;
    double sum2 = 0;
    for (std::size_t i = 0; i < s.v.size(); ++i) {
        const double j = 7.0 + static_cast<double>(i);
        if (j < m) sum1 += s.v[i];
        if (j > m) sum2 += s.v[i];
    }
    const double p = 100 - sum1 / sum2 * 100;
    const bool drawn =
        fits(yMean) && sum1 != 0 && sum2 != 0 && std::abs(p) <= 3.4028234663852886e38;
    const auto trend = charts::computeTrend(frame, series);
    ASSERT_EQ(trend.has_value(), drawn);
    if (!trend) return;
    double yLeft = yMean + yMean / 100 * p;
    double yRight = yMean - yMean / 100 * p;
    for (double* y : {&yLeft, &yRight}) {
        if (*y < s.P) *y = s.P;
        if (*y > s.P + s.H) *y = s.P + s.H;
    }
    ASSERT_EQ(trend->percent, p);
    ASSERT_EQ(trend->x1, frame.left);
    ASSERT_EQ(trend->x2, frame.left + frame.width - 4);
    ASSERT_EQ(trend->y1, rounded(yLeft));
    ASSERT_EQ(trend->y2, rounded(yRight));
    ASSERT_EQ(trend->exactY2, yRight);
}

void expectAll(const ChartFrame& frame, const ValueSeries& series) {
    expectBars(frame, series);
    expectLine(frame, series);
    expectCircles(frame, series);
    expectSquares(frame, series);
    expectCloud(frame, series);
    expectMeanAndTrend(frame, series);
}

enum class Data { smooth, wild, constant, holes };

ValueSeries randomSeries(std::mt19937& random, std::size_t count, Data data) {
    std::vector<device::TrainingSample> samples(count);
    std::uniform_real_distribution<float> wide(-50.0F, 900.0F);
    std::uniform_real_distribution<float> step(-3.0F, 3.0F);
    std::uniform_int_distribution<int> hole(0, 9);
    float walk = 150;
    for (device::TrainingSample& sample : samples) {
        walk += step(random);
        switch (data) {
            case Data::smooth:
                sample.trainingValue = walk;
                break;
            case Data::wild:
                sample.trainingValue = wide(random);
                break;
            case Data::constant:
                sample.trainingValue = 6.5F;
                break;
            case Data::holes: {
                const int kind = hole(random);
                sample.trainingValue = kind == 0   ? std::numeric_limits<float>::quiet_NaN()
                                       : kind == 1 ? std::numeric_limits<float>::infinity()
                                       : kind == 2 ? -std::numeric_limits<float>::infinity()
                                                   : wide(random);
                break;
            }
        }
    }
    ValueSeries series;
    charts::Limits limits;
    if (hole(random) < 3) limits = {100, 400};
    charts::computeTrainingSeries(71, samples, limits, series);
    return series;
}

TEST(MarkGeometryFormulas, EveryStyleFollowsThemAtEverySize) {
    ASSERT_EQ(std::fegetround(), FE_TONEAREST);
    std::mt19937 random(20130305);
    const std::pair<int, int> sizes[] = {{256, 256}, {500, 200}, {1920, 1080}, {900, 560},
                                         {100, 300}, {126, 42},  {127, 43},    {20, 20},
                                         {300, 30},  {131, 600}, {32767, 400}};
    const std::size_t counts[] = {1, 2, 3, 4, 5, 12, 128, 373, 1000, 3000};
    int cases = 0;
    for (const auto& [width, height] : sizes) {
        const ChartFrame frame = charts::chartFrame(width, height);
        for (const std::size_t count : counts) {
            for (const Data data : {Data::smooth, Data::wild, Data::constant, Data::holes}) {
                SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + ", " +
                             std::to_string(count) + " values of kind " +
                             std::to_string(static_cast<int>(data)));
                const ValueSeries series = randomSeries(random, count, data);
                if (!series.hasData) continue;
                expectAll(frame, series);
                if (HasFatalFailure()) return;
                ++cases;
            }
        }
    }
    EXPECT_GT(cases, 400);
}

// What the overview's minimum makes possible: values below it, negative minima, means of nothing.
TEST(MarkGeometryFormulas, EveryStyleFollowsThemOutsideTheScale) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const ValueSeries rows[] = {
        chart_tests::seriesOf({2, 3, 3, 5}, 3, 5, 11.0F / 3.0F),
        chart_tests::seriesOf({2, 3, 3}, 3, 3, 3),
        chart_tests::seriesOf({-5, -5, 3}, -5, 3, -7.0F / 3.0F),
        chart_tests::seriesOf({8, 8}, 8, 5, nan),
        chart_tests::seriesOf({1e-30F, 3, 3.0000002F}, 3, 3.0000002F, 3),
        chart_tests::seriesOf({-3.4e38F, 3.4e38F}, -3.4e38F, 3.4e38F, 0),
        chart_tests::seriesOf({1e-45F, 3e-45F}, 1e-45F, 3e-45F, 1e-45F),
    };
    for (const auto& [width, height] :
         {std::pair(256, 256), std::pair(1920, 1080), std::pair(30, 30), std::pair(400, 32767)}) {
        for (std::size_t i = 0; i < std::size(rows); ++i) {
            SCOPED_TRACE(std::to_string(width) + ", row " + std::to_string(i));
            expectAll(charts::chartFrame(width, height), rows[i]);
        }
    }
}

}  // namespace
