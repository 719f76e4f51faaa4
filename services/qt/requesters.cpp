#include "services/requesters.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

#include "services/disk/endings.h"
#include "services/qt/file_requester.h"
#include "services/qt/places.h"
#include "services/qt/toolkit_state.h"

namespace services {

namespace {

void prepareBox(QMessageBox& box, TextView title, TextView text) {
    box.setWindowTitle(qt::toQString(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(qt::toQString(text));
}

// Every other title stands above news of what was done, or of nothing to do.
bool tellsOfAFailure(TextView title) {
    return title == "Fehler" || title == "Dateifehler";
}

// What comes up while the program is quitting is cancelled unseen.
int show(QDialog& dialog) {
    return isQuitAsked() ? static_cast<int>(QDialog::Rejected) : dialog.exec();
}

Path encode(const QString& name) {
    const QByteArray bytes = QFile::encodeName(name);
    return Path(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

// Nobody wants a table among the trainings of the card, where the program works.
QString documentsDirectory() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QString decode(PathView path) {
    return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}

}  // namespace

void showMessage(TextView title, TextView text) {
    QMessageBox box(qt::requesterOwner());
    prepareBox(box, title, text);
    box.setIcon(tellsOfAFailure(title) ? QMessageBox::Warning : QMessageBox::Information);
    box.addButton(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    show(box);
}

bool askYesNo(TextView title, TextView text) {
    QMessageBox box(qt::requesterOwner());
    prepareBox(box, title, text);
    box.setIcon(QMessageBox::Question);
    QPushButton* yes = box.addButton(QMessageBox::Yes);
    QPushButton* no = box.addButton(QMessageBox::No);
    yes->setText(QStringLiteral("Ja"));
    no->setText(QStringLiteral("Nein"));
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    return show(box) == QMessageBox::Yes;
}

Path chooseDirectory(TextView title, PathView start, PathView fileOnDrive) {
    qt::DriveIcons icons(qt::currentDrives());
    QFileDialog dialog(qt::requesterOwner(), qt::toQString(title), decode(start));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    qt::equipRequester(dialog, icons);
    if (!fileOnDrive.empty())
        qt::preselectDrive(dialog, qt::onlyDriveWith(decode(fileOnDrive), icons.drives));
    if (show(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QFileInfo chosen(dialog.selectedFiles().constFirst());
    QString resolved = chosen.canonicalFilePath();
    if (resolved.isEmpty()) resolved = chosen.absoluteFilePath();  // it vanished in between
    if (!resolved.endsWith(QLatin1Char('/'))) resolved += QLatin1Char('/');
    return encode(resolved);
}

Path chooseSaveFile(TextView title, PathView directory, TextView name, TextView pattern) {
    qt::DriveIcons icons(qt::currentDrives());
    // Without a directory the toolkit would start where any requester was last.
    const QString start = directory.empty() ? documentsDirectory() : decode(directory);
    QFileDialog dialog(qt::requesterOwner(), qt::toQString(title), start);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(qt::toQString(pattern));
    qt::equipRequester(dialog, icons);
    dialog.selectFile(qt::toQString(name));
    if (show(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return encode(dialog.selectedFiles().constFirst());
}

Colour chooseColour(Colour current) {
    if (isQuitAsked()) return current;
    const QColor chosen =
        QColorDialog::getColor(QColor(red(current), green(current), blue(current)),
                               qt::requesterOwner(), QStringLiteral("Farbe"));
    if (!chosen.isValid()) return current;
    return rgb(chosen.red(), chosen.green(), chosen.blue());
}

}  // namespace services
