// The menu bar of the main window: a tree told as rows, and the state of its items by number.
//
// Marks and enabling live in a plain table that every layer reads without the toolkit; the window
// mirrors it. Marks change only through setItemMark: choosing an item in the menu changes nothing
// by itself.
#pragma once

#include <array>
#include <span>

#include "services/text/latin1.h"

namespace services {

inline constexpr int menuItemLimit = 1002;  // item numbers are 0 to this limit (exclusive)

// Item numbers that the platform's application menu sends, where it has one.
inline constexpr int quitItem = -1;
inline constexpr int aboutItem = -3;

enum class MenuRowKind {
    title,         // a menu of the menu bar; ends the open menu and submenu
    submenuStart,  // a submenu of the open menu
    submenuEnd,
    item,
    checkItem,  // an item that can carry a mark
    separator,
};

struct MenuRow {
    MenuRowKind kind = MenuRowKind::item;
    int number = 0;  // items only
    Text text;       // titles, submenus and items
    Text hint = {};  // of an item that may be disabled: what to do first, told while it is
};

struct MenuItemState {
    bool exists = false;
    bool marked = false;
    bool enabled = true;
};

struct MenuState {
    std::array<MenuItemState, menuItemLimit> items;
};

extern MenuState menuState;

// Builds the menu bar of `window` from the rows; every item starts unmarked and enabled.
void buildMenuBar(int window, std::span<const MenuRow> rows);

// Numbers without an item have neither mark nor effect.
bool itemMark(int number);
void setItemMark(int number, bool marked);
bool itemEnabled(int number);
void setItemEnabled(int number, bool enabled);

// The toolkit's half of the functions above; not for callers.
void showMenuBar(int window, std::span<const MenuRow> rows);
void showItemState(int number);

}  // namespace services
