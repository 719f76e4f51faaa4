// The icon that window frames and task bars show.
#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>

#include "tests/windows/window_test.h"

namespace {

class WindowIcon : public WindowTest {};

TEST_F(WindowIcon, HasEverySizeThatFramesAndSwitchersAskFor) {
    const QList<QSize> sizes = QApplication::windowIcon().availableSizes();
    for (const int side : {16, 22, 24, 32, 48, 64, 96, 128})
        EXPECT_TRUE(sizes.contains(QSize(side, side))) << side;
}

TEST_F(WindowIcon, ShowsItsSignalColoursInTheSmallestSize) {
    QIcon icon = QApplication::windowIcon();
    const QImage picture = icon.pixmap(QSize(16, 16), 1.0).toImage();
    ASSERT_EQ(picture.size(), QSize(16, 16));
    EXPECT_EQ(picture.pixelColor(3, 10), QColor(0xff, 0x9d, 0x2e));  // the lower pedal
    EXPECT_EQ(picture.pixelColor(12, 4), QColor(0xff, 0x9d, 0x2e));  // the upper pedal
    EXPECT_EQ(picture.pixelColor(13, 14), QColor(0x1c, 0x41, 0x76));
}

TEST_F(WindowIcon, BelongsToWindowsOpenedLater) {
    openMainWindow();
    ASSERT_FALSE(QApplication::topLevelWidgets().empty());
    for (const QWidget* window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->windowIcon().isNull());
}

}  // namespace
