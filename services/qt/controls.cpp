#include "services/controls.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>

#include "services/qt/list_model.h"
#include "services/qt/list_view.h"
#include "services/qt/read_only_text.h"
#include "services/qt/toolkit_state.h"

namespace services {

namespace {

QRect rectangle(const Box& box) {
    return {box.x, box.y, box.width, box.height};
}

void placeNewControl(qt::ToolkitWindow& window, int control, const Box& box, QWidget* widget) {
    widget->setGeometry(rectangle(box));
    if (QLabel* caption = window.captionOfNext) {
        caption->setBuddy(widget);
        window.captionOfNext = nullptr;
    }
    window.controls[control] = widget;
}

template <typename Widget>
Widget* addControl(qt::ToolkitWindow& window, int control, const Box& box) {
    auto* widget = new Widget(window.content);
    placeNewControl(window, control, box, widget);
    return widget;
}

void postAction(int window, int control, ControlAction action, int row = 0) {
    qt::post({.kind = EventKind::control,
              .window = window,
              .control = control,
              .item = row,
              .data = action});
}

qt::ListModel* modelOf(const QTreeView& view) {
    return static_cast<qt::ListModel*>(view.model());
}

Text toText(const QString& string) {
    const QByteArray bytes = string.toLatin1();
    return Text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

}  // namespace

int controlTextWidth(TextView text) {
    return QFontMetrics(QGuiApplication::font()).horizontalAdvance(qt::toQString(text));
}

int controlTextHeight() {
    return QFontMetrics(QGuiApplication::font()).height();
}

void createButton(int window, int control, const Box& box, TextView text, TextView tooltip) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* button = addControl<QPushButton>(*found, control, box);
    button->setText(qt::toPlainLabel(text));
    button->setAccessibleName(qt::toQString(text));
    button->setToolTip(qt::toQString(tooltip));
    button->setAccessibleDescription(qt::toQString(tooltip));
    QObject::connect(button, &QPushButton::clicked, button,
                     [window, control] { postAction(window, control, pressed); });
}

void createLabel(int window, int control, const Box& box, TextView text) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* label = addControl<QLabel>(*found, control, box);
    label->setTextFormat(Qt::PlainText);
    label->setText(qt::toQString(text));
    found->captionOfNext = label;
}

void createTextField(int window, int control, const Box& box, TextView text,
                     TextView accessibleName, TextView tooltip) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* field = addControl<QLineEdit>(*found, control, box);
    field->setText(qt::toQString(text));
    field->setAccessibleName(qt::toQString(accessibleName));
    field->setToolTip(qt::toQString(tooltip));
    field->setAccessibleDescription(qt::toQString(tooltip));
    QObject::connect(field, &QLineEdit::textChanged, field,
                     [window, control] { postAction(window, control, edited); });
}

void createTextView(int window, int control, const Box& box, TextView accessibleName,
                    TextExtent wanted) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* view = new qt::ReadOnlyText(wanted, found->content);
    placeNewControl(*found, control, box, view);
    view->setAccessibleName(qt::toQString(accessibleName));
}

void createList(int window, int control, const Box& box, std::span<const ListColumn> columns,
                bool severalRows, TextView accessibleName) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* view = addControl<qt::ListView>(*found, control, box);
    view->setModel(new qt::ListModel(columns, view));
    view->setRootIsDecorated(false);
    view->setItemsExpandable(false);
    view->setUniformRowHeights(true);  // or every row is measured before the first is shown
    view->setAllColumnsShowFocus(true);
    view->setAlternatingRowColors(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionMode(severalRows ? QAbstractItemView::ExtendedSelection
                                       : QAbstractItemView::SingleSelection);
    view->setTabKeyNavigation(false);
    view->setAccessibleName(qt::toQString(accessibleName));
    view->header()->setSectionsMovable(false);
    view->header()->setSectionsClickable(false);
    view->layOutColumns(columns);
    // Already when the button goes down: a choice drawn with the pointer ends in no click.
    QObject::connect(view, &QTreeView::pressed, view, [window, control](const QModelIndex& index) {
        postAction(window, control, clicked, index.row());
    });
    QObject::connect(view, &QTreeView::doubleClicked, view,
                     [window, control](const QModelIndex& index) {
                         postAction(window, control, doubleClicked, index.row());
                     });
}

void fillList(int window, int control, int rows, ListCell cell) {
    auto* view = qt::findControl<QTreeView>(window, control);
    if (view == nullptr) return;
    const int position = view->verticalScrollBar()->value();
    modelOf(*view)->fill(rows, std::move(cell));
    view->setCurrentIndex({});
    view->doItemsLayout();  // the scroll bar's range follows the layout
    view->verticalScrollBar()->setValue(position);
}

std::vector<int> chosenRows(int window, int control) {
    const auto* view = qt::findControl<QTreeView>(window, control);
    if (view == nullptr) return {};
    std::vector<int> rows;
    for (const QModelIndex& index : view->selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

int highlightedRow(int window, int control) {
    const auto* view = qt::findControl<QTreeView>(window, control);
    if (view == nullptr) return -1;
    const QModelIndex current = view->currentIndex();
    if (current.isValid() && view->selectionModel()->isRowSelected(current.row(), {})) {
        return current.row();
    }
    const std::vector<int> chosen = chosenRows(window, control);
    return chosen.empty() ? -1 : chosen.front();
}

void highlightRow(int window, int control, int row) {
    auto* view = qt::findControl<QTreeView>(window, control);
    if (view == nullptr || row < 0 || row >= view->model()->rowCount()) return;
    const QModelIndex index = view->model()->index(row, 0);
    view->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view->scrollTo(index);
}

void placeControl(int window, int control, const Box& box) {
    if (auto* widget = qt::findControl<QWidget>(window, control))
        widget->setGeometry(rectangle(box));
}

Text controlText(int window, int control) {
    if (const auto* button = qt::findControl<QPushButton>(window, control)) {
        return toText(button->accessibleName());
    }
    if (const auto* label = qt::findControl<QLabel>(window, control)) return toText(label->text());
    if (const auto* field = qt::findControl<QLineEdit>(window, control))
        return toText(field->text());
    if (const auto* view = qt::findControl<QPlainTextEdit>(window, control)) {
        return toText(view->toPlainText());
    }
    return {};
}

void setControlText(int window, int control, TextView text) {
    if (auto* button = qt::findControl<QPushButton>(window, control)) {
        button->setText(qt::toPlainLabel(text));
        button->setAccessibleName(qt::toQString(text));
    } else if (auto* label = qt::findControl<QLabel>(window, control)) {
        label->setText(qt::toQString(text));
    } else if (auto* field = qt::findControl<QLineEdit>(window, control)) {
        field->setText(qt::toQString(text));
    } else if (auto* view = qt::findControl<QPlainTextEdit>(window, control)) {
        view->setPlainText(qt::toQString(text));
    }
}

void appendControlText(int window, int control, TextView text) {
    auto* view = qt::findControl<QPlainTextEdit>(window, control);
    if (view == nullptr) return;
    QTextCursor end(view->document());
    end.movePosition(QTextCursor::End);
    end.insertText(qt::toQString(text));
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
}

void focusControl(int window, int control) {
    auto* widget = qt::findControl<QWidget>(window, control);
    if (widget == nullptr) return;
    widget->setFocus();
    if (auto* field = qobject_cast<QLineEdit*>(widget)) field->selectAll();
}

}  // namespace services
