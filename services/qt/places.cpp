#include "services/qt/places.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <algorithm>
#include <array>

namespace services::qt {

namespace {

constexpr std::array mountPlaces = {"/media", "/run/media", "/mnt", "/Volumes"};

// Kept in memory, packed into one file, stacked upon others, or mounted only when looked at.
constexpr std::array pseudoFileSystems = {
    "autofs",   "binfmt_misc", "cgroup",   "cgroup2", "debugfs", "devpts",
    "devtmpfs", "fusectl",     "mqueue",   "nsfs",    "overlay", "proc",
    "pstore",   "ramfs",       "squashfs", "sysfs",   "tmpfs",   "tracefs",
};

bool isBelow(const QString& path, const char* place) {
    const QString start = QLatin1String(place);
    return path == start || path.startsWith(start + QLatin1Char('/'));
}

bool hasDriveLetter(const QString& root) {
    return root.size() >= 2 && root[0].isLetter() && root[1] == QLatin1Char(':');
}

bool mayBeCard(const Volume& volume) {
    for (const char* name : pseudoFileSystems) {
        if (volume.fileSystem == name) return false;
    }
    return hasDriveLetter(volume.root) ||
           std::any_of(mountPlaces.begin(), mountPlaces.end(),
                       [&](const char* place) { return isBelow(volume.root, place); });
}

}  // namespace

QStringList drivesAmong(const QList<Volume>& volumes) {
    QStringList drives;
    for (const Volume& volume : volumes) {
        if (mayBeCard(volume)) drives << volume.root;
    }
    drives.removeDuplicates();
    drives.sort();
    return drives;
}

QStringList currentDrives() {
    QList<Volume> volumes;
    for (const QStorageInfo& mounted : QStorageInfo::mountedVolumes()) {
        if (mounted.isReady()) volumes.push_back({mounted.rootPath(), mounted.fileSystemType()});
    }
    return drivesAmong(volumes);
}

QList<QUrl> places(const QString& home, const QStringList& drives) {
    QList<QUrl> result;
    for (const QString& drive : drives)
        result << QUrl::fromLocalFile(drive);
    return result << QUrl::fromLocalFile(home) << QUrl(QStringLiteral("file:"));
}

QString onlyDriveWith(const QString& file, const QStringList& drives) {
    QStringList found;
    for (const QString& drive : drives) {
        if (QFileInfo(QDir(drive).filePath(file)).isFile()) found << drive;
    }
    return found.size() == 1 ? found.front() : QString();
}

}  // namespace services::qt
