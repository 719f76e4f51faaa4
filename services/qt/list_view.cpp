#include "services/qt/list_view.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QHelpEvent>
#include <QStyle>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "services/qt/list_model.h"
#include "services/qt/toolkit_state.h"

namespace services::qt {

namespace {

double advance(const QFontMetricsF& metrics, char figure) {
    // As text, or features of the font would count for nothing.
    return metrics.horizontalAdvance(QString(QLatin1Char(figure)));
}

bool hasFiguresOfOneWidth(const QFont& font) {
    const QFontMetricsF metrics(font);
    const double first = advance(metrics, '0');
    for (char figure = '1'; figure <= '9'; ++figure) {
        if (std::abs(advance(metrics, figure) - first) > 0.01) return false;
    }
    return true;
}

// The user interface's font, with figures of one width if it has them at all.
QFont interfaceFont() {
    const QFont font = QGuiApplication::font();
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    if (!hasFiguresOfOneWidth(font)) {
        QFont tabular = font;
        tabular.setFeature("tnum", 1);
        if (hasFiguresOfOneWidth(tabular)) return tabular;
    }
#endif
    return font;
}

bool hasLeftAlignedFigures(const ListColumn& column) {
    return !column.rightAligned && !column.sample.empty() && column.sample[0] >= '0' &&
           column.sample[0] <= '9';
}

// Samples are told in zeros, which need not be the widest of figures.
QString widestText(TextView sample, const QFont& font) {
    const QFontMetricsF metrics(font);
    char widest = '0';
    for (char figure = '1'; figure <= '9'; ++figure) {
        if (advance(metrics, figure) > advance(metrics, widest)) widest = figure;
    }
    return toQString(sample).replace(QLatin1Char('0'), QLatin1Char(widest));
}

}  // namespace

void ListView::chooseFonts(std::span<const ListColumn> columns) {
    setFont(interfaceFont());
    header()->setFont(QGuiApplication::font());
    if (hasFiguresOfOneWidth(font())) return;
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        if (hasLeftAlignedFigures(columns[static_cast<std::size_t>(i)]))
            static_cast<ListModel*>(model())->setFont(i, fixed);
    }
}

int ListView::neededWidth(int number, const ListColumn& column) const {
    // The view's own margins on both sides of a text, and a pixel against rounding.
    const int cellMargins = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1) + 1;
    const int titleMargins = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin) + 1;
    const QFont font = static_cast<const ListModel*>(model())->fontOf(number, this->font());
    const int sample = QFontMetrics(font).horizontalAdvance(widestText(column.sample, font));
    const int title = QFontMetrics(header()->font()).horizontalAdvance(toQString(column.title));
    return std::max(sample + cellMargins, title + titleMargins);
}

void ListView::layOutColumns(std::span<const ListColumn> columns) {
    chooseFonts(columns);
    header()->setStretchLastSection(false);
    widths.clear();
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const ListColumn& column = columns[static_cast<std::size_t>(i)];
        const int needed = neededWidth(i, column);
        widths.push_back({.needed = needed, .wanted = std::max(column.width, needed)});
        header()->resizeSection(i, widths.back().wanted);
        if (column.sample.empty()) {
            flexibleColumn = i;
            flexibleWidth = column.width;
        }
    }
    fitColumns();
}

void ListView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    fitColumns();
}

// The flexible column gives way first, to half its width; then each of the others by the same part
// of what it can spare.
void ListView::fitColumns() {
    if (flexibleColumn < 0) return;
    const int room = viewport()->width();
    int wanted = 0;
    int spare = 0;
    for (int i = 0; i < static_cast<int>(widths.size()); ++i) {
        if (i == flexibleColumn) continue;
        const Width& width = widths[static_cast<std::size_t>(i)];
        wanted += width.wanted;
        spare += width.wanted - width.needed;
    }
    int excess = std::clamp(wanted + flexibleWidth / 2 - room, 0, spare);
    header()->resizeSection(flexibleColumn, std::max(room - (wanted - excess), flexibleWidth / 2));
    for (int i = 0; i < static_cast<int>(widths.size()); ++i) {
        if (i == flexibleColumn) continue;
        const Width& width = widths[static_cast<std::size_t>(i)];
        const int own = width.wanted - width.needed;
        const int given = spare == 0 ? 0 : excess * own / spare;
        header()->resizeSection(i, width.wanted - given);
        excess -= given;
        spare -= own;
    }
}

bool ListView::isCut(const QModelIndex& cell) const {
    return cell.isValid() && sizeHintForIndex(cell).width() > header()->sectionSize(cell.column());
}

bool ListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip &&
        !isCut(indexAt(static_cast<QHelpEvent*>(event)->pos()))) {
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    return QTreeView::viewportEvent(event);
}

}  // namespace services::qt
