// The model and the view behind a list.
#include <QFontInfo>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "services/controls.h"
#include "services/qt/list_model.h"
#include "services/qt/list_view.h"
#include "tests/windows/window_test.h"

namespace {

using services::ListColumn;
using services::Text;
using services::qt::ListModel;

const ListColumn twoColumns[] = {{"Datum", 120, false, "0"}, {"L\xE4nge", 60, true, "0"}};

class Lists : public WindowTest {
  protected:
    static constexpr int control = 5;

    QTreeView* open(std::span<const ListColumn> columns, int width = 640) {
        openMainWindow();
        services::createList(services::mainWindow, control, {0, 0, width, 200}, columns, true, "T");
        services::showWindow(services::mainWindow);
        widget()->activateWindow();
        takeWaitingEvents();
        return widget()->findChild<QTreeView*>();
    }
};

TEST_F(Lists, AModelHasTheRowsAndColumnsItWasGiven) {
    ListModel model(twoColumns, nullptr);
    EXPECT_EQ(0, model.rowCount());
    EXPECT_EQ(2, model.columnCount());
    model.fill(3, [](int row, int column) { return std::to_string(10 * row + column); });
    EXPECT_EQ(3, model.rowCount());
    EXPECT_EQ(QStringLiteral("21"), model.index(2, 1).data().toString());
    EXPECT_EQ(QStringLiteral("10"), model.index(1, 0).data().toString());
    // Rows have none below them.
    EXPECT_EQ(0, model.rowCount(model.index(0, 0)));
    EXPECT_EQ(0, model.columnCount(model.index(0, 0)));
    model.fill(-1, {});
    EXPECT_EQ(0, model.rowCount());
}

TEST_F(Lists, AModelWithoutCellsShowsNothing) {
    ListModel model(twoColumns, nullptr);
    model.fill(1, {});
    EXPECT_FALSE(model.index(0, 0).data().isValid());
    EXPECT_FALSE(model.data({}, Qt::DisplayRole).isValid());
    model.fill(1, [](int, int) { return Text("x"); });
    EXPECT_FALSE(model.index(0, 0).data(Qt::DecorationRole).isValid());
}

TEST_F(Lists, TitlesStandAboveTheirColumnsAndAlignLikeThem) {
    ListModel model(twoColumns, nullptr);
    model.fill(1, [](int, int) { return Text("x"); });
    EXPECT_EQ(QStringLiteral("Datum"), model.headerData(0, Qt::Horizontal, Qt::DisplayRole));
    EXPECT_EQ(QStringLiteral("Länge"), model.headerData(1, Qt::Horizontal, Qt::DisplayRole));
    EXPECT_FALSE(model.headerData(2, Qt::Horizontal, Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.headerData(-1, Qt::Horizontal, Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    for (const auto& [column, expected] :
         {std::pair(0, Qt::AlignLeft), std::pair(1, Qt::AlignRight)}) {
        const int cell = model.index(0, column).data(Qt::TextAlignmentRole).toInt();
        const int title = model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
        EXPECT_EQ(expected | Qt::AlignVCenter, cell);
        EXPECT_EQ(expected | Qt::AlignVCenter, title);
    }
}

TEST_F(Lists, ATooltipShowsTheWholeTextAndNoMarkupOfIts) {
    for (const Text text :
         {"Fahrt <i>im</i> Regen", "a & b &amp; c \"d\"", "%1 </p>", "gr\xFC\xDF", "x"}) {
        SCOPED_TRACE(text);
        ListModel model(twoColumns, nullptr);
        model.fill(2, [&](int row, int column) { return row + column == 2 ? text : Text(); });
        const QString tooltip = model.index(1, 1).data(Qt::ToolTipRole).toString();
        // As rich text, so that it wraps and so that all of it is taken the same way.
        EXPECT_TRUE(Qt::mightBeRichText(tooltip));
        QTextDocument shown;
        shown.setHtml(tooltip);
        EXPECT_EQ(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())),
                  shown.toPlainText());
    }
}

TEST_F(Lists, ATextOfSeveralLinesIsOneLine) {
    ListModel model(twoColumns, nullptr);
    model.fill(1, [](int, int) {
        return Text(
            "a\r\nb\rc\td\x01"
            "e\x85"
            "f");
    });
    EXPECT_EQ(QStringLiteral("a b c d e f"), model.index(0, 0).data().toString());
    EXPECT_EQ(QStringLiteral("<p>a b c d e f</p>"),
              model.index(0, 0).data(Qt::ToolTipRole).toString());
}

TEST_F(Lists, AViewTakesTheTextsOfItsModelWhole) {
    const ListColumn columns[] = {{"D", 1, false, "29.12.2026 23:59:59"}, {"km", 150, true, "0"}};
    QTreeView* const view = open(columns, 900);
    services::fillList(services::mainWindow, control, 1, [](int, int column) {
        return Text(column == 0 ? "29.12.2026 23:59:59" : "");
    });
    EXPECT_EQ(150, view->header()->sectionSize(1));
    const int given = view->header()->sectionSize(0);
    view->resizeColumnToContents(0);
    const int needed = view->header()->sectionSize(0);
    EXPECT_GE(given, needed);
    EXPECT_LT(given, needed + 20);  // and no wider
}

TEST_F(Lists, AViewWithoutAFlexibleColumnKeepsItsWidths) {
    QTreeView* const view = open(twoColumns, 640);
    services::placeControl(services::mainWindow, control, {0, 0, 100, 200});
    takeWaitingEvents();
    EXPECT_EQ(120, view->header()->sectionSize(0));
    services::placeControl(services::mainWindow, control, {0, 0, 900, 200});
    takeWaitingEvents();
    EXPECT_EQ(120, view->header()->sectionSize(0));
    EXPECT_LT(view->header()->length(), view->viewport()->width());
}

TEST_F(Lists, FiguresStandBelowEachOther) {
    const QTreeView* const view = open(twoColumns);
    const QFontMetrics metrics(view->font());
    for (char digit = '1'; digit <= '9'; ++digit) {
        EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('0')),
                  metrics.horizontalAdvance(QLatin1Char(digit)));
    }
}

// GNOME's font, whose figures differ in width. Where the toolkit can ask a font for figures of one
// width, it has these.
class ListsInCantarell : public Lists, public testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        before = QApplication::font();
        QFont font(QStringLiteral("Cantarell"));
        font.setPointSize(GetParam());
        ASSERT_EQ(QStringLiteral("Cantarell"), QFontInfo(font).family()) << "fonts-cantarell";
        QApplication::setFont(font);
        Lists::SetUp();
    }

    void TearDown() override {
        Lists::TearDown();
        QApplication::setFont(before);
    }

    static QFont fontOf(const QTreeView& view, int column) {
        const QVariant own = view.model()->index(0, column).data(Qt::FontRole);
        return own.isValid() ? own.value<QFont>() : view.font();
    }

    static bool hasFiguresOfOneWidth(const QFont& font) {
        const QFontMetricsF metrics(font);
        for (int digit = 1; digit <= 9; ++digit) {
            if (std::abs(metrics.horizontalAdvance(QString::number(digit)) -
                         metrics.horizontalAdvance(QStringLiteral("0"))) > 0.01) {
                return false;
            }
        }
        return true;
    }

  private:
    QFont before;
};

INSTANTIATE_TEST_SUITE_P(OfPoints, ListsInCantarell, testing::Values(10, 11, 13, 16),
                         [](const auto& size) { return std::to_string(size.param); });

TEST_P(ListsInCantarell, OnlyLeftAlignedFiguresTakeAnotherFont) {
    const ListColumn columns[] = {{"Datum", 10, false, "00.00.0000"},
                                  {"Training", 90, false, ""},
                                  {"km", 10, true, "000.0"},
                                  {"Name", 10, false, "Sonntag"}};
    QTreeView* const view = open(columns);
    services::fillList(services::mainWindow, control, 1, [](int, int) { return Text("4"); });
    EXPECT_TRUE(hasFiguresOfOneWidth(fontOf(*view, 0)));
    for (const int column : {1, 2, 3})
        EXPECT_EQ(QStringLiteral("Cantarell"), fontOf(*view, column).family());
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    EXPECT_EQ(QStringLiteral("Cantarell"), fontOf(*view, 0).family());
#endif
}

TEST_P(ListsInCantarell, TheWidestFiguresFitTheirColumns) {
    const ListColumn columns[] = {{"D", 1, false, "00.00.0000"}, {"k", 1, true, "000.0"}};
    for (const char figure : {'0', '1', '4', '8'}) {
        QTreeView* const view = open(columns, 900);
        services::fillList(services::mainWindow, control, 1, [figure](int, int column) {
            Text text = column == 0 ? "00.00.0000" : "000.0";
            std::replace(text.begin(), text.end(), '0', figure);
            return text;
        });
        for (const int column : {0, 1}) {
            EXPECT_GE(view->header()->sectionSize(column),
                      view->sizeHintForIndex(view->model()->index(0, column)).width())
                << figure << " in column " << column;
        }
        services::closeWindow(services::mainWindow);
    }
}

TEST_F(Lists, ATooltipIsShownOnlyWhereACellIsCut) {
    const ListColumn columns[] = {{"Training", 90, false, ""}, {"km", 90, true, "0"}};
    QTreeView* const view = open(columns, 200);
    services::fillList(services::mainWindow, control, 2, [](int row, int column) {
        return Text(row == 0 && column == 0 ? "Eine Fahrt, deren Beschreibung nicht passt"
                                            : "kurz");
    });
    const auto tooltipAt = [view](int row, int column) {
        QToolTip::hideText();
        EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
        const QPoint place = view->visualRect(view->model()->index(row, column)).center();
        QHelpEvent event(QEvent::ToolTip, place, view->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view->viewport(), &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    EXPECT_EQ(QStringLiteral("<p>Eine Fahrt, deren Beschreibung nicht passt</p>"), tooltipAt(0, 0));
    EXPECT_EQ(QString(), tooltipAt(0, 1));
    EXPECT_EQ(QString(), tooltipAt(1, 0));
    services::placeControl(services::mainWindow, control, {0, 0, 600, 200});
    takeWaitingEvents();
    EXPECT_EQ(QString(), tooltipAt(0, 0));
    QToolTip::hideText();
}

TEST_F(Lists, TheKeyboardGoesThroughRowsWithArrowsAndLeavesWithTab) {
    QTreeView* const view = open(twoColumns);
    services::createTextField(services::mainWindow, 6, {0, 210, 90, 24}, "", "Feld", "");
    widget()->findChild<QLineEdit*>()->show();
    services::fillList(services::mainWindow, control, 9, [](int, int) { return Text("x"); });
    services::highlightRow(services::mainWindow, control, 3);
    services::focusControl(services::mainWindow, control);
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(4, services::highlightedRow(services::mainWindow, control));
    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_EQ(4, services::highlightedRow(services::mainWindow, control));
    EXPECT_EQ(widget()->findChild<QLineEdit*>(), QApplication::focusWidget());
}

TEST_F(Lists, RowsAreNeitherEditedNorSortedNorNested) {
    const QTreeView* const view = open(twoColumns);
    EXPECT_EQ(QAbstractItemView::NoEditTriggers, view->editTriggers());
    EXPECT_FALSE(view->isSortingEnabled());
    EXPECT_FALSE(view->header()->sectionsMovable());
    EXPECT_FALSE(view->header()->sectionsClickable());
    EXPECT_FALSE(view->rootIsDecorated());
    EXPECT_FALSE(view->itemsExpandable());
    EXPECT_TRUE(view->uniformRowHeights());  // or a long list opens slowly
    EXPECT_TRUE(view->allColumnsShowFocus());
}

}  // namespace
