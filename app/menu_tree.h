// The menu bar: its rows and item numbers. The value submenus follow from the value catalogue.
#pragma once

#include <vector>

#include "services/menus.h"

namespace app {

// Item numbers that the dispatch names one by one; option items are value number + 100 * option.
enum Item : int {
    chooseDaumDirectoryItem = 1,
    chooseBackupDirectoryItem = 2,
    editTrainingFilesItem = 3,
    saveSettingsItem = 4,
    reloadSettingsItem = 5,
    deleteSettingsItem = 6,
    endItem = 19,  // no menu carries it; handled like Escape
    clearOverviewItem = 20,
    openTrainingsItem = 21,
    exportTrainingsItem = 22,
    clearTrainingItem = 30,
    openTrainingItem = 31,
    exportTrainingItem = 32,
    escapeItem = 99,  // the Escape key
    versionItem = 1000,
    programItem = 1001,
};

std::vector<services::MenuRow> menuRows();

// Builds the main window's menu bar, marks the options as the start settings say and disables the
// options of both charts.
void buildMenus();

// The first marked overview option, by value and then by option; 0 when there is none.
int firstMarkedOverviewItem();

}  // namespace app
