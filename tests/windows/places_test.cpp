#include "services/qt/places.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using services::qt::drivesAmong;
using services::qt::onlyDriveWith;
using services::qt::places;

TEST(Places, BeginWithTheDrivesAndGoOnWithHomeAndTheComputer) {
    EXPECT_EQ((QList<QUrl>{QUrl::fromLocalFile("/home/anna"), QUrl("file:")}),
              places(QStringLiteral("/home/anna"), {}));
    EXPECT_EQ((QList<QUrl>{QUrl::fromLocalFile("/media/anna/a b#c"), QUrl::fromLocalFile("/mnt"),
                           QUrl::fromLocalFile("/home/anna"), QUrl("file:")}),
              places(QStringLiteral("/home/anna"), {"/media/anna/a b#c", "/mnt"}));
}

TEST(Places, DrivesAreWhatIsMountedWhereCardsAreByNameAndOnce) {
    EXPECT_EQ((QStringList{"/Volumes/KARTE", "/media/anna/a b#c", "/media/anna/Łódź", "/mnt",
                           "/mnt/karte", "/run/media/anna/KARTE", "E:/"}),
              drivesAmong({{"/run/media/anna/KARTE", "vfat"},
                           {"/mnt/karte", "exfat"},
                           {"/mnt", "ext4"},
                           {"/media/anna/a b#c", "fuseblk"},
                           {"/media/anna/Łódź", "vfat"},
                           {"/mnt/karte", "exfat"},
                           {"/Volumes/KARTE", "msdos"},
                           {"E:/", "FAT32"}}));
}

TEST(Places, TheSystemAndWhatNoCardHasAreNoDrives) {
    EXPECT_EQ(QStringList(), drivesAmong({{"/", "ext4"},
                                          {"/boot/efi", "vfat"},
                                          {"/home", "btrfs"},
                                          {"/mediathek", "ext4"},
                                          {"/var/media/x", "ext4"},
                                          {"/snap/core/1", "squashfs"},
                                          {"/mnt/memory", "tmpfs"},
                                          {"/media/image", "squashfs"},
                                          {"/mnt/later", "autofs"},
                                          {"/mnt/layers", "overlay"}}));
}

TEST(Places, TheDriveThatHoldsAFileIsTheOnlyOneThatDoes) {
    const QTemporaryDir place;
    const QString file = QStringLiteral("data/index");
    QStringList drives;
    for (const char* name : {"leer", "Karte", "Stick"}) {
        ASSERT_TRUE(QDir(place.path()).mkpath(QLatin1String(name) + QLatin1String("/data")));
        drives << place.filePath(QLatin1String(name));
    }
    const auto write = [&](const QString& drive) {
        QFile index(drive + QLatin1Char('/') + file);
        return index.open(QIODevice::WriteOnly);
    };
    EXPECT_EQ(QString(), onlyDriveWith(file, drives));
    EXPECT_EQ(QString(), onlyDriveWith(file, {}));
    ASSERT_TRUE(QDir(drives[0]).mkpath(file));  // a directory of that name is none
    EXPECT_EQ(QString(), onlyDriveWith(file, drives));
    ASSERT_TRUE(write(drives[1]));
    EXPECT_EQ(drives[1], onlyDriveWith(file, drives));
    ASSERT_TRUE(write(drives[2]));
    EXPECT_EQ(QString(), onlyDriveWith(file, drives));
}

}  // namespace
