// The toolkit's half of the program where memory ends.
#include <QTreeView>
#include <new>

#include "services/controls.h"
#include "tests/windows/window_test.h"

namespace {

using ShortMemory = WindowTest;

TEST_F(ShortMemory, ACellThatFindsNoneIsEmpty) {
    constexpr int list = 1;
    openMainWindow(300, 300);
    const services::ListColumn columns[] = {{.title = "Datum", .width = 100}};
    services::createList(services::mainWindow, list, {0, 0, 300, 300}, columns, true, "Liste");
    int asked = 0;
    services::fillList(services::mainWindow, list, 3, [&asked](int row, int) -> services::Text {
        ++asked;
        if (row == 1) throw std::bad_alloc();
        return "text";
    });
    services::showWindow(services::mainWindow);
    takeWaitingEvents();
    const auto* view = widget()->findChild<QTreeView*>();
    ASSERT_NE(view, nullptr);
    widget()->grab();
    EXPECT_GT(asked, 0);
    EXPECT_EQ(view->model()->index(0, 0).data().toString(), QStringLiteral("text"));
    EXPECT_EQ(view->model()->index(1, 0).data().toString(), QString());
}

}  // namespace
