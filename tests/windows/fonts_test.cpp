// Large fonts: nothing is cut off, covered or out of reach.
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>

#include "services/controls.h"
#include "services/text_drawing.h"
#include "tests/windows/program_windows.h"

namespace {

class Fonts : public ProgramWindows, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        before = QApplication::font();
        QFont font = before;
        font.setPointSize(GetParam());
        QApplication::setFont(font);
        ProgramWindows::SetUp();
    }

    void TearDown() override {
        ProgramWindows::TearDown();
        QApplication::setFont(before);
    }

    static QRect placeOf(const QWidget& control) {
        return {control.mapTo(control.window(), QPoint(0, 0)), control.size()};
    }

    // The controls that stand on the window's content, not their parts.
    static QList<QWidget*> controlsOf(const QWidget& window) {
        QList<QWidget*> controls;
        for (QWidget* content :
             window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            controls << content->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        return controls;
    }

  private:
    QFont before;
};

INSTANTIATE_TEST_SUITE_P(OfPoints, Fonts, testing::Values(11, 14, 17, 20),
                         [](const auto& size) { return std::to_string(size.param); });

TEST_P(Fonts, ControlsStandInTheirWindowAndNotUponEachOther) {
    lookAtAll([](QWidget& window) {
        if (&window == widget()) return;
        const QList<QWidget*> controls = controlsOf(window);
        ASSERT_FALSE(controls.isEmpty());
        for (const QWidget* control : controls) {
            // The report's text is as wide as its window and begins 8 pixels from the edge.
            if (!window.windowTitle().startsWith(QLatin1String("Dateien kopieren"))) {
                EXPECT_TRUE(window.rect().contains(placeOf(*control)));
            }
            for (const QWidget* other : controls) {
                EXPECT_TRUE(control == other || !placeOf(*control).intersects(placeOf(*other)));
            }
        }
    });
}

TEST_P(Fonts, CaptionsButtonsAndFieldsHoldTheirTexts) {
    lookAtAll([](QWidget& window) {
        for (const QWidget* control : window.findChildren<QWidget*>()) {
            const auto* button = qobject_cast<const QPushButton*>(control);
            const auto* field = qobject_cast<const QLineEdit*>(control);
            if (qobject_cast<const QLabel*>(control) != nullptr) {
                EXPECT_GE(control->width(), control->sizeHint().width());
                EXPECT_GE(control->height(), control->sizeHint().height());
            }
            if (button != nullptr) {
                const QFontMetrics metrics(button->font());
                EXPECT_GE(button->width(), metrics.horizontalAdvance(button->text()) + 8);
                EXPECT_GE(button->height(), metrics.height() + 6);
            }
            if (field != nullptr) {
                const QFontMetrics metrics(field->font());
                EXPECT_GE(field->width(), metrics.horizontalAdvance(field->text()) + 8);
                EXPECT_GE(field->height(), metrics.height());
            }
        }
    });
}

TEST_P(Fonts, WindowsFitTheScreen) {
    if (GetParam() > 14 && services::desktopWidth(0) < 1000) {
        GTEST_SKIP() << "five buttons of such letters are wider";
    }
    lookAtAll([](QWidget& window) {
        const QSize screen = window.screen()->availableSize();
        EXPECT_LE(window.width(), screen.width());
        EXPECT_LE(window.height(), screen.height());
    });
}

TEST_P(Fonts, TheLineBelowTheChartIsWhole) {
    EXPECT_LE(services::textHeight("Ag"), 20);
    for (const int height : {256, 541, 560}) {
        services::resizeWindow(services::mainWindow, 800, height);
        takeWaitingEvents();
        app::catchUpWithWindow();
        app::redraw();
        const QImage chart = imageWidget()->grab().toImage();
        const auto inkIn = [&chart](int first, int end) {
            int ink = 0;
            for (int y = first; y < end; ++y) {
                for (int x = 0; x < chart.width(); ++x)
                    ink += qGray(chart.pixel(x, y)) < 128 ? 1 : 0;
            }
            return ink;
        };
        const int room = qRound(18 * chart.devicePixelRatio());  // below the frame
        EXPECT_GT(inkIn(chart.height() - room, chart.height()), 50);
        EXPECT_EQ(0, inkIn(chart.height() - 1, chart.height())) << "cut off at its foot";
    }
}

TEST_P(Fonts, OnlyTheChartIsKeptSmall) {
    const QFontMetrics metrics(QApplication::font());
    EXPECT_EQ(metrics.height(), services::controlTextHeight());
    EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("Sicherheitskopie")),
              services::controlTextWidth("Sicherheitskopie"));
    if (metrics.height() <= 20) {
        EXPECT_EQ(metrics.height(), services::textHeight("Ag"));
        EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("000:00:00")),
                  services::textWidth("000:00:00"));
    } else {
        // As large as it may be.
        EXPECT_GE(services::textHeight("Ag"), 19);
        EXPECT_LT(services::textWidth("000:00:00"),
                  metrics.horizontalAdvance(QStringLiteral("000:00:00")));
    }
}

TEST_P(Fonts, TextsToReadAreNeverSmallerThanTheUsersFixedFont) {
    const int smallest = QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).pixelSize();
    lookAtAll([smallest](QWidget& window) {
        for (const auto* text : window.findChildren<QPlainTextEdit*>())
            EXPECT_GE(QFontInfo(text->font()).pixelSize(), smallest);
    });
}

TEST_P(Fonts, TheVersionIsReadWithoutScrolling) {
    lookAt(
        "Programminfo",
        [](QWidget& window) {
            const auto* const text = window.findChild<QPlainTextEdit*>();
            ASSERT_NE(nullptr, text);
            EXPECT_EQ(0, text->horizontalScrollBar()->maximum());
            EXPECT_EQ(0, text->verticalScrollBar()->maximum());
        },
        app::showInfoBox);
}

}  // namespace
