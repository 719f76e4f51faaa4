#include "services/requesters.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include "tests/windows/window_test.h"

namespace {

// Runs `look` on the modal dialog that the code under test is about to open.
template <typename Look>
void whenOpen(Look look) {
    QTimer::singleShot(0, qApp, [look] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(nullptr, dialog);
        look(dialog);
    });
}

QStringList buttonTexts(const QWidget* dialog) {
    QStringList texts;
    for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
        texts << QString(button->text()).remove(QLatin1Char('&'));
    }
    texts.sort();
    return texts;
}

class Requesters : public WindowTest {};

TEST_F(Requesters, AMessageHasOneOkButtonAndPlainText) {
    QStringList buttons;
    QString text;
    Qt::TextFormat format = Qt::AutoText;
    whenOpen([&](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        buttons = buttonTexts(box);
        text = box->text();
        format = box->textFormat();
        box->accept();
    });
    services::showMessage("Info",
                          "<b>Gr\xF6\xDF"
                          "e</b>\r\n100 %1 & mehr");
    EXPECT_EQ(QStringList{"OK"}, buttons);
    EXPECT_EQ(QStringLiteral("<b>Größe</b>\n100 %1 & mehr"), text);
    EXPECT_EQ(Qt::PlainText, format);
}

TEST_F(Requesters, AQuestionIsAnsweredByJaOnly) {
    struct Row {
        const char* name;
        QMessageBox::StandardButton press;
        bool answer;
    };
    const Row rows[] = {
        {"Ja", QMessageBox::Yes, true},
        {"Nein", QMessageBox::No, false},
        {"closed", QMessageBox::NoButton, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList buttons;
        QString defaultButton;
        whenOpen([&](QWidget* dialog) {
            auto* box = qobject_cast<QMessageBox*>(dialog);
            buttons = buttonTexts(box);
            defaultButton = box->defaultButton()->text();
            if (row.press == QMessageBox::NoButton) {
                box->close();
            } else {
                box->button(row.press)->click();
            }
        });
        EXPECT_EQ(row.answer, services::askYesNo("Frage", "Wirklich?"));
        EXPECT_EQ((QStringList{"Ja", "Nein"}), buttons);
        EXPECT_EQ(QStringLiteral("Nein"), defaultButton);
    }
}

TEST_F(Requesters, ADirectoryIsChosenWithASlashAtItsEndAndItsLinksResolved) {
    QTemporaryDir place;
    ASSERT_TRUE(place.isValid());
    ASSERT_TRUE(QDir(place.path()).mkdir(QStringLiteral("Łódź")));
    ASSERT_TRUE(QFile::link(place.filePath("Łódź"), place.filePath("Verweis")));
    const QString link = place.filePath("Verweis");
    QString title;
    whenOpen([&](QWidget* dialog) {
        auto* requester = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        title = requester->windowTitle();
        requester->selectFile(link);
        QMetaObject::invokeMethod(requester, "accept");
    });
    const services::Path chosen =
        services::chooseDirectory("W\xE4hle", place.path().toStdString() + "/");
    EXPECT_EQ(QStringLiteral("Wähle"), title);
    EXPECT_EQ(QFileInfo(place.filePath("Łódź")).canonicalFilePath().toStdString() + "/", chosen);
}

TEST_F(Requesters, ACancelledDirectoryRequesterGivesNothing) {
    whenOpen([](QWidget* dialog) { dialog->close(); });
    EXPECT_EQ("", services::chooseDirectory("Titel", "/"));
}

TEST_F(Requesters, TheToolkitsOwnRequestersAreGermanUnderEveryLocale) {
    QStringList buttons;
    whenOpen([&](QWidget* dialog) {
        buttons = buttonTexts(dialog);
        dialog->close();
    });
    services::chooseDirectory("Titel", "/");
    EXPECT_TRUE(buttons.contains(QStringLiteral("Abbrechen"))) << buttons.join('|').toStdString();
    EXPECT_FALSE(buttons.contains(QStringLiteral("Cancel")));
    whenOpen([&](QWidget* dialog) {
        buttons = buttonTexts(dialog);
        dialog->close();
    });
    EXPECT_EQ(services::rgb(1, 2, 3), services::chooseColour(services::rgb(1, 2, 3)));
    EXPECT_TRUE(buttons.contains(QStringLiteral("Abbrechen"))) << buttons.join('|').toStdString();
}

}  // namespace
