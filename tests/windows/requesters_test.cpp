#include "services/requesters.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "services/qt/places.h"
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

class Requesters : public WindowTest {
  protected:
    // Answers the save-file requester with what it proposes, or with what is typed instead.
    static services::Path save(const QTemporaryDir& place, const QString& typed = {}) {
        whenOpen([typed](QWidget* dialog) {
            auto* const requester = qobject_cast<QFileDialog*>(dialog);
            ASSERT_NE(nullptr, requester);
            auto* const name = requester->findChild<QLineEdit*>();
            if (!typed.isEmpty()) name->setText(typed);
            QMetaObject::invokeMethod(requester, "accept");
            if (requester->isVisible()) requester->reject();  // it found nothing to accept
        });
        return services::chooseSaveFile("Speichern", place.path().toStdString() + "/",
                                        "\xDC"
                                        "bersicht.csv",
                                        "*.csv");
    }
};

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

TEST_F(Requesters, OnlyFailuresHaveTheIconOfAWarning) {
    const struct {
        const char* title;
        QMessageBox::Icon icon;
    } rows[] = {
        {"Fehler", QMessageBox::Warning},         {"Dateifehler", QMessageBox::Warning},
        {"Info", QMessageBox::Information},       {"Preferences", QMessageBox::Information},
        {"Dateinamen", QMessageBox::Information}, {"L\xF6sche Datei", QMessageBox::Information}};
    for (const auto& row : rows) {
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        whenOpen([&](QWidget* dialog) {
            auto* box = qobject_cast<QMessageBox*>(dialog);
            icon = box->icon();
            box->accept();
        });
        services::showMessage(row.title, "Text");
        EXPECT_EQ(row.icon, icon) << row.title;
    }
}

// What a card may hold where a name or a description is expected.
TEST_F(Requesters, NoControlCharacterDisturbsAMessage) {
    QString text;
    whenOpen([&](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        text = box->text();
        box->accept();
    });
    services::showMessage("Info", std::string_view("a\0b\tc\x1B[1md\x7F\x85\x9B", 13));
    EXPECT_EQ(QStringLiteral("a b c [1md   "), text);
}

TEST_F(Requesters, AMessageBelongsToTheInnermostWindowWhateverIsActive) {
    openMainWindow();
    services::showWindow(services::mainWindow);
    QString owner;
    const auto findOwner = [&owner](QWidget* dialog) {
        owner = dialog->parentWidget()->windowTitle();
        dialog->close();
    };
    whenOpen(findOwner);
    services::showMessage("Info", "vorher");
    EXPECT_EQ(QStringLiteral("Kurbelbuch"), owner);

    ASSERT_TRUE(services::openWindow({.number = services::listWindow,
                                      .width = 300,
                                      .height = 200,
                                      .title = "Liste",
                                      .owner = services::mainWindow}));
    services::showWindow(services::listWindow);
    ASSERT_EQ(nullptr, QApplication::activeWindow());  // none yet, as right after another box
    whenOpen(findOwner);
    services::showMessage("Info", "mit Liste");
    EXPECT_EQ(QStringLiteral("Liste"), owner);

    services::closeWindow(services::listWindow);
    whenOpen(findOwner);
    services::showMessage("Info", "nachher");
    EXPECT_EQ(QStringLiteral("Kurbelbuch"), owner);
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

TEST_F(Requesters, AFileToSaveHasTheProposedNameOrTheTypedOneAsItIs) {
    const QTemporaryDir place;
    ASSERT_TRUE(place.isValid());
    const std::string directory = place.path().toStdString();
    EXPECT_EQ(directory + "/Übersicht.csv", save(place));
    EXPECT_EQ(directory + "/andere", save(place, QStringLiteral("andere")));
    EXPECT_EQ(directory + "/Łódź.txt", save(place, QStringLiteral("Łódź.txt")));
}

TEST_F(Requesters, AFileToSaveIsAskedForInItsDirectoryAmongItsKind) {
    const QTemporaryDir place;
    QString title;
    QString start;
    QStringList patterns;
    QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    whenOpen([&](QWidget* dialog) {
        auto* const requester = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        title = requester->windowTitle();
        start = requester->directory().path();
        patterns = requester->nameFilters();
        mode = requester->acceptMode();
        requester->reject();
    });
    EXPECT_EQ("", services::chooseSaveFile("S\xE4uern", place.path().toStdString() + "/", "a.csv",
                                           "*.csv"));
    EXPECT_EQ(QStringLiteral("Säuern"), title);
    EXPECT_EQ(place.path(), start);
    EXPECT_EQ(QStringList{"*.csv"}, patterns);
    EXPECT_EQ(QFileDialog::AcceptSave, mode);
}

// The directory that the save-file requester begins in for this directory of the program's.
QString startOfSaving(const services::Path& directory) {
    QString start;
    whenOpen([&](QWidget* dialog) {
        auto* const requester = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        start = requester->directory().path();
        requester->reject();
    });
    EXPECT_EQ("", services::chooseSaveFile("Speichern", directory, "a.csv", "*.csv"));
    return start;
}

TEST_F(Requesters, WithoutADirectoryAFileToSaveIsAskedForAmongTheDocuments) {
    const QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("Dokumente")));
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("Tabellen")));
    const QByteArray homeBefore = qgetenv("HOME");
    const QByteArray configBefore = qgetenv("XDG_CONFIG_HOME");
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    QFile names(home.filePath(QStringLiteral("user-dirs.dirs")));
    ASSERT_TRUE(names.open(QIODevice::WriteOnly));
    names.write("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    names.close();
    // Also after another one was looked at: what is remembered is for the program to say.
    EXPECT_EQ(home.filePath("Dokumente"), startOfSaving(""));
    EXPECT_EQ(home.filePath("Tabellen"), startOfSaving(home.filePath("Tabellen").toStdString()));
    EXPECT_EQ(home.filePath("Dokumente"), startOfSaving(""));
    const QTemporaryDir chosen;
    EXPECT_NE("", save(chosen));
    EXPECT_EQ(home.filePath("Dokumente"), startOfSaving(""));
    ASSERT_TRUE(QDir(home.path()).rmdir(QStringLiteral("Dokumente")));
    EXPECT_EQ(home.path(), startOfSaving(""));
    qputenv("HOME", homeBefore);
    configBefore.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", configBefore);
}

TEST_F(Requesters, ADirectoryIsAskedForAmongDirectoriesAlone) {
    const QTemporaryDir place;
    whenOpen([&](QWidget* dialog) {
        auto* const requester = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        EXPECT_EQ(place.path(), requester->directory().path());
        EXPECT_EQ(QFileDialog::Directory, requester->fileMode());
        EXPECT_TRUE(requester->testOption(QFileDialog::ShowDirsOnly));
        requester->reject();
    });
    EXPECT_EQ("", services::chooseDirectory("Titel", place.path().toStdString() + "/"));
}

TEST_F(Requesters, BothFileRequestersOfferHomeAndTheDrivesAtTheirSide) {
    QList<QUrl> offered;
    const auto look = [&](QWidget* dialog) {
        auto* const requester = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        offered = requester->sidebarUrls();
        requester->reject();
    };
    const QList<QUrl> expected =
        services::qt::places(QDir::homePath(), services::qt::currentDrives());
    whenOpen(look);
    services::chooseDirectory("Titel", "/");
    EXPECT_EQ(expected, offered);
    EXPECT_TRUE(offered.contains(QUrl::fromLocalFile(QDir::homePath())));
    offered.clear();
    whenOpen(look);
    services::chooseSaveFile("Titel", "/", "a.csv", "*.csv");
    EXPECT_EQ(expected, offered);
}

TEST_F(Requesters, AColourIsTheChosenOne) {
    whenOpen([](QWidget* dialog) {
        auto* const requester = qobject_cast<QColorDialog*>(dialog);
        ASSERT_NE(nullptr, requester);
        EXPECT_EQ(QColor(1, 2, 3), requester->currentColor());
        requester->setCurrentColor(QColor(200, 90, 10));
        requester->accept();
    });
    EXPECT_EQ(services::rgb(200, 90, 10), services::chooseColour(services::rgb(1, 2, 3)));
}

TEST_F(Requesters, BelongToTheActiveWindowOrElseToTheMainOne) {
    openMainWindow();
    const QWidget* owner = nullptr;
    const auto look = [&](QWidget* box) {
        owner = box->parentWidget();
        box->close();
    };
    whenOpen(look);
    services::showMessage("Fehler", "x");
    EXPECT_EQ(widget(), owner);
    services::showWindow(services::mainWindow);
    ASSERT_TRUE(services::openWindow({.number = services::listWindow,
                                      .width = 90,
                                      .height = 50,
                                      .title = "Liste",
                                      .owner = services::mainWindow}));
    services::showWindow(services::listWindow);
    QApplication::processEvents();
    QWidget* const active = QApplication::activeWindow();
    ASSERT_NE(nullptr, active);
    EXPECT_EQ(QStringLiteral("Liste"), active->windowTitle());
    whenOpen(look);
    services::showMessage("Fehler", "x");
    EXPECT_EQ(active, owner);
}

TEST_F(Requesters, AQuestionIsAnsweredNoByEscapeAndByReturn) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        whenOpen([key](QWidget* dialog) { QTest::keyClick(dialog, key); });
        EXPECT_FALSE(services::askYesNo("Frage", "Wirklich?"));
    }
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

TEST_F(Requesters, MessagesAndQuestionsShowTheirTitleAndText) {
    QString title;
    QString text;
    const auto look = [&](QWidget* dialog) {
        title = dialog->windowTitle();
        text = qobject_cast<QMessageBox*>(dialog)->text();
        dialog->close();
    };
    whenOpen(look);
    services::showMessage("L\xF6sche Datei", "Es wurden keine Dateien ausgew\xE4hlt!");
    EXPECT_EQ(QStringLiteral("Lösche Datei"), title);
    EXPECT_EQ(QStringLiteral("Es wurden keine Dateien ausgewählt!"), text);
    whenOpen(look);
    services::askYesNo(
        "Zur\xFC"
        "cksetzen <b>&",
        "Wirklich?\r\n<b>100 %1</b> & mehr");
    EXPECT_EQ(QStringLiteral("Zurücksetzen <b>&"), title);
    EXPECT_EQ(QStringLiteral("Wirklich?\n<b>100 %1</b> & mehr"), text);
}

}  // namespace
