#include "services/controls.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeView>

#include "tests/windows/window_test.h"

namespace {

using services::Event;
using services::EventKind;
using services::Text;

class Controls : public WindowTest {
  protected:
    static constexpr int control = 5;

    void SetUp() override {
        WindowTest::SetUp();
        openMainWindow();
    }

    void show() {
        services::showWindow(services::mainWindow);
        widget()->activateWindow();
        takeWaitingEvents();
    }

    template <typename Widget>
    Widget* only() {
        const auto found = widget()->findChildren<Widget*>();
        return found.size() == 1 ? found.front() : nullptr;
    }

    QTreeView* openList(int rows, bool severalRows = true) {
        const services::ListColumn columns[] = {{"Datum", 120, false, "0"}, {"km", 60, true, "0"}};
        services::createList(services::mainWindow, control, {0, 0, 640, 200}, columns, severalRows,
                             "Trainings");
        fill(rows);
        show();
        return only<QTreeView>();
    }

    void fill(int rows) {
        services::fillList(services::mainWindow, control, rows, [](int row, int column) {
            return std::to_string(row) + (column == 0 ? " \xFC" : "");
        });
    }

    static void click(QTreeView* view, int row, Qt::KeyboardModifiers modifiers = {}) {
        const QRect cell = view->visualRect(view->model()->index(row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, cell.center());
    }

    std::vector<int> chosen() { return services::chosenRows(services::mainWindow, control); }
};

TEST_F(Controls, AButtonReportsEachPress) {
    services::createButton(services::mainWindow, control, {10, 20, 90, 30},
                           "\xDC"
                           "bernehmen & mehr",
                           "Hilfe");
    show();
    auto* button = only<QPushButton>();
    ASSERT_NE(nullptr, button);
    EXPECT_EQ(QRect(10, 20, 90, 30), button->geometry());
    EXPECT_EQ(QStringLiteral("Übernehmen && mehr"), button->text());
    EXPECT_EQ(QStringLiteral("Übernehmen & mehr"), button->accessibleName());
    EXPECT_EQ(QStringLiteral("Hilfe"), button->toolTip());
    button->click();
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::control));
    EXPECT_EQ(control, events.back().control);
    EXPECT_EQ(services::pressed, events.back().data);
    EXPECT_EQ(
        "\xDC"
        "bernehmen & mehr",
        services::controlText(services::mainWindow, control));
    services::setControlText(services::mainWindow, control, "Auswahl");
    EXPECT_EQ(QStringLiteral("Auswahl"), button->text());
    EXPECT_EQ(QStringLiteral("Auswahl"), button->accessibleName());
}

TEST_F(Controls, ATextFieldReportsEditsAndIsFocusedWithItsTextSelected) {
    services::createLabel(services::mainWindow, 4, {0, 0, 50, 20}, "Min:");
    services::createTextField(services::mainWindow, control, {50, 0, 90, 24}, "1,50", "Minimum",
                              "Eingabe des minimalen Wertes > 0");
    show();
    services::focusControl(services::mainWindow, control);
    auto* field = only<QLineEdit>();
    ASSERT_NE(nullptr, field);
    EXPECT_EQ(QStringLiteral("1,50"), field->selectedText());
    EXPECT_EQ(QStringLiteral("Minimum"), field->accessibleName());
    EXPECT_EQ(QStringLiteral("Eingabe des minimalen Wertes > 0"), field->accessibleDescription());
    EXPECT_EQ(field->toolTip(), field->accessibleDescription());
    EXPECT_EQ(field, only<QLabel>()->buddy());
    QTest::keyClicks(field, "7");
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::control));
    EXPECT_EQ(services::edited, events.back().data);
    EXPECT_EQ("7", services::controlText(services::mainWindow, control));
    services::setControlText(services::mainWindow, control, "8");
    EXPECT_EQ(1, count(takeWaitingEvents(), EventKind::control));
}

TEST_F(Controls, ReturnAndEscapeActWhicheverControlHasTheFocus) {
    services::createButton(services::mainWindow, 6, {0, 40, 90, 30}, "Knopf");
    services::createTextField(services::mainWindow, control, {0, 0, 90, 24}, "", "Feld", "");
    services::keyboardShortcut(services::mainWindow, services::returnKey, 98);
    services::keyboardShortcut(services::mainWindow, services::escapeKey, 99);
    show();
    for (const int focused : {6, control}) {
        services::focusControl(services::mainWindow, focused);
        for (const auto& [key, item] :
             {std::pair(Qt::Key_Return, 98), {Qt::Key_Enter, 98}, {Qt::Key_Escape, 99}}) {
            QTest::keyClick(QApplication::focusWidget(), key);
            const std::vector<Event> events = takeWaitingEvents();
            ASSERT_EQ(1, count(events, EventKind::menu));
            EXPECT_EQ(item, events.back().item);
            EXPECT_EQ(0, count(events, EventKind::control));
        }
    }
}

TEST_F(Controls, ATextViewShowsPlainLinesHoweverTheyEnd) {
    services::createTextView(services::mainWindow, control, {0, 0, 200, 100}, "Bericht");
    services::setControlText(services::mainWindow, control, "<b>eins</b>\r\nzwei\rdrei\n");
    services::appendControlText(services::mainWindow, control, "vier\r");
    auto* view = only<QPlainTextEdit>();
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(QStringLiteral("<b>eins</b>\nzwei\ndrei\nvier\n"), view->toPlainText());
    EXPECT_TRUE(view->isReadOnly());
    EXPECT_EQ(QStringLiteral("Bericht"), view->accessibleName());
}

// The report of a renumbering is narrower than its lines in a font of usual size.
TEST_F(Controls, ATextViewShowsAllOfALineThatIsTooLongForIt) {
    services::createTextView(services::mainWindow, control, {0, 0, 238, 100}, "Bericht");
    show();
    services::appendControlText(services::mainWindow, control,
                                "00000000000000af = 0000000000000012\r" + std::string(200, 'x'));
    auto* view = only<QPlainTextEdit>();
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(0, view->horizontalScrollBar()->maximum());
    for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
        for (int i = 0; i < block.layout()->lineCount(); ++i)
            EXPECT_LE(block.layout()->lineAt(i).naturalTextWidth(), view->viewport()->width());
    }
}

TEST_F(Controls, ATextViewOfMeasuredSizeBreaksNoLine) {
    services::createTextView(services::mainWindow, control, {0, 0, 200, 100}, "Hilfe",
                             {.columns = 80, .lines = 5});
    EXPECT_EQ(QPlainTextEdit::NoWrap, only<QPlainTextEdit>()->lineWrapMode());
}

TEST_F(Controls, ATextViewScrollsToWhatIsAppended) {
    services::createTextView(services::mainWindow, control, {0, 0, 200, 100}, "Bericht");
    show();
    for (int i = 0; i < 200; ++i) {
        services::appendControlText(services::mainWindow, control, "Zeile\r");
    }
    const QScrollBar* bar = only<QPlainTextEdit>()->verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->maximum(), bar->value());
}

TEST_F(Controls, AListShowsItsCellsOnDemand) {
    QTreeView* view = openList(100000);
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(100000, view->model()->rowCount());
    EXPECT_EQ(QStringLiteral("7 ü"), view->model()->index(7, 0).data().toString());
    EXPECT_EQ(QStringLiteral("km"), view->model()->headerData(1, Qt::Horizontal).toString());
    EXPECT_EQ(120, view->header()->sectionSize(0));
    EXPECT_TRUE(view->model()->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    EXPECT_EQ(QStringLiteral("Trainings"), view->accessibleName());
}

TEST_F(Controls, AColumnIsNeverNarrowerThanItsSampleAndTitle) {
    const services::ListColumn columns[] = {{"Ein langer Titel", 10, false, "0"},
                                            {"km", 10, true, "00000000000000000000"}};
    services::createList(services::mainWindow, control, {0, 0, 640, 200}, columns, true, "T");
    const QTreeView* view = only<QTreeView>();
    const QFontMetrics metrics(view->font());
    EXPECT_GT(view->header()->sectionSize(0), metrics.horizontalAdvance("Ein langer Titel"));
    EXPECT_GT(view->header()->sectionSize(1), metrics.horizontalAdvance("00000000000000000000"));
}

TEST_F(Controls, AColumnWithoutASampleGivesWayAndTakesWhatIsLeft) {
    const services::ListColumn columns[] = {
        {"Datum", 200, false, "0"}, {"Training", 300, false}, {"Name", 200, false, "0"}};
    services::createList(services::mainWindow, control, {0, 0, 600, 200}, columns, true, "T");
    show();
    const QTreeView* view = only<QTreeView>();
    EXPECT_EQ(view->viewport()->width(), view->header()->length());
    EXPECT_LT(view->header()->sectionSize(1), 300);
    services::placeControl(services::mainWindow, control, {0, 0, 900, 200});
    takeWaitingEvents();
    EXPECT_EQ(view->viewport()->width(), view->header()->length());
    // Half of it, and nothing of the others as long as that is enough.
    const int frame = 900 - view->viewport()->width();
    services::placeControl(services::mainWindow, control, {0, 0, 550 + frame, 200});
    takeWaitingEvents();
    EXPECT_EQ(150, view->header()->sectionSize(1));
    EXPECT_EQ(200, view->header()->sectionSize(2));
}

TEST_F(Controls, ColumnsGiveWayAsFarAsTheirSamplesAllow) {
    const services::ListColumn columns[] = {{"A", 200, false, "000"},
                                            {"Training", 300, false},
                                            {"B", 300, true, "000"},
                                            {"C", 10, false, "00000000"}};
    services::createList(services::mainWindow, control, {0, 0, 600, 200}, columns, true, "T");
    services::fillList(services::mainWindow, control, 1,
                       [](int, int column) { return Text(column == 3 ? "00000000" : "000"); });
    show();
    const QTreeView* view = only<QTreeView>();
    const QHeaderView& header = *view->header();
    EXPECT_EQ(150, header.sectionSize(1));
    EXPECT_EQ(view->viewport()->width(), header.length());  // to the pixel
    EXPECT_LT(header.sectionSize(0), 200);
    EXPECT_LT(header.sectionSize(2), 300);
    EXPECT_GT(300 - header.sectionSize(2), 200 - header.sectionSize(0));  // it has more to spare
    services::placeControl(services::mainWindow, control, {0, 0, 40, 200});
    takeWaitingEvents();
    EXPECT_EQ(150, header.sectionSize(1));
    for (const int column : {0, 2, 3}) {
        EXPECT_GE(header.sectionSize(column),
                  view->sizeHintForIndex(view->model()->index(0, column)).width());
    }
    services::placeControl(services::mainWindow, control, {0, 0, 900, 200});
    takeWaitingEvents();
    EXPECT_EQ(200, header.sectionSize(0));
    EXPECT_EQ(300, header.sectionSize(2));
}

TEST_F(Controls, AListHasNoChosenRowUntilOneIsClicked) {
    QTreeView* view = openList(50);
    view->setFocus();
    EXPECT_TRUE(chosen().empty());
    EXPECT_EQ(-1, services::highlightedRow(services::mainWindow, control));
    click(view, 3);
    EXPECT_EQ(std::vector<int>{3}, chosen());
    EXPECT_EQ(3, services::highlightedRow(services::mainWindow, control));
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::control));
    EXPECT_EQ(services::clicked, events.back().data);
    EXPECT_EQ(3, events.back().item);
}

TEST_F(Controls, SeveralRowsAreChosenWithControlAndShiftAndAllWithControlA) {
    QTreeView* view = openList(6);
    click(view, 1);
    click(view, 3, Qt::ControlModifier);
    EXPECT_EQ((std::vector<int>{1, 3}), chosen());
    click(view, 3);
    click(view, 5, Qt::ShiftModifier);
    EXPECT_EQ((std::vector<int>{3, 4, 5}), chosen());
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5}), chosen());
}

TEST_F(Controls, AChoiceDrawnWithThePointerIsReportedToo) {
    QTreeView* view = openList(6);
    const auto centre = [view](int row) {
        return view->visualRect(view->model()->index(row, 0)).center();
    };
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, centre(1));
    QMouseEvent move(QEvent::MouseMove, centre(4), view->viewport()->mapToGlobal(centre(4)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &move);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, centre(4));
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), chosen());
    const std::vector<Event> events = takeWaitingEvents();
    ASSERT_EQ(1, count(events, EventKind::control));
    EXPECT_EQ(services::clicked, events.back().data);
}

TEST_F(Controls, AListOfOneChoiceKeepsToOneRow) {
    QTreeView* view = openList(6, false);
    click(view, 1);
    click(view, 3, Qt::ControlModifier);
    EXPECT_EQ(std::vector<int>{3}, chosen());
}

TEST_F(Controls, ARowLeftUnchosenIsNotTheHighlightedOne) {
    QTreeView* view = openList(6);
    click(view, 1);
    click(view, 3, Qt::ControlModifier);
    click(view, 3, Qt::ControlModifier);
    EXPECT_EQ(std::vector<int>{1}, chosen());
    EXPECT_EQ(1, services::highlightedRow(services::mainWindow, control));
}

TEST_F(Controls, HighlightingARowChoosesItAloneAndBringsItIntoView) {
    QTreeView* view = openList(1000);
    services::highlightRow(services::mainWindow, control, 900);
    EXPECT_EQ(std::vector<int>{900}, chosen());
    EXPECT_TRUE(
        view->viewport()->rect().intersects(view->visualRect(view->model()->index(900, 0))));
    services::highlightRow(services::mainWindow, control, 1000);
    services::highlightRow(services::mainWindow, control, -1);
    EXPECT_EQ(std::vector<int>{900}, chosen());
}

TEST_F(Controls, FillingAListAgainKeepsItsPlaceAndForgetsTheChoice) {
    QTreeView* view = openList(1000);
    services::highlightRow(services::mainWindow, control, 900);
    const int position = view->verticalScrollBar()->value();
    ASSERT_GT(position, 0);
    fill(990);
    EXPECT_TRUE(chosen().empty());
    EXPECT_EQ(position, view->verticalScrollBar()->value());
}

TEST_F(Controls, ADoubleClickIsReportedWithItsRowAndClicksBesideTheRowsAreNot) {
    QTreeView* view = openList(2);
    const QPoint besides(50, view->viewport()->height() - 3);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, besides);
    QTest::mouseClick(view->header()->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(0, count(takeWaitingEvents(), EventKind::control));
    const QPoint row = view->visualRect(view->model()->index(1, 0)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, row);
    bool seen = false;
    for (const Event& event : takeWaitingEvents()) {
        seen = seen || (event.data == services::doubleClicked && event.item == 1);
    }
    EXPECT_TRUE(seen);
}

TEST_F(Controls, TextsFromACardStayOnOneLineAndPlain) {
    const services::ListColumn columns[] = {{"Training", 120, false}};
    services::createList(services::mainWindow, control, {0, 0, 640, 200}, columns, true, "T");
    services::fillList(services::mainWindow, control, 1,
                       [](int, int) { return Text("<i>a</i>\nb\tc %1"); });
    EXPECT_EQ(QStringLiteral("<i>a</i> b c %1"),
              only<QTreeView>()->model()->index(0, 0).data().toString());
}

TEST_F(Controls, NumbersThatNameNoControlAreIgnored) {
    services::fillList(services::mainWindow, 77, 1, {});
    services::highlightRow(services::mainWindow, 77, 0);
    services::placeControl(services::mainWindow, 77, {});
    services::setControlText(services::mainWindow, 77, "x");
    services::appendControlText(services::mainWindow, 77, "x");
    services::focusControl(services::mainWindow, 77);
    services::createButton(77, 1, {}, "x");
    EXPECT_TRUE(services::chosenRows(services::mainWindow, 77).empty());
    EXPECT_EQ(-1, services::highlightedRow(services::mainWindow, 77));
    EXPECT_EQ("", services::controlText(services::mainWindow, 77));
}

}  // namespace
