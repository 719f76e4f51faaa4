// The toolkit's half of the program where memory ends.
#include <sys/resource.h>

#include <QTreeView>
#include <cstdio>
#include <new>

#include "services/controls.h"
#include "tests/windows/window_test.h"

namespace {

// The sanitizer's own needs go beyond any such limit.
#ifdef __SANITIZE_ADDRESS__
constexpr bool canBeLimited = false;
#else
constexpr bool canBeLimited = true;
#endif

// While one lives the process gets no more address space than it has and `room`, in bytes.
class MemoryLimit {
  public:
    explicit MemoryLimit(rlim_t room) {
        getrlimit(RLIMIT_AS, &before);
        rlimit limited = before;
        limited.rlim_cur = used() + room;
        EXPECT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &before); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

  private:
    static rlim_t used() {
        rlim_t pages = 0;
        if (std::FILE* const file = std::fopen("/proc/self/statm", "r")) {
            unsigned long first = 0;
            if (std::fscanf(file, "%lu", &first) == 1) pages = first;
            std::fclose(file);
        }
        return pages * 4096;
    }

    rlimit before{};
};

using ShortMemory = WindowTest;

TEST_F(ShortMemory, APictureThatItDoesNotHoldIsWhite) {
    if (!canBeLimited) GTEST_SKIP() << "a sanitizer needs the memory";
    constexpr int image = 1;
    openMainWindow(300, 300);
    services::createImageControl(services::mainWindow, image, "Diagramm");
    services::showWindow(services::mainWindow);
    takeWaitingEvents();
    const double ratio = services::windowPixelRatio(services::mainWindow);
    services::Surface fitting;
    services::resizeSurface(fitting, 300, 300, ratio);
    services::fillSurface(fitting, services::rgb(255, 0, 0));
    services::showImage(services::mainWindow, image, fitting);
    EXPECT_EQ(imageWidget()->grab().toImage().pixelColor(9, 9), QColor(255, 0, 0));

    services::Surface huge;
    services::resizeSurface(huge, 16'000, 10'000, 1);  // 640 MB, and as much for its picture
    services::fillSurface(huge, services::rgb(255, 0, 0));
    {
        const MemoryLimit limit(rlim_t{200} << 20U);
        services::showImage(services::mainWindow, image, huge);
        EXPECT_EQ(imageWidget()->grab().toImage().pixelColor(9, 9), QColor(Qt::white));
        const services::DeviceBox box = {.left = 0, .top = 0, .right = 50, .bottom = 50};
        services::showImageParts(services::mainWindow, image, huge, {&box, 1});
        EXPECT_EQ(imageWidget()->grab().toImage().pixelColor(9, 9), QColor(Qt::white));
    }
    services::showImage(services::mainWindow, image, fitting);
    EXPECT_EQ(imageWidget()->grab().toImage().pixelColor(9, 9), QColor(255, 0, 0));
}

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
