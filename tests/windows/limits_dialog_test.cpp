#include "charts/limits_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "charts/chart_state.h"
#include "device/device_state.h"
#include "tests/windows/window_test.h"

namespace {

class LimitsWindow : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        charts::state = {};
        device::state = {};
        for (const float watt : {60.0F, 80.0F}) {
            device::DictionaryRecord record;
            record.watt = watt;
            record.selected = 1;
            device::state.dictionary.push_back(record);
        }
        openMainWindow();
        services::showWindow(services::mainWindow);
        takeWaitingEvents();
    }

    void TearDown() override {
        charts::state = {};
        device::state = {};
        WindowTest::TearDown();
    }

    // Opens the dialog of the power and acts in it. What is still open when `act` returns without
    // having left it is closed, which fails the test instead of hanging it.
    void open(const std::function<void(QWidget&)>& act) {
        bool left = true;
        QObject guard;  // ends the closing below together with this call
        QTimer::singleShot(0, [&] {
            QWidget* const window = dialog();
            ASSERT_NE(nullptr, window);
            window->activateWindow();
            QCoreApplication::processEvents();
            act(*window);
        });
        QTimer::singleShot(2000, &guard, [&] {
            left = false;
            if (QWidget* const window = dialog()) window->close();
        });
        charts::editLimits(charts::ChartKind::overview, 3);
        EXPECT_TRUE(left);
        EXPECT_EQ(nullptr, dialog());
    }

    static QWidget* dialog() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == QLatin1String("Grenzwerte")) return window;
        }
        return nullptr;
    }

    template <typename Widget>
    static Widget* at(QWidget& window, int index) {
        return window.findChildren<Widget*>().value(index);
    }

    static const charts::Limits& limits() { return charts::state.limits[3]; }
};

TEST_F(LimitsWindow, CutsNothingOffInTheRealFont) {
    open([](QWidget& window) {
        ASSERT_EQ(3, window.findChildren<QPushButton*>().size());
        for (QWidget* const control : window.findChildren<QWidget*>()) {
            if (qobject_cast<QPushButton*>(control) == nullptr &&
                qobject_cast<QLabel*>(control) == nullptr) {
                continue;
            }
            EXPECT_GE(control->width(), control->sizeHint().width());
            EXPECT_GE(control->height(), control->sizeHint().height());
        }
        for (QLineEdit* const field : window.findChildren<QLineEdit*>()) {
            EXPECT_GE(field->height(), field->sizeHint().height());
            EXPECT_GE(field->width(), field->fontMetrics().horizontalAdvance(field->text()) + 8);
        }
        window.close();
    });
}

TEST_F(LimitsWindow, OpensWithItsFirstFieldFocusedAndSelected) {
    open([](QWidget& window) {
        EXPECT_EQ(at<QLineEdit>(window, 0), window.focusWidget());
        EXPECT_EQ(QStringLiteral("60,00"), at<QLineEdit>(window, 0)->selectedText());
        window.close();
    });
}

TEST_F(LimitsWindow, TakesTypedLimitsOnReturnFromEveryControl) {
    for (int tabs = 0; tabs < 5; ++tabs) {
        SCOPED_TRACE(tabs);
        charts::state.limits = {};
        open([tabs](QWidget& window) {
            QTest::keyClicks(at<QLineEdit>(window, 0), QStringLiteral("62,5"));
            for (int i = 0; i < tabs; ++i)
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        });
        EXPECT_EQ(62.5F, limits().lower);
        EXPECT_EQ(80.0F, limits().upper);
    }
}

TEST_F(LimitsWindow, IsCancelledByEscapeFromEveryControl) {
    for (int tabs = 0; tabs < 5; ++tabs) {
        SCOPED_TRACE(tabs);
        open([tabs](QWidget& window) {
            QTest::keyClicks(at<QLineEdit>(window, 0), QStringLiteral("62,5"));
            for (int i = 0; i < tabs; ++i)
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
            QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
        });
        EXPECT_EQ(0.0F, limits().lower);
    }
}

TEST_F(LimitsWindow, TabGoesThroughInReadingOrder) {
    open([](QWidget& window) {
        const QWidget* const order[] = {at<QLineEdit>(window, 0), at<QLineEdit>(window, 1),
                                        at<QPushButton>(window, 0), at<QPushButton>(window, 1),
                                        at<QPushButton>(window, 2)};
        for (const QWidget* const expected : order) {
            EXPECT_EQ(expected, window.focusWidget());
            QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order[0], window.focusWidget());
        window.close();
    });
}

TEST_F(LimitsWindow, ResetAndUebernehmenStoreUnroundedFigures) {
    device::state.dictionary[0].watt = 60.126F;
    charts::state.limits[3] = {.lower = 65, .upper = 70};
    open([](QWidget& window) {
        EXPECT_EQ(QStringLiteral("65,00"), at<QLineEdit>(window, 0)->text());
        at<QPushButton>(window, 2)->click();
        // The dialog reads its own events: the press of the other button waits behind.
        QPushButton* const apply = at<QPushButton>(window, 0);
        QTimer::singleShot(50, apply, [apply] { apply->click(); });
    });
    EXPECT_EQ(60.126F, limits().lower);
    EXPECT_EQ(80.0F, limits().upper);
}

}  // namespace
