#include "services/qt/places.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using services::qt::places;
using services::qt::Volume;

using Drives = std::vector<std::string>;

Drives drivesAmong(const QList<Volume>& volumes) {
    Drives drives;
    for (const QUrl& url : places(QStringLiteral("/home/anna"), volumes).mid(2))
        drives.push_back(url.path().toStdString());
    return drives;
}

TEST(Places, BeginWithTheComputerAndHome) {
    EXPECT_EQ((QList<QUrl>{QUrl("file:"), QUrl::fromLocalFile("/home/anna")}),
              places(QStringLiteral("/home/anna"), {}));
}

TEST(Places, GoOnWithWhatIsMountedWhereCardsAreByNameAndOnce) {
    EXPECT_EQ((Drives{"/Volumes/KARTE", "/media/anna/a b#c", "/media/anna/Łódź", "/mnt",
                      "/mnt/karte", "/run/media/anna/KARTE", "/E:/"}),
              drivesAmong({{"/run/media/anna/KARTE", "vfat"},
                           {"/mnt/karte", "exfat"},
                           {"/mnt", "ext4"},
                           {"/media/anna/a b#c", "fuseblk"},
                           {"/media/anna/Łódź", "vfat"},
                           {"/mnt/karte", "exfat"},
                           {"/Volumes/KARTE", "msdos"},
                           {"E:/", "FAT32"}}));
}

TEST(Places, LeaveOutTheSystemAndWhatNoCardHas) {
    EXPECT_EQ(Drives(), drivesAmong({{"/", "ext4"},
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

}  // namespace
