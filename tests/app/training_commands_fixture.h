// The fixture of the commands that open trainings, edit them or export them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "app/event_loop.h"
#include "app/main_window.h"
#include "app/startup.h"
#include "export/export_state.h"
#include "files/list_window.h"
#include "services/text/latin1.h"
#include "tests/app/app_test.h"
#include "tests/builders/card_builder.h"

// The program on a card of three trainings with three samples each; what happens in the list window
// is put into the queue of events.
class TrainingCommands : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        exporting::state = {};
        std::vector<device::DictionaryRecord> records;
        for (std::uint64_t number = 1; number <= 3; ++number) {
            records.push_back(builders::makeRecord(number));
        }
        builders::writeCard(directory, records, 3);
        ASSERT_TRUE(app::startUp({}));
    }

    static services::Event press(int button) {
        return {.kind = services::EventKind::control,
                .window = services::listWindow,
                .control = files::firstButtonControl + button,
                .data = services::pressed};
    }

    static services::Event doubleClick(int row) {
        return {.kind = services::EventKind::control,
                .window = services::listWindow,
                .control = files::trainingListControl,
                .item = row,
                .data = services::doubleClicked};
    }

    static services::Event key(int item) {
        return {.kind = services::EventKind::menu, .window = services::listWindow, .item = item};
    }

    static void choose(int item) {
        app::dispatchEvent({.kind = services::EventKind::menu, .item = item});
    }

    static void expectOptionsOf(charts::ChartKind kind) {
        const bool overview = kind == charts::ChartKind::overview;
        for (int base = 100; base <= 900; base += 100) {
            EXPECT_EQ(overview, services::itemEnabled(base)) << base;
            EXPECT_EQ(overview, services::itemEnabled(base + 19)) << base;
            EXPECT_EQ(!overview, services::itemEnabled(base + 50)) << base;
            EXPECT_EQ(!overview, services::itemEnabled(base + 71)) << base;
        }
        EXPECT_EQ(kind, app::state.currentChart);
    }

    static std::vector<int> selection() {
        std::vector<int> flags;
        for (const device::DictionaryRecord& record : device::state.dictionary) {
            flags.push_back(record.selected);
        }
        return flags;
    }

    static const services::Surface& picture() {
        return stand_ins::world.windows[services::mainWindow].images[app::chartImageControl];
    }

    static void resizeMainWhileTheListIsOpen(int width, int height) {
        stand_ins::world.beforeEvent = [width, height](int) {
            services::resizeWindow(services::mainWindow, width, height);
        };
    }

    // The newest and the oldest, besides whatever else happens while the list is open.
    static void chooseTwoRows() {
        stand_ins::world.beforeEvent = [before = stand_ins::world.beforeEvent](int call) {
            if (before) before(call);
            auto& list = stand_ins::world.windows.at(services::listWindow)
                             .controls.at(files::trainingListControl);
            list.chosen = {0, 2};
        };
    }

    static void exportAndCancel(int item, std::initializer_list<services::Event> events) {
        using services::operator""_l1;
        stand_ins::world.events = events;
        stand_ins::world.saveFileAnswers.push_back(
            {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", "Dicitonary.csv", ""});
        choose(item);
        stand_ins::world.beforeEvent = {};
    }

    // What the user does to the list before its first event.
    static void chooseRowsOnce(const std::vector<int>& rows) {
        stand_ins::world.eventsWaitedFor = 0;
        stand_ins::world.beforeEvent = [rows](int call) {
            if (call != 0) return;
            stand_ins::world.windows.at(services::listWindow)
                .controls.at(files::trainingListControl)
                .chosen = rows;
        };
    }

    static bool drawn(const std::string& text) {
        for (const stand_ins::TextCall& call : stand_ins::world.texts) {
            if (services::latin1ToUtf8(call.text) == text) return true;
        }
        return false;
    }
};
