#include "app/info_window.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTimer>

#include "settings/settings_state.h"
#include "tests/windows/window_test.h"

namespace {

class InfoWindows : public WindowTest {
  protected:
    // Runs `look` on the text of the window that `open` shows, then closes that window.
    template <typename Open, typename Look>
    static void lookAt(Open open, Look look) {
        openMainWindow();
        QTimer::singleShot(0, qApp, [look] {
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (window->windowTitle() != QLatin1String("Programminfo")) continue;
                look(window->findChild<QPlainTextEdit*>());
                window->close();
            }
        });
        open();
    }
};

TEST_F(InfoWindows, TheVersionIsShownWholeWithoutScrolling) {
    int looked = 0;
    lookAt(app::showInfoBox, [&looked](const QPlainTextEdit* text) {
        ++looked;
        ASSERT_NE(nullptr, text);
        EXPECT_EQ(0, text->horizontalScrollBar()->maximum());
        EXPECT_EQ(0, text->verticalScrollBar()->maximum());
        EXPECT_TRUE(text->toPlainText().startsWith(QLatin1String("Kurbelbuch\n\nVersion: ")));
    });
    EXPECT_EQ(1, looked);
}

TEST_F(InfoWindows, TheHelpScrollsByKeyboard) {
    settings::state.windowWidth = 640;
    settings::state.windowHeight = 480;
    int looked = 0;
    lookAt(app::showHelpWindow, [&looked](QPlainTextEdit* text) {
        ++looked;
        ASSERT_NE(nullptr, text);
        EXPECT_GT(text->verticalScrollBar()->maximum(), 0);
        EXPECT_TRUE(text->hasFocus() || text->focusPolicy() != Qt::NoFocus);
        EXPECT_TRUE(text->textInteractionFlags() & Qt::TextSelectableByKeyboard);
    });
    EXPECT_EQ(1, looked);
}

}  // namespace
