// The training list over events that are given to it, and looked at before each of them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "files/list_window.h"
#include "tests/files/files_test.h"

namespace files_tests {

inline services::Event key(files::ListShortcut shortcut) {
    return shortcutEvent(services::listWindow, shortcut);
}

// The button of that place, counted from 0.
inline services::Event button(int place) {
    return {.kind = services::EventKind::control,
            .window = services::listWindow,
            .control = files::firstButtonControl + place,
            .data = services::pressed};
}

inline services::Event onList(services::ControlAction action, int row) {
    return {.kind = services::EventKind::control,
            .window = services::listWindow,
            .control = files::trainingListControl,
            .item = row,
            .data = action};
}

class TrainingList : public FilesTest {
  protected:
    // Runs the window over these events. `look` sees it before each of them, with its number.
    files::ListResult open(files::ListMode mode, const std::vector<services::Event>& events,
                           const std::function<void(int)>& look = {}) {
        stand_ins::world.events.assign(events.begin(), events.end());
        stand_ins::world.eventsWaitedFor = 0;
        stand_ins::world.beforeEvent = look;
        return files::openTrainingList(mode, 1400, 800);
    }

    static stand_ins::ControlRecord& list() {
        return stand_ins::world.windows.at(services::listWindow)
            .controls.at(files::trainingListControl);
    }

    static std::string buttonText(int place) {
        return services::latin1ToUtf8(stand_ins::world.windows.at(services::listWindow)
                                          .controls.at(files::firstButtonControl + place)
                                          .text);
    }

    // The numbers of the trainings from the top row to the bottom one.
    static std::string rows() {
        std::string text;
        for (int row = 0; row < list().rows; ++row) {
            const std::string name = list().cell(row, 12);
            text += (text.empty() ? "" : " ") + name.substr(name.find_first_not_of('0'));
        }
        return text;
    }

    static void chooseRows(const std::vector<int>& chosen) {
        list().chosen = chosen;
        list().highlighted = chosen.empty() ? -1 : chosen.back();
    }

    static std::string flags() {
        std::string text;
        for (const auto& record : device::state.dictionary)
            text += record.selected != 0 ? '1' : '0';
        return text;
    }

    // A directory for the backup.
    void useStick() {
        std::filesystem::create_directory(directory / "stick");
        device::state.backupDirectory = (directory / "stick").string() + "/";
    }
};

}  // namespace files_tests
