#include "services/menus.h"

#include <cstddef>

namespace services {

MenuState menuState;

namespace {

bool isItem(int number) {
    return number >= 0 && number < menuItemLimit &&
           menuState.items[static_cast<std::size_t>(number)].exists;
}

}  // namespace

void buildMenuBar(int window, std::span<const MenuRow> rows) {
    menuState = {};
    for (const MenuRow& row : rows) {
        const bool isItemRow = row.kind == MenuRowKind::item || row.kind == MenuRowKind::checkItem;
        if (!isItemRow || row.number < 0 || row.number >= menuItemLimit) continue;
        menuState.items[static_cast<std::size_t>(row.number)].exists = true;
    }
    showMenuBar(window, rows);
}

bool itemMark(int number) {
    return isItem(number) && menuState.items[static_cast<std::size_t>(number)].marked;
}

void setItemMark(int number, bool marked) {
    if (!isItem(number)) return;
    menuState.items[static_cast<std::size_t>(number)].marked = marked;
    // Shown even when nothing changed: a toolkit may have flipped the visible mark by itself.
    showItemState(number);
}

bool itemEnabled(int number) {
    return isItem(number) && menuState.items[static_cast<std::size_t>(number)].enabled;
}

void setItemEnabled(int number, bool enabled) {
    if (!isItem(number)) return;
    menuState.items[static_cast<std::size_t>(number)].enabled = enabled;
    showItemState(number);
}

}  // namespace services
