// Every window of the program with something in it, one after the other, as its user sees it.
#pragma once

#include <QTimer>
#include <functional>

#include "app/app_state.h"
#include "app/info_window.h"
#include "app/main_window.h"
#include "app/menu_tree.h"
#include "charts/chart_state.h"
#include "charts/limits_dialog.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "files/list_window.h"
#include "files/report_window.h"
#include "services/text/dates.h"
#include "settings/settings_state.h"
#include "tests/windows/window_test.h"

class ProgramWindows : public WindowTest {
  protected:
    using Look = std::function<void(QWidget& window)>;

    // As the program opens without settings.
    static int mainWidth() { return services::desktopWidth(0) * 9 / 10; }
    static int mainHeight() { return services::desktopHeight(0) * 7 / 10; }

    void SetUp() override {
        WindowTest::SetUp();
        app::state = {};
        charts::state = {};
        device::state = {};
        settings::state = {};
        settings::state.windowWidth = mainWidth();
        settings::state.windowHeight = mainHeight();
        for (int i = 0; i < 5; ++i)
            device::state.dictionary.push_back(training(i));
        ASSERT_TRUE(app::openMainWindow());
        app::buildMenus();
        charts::enableOptions(charts::ChartKind::overview, true);
        charts::toggleOption(charts::optionItem(3, charts::Option::line));
        services::showWindow(services::mainWindow);
        app::redraw();
        widget()->activateWindow();
        takeWaitingEvents();
    }

    void TearDown() override {
        WindowTest::TearDown();
        app::state = {};
        charts::state = {};
        device::state = {};
        settings::state = {};
    }

    static device::DictionaryRecord training(int number) {
        device::DictionaryRecord record;
        record.description = "Wattprogramm, H\xFCgel und noch mehr";
        record.fileName = "0000000000000001";
        record.startDate =
            static_cast<std::int32_t>(services::makeDate(2013, 12, 24 + number, 18, 58, 38));
        record.endDate = record.startDate + 3600;
        record.watt = 288.8F + static_cast<float>(number);
        record.pulse = 148.8F;
        record.rpm = 88.8F;
        record.rideTime = 36000;
        record.selected = 1;
        return record;
    }

    // Runs `look` on every window, with its name as the trace of what fails.
    static void lookAtAll(const Look& look) {
        look(*widget());
        using files::ListMode;
        for (const ListMode mode : {ListMode::edit, ListMode::chooseMany, ListMode::chooseOne}) {
            lookAt(mode == ListMode::edit ? "Trainingsdateien bearbeiten" : "W\xE4hle", look,
                   [mode] { files::openTrainingList(mode, mainWidth(), mainHeight()); });
        }
        lookAt("Grenzwerte", look, [] { charts::editLimits(charts::ChartKind::overview, 3); });
        lookAt("Programminfo", look, app::showInfoBox);
        lookAt("Programminfo", look, app::showHelpWindow);
        lookAt("Dateien kopieren", look, [] {
            const files::ReportWindow report = {.title = "Dateien kopieren",
                                                .width = 448,
                                                .textWidth = 448,
                                                .mainHeight = mainHeight()};
            ASSERT_TRUE(services::openWindow(
                {.number = services::listWindow, .title = "Liste", .owner = services::mainWindow}));
            ASSERT_TRUE(files::openReport(report));
            for (int i = 0; i < 3; ++i)
                files::addReportLine("Kopiere die Datei 0000000000000001 .");
            files::waitUntilReportIsRead(report);
            services::closeWindow(services::listWindow);
        });
    }

    // Opens the window that begins with this title by `open`, which returns when it is closed.
    static void lookAt(const char* title, const Look& look, const std::function<void()>& open) {
        SCOPED_TRACE(title);
        int looked = 0;
        QTimer timer;
        // Not before the window's own loop runs: a report repaints before it waits.
        QObject::connect(&timer, &QTimer::timeout, [&] {
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (!window->isVisible() || window == widget()) continue;
                if (!window->windowTitle().startsWith(QString::fromLatin1(title))) continue;
                if (looked++ == 0) {
                    window->activateWindow();
                    QCoreApplication::processEvents();
                    look(*window);
                }
                window->close();
            }
        });
        timer.start(20);
        open();
        EXPECT_GE(looked, 1);
        takeWaitingEvents();
    }
};
