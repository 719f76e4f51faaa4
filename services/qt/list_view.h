// The toolkit's view of a list: whole rows, columns that give way to each other.
#pragma once

#include <QTreeView>
#include <span>
#include <vector>

#include "services/controls.h"

namespace services::qt {

class ListView : public QTreeView {
  public:
    explicit ListView(QWidget* parent) : QTreeView(parent) {}

    // Gives the columns their fonts and widths; the view must have its ListModel already.
    void layOutColumns(std::span<const ListColumn> columns);

  protected:
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void chooseFonts(std::span<const ListColumn> columns);
    int neededWidth(int number, const ListColumn& column) const;
    void fitColumns();
    bool isCut(const QModelIndex& cell) const;

    struct Width {
        int needed = 0;  // by title and sample
        int wanted = 0;
    };

    std::vector<Width> widths;
    int flexibleColumn = -1;
    int flexibleWidth = 0;  // what it takes when there is room
};

}  // namespace services::qt
