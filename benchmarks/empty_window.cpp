// A window with nothing in it but the program's menus, made with the toolkit alone: what starting
// and being there cost at least (benchmarks/processes.py).
#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <cstdlib>

#include "app/menu_tree.h"

namespace {

QString textOf(const services::MenuRow& row) {
    return QString::fromLatin1(row.text.data(), static_cast<qsizetype>(row.text.size()));
}

void fillMenuBar(QMenuBar& bar) {
    using Kind = services::MenuRowKind;
    QMenu* title = nullptr;
    QMenu* menu = nullptr;
    for (const services::MenuRow& row : app::menuRows()) {
        if (row.kind == Kind::title) menu = title = bar.addMenu(textOf(row));
        if (row.kind == Kind::submenuStart) menu = title->addMenu(textOf(row));
        if (row.kind == Kind::submenuEnd) menu = title;
        if (row.kind == Kind::separator) menu->addSeparator();
        if (row.kind == Kind::item || row.kind == Kind::checkItem)
            menu->addAction(textOf(row))->setCheckable(row.kind == Kind::checkItem);
    }
}

}  // namespace

// The content's size, in pixels.
int main(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    if (argumentCount != 3) return 2;
    QMainWindow window;
    fillMenuBar(*window.menuBar());
    auto* content = new QWidget;
    content->setMinimumSize(std::atoi(arguments[1]), std::atoi(arguments[2]));
    window.setCentralWidget(content);
    window.move(1, 1);
    window.show();
    return QApplication::exec();
}
