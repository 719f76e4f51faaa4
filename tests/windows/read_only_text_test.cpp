// The letters of texts to read.
#include <QFontDatabase>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextLayout>
#include <QWheelEvent>
#include <QtMath>

#include "services/controls.h"
#include "tests/windows/window_test.h"

namespace {

using services::Box;
using services::TextExtent;

class ReadOnlyText : public WindowTest {
  protected:
    static constexpr int control = 5;

    QPlainTextEdit* open(const Box& box, TextExtent wanted) {
        openMainWindow(1200, 800);
        services::createTextView(services::mainWindow, control, box, "Text", wanted);
        services::showWindow(services::mainWindow);
        takeWaitingEvents();
        return widget()->findChild<QPlainTextEdit*>();
    }

    void resizeTo(const Box& box) {
        services::placeControl(services::mainWindow, control, box);
        takeWaitingEvents();
    }

    static int sizeOf(const QPlainTextEdit* view) { return QFontInfo(view->font()).pixelSize(); }

    static QFont usersFont() { return QFontDatabase::systemFont(QFontDatabase::FixedFont); }

    static int usersSize() { return QFontInfo(usersFont()).pixelSize(); }

    // Of as many columns, in the user's own font.
    static int widthOf(int columns) { return qCeil(lineOf(columns).width()); }

    static int lineHeight() { return qCeil(lineOf(1).height()); }

    // As laid out.
    static QSizeF lineOf(int columns) {
        QTextLayout layout(QString(columns, QLatin1Char('m')), usersFont());
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        return {line.naturalTextWidth(), line.height()};
    }

    static void turn(QPlainTextEdit* view, int angle, Qt::KeyboardModifiers modifiers) {
        const QPointF middle = view->viewport()->rect().center();
        QWheelEvent event(middle, view->viewport()->mapToGlobal(middle), {}, {0, angle},
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view->viewport(), &event);
    }
};

TEST_F(ReadOnlyText, HasTheUsersOwnFontHoweverSmallItsBox) {
    const QPlainTextEdit* const view = open({0, 0, widthOf(93) / 2, 100}, {.columns = 93});
    EXPECT_EQ(usersFont().family(), view->font().family());
    EXPECT_EQ(usersSize(), sizeOf(view));
    resizeTo({0, 0, 30, 10});
    EXPECT_EQ(usersSize(), sizeOf(view));
    resizeTo({0, 0, widthOf(93) + 1, 100});
    EXPECT_EQ(usersSize(), sizeOf(view));
}

TEST_F(ReadOnlyText, GrowsWithItsBoxAndShrinksWithIt) {
    const QPlainTextEdit* const view = open({0, 0, widthOf(36), 90}, {.columns = 36, .lines = 3});
    resizeTo({0, 0, widthOf(36) * 3 / 2 + 36, 90});
    const int larger = sizeOf(view);
    EXPECT_GT(larger, usersSize());
    // Still whole.
    const QFontMetrics metrics(view->font());
    EXPECT_LT(metrics.horizontalAdvance(QString(36, QLatin1Char('m'))), view->width());
    EXPECT_LE(3 * metrics.lineSpacing(), view->height());
    resizeTo({0, 0, 1200, 3 * lineHeight()});  // no room for its lines
    EXPECT_EQ(usersSize(), sizeOf(view));
    resizeTo({0, 0, 30000, 30000});
    EXPECT_EQ(2 * usersSize(), sizeOf(view));
    resizeTo({0, 0, widthOf(36), 90});
    EXPECT_EQ(usersSize(), sizeOf(view));
}

TEST_F(ReadOnlyText, ShowsLinesThatFitExactlyWithoutScrolling) {
    const int height = 7 * lineHeight();
    const QPlainTextEdit* const view =
        open({0, 0, widthOf(36) + 1, height}, {.columns = 36, .lines = 7});
    services::Text text(36, 'm');
    for (int line = 1; line < 7; ++line)
        text += "\rx";
    services::setControlText(services::mainWindow, control, text);
    takeWaitingEvents();
    EXPECT_EQ(0, view->horizontalScrollBar()->maximum());
    EXPECT_EQ(0, view->verticalScrollBar()->maximum());
    services::appendControlText(services::mainWindow, control, "\rx");
    takeWaitingEvents();
    EXPECT_GT(view->verticalScrollBar()->maximum(), 0);
}

TEST_F(ReadOnlyText, OfNoExtentKeepsItsSize) {
    const QPlainTextEdit* const view = open({0, 0, 400, 400}, {});
    EXPECT_EQ(usersSize(), sizeOf(view));
    resizeTo({0, 0, 1200, 800});
    EXPECT_EQ(usersSize(), sizeOf(view));
}

TEST_F(ReadOnlyText, GrowsByControlAndTheWheelAndNoFurtherDownThanItWas) {
    for (const TextExtent extent : {TextExtent{.columns = 93}, TextExtent{}}) {
        QPlainTextEdit* const view = open({0, 0, 300, 100}, extent);
        turn(view, -120, Qt::ControlModifier);
        EXPECT_EQ(usersSize(), sizeOf(view));
        turn(view, 120, {});
        EXPECT_EQ(usersSize(), sizeOf(view));
        turn(view, 240, Qt::ControlModifier);
        EXPECT_EQ(usersSize() + 2, sizeOf(view));
        for (int i = 0; i < 4; ++i)
            turn(view, 30, Qt::ControlModifier);  // a touchpad
        EXPECT_EQ(usersSize() + 3, sizeOf(view));
        turn(view, -12000, Qt::ControlModifier);
        EXPECT_EQ(usersSize(), sizeOf(view));
    }
}

TEST_F(ReadOnlyText, GrowsByControlAndPlusAndBackByMinus) {
    QPlainTextEdit* const view = open({0, 0, 300, 100}, {.columns = 93});
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(view, Qt::Key_Equal, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_Plus);
    EXPECT_EQ(usersSize() + 4, sizeOf(view));
    QTest::keyClick(view, Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(usersSize() + 3, sizeOf(view));
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(view, Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(usersSize(), sizeOf(view));
}

}  // namespace
