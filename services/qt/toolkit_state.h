// What the adapter owns: the application object, the windows by number, the actions of the menu bar
// and the queue of events. One state; only this folder sees it.
#pragma once

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFont>
#include <QImage>
#include <QLabel>
#include <QMenuBar>
#include <QPointer>
#include <QShortcut>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QTranslator>
#include <QWidget>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <thread>

#include "services/events.h"
#include "services/menus.h"
#include "services/qt/key_repeats.h"
#include "services/raster/raster.h"
#include "services/text/latin1.h"

namespace services::qt {

// Shows the finished picture of the chart and reports clicks and keys on it. The picture is the
// surface that was shown last, as it is whenever it is painted.
class ImageControl : public QWidget {
  public:
    ImageControl(int windowNumber, int controlNumber, QWidget* parent);
    void showSurface(const Surface& surface);
    void showParts(const Surface& surface, std::span<const DeviceBox> changed);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    int window;
    int control;
    QImage picture() const;
    const Surface* shown = nullptr;
    QSize shownSize;  // when it was shown, in device pixels
    double shownRatio = 1.0;
};

// A window: an optional menu bar above a content area. It never closes or changes by itself, it
// only reports.
class ToolkitWindow : public QWidget {
  public:
    ToolkitWindow(int windowNumber, QWidget* owner);

    // The window's size follows from that of the content and the menu bar.
    void resizeContent(int width, int height);
    void setMenuBar(std::unique_ptr<QMenuBar> bar);
    int number() const { return window; }

    QWidget* content = nullptr;
    std::map<int, QWidget*> controls;
    std::map<int, QTimer*> timers;
    QLabel* captionOfNext = nullptr;  // a label waiting for the control it names

  protected:
    bool event(QEvent* happening) override;
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    int window;
    QMenuBar* menuBar = nullptr;
    double reportedRatio = 0;  // device pixels a logical pixel, at the last report of a size
};

// The font of texts on a chart, and widths in it, in logical pixels.
struct ChartTexts {
    QFont desktopFont;  // from which it was made
    QFont font;
    int height = 0;  // 0 before the first text
    std::map<Text, int, std::less<>> widths;
};

struct ToolkitState {
    int argumentCount = 1;
    std::array<char*, 2> arguments = {};
    std::unique_ptr<QApplication> application;
    QStringList startMessages;  // of the toolkit, as they would be printed, while it starts
    QString startProblem;       // what its platforms said first
    std::thread::id mainThread;
    std::unique_ptr<QTranslator> german;
    std::unique_ptr<QObject> quitFilter;
    std::unique_ptr<KeyRepeats> keyRepeats;
    // Deleted by closeWindow, or by the toolkit together with their owner.
    std::map<int, QPointer<ToolkitWindow>> windows;
    std::array<QPointer<QAction>, menuItemLimit> actions = {};
    EventQueue queue;
    ChartTexts chartTexts;
    QElapsedTimer lastRepaint;      // of letWindowsRepaint
    QEventLoop* waiting = nullptr;  // the loop of waitEvent while it blocks
};

extern ToolkitState toolkit;

// Queues the event and wakes waitEvent.
void post(const Event& event);

// Nothing for a number that is not open.
ToolkitWindow* findWindow(int number);

// The control of that kind, or nothing.
template <typename Widget>
Widget* findControl(int window, int control) {
    const ToolkitWindow* found = findWindow(window);
    if (found == nullptr) return nullptr;
    const auto entry = found->controls.find(control);
    return entry == found->controls.end() ? nullptr : dynamic_cast<Widget*>(entry->second);
}

// The last of the windows that are open one above the other; nothing without a main window.
ToolkitWindow* innermostWindow();

// The window that a requester belongs to and that gets the keys after it: the innermost of the
// windows that are open one above the other. Not the active one: right after a message box there
// may be none yet, and the next box would hand the keys to the main window, past the dialog.
QWidget* requesterOwner();

// Plain text; CR LF and lone CR become line feeds.
// Control characters but for line ends become blanks.
QString toQString(TextView text);

// The same for menu items and buttons, where an ampersand would become a mnemonic.
QString toPlainLabel(TextView text);

}  // namespace services::qt
