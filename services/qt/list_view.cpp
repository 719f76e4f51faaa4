#include "services/qt/list_view.h"

#include <QHeaderView>
#include <QStyle>

#include "services/qt/toolkit_state.h"

namespace services::qt {

namespace {

int neededWidth(const QTreeView& view, const ListColumn& column) {
    // The view's own margins on both sides of a text, and a pixel against rounding.
    const QStyle& style = *view.style();
    const int cellMargins = 2 * (style.pixelMetric(QStyle::PM_FocusFrameHMargin) + 1) + 1;
    const int titleMargins = 2 * style.pixelMetric(QStyle::PM_HeaderMargin) + 1;
    const int sample = QFontMetrics(view.font()).horizontalAdvance(toQString(column.sample));
    const int title =
        QFontMetrics(view.header()->font()).horizontalAdvance(toQString(column.title));
    return std::max(sample + cellMargins, title + titleMargins);
}

}  // namespace

void ListView::layOutColumns(std::span<const ListColumn> columns) {
    header()->setStretchLastSection(false);
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const ListColumn& column = columns[static_cast<std::size_t>(i)];
        header()->resizeSection(i, std::max(column.width, neededWidth(*this, column)));
        if (column.sample.empty()) {
            flexibleColumn = i;
            flexibleWidth = column.width;
        }
    }
    fitFlexibleColumn();
}

void ListView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    fitFlexibleColumn();
}

void ListView::fitFlexibleColumn() {
    if (flexibleColumn < 0) return;
    const int others = header()->length() - header()->sectionSize(flexibleColumn);
    header()->resizeSection(flexibleColumn,
                            std::max(viewport()->width() - others, flexibleWidth / 2));
}

}  // namespace services::qt
