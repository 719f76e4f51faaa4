// The toolkit's view of a list: whole rows, one column that gives way to the others.
#pragma once

#include <QTreeView>
#include <span>

#include "services/controls.h"

namespace services::qt {

class ListView : public QTreeView {
  public:
    explicit ListView(QWidget* parent) : QTreeView(parent) {}

    // Gives the columns their widths; the model must know them already.
    void layOutColumns(std::span<const ListColumn> columns);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fitFlexibleColumn();

    int flexibleColumn = -1;
    int flexibleWidth = 0;  // what it takes when there is room
};

}  // namespace services::qt
