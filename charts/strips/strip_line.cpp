#include "charts/strips/strip_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "charts/strips/mark_rows.h"

namespace charts {
namespace {

using services::CoverMask;
using services::deviceEdge;

// One of the line's two strokes.
using Stroke = int SlotGroup::*;

void coverSegment(CoverMask& mask, int x1, int row1, int x2, int row2, double ratio) {
    services::coverLine(mask, deviceEdge(x1, ratio), deviceEdge(row1, ratio), deviceEdge(x2, ratio),
                        deviceEdge(row2, ratio), services::lineThickness(ratio));
}

struct RowSpan {
    std::int64_t first = 0;
    std::int64_t last = 0;

    void include(std::int64_t row) {
        first = std::min(first, row);
        last = std::max(last, row);
    }
};

// At a pixel ratio of 1, where lines are one pixel thick: the points of one column and the halves
// of the segments to its neighbours are always joined, so that each column has one span.
struct ThinStroke {
    CoverMask& mask;
    std::size_t points = 0;  // joined so far; a single one covers nothing
    int x = 0;               // of the last point
    int row = 0;
    RowSpan span = {};  // covered in its column
};

void coverSpan(const ThinStroke& stroke) {
    if (stroke.x < stroke.mask.area.first || stroke.x >= stroke.mask.area.end) return;
    services::coverRows(stroke.mask, stroke.x, stroke.span.first, stroke.span.last + 1);
}

void endStroke(ThinStroke& stroke) {
    if (stroke.points > 1) coverSpan(stroke);
    stroke.points = 0;
}

// A steep segment to the next column passes to it at its middle; on the middle itself the larger
// column is the nearer one. Between neighbouring rows there is nothing but the ends.
void joinNextColumn(RowSpan& span, std::int64_t from, RowSpan& next, std::int64_t to) {
    const std::int64_t length = std::max(from, to) - std::min(from, to);
    if (length <= 1) return;
    if (to > from) {
        const std::int64_t passed = (length + 1) / 2;
        span.include(from + passed - 1);
        next.include(from + passed);
    } else {
        const std::int64_t passed = length / 2 + 1;
        next.include(to + passed - 1);
        span.include(to + passed);
    }
}

struct ColumnPoints {
    std::size_t number;
    RowSpan rows;
    int firstRow;
    int lastRow;
};

// To the next points, which share a column.
void continueStroke(ThinStroke& stroke, int x, ColumnPoints points) {
    if (stroke.points > 0 && x == stroke.x) {
        points.rows.include(stroke.span.first);
        points.rows.include(stroke.span.last);
    } else if (stroke.points > 0) {
        if (x == stroke.x + 1) {
            joinNextColumn(stroke.span, stroke.row, points.rows, points.firstRow);
        } else {
            coverSegment(stroke.mask, stroke.x, stroke.row, x, points.firstRow, 1);
        }
        coverSpan(stroke);
    }
    stroke.x = x;
    stroke.row = points.lastRow;
    stroke.span = points.rows;
    stroke.points += points.number;
}

ColumnPoints columnPoints(const int* first, const int* end) {
    int highest = *first;
    int lowest = *first;
    for (const int* row = first + 1; row < end; ++row) {
        highest = std::min(highest, *row);
        lowest = std::max(lowest, *row);
    }
    return {static_cast<std::size_t>(end - first), {highest, lowest}, *first, end[-1]};
}

void coverThinStroke(CoverMask& mask, const std::vector<SlotGroup>& columns, Stroke stroke,
                     SlotRange groups, const StripRows& rows) {
    ThinStroke walked = {mask};
    for (std::size_t g = groups.first; g < groups.end; ++g) {
        const SlotGroup& group = columns[g];
        const int x = group.*stroke;
        const int* const first = rows.of(rows.line, group);
        const int* const end = first + (group.end - group.first);
        const ColumnPoints points = columnPoints(first, end);
        if (points.rows.first != noRow) {
            continueStroke(walked, x, points);
            continue;
        }
        for (const int* row = first; row < end; ++row) {
            if (*row == noRow) {
                endStroke(walked);
            } else {
                continueStroke(walked, x, columnPoints(row, row + 1));
            }
        }
    }
    endStroke(walked);
}

// Between points of one column the line runs up and down: together from the highest to the lowest
// of them.
void coverThickStroke(CoverMask& mask, const std::vector<SlotGroup>& columns, Stroke stroke,
                      SlotRange groups, const StripRows& rows, double ratio) {
    for (std::size_t g = groups.first; g < groups.end; ++g) {
        const SlotGroup& group = columns[g];
        const int x = group.*stroke;
        const int* const first = rows.of(rows.line, group);
        const int* const end = first + (group.end - group.first);
        const ColumnPoints points = columnPoints(first, end);
        if (points.rows.first != noRow) {
            if (points.number > 1) {
                coverSegment(mask, x, static_cast<int>(points.rows.first), x,
                             static_cast<int>(points.rows.last), ratio);
            }
        } else {
            for (const int* row = first; row + 1 < end; ++row) {
                if (row[0] == noRow || row[1] == noRow) continue;
                coverSegment(mask, x, row[0], x, row[1], ratio);
            }
        }
        if (g + 1 < groups.end && end[-1] != noRow && *end != noRow) {
            coverSegment(mask, x, end[-1], columns[g + 1].*stroke, *end, ratio);
        }
    }
}

}  // namespace

void coverStripLine(CoverMask& mask, const SlotColumns& columns, SlotRange groups,
                    const StripRows& rows, double ratio) {
    for (const Stroke stroke : {&SlotGroup::x, &SlotGroup::shiftedX}) {
        if (ratio == 1) {
            coverThinStroke(mask, columns.line, stroke, groups, rows);
        } else {
            coverThickStroke(mask, columns.line, stroke, groups, rows, ratio);
        }
    }
}

}  // namespace charts
