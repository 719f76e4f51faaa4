#include "services/qt/list_model.h"

#include "services/disk/memory.h"
#include "services/qt/toolkit_state.h"

namespace services::qt {

namespace {

// One line whatever the card holds: a line break would push the text out of its row.
QString plainLine(const Text& text) {
    QString line = toQString(text);
    for (QChar& character : line) {
        if (character.category() == QChar::Other_Control) character = QLatin1Char(' ');
    }
    return line;
}

}  // namespace

ListModel::ListModel(std::span<const ListColumn> listColumns, QObject* parent)
    : QAbstractTableModel(parent) {
    for (const ListColumn& column : listColumns) {
        columns.push_back({toQString(column.title), column.rightAligned});
    }
}

void ListModel::fill(int rows, ListCell newCell) {
    beginResetModel();
    count = std::max(rows, 0);
    cell = std::move(newCell);
    endResetModel();
}

void ListModel::setFont(int column, const QFont& font) {
    columns[static_cast<std::size_t>(column)].font = font;
}

QFont ListModel::fontOf(int column, const QFont& viewFont) const {
    return columns[static_cast<std::size_t>(column)].font.value_or(viewFont);
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count;
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

// The toolkit asks while it paints, and nothing may be thrown through it.
QVariant ListModel::data(const QModelIndex& index, int role) const {
    QVariant result;
    static_cast<void>(withinMemory([&] { result = cellData(index, role); }));
    return result;
}

QVariant ListModel::cellData(const QModelIndex& index, int role) const {
    if (!index.isValid() || !cell) return {};
    const Column& column = columns[static_cast<std::size_t>(index.column())];
    switch (role) {
        case Qt::DisplayRole:
            return plainLine(cell(index.row(), index.column()));
        case Qt::ToolTipRole:
            // The whole of a text, for the view that cuts it; tooltips would take markup in it for
            // their own.
            return QStringLiteral("<p>%1</p>")
                .arg(plainLine(cell(index.row(), index.column())).toHtmlEscaped());
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(Qt::AlignVCenter |
                                       (column.rightAligned ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::FontRole:
            return column.font ? QVariant(*column.font) : QVariant();
        default:
            return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const Column& column = columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return column.title;
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignVCenter |
                                   (column.rightAligned ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

}  // namespace services::qt
