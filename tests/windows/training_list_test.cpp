// The training list as its user works it: keys, clicks and buttons on the real widgets.
#include <QFontInfo>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <deque>
#include <functional>

#include "device/device_state.h"
#include "files/list_window.h"
#include "services/controls.h"
#include "services/qt/toolkit_state.h"
#include "tests/windows/window_test.h"

namespace {

using files::ListMode;
using files::ListResult;

class TrainingListWindow : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        device::state = {};
        for (int i = 0; i < 3; ++i) {
            device::DictionaryRecord record;
            record.startDate = 1000 * i;
            record.fileName = "000000000000000" + std::to_string(i);
            record.description = i == 1 ? "Anfang" : "Zug";
            device::state.dictionary.push_back(record);
        }
    }

    void TearDown() override {
        WindowTest::TearDown();
        device::state = {};
    }

    using Steps = std::deque<std::function<void()>>;

    // Opens the list, does one step after the other whenever the list waits for its user, and
    // closes it when there are no more.
    ListResult open(ListMode mode, Steps steps) {
        openMainWindow(1100, 500);
        services::showWindow(services::mainWindow);
        QTimer timer;
        timer.setInterval(0);
        bool settled = false;
        QObject::connect(&timer, &QTimer::timeout, qApp, [&] {
            if (list() == nullptr) return;
            if (!settled) {  // the window is there, but its activation may be under way
                settled = list()->hasFocus();
                if (!settled) list()->window()->activateWindow();
                return;
            }
            if (steps.empty()) {
                list()->window()->close();
                return;
            }
            const auto step = steps.front();
            steps.pop_front();
            step();
        });
        timer.start();
        const ListResult result = files::openTrainingList(mode, 1100, 500);
        timer.stop();
        EXPECT_TRUE(steps.empty());
        return result;
    }

    static QTreeView* list() {
        QWidget* window = services::qt::findWindow(services::listWindow);
        return window == nullptr ? nullptr : window->findChild<QTreeView*>();
    }

    static QPushButton* button(const char* text) {
        for (auto* found : list()->window()->findChildren<QPushButton*>()) {
            if (found->text() == QLatin1String(text)) return found;
        }
        ADD_FAILURE() << "no button " << text;
        return nullptr;
    }

    static std::function<void()> press(const char* text) {
        return [text] {
            if (auto* found = button(text)) QTest::mouseClick(found, Qt::LeftButton);
        };
    }

    static std::function<void()> key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
        return [pressed, modifiers] {
            QTest::keyClick(list()->window()->windowHandle(), pressed, modifiers);
        };
    }

    static std::function<void()> click(int row, Qt::KeyboardModifiers modifiers = {}) {
        return [row, modifiers] {
            const QPoint place = list()->visualRect(list()->model()->index(row, 0)).center();
            QTest::mouseClick(list()->viewport(), Qt::LeftButton, modifiers, place);
        };
    }

    static std::function<void()> doubleClick(int row) {
        return [row] {
            const QPoint place = list()->visualRect(list()->model()->index(row, 0)).center();
            QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place);
        };
    }

    static std::function<void()> expectRow(int row) {
        return [row] {
            EXPECT_EQ(row,
                      services::highlightedRow(services::listWindow, files::trainingListControl));
            EXPECT_EQ(std::vector<int>{row},
                      services::chosenRows(services::listWindow, files::trainingListControl));
        };
    }

    // Of the records, the earliest first; row 0 is the last.
    static std::string flags() {
        std::string text;
        for (const device::DictionaryRecord& record : device::state.dictionary)
            text += record.selected != 0 ? '1' : '0';
        return text;
    }
};

TEST_F(TrainingListWindow, TheArrowKeysGoAroundItsEndsAndReturnTakesTheRow) {
    const ListResult result =
        open(ListMode::chooseOne,
             {key(Qt::Key_Up), expectRow(2), key(Qt::Key_Down), expectRow(0), key(Qt::Key_Down),
              expectRow(1), key(Qt::Key_Up), key(Qt::Key_Up), expectRow(2), key(Qt::Key_Return)});
    EXPECT_EQ(ListResult::chosen, result);
    EXPECT_EQ("100", flags());
    EXPECT_EQ(nullptr, services::qt::findWindow(services::listWindow));
}

TEST_F(TrainingListWindow, ASingleTrainingStaysHighlighted) {
    device::state.dictionary.resize(1);
    open(ListMode::chooseOne, {key(Qt::Key_Up), expectRow(0), key(Qt::Key_Up), expectRow(0),
                               key(Qt::Key_Down), expectRow(0), key(Qt::Key_Escape)});
    EXPECT_EQ("0", flags());
}

TEST_F(TrainingListWindow, TheEnterKeyOfTheNumberPadTakesTheRowToo) {
    EXPECT_EQ(ListResult::chosen,
              open(ListMode::chooseOne, {key(Qt::Key_Down), key(Qt::Key_Enter)}));
    EXPECT_EQ("001", flags());
}

TEST_F(TrainingListWindow, ADoubleClickTakesTheRow) {
    EXPECT_EQ(ListResult::chosen, open(ListMode::chooseMany, {doubleClick(1)}));
    EXPECT_EQ("010", flags());
}

TEST_F(TrainingListWindow, ClickedRowsAreTakenByTheFirstButtonWhichThenSaysSo) {
    const ListResult result =
        open(ListMode::chooseMany, {[] { EXPECT_NE(nullptr, button("Alle")); }, click(0),
                                    click(2, Qt::ControlModifier), press("Auswahl")});
    EXPECT_EQ(ListResult::chosen, result);
    EXPECT_EQ("101", flags());
}

TEST_F(TrainingListWindow, WithoutAClickedRowTheFirstButtonTakesAll) {
    EXPECT_EQ(ListResult::all, open(ListMode::chooseMany, {press("Alle")}));
    EXPECT_EQ("111", flags());
    EXPECT_EQ(ListResult::all, open(ListMode::edit, {press("Fertig")}));
    EXPECT_EQ("111", flags());
}

TEST_F(TrainingListWindow, EscapeAndItsButtonCancel) {
    for (const auto& leave : {key(Qt::Key_Escape), press("Abbruch")}) {
        EXPECT_EQ(ListResult::cancelled, open(ListMode::chooseOne, {click(1), leave}));
        EXPECT_EQ("000", flags());
    }
    EXPECT_EQ(ListResult::cancelled, open(ListMode::edit, {key(Qt::Key_Escape)}));
}

TEST_F(TrainingListWindow, ThePeriodButtonsLeaveWithTheirPeriod) {
    EXPECT_EQ(ListResult::year, open(ListMode::chooseMany, {press("Jahresfrist")}));
    EXPECT_EQ("000", flags());  // of 1970
    EXPECT_EQ(ListResult::month, open(ListMode::chooseMany, {press("Monatsfrist")}));
}

TEST_F(TrainingListWindow, SortierenChangesTheOrderAndForgetsTheChoice) {
    const auto expectNames = [](std::vector<QString> names) {
        return [names] {
            for (std::size_t row = 0; row < names.size(); ++row) {
                EXPECT_EQ(names[row],
                          list()->model()->index(static_cast<int>(row), 12).data().toString());
            }
            EXPECT_TRUE(
                services::chosenRows(services::listWindow, files::trainingListControl).empty());
        };
    };
    device::DictionaryRecord last;
    last.startDate = 3000;
    last.fileName = "0000000000000003";
    last.description = "Anfang";
    device::state.dictionary.push_back(last);
    const QString zero = QStringLiteral("0000000000000000");
    const QString one = QStringLiteral("0000000000000001");
    const QString two = QStringLiteral("0000000000000002");
    const QString three = QStringLiteral("0000000000000003");
    open(ListMode::edit, {expectNames({three, two, one, zero}), click(1), press("Sortieren"),
                          expectNames({three, one, two, zero}), click(0), press("Sortieren"),
                          expectNames({three, two, one, zero})});
}

TEST_F(TrainingListWindow, ShowsEveryColumnWithoutScrollingInTheFontsOfDesktops) {
    const QFont before = QApplication::font();
    for (const auto& [family, points] :
         {std::pair("DejaVu Sans", 10), std::pair("Cantarell", 10), std::pair("Cantarell", 11)}) {
        SCOPED_TRACE(testing::Message() << family << ' ' << points);
        QFont font(QLatin1String(family), points);
        ASSERT_EQ(QLatin1String(family), QFontInfo(font).family());
        QApplication::setFont(font);
        open(ListMode::edit, {[] {
                 EXPECT_EQ(0, list()->horizontalScrollBar()->maximum());
                 EXPECT_LE(list()->header()->length(), list()->viewport()->width());
             }});
    }
    QApplication::setFont(before);
}

TEST_F(TrainingListWindow, TabReachesEveryButton) {
    std::vector<QString> reached;
    const auto note = [&reached] {
        if (auto* focused = qobject_cast<QPushButton*>(QApplication::focusWidget()))
            reached.push_back(focused->text());
    };
    open(ListMode::chooseOne, {key(Qt::Key_Tab), note, key(Qt::Key_Tab), note, key(Qt::Key_Tab),
                               note, key(Qt::Key_Escape)});
    EXPECT_EQ((std::vector<QString>{QStringLiteral("Auswahl"), QStringLiteral("Abbruch"),
                                    QStringLiteral("Sortieren")}),
              reached);
}

}  // namespace
