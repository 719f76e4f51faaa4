#include "services/qt/file_requester.h"

#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QScreen>
#include <QStyle>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "services/qt/places.h"

namespace services::qt {

namespace {

// Columns of the toolkit's model of the file system.
constexpr int nameColumn = 0;
constexpr int sizeColumn = 1;
constexpr int typeColumn = 2;
constexpr int dateColumn = 3;

// The toolkit's model tells dates and sizes by the locale of the environment, which may be none.
class GermanFiles : public QIdentityProxyModel {
  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant data(const QModelIndex& index, int role) const override {
        const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
        if (files == nullptr || role != Qt::DisplayRole)
            return QIdentityProxyModel::data(index, role);
        const QModelIndex file = mapToSource(index);
        if (index.column() == dateColumn)
            return QLocale().toString(files->lastModified(file), QLocale::ShortFormat);
        if (index.column() == sizeColumn && !files->isDir(file))
            return QLocale().formattedDataSize(files->size(file));
        return QIdentityProxyModel::data(index, role);
    }
};

// What its texts take. Rows of the side bar are all as high as the first is when it is measured,
// which is often before its icon is there: not asked for their sizes, and with icons no higher than
// a line.
int neededWidth(QListView& side) {
    const QStyle& style = *side.style();
    const int icon = style.pixelMetric(QStyle::PM_SmallIconSize, nullptr, &side);
    side.setIconSize({icon, icon});
    int text = 0;
    for (int row = 0; row < side.model()->rowCount(); ++row) {
        const QString name = side.model()->index(row, 0).data().toString();
        text = std::max(text, side.fontMetrics().horizontalAdvance(name));
    }
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &side) + 1;
    return text + icon + 6 * margin + 2 * side.frameWidth();
}

// The side bar as wide as its texts, the list as wide as its columns.
void makeRoom(QFileDialog& dialog, QTreeView& files, QListView& side) {
    const int needed = neededWidth(side);
    const QFontMetrics metrics(dialog.font());
    const int letter = metrics.averageCharWidth();
    const QSize comfortable(std::max(dialog.width(), needed + 75 * letter),
                            std::max(dialog.height(), 26 * metrics.height()));
    dialog.resize(comfortable.boundedTo(dialog.screen()->availableSize() * 9 / 10));
    side.setMinimumWidth(std::min(needed, dialog.width() / 2));

    QHeaderView& header = *files.header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(nameColumn, QHeaderView::Stretch);
}

}  // namespace

DriveIcons::DriveIcons(QStringList roots) : drives(std::move(roots)) {}

QIcon DriveIcons::icon(const QFileInfo& file) const {
    return drives.contains(QDir::cleanPath(file.absoluteFilePath()))
               ? QFileIconProvider::icon(Drive)
               : QFileIconProvider::icon(file);
}

void equipRequester(QFileDialog& dialog, DriveIcons& icons) {
    auto* const files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    auto* const side = dialog.findChild<QListView*>(QStringLiteral("sidebar"));
    if (files == nullptr || side == nullptr) return;
    dialog.setProxyModel(new GermanFiles(&dialog));
    if (dialog.testOption(QFileDialog::ShowDirsOnly)) {
        files->setColumnHidden(sizeColumn, true);
        files->setColumnHidden(typeColumn, true);
    }
    dialog.setIconProvider(&icons);
    dialog.setSidebarUrls(places(QDir::homePath(), icons.drives));
    makeRoom(dialog, *files, *side);
}

void preselectDrive(QFileDialog& dialog, const QString& drive) {
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    auto* const side = dialog.findChild<QListView*>(QStringLiteral("sidebar"));
    if (name == nullptr || side == nullptr || drive.isEmpty()) return;
    name->setText(QDir::toNativeSeparators(drive));
    name->selectAll();
    const auto place = static_cast<int>(dialog.sidebarUrls().indexOf(QUrl::fromLocalFile(drive)));
    // Chosen, not current: a place that becomes current is gone to.
    side->selectionModel()->select(side->model()->index(place, 0),
                                   QItemSelectionModel::ClearAndSelect);
}

}  // namespace services::qt
