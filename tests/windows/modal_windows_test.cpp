// Which windows leave the main window's menus alone while they are open, and which don't.
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <map>
#include <string>

#include "tests/windows/program_windows.h"

namespace {

class ModalWindows : public ProgramWindows {
  protected:
    static QMenuBar* menuBar() { return widget()->findChild<QMenuBar*>(); }

    // As the window system tells of a press on the bar's first menu.
    static bool menuOpensByPointer() {
        const QRect title = menuBar()->actionGeometry(menuBar()->actions().constFirst());
        const QPoint place = menuBar()->mapTo(widget(), title.center());
        QTest::mousePress(widget()->windowHandle(), Qt::LeftButton, {}, place);
        const bool opens = closePopup();
        QTest::mouseRelease(widget()->windowHandle(), Qt::LeftButton, {}, place);
        return opens;
    }

    static bool menuOpensByKey() {
        QTest::keyClick(widget()->windowHandle(), Qt::Key_F10);
        const bool isInBar = menuBar()->activeAction() != nullptr;
        closePopup();
        menuBar()->setActiveAction(nullptr);
        return isInBar;
    }

  private:
    static bool closePopup() {
        QCoreApplication::processEvents();
        QWidget* const popup = QApplication::activePopupWidget();
        if (popup != nullptr) popup->close();
        QCoreApplication::processEvents();
        return popup != nullptr;
    }
};

TEST_F(ModalWindows, ListLimitsAndReportsTakeTheMenusAndTheInfoWindowsDoNot) {
    std::map<std::string, int> opened;
    std::map<std::string, int> looked;
    lookAtAll([&](QWidget& window) {
        const std::string title = window.windowTitle().toStdString();
        ++looked[title];
        opened[title] += menuOpensByPointer() ? 1 : 0;
    });
    EXPECT_EQ(opened, (std::map<std::string, int>{{"Kurbelbuch", 1},
                                                  {"Trainingsdateien bearbeiten", 0},
                                                  {"Wähle die Trainingsdatei", 0},
                                                  {"Grenzwerte", 0},
                                                  {"Programminfo", 2},
                                                  {"Dateien kopieren", 0}}));
    EXPECT_EQ(looked["Wähle die Trainingsdatei"], 2);
    EXPECT_EQ(looked["Programminfo"], 2);
}

TEST_F(ModalWindows, TheMenusComeBackWhenAModalWindowIsClosed) {
    EXPECT_TRUE(menuOpensByPointer());
    services::openWindow({.number = services::listWindow,
                          .width = 90,
                          .height = 50,
                          .title = "Liste",
                          .owner = services::mainWindow,
                          .modal = true});
    services::showWindow(services::listWindow);
    takeWaitingEvents();
    EXPECT_FALSE(menuOpensByPointer());
    EXPECT_FALSE(menuOpensByKey());
    services::closeWindow(services::listWindow);
    takeWaitingEvents();
    EXPECT_TRUE(menuOpensByPointer());
    widget()->activateWindow();
    takeWaitingEvents();
    EXPECT_TRUE(menuOpensByKey());
}

}  // namespace
