// The places that the toolkit's own requesters offer beside their list, so that a card is one click
// away. Requesters of the platform know these by themselves.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

namespace services::qt {

struct Volume {
    QString root;  // the directory it is mounted at, or a drive letter as "E:/"
    QByteArray fileSystem;
};

// All the computer, home, then what is mounted where desktops and people mount cards and sticks,
// by name and each once. File systems that no card has are left out.
QList<QUrl> places(const QString& home, const QList<Volume>& volumes);

// As this computer is now.
QList<QUrl> currentPlaces();

}  // namespace services::qt
