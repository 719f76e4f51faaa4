// A list's rows as the toolkit's views want them: no item per cell, every text asked for when
// shown.
#pragma once

#include <QAbstractTableModel>
#include <QFont>
#include <QString>
#include <optional>
#include <vector>

#include "services/controls.h"

namespace services::qt {

class ListModel : public QAbstractTableModel {
  public:
    ListModel(std::span<const ListColumn> listColumns, QObject* parent);

    void fill(int rows, ListCell newCell);

    // Columns without a font of their own have the view's.
    void setFont(int column, const QFont& font);
    QFont fontOf(int column, const QFont& viewFont) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QVariant cellData(const QModelIndex& index, int role) const;

    struct Column {
        QString title;
        bool rightAligned;
        std::optional<QFont> font = {};
    };

    std::vector<Column> columns;
    int count = 0;
    ListCell cell;
};

}  // namespace services::qt
