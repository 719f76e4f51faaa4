// What window tests share: a fresh main window, and ways to reach the real widgets behind it.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenuBar>
#include <QWidget>
#include <string>
#include <vector>

#include "services/events.h"
#include "services/menus.h"
#include "services/windows.h"

class WindowTest : public testing::Test {
  protected:
    void SetUp() override {
        services::menuState = {};
        takeWaitingEvents();
    }

    void TearDown() override {
        services::closeWindow(services::mainWindow);
        takeWaitingEvents();
    }

    static void openMainWindow(int width = 640, int height = 480) {
        ASSERT_TRUE(services::openWindow({.number = services::mainWindow,
                                          .width = width,
                                          .height = height,
                                          .minimumWidth = 256,
                                          .minimumHeight = 256,
                                          .title = "Kurbelbuch"}));
    }

    // The toolkit's window; there is only one in these tests.
    static QWidget* widget() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == QLatin1String("Kurbelbuch")) return window;
        }
        return nullptr;
    }

    // The image control of the main window, which these tests call Diagramm.
    static QWidget* imageWidget() {
        for (QWidget* child : widget()->findChildren<QWidget*>()) {
            if (child->accessibleName() == QLatin1String("Diagramm")) return child;
        }
        return nullptr;
    }

    // Device pixels per logical pixel in this run of the tests.
    static double scaleFactor() {
        bool isNumber = false;
        const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isNumber);
        return isNumber ? factor : 1.0;
    }

    // Everything the toolkit reports until it has nothing more to say.
    static std::vector<services::Event> takeWaitingEvents() {
        std::vector<services::Event> events;
        constexpr int endMark = -12345;
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::processEvents(); }, Qt::DirectConnection);
        services::Event end = {.kind = services::EventKind::menu, .item = endMark};
        queueEvent(end);
        for (;;) {
            const services::Event event = services::waitEvent();
            if (event.kind == services::EventKind::menu && event.item == endMark) break;
            events.push_back(event);
        }
        return events;
    }

    static int count(const std::vector<services::Event>& events, services::EventKind kind) {
        int result = 0;
        for (const services::Event& event : events)
            result += event.kind == kind ? 1 : 0;
        return result;
    }

  private:
    static void queueEvent(const services::Event& event);
};
