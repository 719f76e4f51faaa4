#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/event_loop.h"
#include "app/menu_tree.h"
#include "app/startup.h"
#include "charts/limits_dialog.h"
#include "device/device_state.h"
#include "files/list_window.h"
#include "services/disk/memory.h"
#include "services/text/latin1.h"
#include "tests/builders/file_bytes.h"
#include "tests/faults/command_faults.h"
#include "tests/faults/fault_injector.h"
#include "tests/files/file_command_answers.h"

namespace {

namespace fs = std::filesystem;
using namespace command_faults;
using builders::namesIn;
using services::operator""_l1;
using stand_ins::world;

// Every command of the program while memory runs out: at each allocation, once or for good. The
// command ends, the program goes on, and nothing on the card is lost.
class ShortMemory : public CommandFaults {
  protected:
    // Of the list, with these rows chosen.
    void pressInList(int button, const std::vector<int>& rows = {}) {
        world.beforeEvent = [rows](int) {
            world.windows[services::listWindow].controls[files::trainingListControl].chosen = rows;
        };
        world.events.push_back({.kind = services::EventKind::control,
                                .window = services::listWindow,
                                .control = files::firstButtonControl + button,
                                .data = services::pressed});
    }

    void closeWindow(int window) {
        world.events.push_back({.kind = services::EventKind::close, .window = window});
    }

    static void choose(int item) {
        app::dispatchEvent({.kind = services::EventKind::menu, .item = item});
    }

    void startProgram() {
        forgetEverything();
        fs::current_path(card);
        ASSERT_TRUE(app::startUp({}));
        for (const int item : {200, 301, 402, 503, 604, 705, 250, 351, 452, 553, 654, 755})
            services::setItemMark(item, true);
        device::state.renumberingEnabled = true;
    }

    // What the user does next.
    bool isUsable() {
        world.events.clear();
        world.questionAnswers.clear();
        world.saveFileAnswers.clear();
        world.beforeEvent = {};
        app::state.quit = false;
        closeWindow(services::listWindow);
        choose(app::editTrainingFilesItem);
        std::set<std::string> listed;
        for (const device::DictionaryRecord& record : device::state.dictionary)
            listed.insert(record.description);
        bool usable = !device::state.dictionaryUnreadable && world.windows.size() == 1 &&
                      device::state.heldTree.directory == services::noFile &&
                      world.events.empty() &&
                      app::state.chartImage.pixels.size() ==
                          static_cast<std::size_t>(app::state.chartImage.deviceWidth) *
                              static_cast<std::size_t>(app::state.chartImage.deviceHeight);
        for (std::size_t i = 0; i < trainings.size(); ++i)
            usable = usable && (trainings[i].chosen || listed.contains(descriptionOf(i)));
        return usable;
    }

    void tryCommand(const char* command, const std::function<void()>& prepare,
                    const std::function<void()>& run) {
        const auto begin = [&] {
            makeCard({{1}, {5}, {6, true}, {9}});
            fs::remove(directory / "export.csv");
            startProgram();
            prepare();
        };
        begin();
        fault_injector::armMemory(-1, false);
        run();
        const int allocations = fault_injector::disarmMemory();
        ASSERT_TRUE(isUsable()) << command;
        ASSERT_GT(allocations, 0);
        // The short form tries a part of them, another one for each command.
        const int stride = isFull() ? 1 : 1 + allocations / 40;
        int tried = 0;
        for (int at = allocations % stride; at < allocations; at += stride) {
            for (const bool goesOn : {false, true}) {
                SCOPED_TRACE(std::string(command) + (goesOn ? " from" : " at") + " allocation " +
                             std::to_string(at));
                begin();
                ASSERT_FALSE(HasFailure()) << "preparing";
                const int status = statusOf([&] {
                    fault_injector::armMemory(at, goesOn);
                    run();
                    fault_injector::disarmMemory();
                    return isUsable() ? 0 : 1;
                });
                EXPECT_EQ(status, 0) << "the program can't be used any more";
                expectEveryTraining();
                for (const std::string& name : namesIn(card))
                    EXPECT_TRUE(name == "data" || name == "Einstellungen.dat") << name;
                ++tried;
                ASSERT_FALSE(HasFailure());
            }
        }
        std::printf("%-32s %6d allocations  %5d tried and survived\n", command, allocations, tried);
        RecordProperty("allocations", allocations);
    }
};

TEST_F(ShortMemory, EndsTheStartOfTheProgramAtMost) {
    tryCommand(
        "start", [&] { fs::current_path(card); },
        [&] {
            // Without its window and menus there is no program to go on with.
            if (services::withinMemory([] { app::startUp({}); })) return;
            fault_injector::disarmMemory();
            startProgram();
        });
}

TEST_F(ShortMemory, EndsDeletingAndNoMore) {
    tryCommand(
        "delete",
        [&] {
            pressInList(2, {1});
            closeWindow(services::listWindow);
            world.questionAnswers = {files_tests::deletionAnswer(true)};
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsRenumberingAndNoMore) {
    tryCommand(
        "renumber",
        [&] {
            pressInList(3);
            closeWindow(services::reportWindow);
            closeWindow(services::listWindow);
            world.questionAnswers = {files_tests::renumberingAnswer(true)};
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsSortingAndNoMore) {
    tryCommand(
        "sort",
        [&] {
            pressInList(4);
            closeWindow(services::listWindow);
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsOpeningATrainingAndNoMore) {
    tryCommand(
        "open a training",
        [&] {
            pressInList(0, {1});
            closeWindow(services::listWindow);  // which stays when it could not be pressed
        },
        [] { choose(app::openTrainingItem); });
}

TEST_F(ShortMemory, EndsExportsAndNoMore) {
    tryCommand(
        "export the index",
        [&] {
            pressInList(0);
            closeWindow(services::listWindow);
            world.saveFileAnswers.push_back({services::Text("Name und Ort der CSV-Datei wählen"_l1),
                                             "", "Dicitonary.csv",
                                             (directory / "export.csv").string()});
        },
        [] { choose(app::exportTrainingsItem); });
    tryCommand(
        "export a training",
        [&] {
            pressInList(0, {1});
            closeWindow(services::listWindow);
            world.saveFileAnswers.push_back(
                {services::Text("Name und Ort der CSV-Datei wählen"_l1), "",
                 "0006  03_01_2013 00_00_00   60min   25,0km  Training 2.csv",
                 (directory / "export.csv").string()});
        },
        [] { choose(app::exportTrainingItem); });
}

TEST_F(ShortMemory, EndsDrawingAndNoMore) {
    tryCommand(
        "draw", [] {}, [] { choose(107); });
    tryCommand(
        "draw another size", [] { services::resizeWindow(services::mainWindow, 1500, 900); },
        [] { app::dispatchEvent({.kind = services::EventKind::resize}); });
    tryCommand(
        "draw a band", [] { choose(200); },
        [] {
            app::dispatchEvent({.kind = services::EventKind::click});
            app::dispatchEvent({.kind = services::EventKind::timer, .item = 1});
            world.pointerY += 9;
            app::dispatchEvent({.kind = services::EventKind::timer, .item = 1});
            app::dispatchEvent({.kind = services::EventKind::click});
        });
}

TEST_F(ShortMemory, EndsDialogsAndNoMore) {
    tryCommand(
        "limits",
        [&] {
            world.events.push_back({.kind = services::EventKind::control,
                                    .window = services::limitsWindow,
                                    .control = charts::resetButton});
            closeWindow(services::limitsWindow);
        },
        [] { choose(800); });
    tryCommand(
        "help", [&] { closeWindow(services::infoWindow); }, [] { choose(app::programItem); });
}

TEST_F(ShortMemory, EndsSavingTheSettingsAndNoMore) {
    tryCommand(
        "save settings", [] {}, [] { choose(app::saveSettingsItem); });
    tryCommand(
        "load settings", [] { choose(app::saveSettingsItem); },
        [] { choose(app::reloadSettingsItem); });
}

TEST_F(ShortMemory, EndsTheBackupAndNoMore) {
    tryCommand(
        "back up",
        [&] {
            fs::remove_all(directory / "sicherung");
            fs::create_directories(backup);
            device::state.backupDirectory = backup.string() + "/";
            pressInList(1);
            closeWindow(services::reportWindow);
            closeWindow(services::listWindow);
        },
        [] { choose(app::editTrainingFilesItem); });
}

}  // namespace
