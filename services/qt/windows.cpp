#include "services/windows.h"

#include <QCloseEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>

#include "services/qt/toolkit_state.h"

namespace services {

namespace qt {

ImageControl::ImageControl(int windowNumber, int controlNumber, QWidget* parent)
    : QWidget(parent), window(windowNumber), control(controlNumber) {
    setAttribute(Qt::WA_OpaquePaintEvent);  // paintEvent covers all of it
    setFocusPolicy(Qt::StrongFocus);
}

QImage ImageControl::picture() const {
    if (shown == nullptr || shown->pixels.empty()) return {};
    QImage image(reinterpret_cast<const uchar*>(shown->pixels.data()), shown->deviceWidth,
                 shown->deviceHeight, QImage::Format_RGB32);
    image.setDevicePixelRatio(shown->pixelRatio);
    return image;
}

void ImageControl::showSurface(const Surface& surface) {
    shown = &surface;
    shownSize = {surface.deviceWidth, surface.deviceHeight};
    shownRatio = surface.pixelRatio;
    update();
}

void ImageControl::showParts(const Surface& surface, std::span<const DeviceBox> changed) {
    const bool isOfSameSize = shown != nullptr &&
                              shownSize == QSize(surface.deviceWidth, surface.deviceHeight) &&
                              shownRatio == surface.pixelRatio;
    if (!isOfSameSize) {
        showSurface(surface);
        return;
    }
    shown = &surface;
    const auto clipped = [](std::int64_t position, int size) {
        return static_cast<int>(std::clamp<std::int64_t>(position, 0, size));
    };
    for (const DeviceBox& box : changed) {
        const int left = clipped(box.left, surface.deviceWidth);
        const int right = clipped(box.right, surface.deviceWidth);
        const int top = clipped(box.top, surface.deviceHeight);
        const int bottom = clipped(box.bottom, surface.deviceHeight);
        if (left >= right || top >= bottom) continue;
        // All logical pixels that have a part in the box, and one more: where one of them ends
        // within a device pixel, the toolkit's clipping may round.
        const double s = surface.pixelRatio;
        const QRectF logical(left / s, top / s, (right - left) / s, (bottom - top) / s);
        update(logical.toAlignedRect().adjusted(-1, -1, 1, 1));
    }
}

void ImageControl::paintEvent(QPaintEvent*) {
    const QImage image = picture();
    QPainter painter(this);
    // Between a change of size and the next drawing the picture is smaller than the control.
    if (image.isNull() || image.deviceIndependentSize() != QSizeF(size())) {
        painter.fillRect(rect(), Qt::white);
    }
    painter.drawImage(0, 0, image);
}

void ImageControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) return;
    post({.kind = EventKind::click,
          .window = window,
          .control = control,
          .data = event->button() == Qt::LeftButton ? 0 : 1});
}

namespace {

struct KeyStroke {
    int key = 0;
    KeyModifier modifier = noModifier;
};

std::optional<KeyStroke> keyStroke(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const int key = event.key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        const int arrow = key == Qt::Key_Up ? upKey : downKey;
        if (modifiers == Qt::ShiftModifier) return KeyStroke{arrow, shiftModifier};
        if (modifiers == Qt::ControlModifier) return KeyStroke{arrow, controlModifier};
        return std::nullopt;
    }
    if (modifiers != Qt::NoModifier || toolkit.keyRepeats->pressRepeats()) return std::nullopt;
    if (key == Qt::Key_Space) return KeyStroke{spaceKey};
    if (key == Qt::Key_Delete) return KeyStroke{deleteKey};
    return std::nullopt;
}

}  // namespace

void ImageControl::keyPressEvent(QKeyEvent* event) {
    const std::optional<KeyStroke> stroke = keyStroke(*event);
    if (!stroke) {
        QWidget::keyPressEvent(event);
        return;
    }
    post({.kind = EventKind::key,
          .window = window,
          .control = control,
          .item = stroke->key,
          .data = stroke->modifier});
}

ToolkitWindow::ToolkitWindow(int windowNumber, QWidget* owner)
    : QWidget(owner, owner == nullptr ? Qt::Window : Qt::Dialog),
      content(new QWidget(this)),
      window(windowNumber) {
    auto* frame = new QVBoxLayout(this);
    frame->setContentsMargins(0, 0, 0, 0);
    frame->addWidget(content);
    content->installEventFilter(this);
}

void ToolkitWindow::resizeContent(int width, int height) {
    int barHeight = 0;
    if (menuBar != nullptr && !menuBar->isNativeMenuBar()) {
        barHeight = std::max(menuBar->sizeHint().height(), menuBar->heightForWidth(width));
    }
    resize(width, height + barHeight);
}

void ToolkitWindow::setMenuBar(std::unique_ptr<QMenuBar> bar) {
    const QSize size = content->size();
    menuBar = bar.release();  // the layout's parent owns it from here
    // The key that desktops have for it: Alt alone is often taken by the window manager.
    auto* shortcut = new QShortcut(Qt::Key_F10, menuBar);
    QObject::connect(shortcut, &QShortcut::activated, menuBar, [this] {
        if (!menuBar->actions().isEmpty()) menuBar->setActiveAction(menuBar->actions().first());
    });
    layout()->setMenuBar(menuBar);
    resizeContent(size.width(), size.height());
    layout()->activate();
}

bool ToolkitWindow::event(QEvent* happening) {
    if (happening->type() == QEvent::WindowStateChange) {
        post({.kind = EventKind::zoom, .window = window});
    }
    return QWidget::event(happening);
}

void ToolkitWindow::closeEvent(QCloseEvent* event) {
    event->ignore();  // the loop that reads the event decides
    post({.kind = EventKind::close, .window = window});
}

void ToolkitWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible()) post({.kind = EventKind::move, .window = window});
}

namespace {

// Qt tells of a new pixel ratio from 6.6 on, also when the screen stays the same; before that a
// change of screen is all it tells. By its number: the Qt that runs may be newer than the one at
// build time.
constexpr int pixelRatioChange = 222;
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
static_assert(pixelRatioChange == QEvent::DevicePixelRatioChange);
#endif

}  // namespace

bool ToolkitWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != content) return QWidget::eventFilter(watched, event);
    const bool newRatio =
        event->type() == pixelRatioChange || (event->type() == QEvent::ScreenChangeInternal &&
                                              reportedRatio != content->devicePixelRatioF());
    if (newRatio || event->type() == QEvent::Resize) {
        reportedRatio = content->devicePixelRatioF();
        if (isVisible()) post({.kind = EventKind::resize, .window = window});
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace qt

int desktopCount() {
    return static_cast<int>(QGuiApplication::screens().size());
}

namespace {

QSize desktopSize(int screen) {
    // The toolkit lists the main screen first.
    const QList<QScreen*> screens = QGuiApplication::screens();
    return screen >= 0 && screen < screens.size() ? screens[screen]->geometry().size()
                                                  : QSize(0, 0);
}

}  // namespace

int desktopWidth(int screen) {
    return desktopSize(screen).width();
}
int desktopHeight(int screen) {
    return desktopSize(screen).height();
}

bool openWindow(const WindowRow& row) {
    closeWindow(row.number);  // numbers are unique
    auto* window = new qt::ToolkitWindow(row.number, qt::findWindow(row.owner));
    window->setWindowTitle(qt::toQString(row.title));
    if (row.modal) window->setWindowModality(Qt::ApplicationModal);
    window->content->setMinimumSize(row.minimumWidth, row.minimumHeight);
    const qt::ToolkitWindow* owner = qt::findWindow(row.owner);
    const QPoint origin = row.fromOwner && owner != nullptr ? owner->pos() : QPoint(0, 0);
    window->move(origin + QPoint(row.x, row.y));
    window->resizeContent(row.width, row.height);
    window->layout()->activate();
    qt::toolkit.windows[row.number] = window;
    return true;
}

void showWindow(int window) {
    if (qt::ToolkitWindow* found = qt::findWindow(window)) found->show();
}

void closeWindow(int window) {
    delete qt::findWindow(window);  // and the windows it owns, whose entries become empty
    qt::toolkit.windows.erase(window);
}

int windowWidth(int window) {
    const qt::ToolkitWindow* found = qt::findWindow(window);
    return found == nullptr ? 0 : found->content->width();
}

int windowHeight(int window) {
    const qt::ToolkitWindow* found = qt::findWindow(window);
    return found == nullptr ? 0 : found->content->height();
}

double windowPixelRatio(int window) {
    const qt::ToolkitWindow* found = qt::findWindow(window);
    return found == nullptr ? 1.0 : found->devicePixelRatioF();
}

void resizeWindow(int window, int width, int height) {
    if (qt::ToolkitWindow* found = qt::findWindow(window)) found->resizeContent(width, height);
}

namespace {

QList<QKeySequence> keySequences(int key) {
    switch (key) {
        case returnKey:
            return {Qt::Key_Return, Qt::Key_Enter};
        case escapeKey:
            return {Qt::Key_Escape};
        case upKey:
            return {Qt::Key_Up};
        case downKey:
            return {Qt::Key_Down};
        default:
            return {};
    }
}

}  // namespace

void keyboardShortcut(int window, int key, int item) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* shortcut = new QShortcut(found);
    shortcut->setKeys(keySequences(key));
    const bool mayRepeat = key == upKey || key == downKey;
    QObject::connect(shortcut, &QShortcut::activated, found, [window, item, mayRepeat] {
        if (!mayRepeat && qt::toolkit.keyRepeats->pressRepeats()) return;
        qt::post({.kind = EventKind::menu, .window = window, .item = item});
    });
}

void createImageControl(int window, int control, TextView accessibleName) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    auto* image = new qt::ImageControl(window, control, found->content);
    image->setAccessibleName(qt::toQString(accessibleName));
    auto* fill = new QVBoxLayout(found->content);
    fill->setContentsMargins(0, 0, 0, 0);
    fill->addWidget(image);
    found->controls[control] = image;
}

void showImage(int window, int control, const Surface& surface) {
    if (auto* image = qt::findControl<qt::ImageControl>(window, control))
        image->showSurface(surface);
}

void showImageParts(int window, int control, const Surface& surface,
                    std::span<const DeviceBox> changed) {
    if (auto* image = qt::findControl<qt::ImageControl>(window, control))
        image->showParts(surface, changed);
}

void describeControl(int window, int control, TextView accessibleDescription) {
    if (auto* found = qt::findControl<QWidget>(window, control)) {
        found->setAccessibleDescription(qt::toQString(accessibleDescription));
    }
}

void letWindowsRepaint() {
    // As often as an eye can follow: most of a long action's time is the action's.
    constexpr qint64 interval = 20;
    QElapsedTimer& last = qt::toolkit.lastRepaint;
    if (last.isValid() && !last.hasExpired(interval)) return;
    QCoreApplication::processEvents();
    last.start();
}

void startWindowTimer(int window, int timer, int milliseconds) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr) return;
    QTimer*& entry = found->timers[timer];
    if (entry == nullptr) {
        entry = new QTimer(found);
        entry->setTimerType(Qt::PreciseTimer);
        QObject::connect(entry, &QTimer::timeout, found, [window, timer] {
            qt::post({.kind = EventKind::timer, .window = window, .item = timer});
        });
    }
    entry->start(milliseconds);
}

void stopWindowTimer(int window, int timer) {
    qt::ToolkitWindow* found = qt::findWindow(window);
    if (found == nullptr || !found->timers.contains(timer)) return;
    found->timers[timer]->stop();
}

int pointerY(int window) {
    const qt::ToolkitWindow* found = qt::findWindow(window);
    return found == nullptr ? 0 : found->content->mapFromGlobal(QCursor::pos()).y();
}

}  // namespace services
