// What the toolkit's own file requesters need to be used for a card. Requesters of the platform
// have nothing of it to change, and stay as their user knows them.
#pragma once

#include <QFileDialog>
#include <QFileIconProvider>
#include <QStringList>

namespace services::qt {

// Drives look like drives, not like directories. The toolkit asks from a thread of its own, so
// nothing changes here while a dialog has it.
class DriveIcons : public QFileIconProvider {
  public:
    explicit DriveIcons(QStringList roots);

    using QFileIconProvider::icon;
    QIcon icon(const QFileInfo& file) const override;

    const QStringList drives;
};

// The drives at the side, whole and with icons of their own; dates and sizes in German whatever the
// locale; no columns in which directories have nothing. After the dialog's other settings; the
// icons outlive it.
void equipRequester(QFileDialog& dialog, DriveIcons& icons);

// Makes the drive, one of those at the side, what the dialog returns unless its user looks further.
// The directory that is shown stays. No drive, nothing to do.
void preselectDrive(QFileDialog& dialog, const QString& drive);

}  // namespace services::qt
