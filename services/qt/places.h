// The places that the toolkit's own requesters offer beside their list, so that a card is one click
// away. Requesters of the platform know these by themselves.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace services::qt {

struct Volume {
    QString root;  // the directory it is mounted at, or a drive letter as "E:/"
    QByteArray fileSystem;
};

// The roots of what is mounted where desktops and people mount cards and sticks, by name and each
// once. File systems that no card has are left out.
QStringList drivesAmong(const QList<Volume>& volumes);

// As this computer is now.
QStringList currentDrives();

// The drives first, then home, then all the computer.
QList<QUrl> places(const QString& home, const QStringList& drives);

// The drive that holds this file, a path from its root; nothing when none does, or several, of
// which the user must choose.
QString onlyDriveWith(const QString& file, const QStringList& drives);

}  // namespace services::qt
