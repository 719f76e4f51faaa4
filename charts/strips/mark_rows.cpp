#include "charts/strips/mark_rows.h"

#include <cfloat>

#include "services/raster/wide_loops.h"

namespace charts {
namespace {

// The rounding of rowOf needs doubles that are no wider than they say.
static_assert(FLT_EVAL_METHOD == 0);

SERVICES_WIDE_LOOP
void computeScaled(double minimum, double range, double length, const float* values,
                   std::size_t count, double* along) {
    for (std::size_t i = 0; i < count; ++i)
        along[i] = length * (static_cast<double>(values[i]) - minimum) / range;
}

SERVICES_WIDE_LOOP
void computeKept(const RowRule& rule, const double* along, std::size_t count, int* rows) {
    const RowRule r = rule;
    for (std::size_t i = 0; i < count; ++i) {
        double place = r.offset + r.sign * along[i] - r.shift;
        place = r.low > place - r.reach ? r.lowPlace : place;
        place = place + r.reach > r.high ? r.highPlace : place;
        rows[i] = rowOf(place);
    }
}

}  // namespace

void computeAlong(const Scale& scale, double length, const float* values, std::size_t count,
                  double* along) {
    if (scale.range != 0) {
        computeScaled(scale.minimum, scale.range, length, values, count, along);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        along[i] = scale.along(length, static_cast<double>(values[i]));
}

RowRule heightRule() {
    return {};
}

RowRule lineRule(const Plot& plot) {
    return {.offset = plot.bottom(), .sign = -1};
}

RowRule circleRule(const Plot& plot, const Slots& slots) {
    const double reach = slots.circleDiameter();
    return {.offset = plot.bottom(),
            .sign = -1,
            .reach = reach,
            .low = plot.top,
            .high = plot.bottom(),
            .lowPlace = plot.top + reach / 2,
            .highPlace = plot.bottom() - reach / 2};
}

RowRule squareRule(const Plot& plot, const Slots& slots) {
    const double reach = slots.squareSide();
    return {.offset = plot.bottom(),
            .sign = -1,
            .shift = slots.bar / 2,
            .reach = reach,
            .low = plot.top,
            .high = plot.bottom(),
            .lowPlace = plot.top,
            .highPlace = plot.bottom() - reach};
}

RowRule cloudColumnRule(const CloudScale& cloud) {
    constexpr double radius = CloudScale::radius;
    return {.offset = cloud.left,
            .reach = radius,
            .low = cloud.left,
            .high = cloud.right,
            .lowPlace = cloud.left + radius,
            .highPlace = cloud.right - 2 * radius};
}

RowRule cloudRowRule(const CloudScale& cloud) {
    constexpr double radius = CloudScale::radius;
    return {.offset = cloud.bottom,
            .sign = -1,
            .reach = radius,
            .low = cloud.top,
            .high = cloud.bottom,
            .lowPlace = cloud.top + radius,
            .highPlace = cloud.bottom - 2 * radius};
}

void computeRows(const RowRule& rule, const double* along, std::size_t count, int* rows) {
    computeKept(rule, along, count, rows);
}

}  // namespace charts
