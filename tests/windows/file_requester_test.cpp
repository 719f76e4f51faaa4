// What the toolkit's own file requesters are given.
#include "services/qt/file_requester.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace {

using services::qt::DriveIcons;
using services::qt::equipRequester;
using services::qt::preselectDrive;

class FileRequester : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(place.isValid());
        for (const char* name :
             {"3A1F-22CE-AUSGERECHNET-MIT-LANGEM-NAMEN", "STICK", "home/Dokumente"})
            ASSERT_TRUE(QDir(place.path()).mkpath(QLatin1String(name)));
        drives = {place.filePath("3A1F-22CE-AUSGERECHNET-MIT-LANGEM-NAMEN"),
                  place.filePath("STICK")};
        QFile file(place.filePath("home/Werte.csv"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(1536, 'x'));
        ASSERT_TRUE(file.flush());
        ASSERT_TRUE(file.setFileTime(QDateTime(QDate(2013, 12, 24), QTime(18, 58, 38)),
                                     QFileDevice::FileModificationTime));
    }

    // A requester at home/, shown when everything in it is there.
    void open(QFileDialog& dialog, DriveIcons& icons, bool forDirectories) {
        dialog.setDirectory(place.filePath("home"));
        if (forDirectories) {
            dialog.setFileMode(QFileDialog::Directory);
            dialog.setOption(QFileDialog::ShowDirsOnly);
        }
        equipRequester(dialog, icons);
        dialog.show();
        const int expected = forDirectories ? 1 : 2;
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const QTreeView* const files = filesOf(dialog);
            return files->model()->rowCount(files->rootIndex()) == expected;
        }));
    }

    static QTreeView* filesOf(const QFileDialog& dialog) {
        return dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    }

    static QListView* sideOf(const QFileDialog& dialog) {
        return dialog.findChild<QListView*>(QStringLiteral("sidebar"));
    }

    static QString cell(const QTreeView& files, int row, int column) {
        return files.model()->index(row, column, files.rootIndex()).data().toString();
    }

    QTemporaryDir place;
    QStringList drives;
};

TEST_F(FileRequester, TheSideBarShowsItsTextsWhole) {
    DriveIcons icons(drives);
    QFileDialog dialog;
    open(dialog, icons, true);
    const QListView& side = *sideOf(dialog);
    ASSERT_GE(side.model()->rowCount(), 3);
    EXPECT_EQ(QStringLiteral("3A1F-22CE-AUSGERECHNET-MIT-LANGEM-NAMEN"),
              side.model()->index(0, 0).data().toString());
    EXPECT_EQ(0, side.horizontalScrollBar()->maximum());
    // Also when icons come late.
    ASSERT_TRUE(QTest::qWaitFor([&side] {
        return !side.model()->index(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull();
    }));
    QApplication::processEvents();
    EXPECT_GE(side.viewport()->width(), side.sizeHintForColumn(0));
    EXPECT_LE(side.iconSize().height(), side.visualRect(side.model()->index(0, 0)).height());
    // And leaves as much for the list of files.
    EXPECT_LE(side.width(), dialog.width() / 2);
}

TEST_F(FileRequester, TheListShowsItsColumnsWhole) {
    for (const bool forDirectories : {true, false}) {
        DriveIcons icons({drives[1]});  // both have room on small screens, too
        QFileDialog dialog;
        open(dialog, icons, forDirectories);
        const QTreeView& files = *filesOf(dialog);
        EXPECT_EQ(0, files.horizontalScrollBar()->maximum());
        const QHeaderView& header = *files.header();
        for (int column = 0; column < header.count(); ++column) {
            if (files.isColumnHidden(column)) continue;
            EXPECT_GE(header.sectionSize(column), header.sectionSizeHint(column)) << column;
            for (int row = 0; row < files.model()->rowCount(files.rootIndex()); ++row) {
                const QModelIndex cell = files.model()->index(row, column, files.rootIndex());
                EXPECT_GE(header.sectionSize(column), files.sizeHintForIndex(cell).width())
                    << column << ' ' << cell.data().toString().toStdString();
            }
        }
    }
}

TEST_F(FileRequester, DrivesLookLikeDrives) {
    DriveIcons icons(drives);
    const auto look = [](const QIcon& icon) { return icon.pixmap(32, 32).toImage(); };
    const QImage drive = look(icons.icon(QFileIconProvider::Drive));
    ASSERT_NE(drive, look(icons.icon(QFileIconProvider::Folder)));
    EXPECT_EQ(drive, look(icons.icon(QFileInfo(drives[0]))));
    EXPECT_EQ(drive, look(icons.icon(QFileInfo(drives[1] + "/"))));
    EXPECT_NE(drive, look(icons.icon(QFileInfo(place.filePath("home")))));
    EXPECT_NE(drive, look(icons.icon(QFileInfo(place.filePath("home/Werte.csv")))));
    QFileDialog dialog;
    open(dialog, icons, true);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const QVariant shown = sideOf(dialog)->model()->index(0, 0).data(Qt::DecorationRole);
        return look(shown.value<QIcon>()) == drive;
    }));
}

TEST_F(FileRequester, DatesAndSizesAreGermanUnderEveryLocale) {
    DriveIcons icons(drives);
    QFileDialog dialog;
    open(dialog, icons, false);
    const QTreeView& files = *filesOf(dialog);
    const int row = cell(files, 0, 0) == QLatin1String("Werte.csv") ? 0 : 1;
    ASSERT_EQ(QStringLiteral("Werte.csv"), cell(files, row, 0));
    EXPECT_TRUE(cell(files, row, 1).startsWith(QLatin1String("1,5")))
        << cell(files, row, 1).toStdString();
    EXPECT_EQ(QStringLiteral("24.12.13 18:58"), cell(files, row, 3));
    EXPECT_EQ(QString(), cell(files, 1 - row, 1));  // a directory
}

TEST_F(FileRequester, OnlyFilesHaveColumnsForSizeAndType) {
    for (const bool forDirectories : {true, false}) {
        DriveIcons icons(drives);
        QFileDialog dialog;
        open(dialog, icons, forDirectories);
        const QTreeView& files = *filesOf(dialog);
        EXPECT_EQ(forDirectories, files.isColumnHidden(1));
        EXPECT_EQ(forDirectories, files.isColumnHidden(2));
        EXPECT_FALSE(files.isColumnHidden(0));
        EXPECT_FALSE(files.isColumnHidden(3));
    }
}

TEST_F(FileRequester, APreselectedDriveIsChosenWithoutBeingEntered) {
    DriveIcons icons(drives);
    QFileDialog dialog;
    open(dialog, icons, true);
    preselectDrive(dialog, drives[1]);
    QApplication::processEvents();
    EXPECT_EQ(place.filePath("home"), dialog.directory().path());
    EXPECT_EQ(1, sideOf(dialog)->selectionModel()->selectedIndexes().value(0).row());
    QMetaObject::invokeMethod(&dialog, "accept");
    EXPECT_EQ(QDialog::Accepted, dialog.result());
    EXPECT_EQ(QStringList{drives[1]}, dialog.selectedFiles());
}

TEST_F(FileRequester, NothingIsPreselectedWithoutADrive) {
    DriveIcons icons(drives);
    QFileDialog dialog;
    open(dialog, icons, true);
    const QString before = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
    preselectDrive(dialog, {});
    EXPECT_EQ(before, dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text());
}

}  // namespace
