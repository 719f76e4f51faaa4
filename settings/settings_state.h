// What the start settings hold beyond the colours (charts) and the backup directory, the
// renumbering switch and the program directory (device). Resetting it is assigning {}.
#pragma once

#include <array>
#include <cstdint>

namespace settings {

// Item numbers 0 to 772; those that are ever stored are 100 to 771.
inline constexpr int menuPreselectionSize = 773;

struct StartSettings {
    // Of the main window's content area, in pixels. They follow the live window; after a reload or
    // a deletion of the settings they hold the loaded size until the window changes its own.
    std::int32_t windowWidth = 0;
    std::int32_t windowHeight = 0;

    // By item number: not 0 when the item is to be marked.
    std::array<std::int32_t, menuPreselectionSize> menuPreselection = {};
};

extern StartSettings state;

}  // namespace settings
